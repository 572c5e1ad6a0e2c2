#include "LogsCommand.h"

#include "LinesText.h"
#include "LogStore.h"
#include "backend/DataFolder.h"

namespace VX
{

tl::expected<std::string, std::string> runLogsCommand(const std::filesystem::path& dataFolder, const LineFilter& filter,
                                                      bool asJson)
{
    const auto folder = DataFolder::open(dataFolder);
    if (!folder)
        return tl::unexpected(folder.error());
    const auto store = LogStore::open(folder->telemetry());
    if (!store)
        return tl::unexpected(store.error());
    return (*store)->findLines(filter).map(asJson ? linesJson : linesText);
}

} // namespace VX

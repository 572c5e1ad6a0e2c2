#include "StatsCommand.h"

#include "LogStore.h"
#include "StatsTable.h"
#include "backend/DataFolder.h"

namespace VX
{

tl::expected<std::string, std::string> runStatsCommand(const std::filesystem::path& dataFolder)
{
    const auto folder = DataFolder::open(dataFolder);
    if (!folder)
        return tl::unexpected(folder.error());
    const auto store = LogStore::open(folder->telemetry());
    if (!store)
        return tl::unexpected(store.error());
    return (*store)->actionCounts().map(statsTable);
}

} // namespace VX

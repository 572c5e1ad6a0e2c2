#include "AgentSchema.h"
#include "AgentToolList.h"
#include "AllowedFolders.h"
#include "Paging.h"

#include <VXMesh/FileError.h>
#include <VXMesh/StringConvert.h>
#include <VXViewer/FileOpening.h>
#include <VXViewer/Viewer.h>

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <system_error>
#include <tuple>
#include <utility>

namespace VX
{

namespace
{

namespace Schema = AgentSchema;

struct Entry
{
    std::filesystem::path path;
    bool isFolder = false;
    std::uintmax_t bytes = 0;
};

/// Tells of the entries of a folder what agents may know: folders, and the files that can be loaded.
class FolderReader
{
public:
    FolderReader(AllowedFolders allowed, std::vector<std::string> extensions)
        : allowed_(std::move(allowed))
        , extensions_(std::move(extensions))
    {
    }

    /// The folders that may be used.
    [[nodiscard]] std::vector<Entry> top() const
    {
        std::vector<Entry> entries;
        for (const std::filesystem::path& folder : allowed_.folders())
            entries.push_back({.path = folder, .isFolder = true});
        return entries;
    }

    /// Folders first, by name.
    [[nodiscard]] tl::expected<std::vector<Entry>, std::string> read(const std::string& name) const
    {
        const auto folder = allowed_.forReading(name);
        if (!folder)
            return tl::unexpected(folder.error());
        std::error_code error;
        if (!std::filesystem::is_directory(*folder, error))
            return tl::unexpected(fmt::format("\"{}\" is no folder. Name the folder that it is in.", name));
        std::vector<Entry> entries;
        for (std::filesystem::directory_iterator it(*folder, error), end; !error && it != end; it.increment(error))
            add_(*it, entries);
        if (error)
            return tl::unexpected(fileErrorText("open", *folder, error));
        std::ranges::sort(entries, {}, [](const Entry& entry)
                          { return std::tuple(!entry.isFolder, toLower(utf8string(entry.path)), entry.path); });
        return entries;
    }

private:
    void add_(const std::filesystem::directory_entry& found, std::vector<Entry>& entries) const
    {
        std::error_code error;
        // A link may lead elsewhere.
        const auto path = allowed_.forReading(utf8string(found.path()));
        const bool isFolder = path && found.is_directory(error);
        const bool isLoadable =
            path && found.is_regular_file(error) &&
            std::ranges::find(extensions_, toLower(utf8string(found.path().extension()))) != extensions_.end();
        if (isFolder || isLoadable)
            entries.push_back(
                {.path = found.path(), .isFolder = isFolder, .bytes = isFolder ? 0 : found.file_size(error)});
    }

    AllowedFolders allowed_;
    std::vector<std::string> extensions_;
};

Json::Value entryJson(const Entry& entry)
{
    Json::Value value;
    value["name"] = utf8string(entry.path.filename());
    value["path"] = utf8string(entry.path);
    value["kind"] = entry.isFolder ? "folder" : "file";
    if (!entry.isFolder)
        value["bytes"] = Json::UInt64(entry.bytes);
    return value;
}

AgentResult listFolder(const FolderReader& reader, const AgentArguments& arguments)
{
    const auto paging = Paging::of(arguments);
    if (!paging)
        return tl::unexpected(paging.error());
    const auto entries = arguments.has("folder") ? reader.read(arguments.text("folder")) : reader.top();
    if (!entries)
        return tl::unexpected(entries.error());
    Json::Value value;
    value["entries"] = Json::Value(Json::arrayValue);
    for (std::size_t i = paging->begin(entries->size()); i < paging->end(entries->size()); ++i)
        value["entries"].append(entryJson((*entries)[i]));
    paging->describe(value, entries->size());
    return Mcp::ToolResult::of(std::move(value));
}

void begin(AgentContext& context, const std::shared_ptr<AgentCall>& call)
{
    FolderReader reader(AllowedFolders::ofSettings(), call->viewer().fileOpening().readableExtensions());
    // A folder of many files, or on a drive that is far away, takes a while.
    context.compute(call, [call, reader = std::move(reader)] { call->answer(listFolder(reader, call->arguments())); });
}

Mcp::Tool listTool()
{
    const Json::Value entry = Schema::result({{"name", Schema::text("Without its folder.")},
                                              {"path", Schema::text("What \"scene.loadFile\" and \"folder\" take.")},
                                              {"kind", Schema::choice("What it is.", {"folder", "file"})},
                                              {"bytes", Schema::count("How large a file is.")}},
                                             {"name", "path", "kind"});
    Mcp::Tool tool;
    tool.name = "files.list";
    tool.title = "List the files that can be loaded";
    tool.description =
        "Lists the folders in a folder and the files that \"scene.loadFile\" takes, hidden ones left out. "
        "Without \"folder\" it lists the folders that agents may use.";
    tool.inputSchema =
        Schema::object({{"folder", Schema::text("Absolute, or \"~/…\"; it may be used as \"viewer.getStatus\" tells.")},
                        {"limit", Paging::limitSchema()},
                        {"cursor", Paging::cursorSchema()}});
    tool.outputSchema = Schema::result({{"entries", Schema::list("Folders first, then files, by name.", entry)},
                                        {"total", Paging::totalSchema()},
                                        {"nextCursor", Paging::nextCursorSchema()}},
                                       {"entries", "total"});
    tool.readOnly = true;
    tool.idempotent = true;
    return tool;
}

} // namespace

void addFolderTools(AgentToolList& list)
{
    list.start(listTool(),
               [context = list.context()](const std::shared_ptr<AgentCall>& call) { begin(*context, call); });
}

} // namespace VX

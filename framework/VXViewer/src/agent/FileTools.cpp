#include "AgentJobs.h"
#include "AgentSchema.h"
#include "AgentToolList.h"
#include "AllowedFolders.h"
#include "ChosenScene.h"
#include "ObjectSummary.h"
#include "SaveLosses.h"

#include <VXMesh/FileError.h>
#include <VXMesh/ObjectFile.h>
#include <VXMesh/Progress.h>
#include <VXMesh/StringConvert.h>
#include <VXViewer/FileOpening.h>
#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/SceneFiles.h>
#include <VXViewer/Viewer.h>

#include <fmt/format.h>

#include <algorithm>
#include <system_error>
#include <utility>

namespace VX
{

namespace
{

namespace Schema = AgentSchema;

/// What `openFor` and `saveTo` told before their number was known.
using JobId = std::shared_ptr<std::uint64_t>;

std::string extensionOf(const std::filesystem::path& path)
{
    return toLower(utf8string(path.extension()));
}

std::vector<std::string> writableExtensions()
{
    std::vector<std::string> extensions;
    for (const FileFormat& format : fileFormats())
    {
        if (format.save)
            extensions.insert(extensions.end(), format.extensions.begin(), format.extensions.end());
    }
    return extensions;
}

Json::Value sentences(const std::vector<std::string>& texts)
{
    Json::Value value(Json::arrayValue);
    for (const std::string& text : texts)
        value.append(text);
    return value;
}

AgentResult loadedResult(const FileOpening::Outcome& outcome)
{
    if (outcome.error == operationCanceledText())
        return tl::unexpected(operationCanceledText());
    if (!outcome.error.empty())
    {
        std::string text = outcome.error + " Nothing was loaded.";
        std::ranges::replace(text, '\n', ' ');
        return tl::unexpected(std::move(text));
    }
    Json::Value value = agentObjectsJson(outcome.objects);
    value["warnings"] = sentences(outcome.warnings);
    return Mcp::ToolResult::of(std::move(value));
}

void load(const std::shared_ptr<AgentContext>& context, const std::shared_ptr<AgentCall>& call)
{
    const AgentArguments arguments = call->arguments();
    FileOpening& opening = call->viewer().fileOpening();
    const auto path = AllowedFolders::ofSettings().forReading(arguments.text("path"));
    if (!path)
    {
        call->answer(tl::unexpected(path.error()));
        return;
    }
    std::error_code error;
    if (std::filesystem::is_directory(*path, error))
    {
        call->answer(tl::unexpected(fmt::format("\"{}\" is a folder. Name a file in it.", arguments.text("path"))));
        return;
    }
    const std::vector<std::string> extensions = opening.readableExtensions();
    if (std::ranges::find(extensions, extensionOf(*path)) == extensions.end())
    {
        call->answer(tl::unexpected(fmt::format("Files of the kind \"{}\" cannot be loaded. These can: {}.",
                                                extensionOf(*path), fmt::join(extensions, " "))));
        return;
    }
    const JobId id = std::make_shared<std::uint64_t>();
    *id = opening.openFor(*path, [context, id](const FileOpening::Outcome& outcome)
                          { context->jobs->end(*id, loadedResult(outcome)); });
    context->jobs->begin(call, *id, arguments.flag("wait", true));
}

std::string existsText(const AgentArguments& arguments)
{
    return fmt::format("\"{}\" exists already and was left as it is. Choose another name, or call again with "
                       "\"overwrite\": true if the user wants it replaced.",
                       arguments.text("path"));
}

/// Why "path" cannot be written; else the path.
tl::expected<std::filesystem::path, std::string> pathToWrite(const AgentArguments& arguments)
{
    auto path = AllowedFolders::ofSettings().forWriting(arguments.text("path"));
    if (!path)
        return path;
    const std::vector<std::string> extensions = writableExtensions();
    if (std::ranges::find(extensions, extensionOf(*path)) == extensions.end())
        return tl::unexpected(fmt::format("Files of the kind \"{}\" cannot be written. These can: {}.",
                                          extensionOf(*path), fmt::join(extensions, " ")));
    std::error_code error;
    const auto status = std::filesystem::symlink_status(*path, error);
    if (std::filesystem::is_directory(status))
        return tl::unexpected(fmt::format("\"{}\" is a folder. Add a file name.", arguments.text("path")));
    if (std::filesystem::exists(status) && !arguments.flag("overwrite", false))
        return tl::unexpected(existsText(arguments));
    return path;
}

void save(const std::shared_ptr<AgentContext>& context, const std::shared_ptr<AgentCall>& call)
{
    const AgentArguments arguments = call->arguments();
    Viewer& viewer = call->viewer();
    const auto path = pathToWrite(arguments);
    const auto objects = arguments.objects("ids", viewer.scene());
    std::string error = !path ? path.error() : !objects ? objects.error() : std::string();
    if (error.empty() && viewer.scene().children().empty())
        error = "The scene is empty: there is nothing to save. Load a file or create an object first.";
    if (error.empty() && !viewer.ui())
        error = "The viewer is still starting. Call again in a moment.";
    if (!error.empty())
    {
        call->answer(tl::unexpected(std::move(error)));
        return;
    }
    SceneFiles& files = viewer.getMenuPlugin()->sceneFiles();
    const auto part = objects->empty() ? nullptr : ChosenScene(*objects).root();
    const Json::Value warnings = sentences(saveLosses(part ? *part : viewer.scene(), extensionOf(*path)));
    const JobId id = std::make_shared<std::uint64_t>();
    const auto done = [context, id, path = *path, exists = existsText(arguments), warnings](const std::string& failure)
    {
        if (!failure.empty())
        {
            // Somebody else's file that came there meanwhile.
            const bool cameLate = failure == fileErrorText("write", path, std::make_error_code(std::errc::file_exists));
            context->jobs->end(*id, tl::unexpected(cameLate ? exists : failure));
            return;
        }
        std::error_code unknown;
        const auto size = std::filesystem::file_size(path, unknown);
        Json::Value value;
        value["path"] = utf8string(path);
        value["bytes"] = Json::UInt64(unknown ? 0 : size);
        value["warnings"] = warnings;
        context->jobs->end(*id, Mcp::ToolResult::of(std::move(value)));
    };
    const auto existing =
        arguments.flag("overwrite", false) ? AtomicFile::Existing::Replace : AtomicFile::Existing::Keep;
    *id = part ? files.saveTo(part, *path, existing, done) : files.saveTo(*path, existing, done);
    context->jobs->begin(call, *id, arguments.flag("wait", true));
}

Json::Value waitSchema()
{
    return AgentSchema::flag("true (if left out): answer when it is done. false: answer at once with a job, which "
                             "\"jobs.status\" tells about.");
}

/// Of the tool's result, or of the job where nobody waits.
Json::Value resultOrJob(AgentSchema::Fields fields)
{
    Json::Value schema = AgentSchema::result(fields);
    const Json::Value job = AgentJobs::schema();
    for (const char* field : {"job", "title", "state", "progress", "seconds"})
        schema["properties"][field] = job["properties"][field];
    return schema;
}

Mcp::Tool loadTool()
{
    Mcp::Tool tool;
    tool.name = "scene.loadFile";
    tool.title = "Load a file";
    tool.description =
        "Adds what a file holds to the scene, beside what is there, and waits until it is loaded. STEP "
        "files are converted first, which may take a while. \"viewer.getStatus\" lists the kinds of files "
        "and the folders that may be used, \"files.list\" the files in them. One step that \"history.undo\" takes "
        "back.";
    tool.inputSchema =
        Schema::object({{"path", Schema::text("Of the file: absolute, or \"~/…\" for the user's home folder.")},
                        {"wait", waitSchema()}},
                       {"path"});
    tool.outputSchema =
        resultOrJob({{"objects", Schema::list("What came into the scene.", shortObjectSchema())},
                     {"warnings", Schema::list("What of the file could not be used.", Schema::text("A sentence."))}});
    return tool;
}

Mcp::Tool saveTool()
{
    Mcp::Tool tool;
    tool.name = "scene.saveFile";
    tool.title = "Save the scene or objects";
    tool.description =
        "Writes the scene, or the objects named, to a file of the kind that its extension says; \".vxu\" "
        "keeps all of the scene. Other kinds leave out hidden objects, but for those that \"ids\" itself names, and "
        "what they cannot hold: \"warnings\" say what. After any other kind, or \"ids\", the scene still counts as "
        "having unsaved changes. A file that exists stays unless \"overwrite\" is true.";
    tool.inputSchema =
        Schema::object({{"path", Schema::text("Of the file: absolute, or \"~/…\". Its folder exists.")},
                        {"ids", Schema::objectIds("Only these objects with what is below them, and beside them "
                                                  "those named below a hidden one that is not; all if left out.")},
                        {"overwrite", Schema::flag("Replace a file of this name; false if left out.")},
                        {"wait", waitSchema()}},
                       {"path"});
    tool.outputSchema =
        resultOrJob({{"path", Schema::text("What was written, without links.")},
                     {"bytes", Schema::count("How large the file is.")},
                     {"warnings", Schema::list("What was left out of the file.", Schema::text("A sentence."))}});
    tool.destructive = true;
    return tool;
}

} // namespace

void addFileTools(AgentToolList& list)
{
    list.start(loadTool(), [context = list.context()](const std::shared_ptr<AgentCall>& call) { load(context, call); });
    list.start(saveTool(), [context = list.context()](const std::shared_ptr<AgentCall>& call) { save(context, call); });
}

} // namespace VX

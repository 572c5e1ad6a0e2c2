#include "AgentStatus.h"

#include "AgentNumbers.h"
#include "AgentSchema.h"
#include "AllowedFolders.h"
#include "UserDialogs.h"
#include "menu/SceneFacts.h"

#include <VXMesh/ObjectFile.h>
#include <VXMesh/StringConvert.h>
#include <VXMesh/Version.h>
#include <VXViewer/FileOpening.h>
#include <VXViewer/HistoryStore.h>
#include <VXViewer/ProgressBar.h>
#include <VXViewer/SceneFiles.h>
#include <VXViewer/SceneJson.h>
#include <VXViewer/Selection.h>
#include <VXViewer/Viewer.h>

#include <utility>

namespace VX
{

namespace
{

namespace Schema = AgentSchema;

Json::Value sceneStatus(const Viewer& viewer)
{
    SceneFacts facts;
    facts.add(viewer.scene());
    Json::Value value;
    value["name"] = viewer.sceneName();
    value["objects"] = Json::UInt64(facts.objects);
    value["triangles"] = Json::UInt64(facts.triangles);
    value["points"] = Json::UInt64(facts.vertices + facts.points);
    value["box"] = rounded(toJson(facts.box));
    value["selectedObjects"] = Json::UInt64(selectedObjects(viewer.scene()).size());
    value["unsavedChanges"] = hasUnsavedChanges(viewer);
    return value;
}

Json::Value windowStatus(const Viewer& viewer)
{
    const PixelSize size = viewer.framebufferSize();
    Json::Value value;
    value["width"] = size.width;
    value["height"] = size.height;
    value["onScreen"] = viewer.glfwWindow() != nullptr;
    value["minimized"] = size.isEmpty();
    return value;
}

Json::Value filesStatus(const Viewer& viewer)
{
    Json::Value value;
    for (const char* list : {"folders", "loads", "saves"})
        value[list] = Json::Value(Json::arrayValue);
    const AllowedFolders allowed = AllowedFolders::ofSettings();
    for (const std::filesystem::path& folder : allowed.folders())
        value["folders"].append(utf8string(folder));
    for (const std::string& extension : viewer.fileOpening().readableExtensions())
        value["loads"].append(extension);
    for (const FileFormat& format : fileFormats())
    {
        for (const std::string& extension : format.extensions)
        {
            if (format.save)
                value["saves"].append(extension);
        }
    }
    return value;
}

} // namespace

Json::Value viewerStatus(const Viewer& viewer)
{
    Json::Value value;
    value["application"] = viewer.applicationName();
    value["version"] = GetVXVersionString();
    value["scene"] = sceneStatus(viewer);
    value["window"] = windowStatus(viewer);
    value["runningJobs"] = Json::UInt64(ProgressBar::tasks().size());
    value["files"] = filesStatus(viewer);
    if (const std::string window = waitingWindow(viewer); !window.empty())
        value["waitingWindow"] = window;
    return value;
}

Json::Value viewerStatusSchema()
{
    const Json::Value scene =
        Schema::result({{"name", Schema::text("Of the file that it came from; empty for a new scene.")},
                        {"objects", Schema::count("Objects with geometry, without groups.")},
                        {"triangles", Schema::count("Of all meshes.")},
                        {"points", Schema::count("Of all geometry.")},
                        {"box", Schema::box("Of all that is in the scene, in mm.")},
                        {"selectedObjects", Schema::count("Objects selected as a whole.")},
                        {"unsavedChanges", Schema::flag("Whether there are changes that are in no file.")}},
                       {"name", "objects", "triangles", "points", "box", "unsavedChanges"});
    const Json::Value window = Schema::result({{"width", Schema::count("In pixels.")},
                                               {"height", Schema::count("In pixels.")},
                                               {"onScreen", Schema::flag("false: the program runs hidden.")},
                                               {"minimized", Schema::flag("Whether nothing of it is to be seen.")}},
                                              {"width", "height", "onScreen", "minimized"});
    const Json::Value files = Schema::result(
        {{"folders", Schema::list("Below these, files may be loaded and saved.", Schema::text("A folder."))},
         {"loads", Schema::list("Kinds of files that can be loaded.", Schema::text("An extension."))},
         {"saves", Schema::list("Kinds of files that can be saved.", Schema::text("An extension."))}},
        {"folders", "loads", "saves"});
    return Schema::result(
        {{"application", Schema::text("Its name.")},
         {"version", Schema::text("Its version.")},
         {"scene", scene},
         {"window", window},
         {"runningJobs", Schema::count("Long work that runs; \"jobs.list\" tells more.")},
         {"files", files},
         {"waitingWindow", Schema::text("A window that waits for an answer of the user, as \"ui.tree\" names it; "
                                        "missing where none does.")}},
        {"application", "version", "scene", "window", "runningJobs", "files"});
}

} // namespace VX

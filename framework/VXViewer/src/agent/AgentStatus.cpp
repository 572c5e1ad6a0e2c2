#include "AgentStatus.h"

#include "AgentSchema.h"
#include "AllowedFolders.h"
#include "menu/SceneFacts.h"

#include <VXMesh/ObjectFile.h>
#include <VXMesh/StringConvert.h>
#include <VXMesh/Version.h>
#include <VXViewer/FileOpening.h>
#include <VXViewer/HistoryStore.h>
#include <VXViewer/ProgressBar.h>
#include <VXViewer/SceneJson.h>
#include <VXViewer/Selection.h>
#include <VXViewer/Viewer.h>

#include <utility>

namespace VX
{

namespace
{

Json::Value sceneStatus(const Viewer& viewer)
{
    SceneFacts facts;
    facts.add(viewer.scene());
    Json::Value value;
    value["name"] = viewer.sceneName();
    value["objects"] = Json::UInt64(facts.objects);
    value["triangles"] = Json::UInt64(facts.triangles);
    value["points"] = Json::UInt64(facts.vertices + facts.points);
    value["box"] = toJson(facts.box);
    value["selectedObjects"] = Json::UInt64(selectedObjects(viewer.scene()).size());
    value["unsavedChanges"] = !viewer.scene().children().empty() && !viewer.getGlobalHistoryStore()->isSaved();
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
    return value;
}

Json::Value viewerStatusSchema()
{
    using namespace AgentSchema;
    const Json::Value scene = result({{"name", text("Of the file that it came from; empty for a new scene.")},
                                      {"objects", count("Objects with geometry.")},
                                      {"triangles", count("Of all meshes.")},
                                      {"points", count("Of all geometry.")},
                                      {"box", box("Of all that is in the scene, in mm.")},
                                      {"selectedObjects", count("Objects selected as a whole.")},
                                      {"unsavedChanges", flag("Whether there are changes that are in no file.")}},
                                     {"name", "objects", "triangles", "points", "box", "unsavedChanges"});
    const Json::Value window = result({{"width", count("In pixels.")},
                                       {"height", count("In pixels.")},
                                       {"onScreen", flag("false: the program runs hidden.")},
                                       {"minimized", flag("Whether nothing of it is to be seen.")}},
                                      {"width", "height", "onScreen", "minimized"});
    const Json::Value files =
        result({{"folders", list("Below these, files may be loaded and saved.", text("A folder."))},
                {"loads", list("Kinds of files that can be loaded.", text("An extension."))},
                {"saves", list("Kinds of files that can be saved.", text("An extension."))}},
               {"folders", "loads", "saves"});
    return result({{"application", text("Its name.")},
                   {"version", text("Its version.")},
                   {"scene", scene},
                   {"window", window},
                   {"runningJobs", count("Long work that runs; \"jobs.list\" tells more.")},
                   {"files", files}},
                  {"application", "version", "scene", "window", "runningJobs", "files"});
}

} // namespace VX

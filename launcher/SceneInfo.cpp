#include "launcher/SceneInfo.h"

#include <VXViewer/SceneJson.h>

#include <json/json.h>

namespace VX
{

namespace
{

Json::Value treeJson(const Object& object)
{
    Json::Value value = objectJson(object);
    value["children"] = Json::Value(Json::arrayValue);
    for (const auto& child : object.children())
        value["children"].append(treeJson(*child));
    return value;
}

} // namespace

std::string sceneInfo(const Object& root)
{
    Json::StreamWriterBuilder writer;
    writer["indentation"] = "  ";
    writer["precision"] = 9;
    writer["emitUTF8"] = true;
    return Json::writeString(writer, treeJson(root)) + "\n";
}

} // namespace VX

#include "ObjectSummary.h"

#include "AgentSchema.h"

#include <VXMesh/ObjectLines.h>
#include <VXMesh/ObjectMesh.h>
#include <VXViewer/SceneJson.h>
#include <VXViewer/Selection.h>

namespace VX
{

Json::Value agentJson(const Object& object, Detail detail)
{
    Json::Value value = objectJson(object);
    value["parent"] = object.parent() ? Json::Value(Json::UInt64(object.parent()->id())) : Json::Value();
    value["children"] = Json::UInt64(object.children().size());
    value["shown"] = isShown(object);
    value["selected"] = object.isSelected();
    const auto* mesh = dynamic_cast<const ObjectMesh*>(&object);
    value["selectedFaces"] = Json::UInt64(mesh && mesh->selectedFaces() ? mesh->selectedFaces()->count() : 0);
    if (detail == Detail::Summary)
    {
        value.removeMember("transform");
        value.removeMember("color");
        return value;
    }
    value["worldTransform"] = toJson(object.worldTransform());
    if (const auto* visual = dynamic_cast<const VisualObject*>(&object))
        value["opacity"] = visual->color().a / 255.0;
    if (mesh)
        value["flatShaded"] = mesh->isFlatShaded();
    if (const auto* lines = dynamic_cast<const ObjectLines*>(&object); lines && lines->lines())
        value["segments"] = Json::UInt64(lines->lines()->segments.size());
    return value;
}

Json::Value agentObjectSchema()
{
    using namespace AgentSchema;
    return result({{"id", objectId("Stable for as long as the program runs.")},
                   {"name", text("As the user sees it. Names may repeat.")},
                   {"type", text("Object (a group), ObjectMesh, ObjectPoints or ObjectLines.")},
                   {"parent", orNull(objectId("The object that it is below; null for the root of the scene."))},
                   {"children", count("How many objects are directly below it.")},
                   {"points", count("Of its own geometry, without the objects below it.")},
                   {"triangles", count("Of its own geometry, without the objects below it.")},
                   {"box", box("In scene coordinates (mm), with all below it; null without geometry.")},
                   {"visible", flag("Its own switch.")},
                   {"shown", flag("Whether its own switch and those of all above it are on.")},
                   {"selected", flag("Whether the object is selected as a whole.")},
                   {"selectedFaces", count("How many of its triangles are selected.")}},
                  {"id", "name", "type", "parent", "children", "points", "triangles", "box", "visible", "shown",
                   "selected", "selectedFaces"});
}

Json::Value shortObjectSchema()
{
    Json::Value schema;
    schema["type"] = "object";
    schema["description"] = "An object, as \"scene.list\" tells it.";
    schema["properties"]["id"]["type"] = "integer";
    schema["properties"]["name"]["type"] = "string";
    schema["required"].append("id");
    schema["required"].append("name");
    return schema;
}

Json::Value agentObjectsJson(const std::vector<std::shared_ptr<Object>>& objects)
{
    Json::Value value;
    value["objects"] = Json::Value(Json::arrayValue);
    for (const std::shared_ptr<Object>& object : objects)
        value["objects"].append(agentJson(*object, Detail::Summary));
    return value;
}

Json::Value agentObjectsSchema(const char* description)
{
    return AgentSchema::result({{"objects", AgentSchema::list(description, shortObjectSchema())}}, {"objects"});
}

} // namespace VX

#include "ObjectSummary.h"

#include "AgentNumbers.h"
#include "AgentSchema.h"

#include <VXMesh/ObjectLines.h>
#include <VXMesh/ObjectMesh.h>
#include <VXViewer/SceneJson.h>
#include <VXViewer/Selection.h>

#include <cmath>

namespace VX
{

namespace Schema = AgentSchema;

Json::Value agentJson(const Object& object, Detail detail)
{
    Json::Value value = objectJson(object);
    value["box"] = rounded(value["box"]);
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
    addAppearance(value, object);
    if (const auto* lines = dynamic_cast<const ObjectLines*>(&object); lines && lines->lines())
        value["segments"] = Json::UInt64(lines->lines()->segments.size());
    return value;
}

void addAppearance(Json::Value& value, const Object& object)
{
    if (const auto* visual = dynamic_cast<const VisualObject*>(&object))
    {
        value["color"] = colorText(visual->color());
        // A colour keeps 8 bits of it.
        value["opacity"] = rounded(std::round(visual->color().a / 255.0 * 1000) / 1000);
    }
    if (const auto* mesh = dynamic_cast<const ObjectMesh*>(&object))
        value["flatShaded"] = mesh->isFlatShaded();
}

void addAppearanceSchema(Json::Value& schema)
{
    Json::Value& fields = schema["properties"];
    fields["color"] = Schema::text("#rrggbb; geometry with colours of its own shows those.");
    fields["opacity"] = Schema::number("1: opaque.", 0, 1);
    fields["flatShaded"] = Schema::flag("Meshes: one normal a triangle instead of smooth shading.");
}

Json::Value agentObjectSchema()
{
    return Schema::result(
        {{"id", Schema::objectId("Stable for as long as the program runs.")},
         {"name", Schema::text("As the user sees it. Names may repeat.")},
         {"type", Schema::text("Object (a group), ObjectMesh, ObjectPoints or ObjectLines.")},
         {"parent", Schema::orNull(Schema::objectId("The object that it is below; null for the root of the scene."))},
         {"children", Schema::count("How many objects are directly below it.")},
         {"points", Schema::count("Of its own geometry, without the objects below it.")},
         {"triangles", Schema::count("Of its own geometry, without the objects below it.")},
         {"box", Schema::box("In scene coordinates (mm), with all below it; null without geometry.")},
         {"visible", Schema::flag("Its own switch.")},
         {"shown", Schema::flag("Whether its own switch and those of all above it are on.")},
         {"selected", Schema::flag("Whether the object is selected as a whole.")},
         {"selectedFaces", Schema::count("How many of its triangles are selected.")}},
        {"id", "name", "type", "parent", "children", "points", "triangles", "box", "visible", "shown", "selected",
         "selectedFaces"});
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

#include "formats/VxuScene.h"

#include <VXMesh/ObjectLines.h>
#include <VXMesh/ObjectMesh.h>
#include <VXMesh/ObjectPoints.h>

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <unordered_map>

namespace VX
{

namespace
{

/// The parser of the description refuses deeper values.
constexpr int kMaxDepth = 400;

const Json::Value& nullValue()
{
    static const Json::Value value;
    return value;
}

std::string colorText(Color color)
{
    return fmt::format("#{:02x}{:02x}{:02x}{:02x}", color.r, color.g, color.b, color.a);
}

std::optional<Color> colorFromText(const Json::Value& value)
{
    const std::string text = value.isString() ? value.asString() : std::string();
    std::uint32_t bits = 0;
    if (text.size() != 9 || text.front() != '#')
        return {};
    const auto [end, error] = std::from_chars(text.data() + 1, text.data() + text.size(), bits, 16);
    if (error != std::errc() || end != text.data() + text.size())
        return {};
    const auto byteAt = [bits](unsigned shift) { return static_cast<std::uint8_t>(bits >> shift & 0xFFU); };
    return Color{byteAt(24), byteAt(16), byteAt(8), byteAt(0)};
}

Json::Value transformJson(const Transform& transform)
{
    Json::Value result(Json::arrayValue);
    for (int row = 0; row < 4; ++row)
    {
        for (int column = 0; column < 4; ++column)
            result.append(transform.matrix()(row, column));
    }
    return result;
}

std::optional<Transform> transformFromJson(const Json::Value& value)
{
    if (!value.isArray() || value.size() != 16)
        return {};
    Transform transform;
    for (Json::ArrayIndex i = 0; i < 16; ++i)
    {
        const double number = value[i].isNumeric() ? value[i].asDouble() : NAN;
        transform.matrix()(i / 4, i % 4) = number;
        if (!std::isfinite(number))
            return {};
    }
    return transform.matrix().row(3) == Eigen::RowVector4d(0.0, 0.0, 0.0, 1.0) ? std::optional(transform)
                                                                               : std::nullopt;
}

/// A name as a sentence can quote it.
std::string oneLine(std::string name)
{
    std::ranges::replace_if(name, [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
    return name;
}

/// Describes objects one after another and gives each geometry a name.
class SceneDescriber
{
public:
    bool add(const Object& object, Json::Value& list, int depth = 0)
    {
        if (depth > kMaxDepth || !object.transform().matrix().allFinite())
            return false;
        Json::Value description(Json::objectValue);
        description["type"] = std::string(object.typeName());
        description["name"] = object.name();
        description["transform"] = transformJson(object.transform());
        description["visibility"] = object.visibilityMask().bits();
        describeGeometry_(object, description);
        Json::Value children(Json::arrayValue);
        for (const auto& child : object.children())
        {
            if (!add(*child, children, depth + 1))
                return false;
        }
        if (!children.empty())
            description["children"].swap(children);
        list.append(std::move(description));
        return true;
    }

    VxuDocument document;

private:
    void describeGeometry_(const Object& object, Json::Value& description)
    {
        if (const auto* visual = dynamic_cast<const VisualObject*>(&object))
            description["color"] = colorText(visual->color());
        if (const auto* mesh = dynamic_cast<const ObjectMesh*>(&object))
        {
            description["shading"] = mesh->isFlatShaded() ? "flat" : "smooth";
            refer_(mesh->mesh(), description);
        }
        else if (const auto* points = dynamic_cast<const ObjectPoints*>(&object))
            refer_(points->pointCloud(), description);
        else if (const auto* lines = dynamic_cast<const ObjectLines*>(&object))
            refer_(lines->lines(), description);
    }

    template <typename Geometry>
    void refer_(const std::shared_ptr<const Geometry>& geometry, Json::Value& description)
    {
        if (!geometry)
            return;
        const auto [found, isNew] = names_.try_emplace(geometry.get());
        if (isNew)
        {
            found->second = fmt::format("geometry/{}.vxg", document.names.size());
            document.names.push_back(found->second);
            document.geometries.emplace_back(geometry);
        }
        description["geometry"] = found->second;
    }

    std::unordered_map<const void*, std::string> names_;
};

class SceneBuilder
{
public:
    SceneBuilder(const GeometryByName& geometries, std::vector<std::string>& warnings)
        : geometries_(geometries)
        , warnings_(warnings)
    {
    }

    /// Null where the description is damaged.
    std::shared_ptr<Object> build(const Json::Value& description)
    {
        const Json::Value& name = memberOf(description, "name");
        const Json::Value& visibility = memberOf(description, "visibility");
        const auto transform = transformFromJson(memberOf(description, "transform"));
        if (!name.isString() || !visibility.isUInt() || !transform)
            return nullptr;
        auto object = makeObject_(description);
        if (!object)
            return nullptr;
        object->setName(name.asString());
        object->setTransform(*transform);
        object->setVisibilityMask(ViewportMask(visibility.asUInt()));
        for (const Json::Value& child : memberOf(description, "children"))
        {
            if (!object->addChild(build(child)))
                return nullptr;
        }
        return object;
    }

private:
    std::shared_ptr<Object> makeObject_(const Json::Value& description)
    {
        const Json::Value& type = memberOf(description, "type");
        if (!type.isString())
            return nullptr;
        std::shared_ptr<VisualObject> visual;
        if (type == "ObjectMesh")
        {
            auto mesh = std::make_shared<ObjectMesh>(geometry_<Mesh>(description));
            mesh->setFlatShaded(memberOf(description, "shading") == "flat");
            visual = std::move(mesh);
        }
        else if (type == "ObjectPoints")
            visual = std::make_shared<ObjectPoints>(geometry_<PointCloud>(description));
        else if (type == "ObjectLines")
            visual = std::make_shared<ObjectLines>(geometry_<Lines>(description));
        else
            return std::make_shared<Object>();
        if (const auto color = colorFromText(memberOf(description, "color")))
            visual->setColor(*color);
        return visual;
    }

    template <typename Geometry>
    std::shared_ptr<const Geometry> geometry_(const Json::Value& description)
    {
        const Json::Value& name = memberOf(description, "geometry");
        if (!name.isString())
            return nullptr;
        const auto found = geometries_.find(name.asString());
        if (found != geometries_.end())
        {
            const std::optional<AnyGeometry>& known = found->second;
            if (const auto* geometry = known ? std::get_if<std::shared_ptr<const Geometry>>(&*known) : nullptr)
                return *geometry;
        }
        warnings_.push_back(fmt::format("the geometry of the object \"{}\" is damaged and was left out.",
                                        oneLine(memberOf(description, "name").asString())));
        return nullptr;
    }

    const GeometryByName& geometries_;
    std::vector<std::string>& warnings_;
};

void addGeometryNames(const Json::Value& objects, GeometryByName& names)
{
    if (!objects.isArray())
        return;
    for (const Json::Value& object : objects)
    {
        if (const Json::Value& name = memberOf(object, "geometry"); name.isString())
            names.try_emplace(name.asString());
        addGeometryNames(memberOf(object, "children"), names);
    }
}

} // namespace

const Json::Value& memberOf(const Json::Value& value, const char* key)
{
    return value.isObject() && value.isMember(key) ? value[key] : nullValue();
}

tl::expected<VxuDocument, std::string> describeScene(const Object& root)
{
    SceneDescriber describer;
    Json::Value objects(Json::arrayValue);
    const bool isContainer =
        root.typeName() == "Object" && root.name().empty() && root.transform().matrix().isIdentity(0.0);
    bool good = true;
    if (isContainer)
    {
        for (const auto& child : root.children())
            good = good && describer.add(*child, objects);
    }
    else
        good = describer.add(root, objects);
    if (!good)
        return tl::unexpected<std::string>(fmt::format("the scene has a transform that is not finite, or objects more "
                                                       "than {} levels deep.",
                                                       kMaxDepth));
    Json::Value& scene = describer.document.scene;
    scene["format"]["major"] = kVxuMajorVersion;
    scene["format"]["minor"] = kVxuMinorVersion;
    scene["unit"] = "mm";
    scene["objects"].swap(objects);
    return std::move(describer.document);
}

GeometryByName geometryNames(const Json::Value& scene)
{
    GeometryByName names;
    addGeometryNames(memberOf(scene, "objects"), names);
    return names;
}

std::optional<std::vector<std::shared_ptr<Object>>>
buildObjects(const Json::Value& scene, const GeometryByName& geometries, std::vector<std::string>& warnings)
{
    SceneBuilder builder(geometries, warnings);
    std::vector<std::shared_ptr<Object>> objects;
    const Json::Value& descriptions = memberOf(scene, "objects");
    if (!descriptions.isArray())
        return {};
    for (const Json::Value& description : descriptions)
    {
        auto object = builder.build(description);
        if (!object)
            return {};
        objects.push_back(std::move(object));
    }
    return objects;
}

} // namespace VX

#pragma once

#include <VXMesh/ObjectLines.h>
#include <VXMesh/ObjectMesh.h>
#include <VXMesh/ObjectPoints.h>

#include <memory>
#include <string>

namespace VX::ObjectFields
{

// What an object consists of, a type for each field: how to read it and how to set it. A field that the kind of object
// does not have reads as its default value and is never set, since it never differs.

struct Name
{
    static constexpr bool isInFile = true;

    static std::string get(const Object& object) { return object.name(); }

    static void set(Object& object, const std::string& name) { object.setName(name); }
};

struct LocalTransform
{
    static constexpr bool isInFile = true;

    static Eigen::Matrix4d get(const Object& object) { return object.transform().matrix(); }

    static void set(Object& object, const Eigen::Matrix4d& matrix) { object.setTransform(Transform(matrix)); }
};

struct Visibility
{
    static constexpr bool isInFile = true;

    static ViewportMask get(const Object& object) { return object.visibilityMask(); }

    static void set(Object& object, ViewportMask mask) { object.setVisibilityMask(mask); }
};

struct Selection
{
    static constexpr bool isInFile = false;

    static bool get(const Object& object) { return object.isSelected(); }

    static void set(Object& object, bool selected) { object.setSelected(selected); }
};

struct ObjectColor
{
    static constexpr bool isInFile = true;

    static Color get(const Object& object)
    {
        const auto* visual = dynamic_cast<const VisualObject*>(&object);
        return visual ? visual->color() : Color();
    }

    static void set(Object& object, Color color) { dynamic_cast<VisualObject&>(object).setColor(color); }
};

struct FlatShading
{
    static constexpr bool isInFile = true;

    static bool get(const Object& object)
    {
        const auto* mesh = dynamic_cast<const ObjectMesh*>(&object);
        return mesh && mesh->isFlatShaded();
    }

    static void set(Object& object, bool flat) { dynamic_cast<ObjectMesh&>(object).setFlatShaded(flat); }
};

struct MeshGeometry
{
    static constexpr bool isInFile = true;

    static std::shared_ptr<const Mesh> get(const Object& object)
    {
        const auto* mesh = dynamic_cast<const ObjectMesh*>(&object);
        return mesh ? mesh->mesh() : nullptr;
    }

    static void set(Object& object, const std::shared_ptr<const Mesh>& mesh)
    {
        dynamic_cast<ObjectMesh&>(object).setMesh(mesh);
    }
};

struct SelectedFaces
{
    static constexpr bool isInFile = false;

    static std::shared_ptr<const FaceSet> get(const Object& object)
    {
        const auto* mesh = dynamic_cast<const ObjectMesh*>(&object);
        return mesh ? mesh->selectedFaces() : nullptr;
    }

    static void set(Object& object, const std::shared_ptr<const FaceSet>& faces)
    {
        dynamic_cast<ObjectMesh&>(object).setSelectedFaces(faces);
    }
};

struct PointGeometry
{
    static constexpr bool isInFile = true;

    static std::shared_ptr<const PointCloud> get(const Object& object)
    {
        const auto* points = dynamic_cast<const ObjectPoints*>(&object);
        return points ? points->pointCloud() : nullptr;
    }

    static void set(Object& object, const std::shared_ptr<const PointCloud>& cloud)
    {
        dynamic_cast<ObjectPoints&>(object).setPointCloud(cloud);
    }
};

struct LineGeometry
{
    static constexpr bool isInFile = true;

    static std::shared_ptr<const Lines> get(const Object& object)
    {
        const auto* lines = dynamic_cast<const ObjectLines*>(&object);
        return lines ? lines->lines() : nullptr;
    }

    static void set(Object& object, const std::shared_ptr<const Lines>& lines)
    {
        dynamic_cast<ObjectLines&>(object).setLines(lines);
    }
};

} // namespace VX::ObjectFields

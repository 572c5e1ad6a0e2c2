#pragma once

#include <VXMesh/Export.h>
#include <VXMesh/Geometry.h>
#include <VXMesh/ViewportMask.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace VX
{

/// A node of the scene tree: a name, a local transform and children. The tree owns downwards; a parent outlives its
/// children's pointer to it. Touched on the UI thread only, once it is part of a viewer's scene.
class VXMESH_API Object : public std::enable_shared_from_this<Object>
{
public:
    Object();
    virtual ~Object();

    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    /// "Object", "ObjectMesh", "ObjectPoints" or "ObjectLines".
    [[nodiscard]] virtual std::string_view typeName() const { return "Object"; }

    /// Unique in the process, never reused, from 1 up.
    [[nodiscard]] std::uint64_t id() const { return id_; }

    [[nodiscard]] const std::string& name() const { return name_; }

    void setName(std::string name);

    /// From local coordinates to those of the parent, in scene units.
    [[nodiscard]] const Transform& transform() const { return transform_; }

    void setTransform(const Transform& transform);

    /// From local coordinates to those of the scene.
    [[nodiscard]] Transform worldTransform() const;

    /// Its own switch; an object shows when its own and all its ancestors' switches are on.
    [[nodiscard]] bool isVisible() const { return !visibility_.isEmpty(); }

    void setVisible(bool visible) { setVisibilityMask(visible ? ViewportMask::all() : ViewportMask()); }

    [[nodiscard]] ViewportMask visibilityMask() const { return visibility_; }

    void setVisibilityMask(ViewportMask mask);

    [[nodiscard]] bool isSelected() const { return selected_; }

    void setSelected(bool selected);

    [[nodiscard]] Object* parent() const { return parent_; }

    [[nodiscard]] const std::vector<std::shared_ptr<Object>>& children() const { return children_; }

    /// Appends `child`, which leaves its old parent. An object that has `this` below it is refused: false.
    bool addChild(std::shared_ptr<Object> child);

    /// Takes `child` out of the children. @return false when it is not one of them
    bool removeChild(const Object& child);

    /// Makes `children`, in this order, the only children. Those that were elsewhere leave their old parents.
    /// @return false, and nothing changes, where one of them is null, comes twice or has `this` below it
    bool setChildren(std::vector<std::shared_ptr<Object>> children);

    /// The extent of this object and all below it in the coordinates of `toTarget`'s target; empty without geometry.
    /// @param toTarget  applied after this object's own transform
    [[nodiscard]] Box3d computeBox(const Transform& toTarget) const;

    /// The extent in scene coordinates.
    [[nodiscard]] Box3d worldBox() const;

    /// Grows with every change of this object or of anything below it; equal numbers mean nothing changed.
    [[nodiscard]] std::uint64_t revision() const { return revision_; }

protected:
    /// The extent of this object's own geometry in local coordinates.
    [[nodiscard]] virtual Box3d localBox_() const { return {}; }

    /// The extent of this object's own geometry after `transform`, tight.
    [[nodiscard]] virtual Box3d transformedBox_(const Transform& transform) const;

    void markChanged_();

private:
    std::uint64_t id_;
    std::uint64_t revision_;
    std::string name_;
    Transform transform_ = Transform::Identity();
    ViewportMask visibility_ = ViewportMask::all();
    bool selected_ = false;
    Object* parent_ = nullptr;
    std::vector<std::shared_ptr<Object>> children_;
};

/// Calls `visit` for `root` and everything below it, parents first.
VXMESH_API void visitObjects(const Object& root, const std::function<void(const Object&)>& visit);
VXMESH_API void visitObjects(Object& root, const std::function<void(Object&)>& visit);

} // namespace VX

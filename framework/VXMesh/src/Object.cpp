#include <VXMesh/Object.h>

#include <algorithm>
#include <atomic>
#include <unordered_set>
#include <utility>

namespace VX
{

namespace
{

std::uint64_t nextObjectId()
{
    static std::atomic<std::uint64_t> lastId{0};
    return ++lastId;
}

bool isSameOrBelow(const Object* object, const Object* root)
{
    for (; object; object = object->parent())
    {
        if (object == root)
            return true;
    }
    return false;
}

} // namespace

Object::Object()
    : id_(nextObjectId())
    , revision_(1)
{
}

Object::~Object()
{
    for (const auto& child : children_)
        child->parent_ = nullptr;
}

void Object::setName(std::string name)
{
    if (name_ == name)
        return;
    name_ = std::move(name);
    markChanged_();
}

void Object::setTransform(const Transform& transform)
{
    if (transform_.matrix() == transform.matrix())
        return;
    transform_ = transform;
    markChanged_();
}

Transform Object::worldTransform() const
{
    Transform result = transform_;
    for (const Object* ancestor = parent_; ancestor; ancestor = ancestor->parent_)
        result = ancestor->transform_ * result;
    return result;
}

void Object::setVisibilityMask(ViewportMask mask)
{
    if (visibility_ == mask)
        return;
    visibility_ = mask;
    markChanged_();
}

void Object::setSelected(bool selected)
{
    if (selected_ == selected)
        return;
    selected_ = selected;
    markChanged_();
}

bool Object::addChild(std::shared_ptr<Object> child)
{
    if (!child || isSameOrBelow(this, child.get()))
        return false;
    if (child->parent_)
        child->parent_->removeChild(*child);
    child->parent_ = this;
    children_.push_back(std::move(child));
    markChanged_();
    return true;
}

bool Object::removeChild(const Object& child)
{
    const auto found = std::ranges::find(children_, &child, &std::shared_ptr<Object>::get);
    if (found == children_.end())
        return false;
    (*found)->parent_ = nullptr;
    children_.erase(found);
    markChanged_();
    return true;
}

bool Object::setChildren(std::vector<std::shared_ptr<Object>> children)
{
    if (children == children_)
        return true;
    std::unordered_set<const Object*> given;
    for (const auto& child : children)
    {
        if (!child || !given.insert(child.get()).second || isSameOrBelow(this, child.get()))
            return false;
    }
    for (const auto& child : children_)
        child->parent_ = nullptr;
    // From each former parent at once: thousands may come from one.
    std::unordered_set<Object*> formerParents;
    for (const auto& child : children)
    {
        if (child->parent_)
            formerParents.insert(child->parent_);
        child->parent_ = this;
    }
    for (Object* parent : formerParents)
    {
        std::erase_if(parent->children_, [&](const auto& child) { return given.contains(child.get()); });
        parent->markChanged_();
    }
    children_ = std::move(children);
    markChanged_();
    return true;
}

Box3d Object::computeBox(const Transform& toTarget) const
{
    const Transform localToTarget = toTarget * transform_;
    Box3d box = transformedBox_(localToTarget);
    for (const auto& child : children_)
        box.extend(child->computeBox(localToTarget));
    return box;
}

Box3d Object::worldBox() const
{
    return computeBox(parent_ ? parent_->worldTransform() : Transform::Identity());
}

Box3d Object::transformedBox_(const Transform& transform) const
{
    const Box3d box = localBox_();
    Box3d result;
    if (box.isEmpty())
        return result;
    for (int corner = 0; corner < 8; ++corner)
        result.extend(transform * box.corner(static_cast<Box3d::CornerType>(corner)));
    return result;
}

void Object::markChanged_()
{
    for (Object* object = this; object; object = object->parent_)
        ++object->revision_;
}

void visitObjects(const Object& root, const std::function<void(const Object&)>& visit)
{
    visit(root);
    for (const auto& child : root.children())
        visitObjects(std::as_const(*child), visit);
}

void visitObjects(Object& root, const std::function<void(Object&)>& visit)
{
    visit(root);
    // A copy, since the visitor may change the tree.
    const auto children = root.children();
    for (const auto& child : children)
        visitObjects(*child, visit);
}

} // namespace VX

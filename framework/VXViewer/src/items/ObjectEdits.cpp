#include "ObjectEdits.h"

#include "SceneSnapshot.h"
#include "menu/Translate.h"

#include <VXMesh/MeshEdit.h>
#include <VXMesh/ObjectMesh.h>
#include <VXViewer/HistoryStore.h>
#include <VXViewer/SceneEdit.h>
#include <VXViewer/Selection.h>
#include <VXViewer/Viewer.h>

#include <fmt/format.h>

#include <algorithm>
#include <unordered_set>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

using Children = std::vector<std::shared_ptr<Object>>;

void remove(SceneEdit& edit, const std::shared_ptr<Object>& object)
{
    edit.touch(object->parent()->shared_from_this());
    object->parent()->removeChild(*object);
}

/// "Box 2" for "Box", "Box 3" for "Box 2": the first number that `siblings` leave free. Nothing for nothing.
std::string nameOfCopy(const std::string& name, const Children& siblings)
{
    if (name.empty())
        return name;
    const std::size_t digits = name.size() - (name.find_last_not_of("0123456789") + 1);
    const std::size_t blank = name.size() - digits;
    const bool numbered = digits > 0 && digits < 9 && blank > 1 && name[blank - 1] == ' ';
    const std::string stem = numbered ? name.substr(0, blank - 1) : name;
    std::unordered_set<std::string> taken;
    for (const auto& sibling : siblings)
        taken.insert(sibling->name());
    int number = numbered ? std::stoi(name.substr(blank)) + 1 : 2;
    std::string result = fmt::format("{} {}", stem, number);
    while (taken.contains(result))
        result = fmt::format("{} {}", stem, ++number);
    return result;
}

/// The nearest object that all of `objects` are below.
Object& commonParent(const Children& objects)
{
    const auto depthOf = [](const Object* object)
    {
        int depth = 0;
        for (; object; object = object->parent())
            ++depth;
        return depth;
    };
    Object* common = objects.front()->parent();
    for (const std::shared_ptr<Object>& object : objects)
    {
        Object* other = object->parent();
        while (depthOf(other) > depthOf(common))
            other = other->parent();
        while (depthOf(common) > depthOf(other))
            common = common->parent();
        while (common != other)
        {
            common = common->parent();
            other = other->parent();
        }
    }
    return *common;
}

} // namespace

void deleteSelectedFaces(Viewer& viewer)
{
    SceneEdit edit(*viewer.getGlobalHistoryStore(), translatable("Delete Selection"));
    for (const std::shared_ptr<ObjectMesh>& object : meshesWithSelectedFaces(viewer.scene()))
    {
        auto mesh = std::make_shared<Mesh>(deleteFaces(*object->mesh(), *object->selectedFaces()));
        if (mesh->triangles.empty() && object->children().empty())
        {
            remove(edit, object);
            continue;
        }
        edit.touch(object);
        object->setMesh(std::move(mesh));
        object->setSelectedFaces(nullptr);
    }
}

void deleteSelectedObjects(Viewer& viewer)
{
    SceneEdit edit(*viewer.getGlobalHistoryStore(), translatable("Delete Selection"));
    std::unordered_set<const Object*> doomed;
    std::unordered_set<Object*> parents;
    for (const std::shared_ptr<Object>& object : topmostSelectedObjects(viewer.scene()))
    {
        doomed.insert(object.get());
        parents.insert(object->parent());
    }
    for (Object* parent : parents)
    {
        edit.touch(parent->shared_from_this());
        Children left = parent->children();
        std::erase_if(left, [&](const auto& child) { return doomed.contains(child.get()); });
        parent->setChildren(std::move(left));
    }
}

void duplicateSelectedObjects(Viewer& viewer)
{
    SceneEdit edit(*viewer.getGlobalHistoryStore(), translatable("Duplicate"));
    const Children originals = topmostSelectedObjects(viewer.scene());
    for (const std::shared_ptr<Object>& object : selectedObjects(viewer.scene()))
    {
        edit.touch(object);
        object->setSelected(false);
    }
    for (const std::shared_ptr<Object>& original : originals)
    {
        Object& parent = *original->parent();
        edit.touch(parent.shared_from_this());
        const std::shared_ptr<Object> copy = copyTree(*original);
        copy->setName(nameOfCopy(original->name(), parent.children()));
        copy->setSelected(true);
        Children children = parent.children();
        children.insert(std::ranges::find(children, original) + 1, copy);
        parent.setChildren(std::move(children));
    }
}

void groupSelectedObjects(Viewer& viewer)
{
    SceneEdit edit(*viewer.getGlobalHistoryStore(), translatable("Group"));
    const Children members = topmostSelectedObjects(viewer.scene());
    Object& parent = commonParent(members);
    // The child of the parent that is or has the first member.
    const Object* place = members.front().get();
    while (place->parent() != &parent)
        place = place->parent();
    const auto index =
        std::ranges::find(parent.children(), place, &std::shared_ptr<Object>::get) - parent.children().begin();

    auto group = std::make_shared<Object>();
    group->setName(tr("Group"));
    group->setSelected(true);
    edit.touch(group);
    edit.touch(parent.shared_from_this());
    const Transform toGroup = parent.worldTransform().inverse();
    for (const std::shared_ptr<Object>& object : selectedObjects(viewer.scene()))
    {
        edit.touch(object);
        object->setSelected(false);
    }
    Children children = parent.children();
    children.insert(children.begin() + index, group);
    parent.setChildren(std::move(children));
    for (const std::shared_ptr<Object>& member : members)
    {
        edit.touch(member->parent()->shared_from_this());
        if (member->parent() != &parent)
            member->setTransform(toGroup * member->worldTransform());
    }
    group->setChildren(members);
}

} // namespace VX

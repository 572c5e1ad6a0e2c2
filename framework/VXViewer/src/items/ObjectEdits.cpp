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
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

using Children = std::vector<std::shared_ptr<Object>>;

/// Names for copies beside their originals.
class CopyNames
{
public:
    explicit CopyNames(const Children& siblings)
    {
        for (const auto& sibling : siblings)
            taken_.insert(sibling->name());
    }

    /// "Box 2" for "Box", "Box 3" for "Box 2": the first number that is free, which is taken then. Nothing for nothing.
    [[nodiscard]] std::string take(const std::string& name)
    {
        if (name.empty())
            return name;
        const std::size_t digits = name.size() - (name.find_last_not_of("0123456789") + 1);
        const std::size_t blank = name.size() - digits;
        const bool numbered = digits > 0 && digits < 9 && blank > 1 && name[blank - 1] == ' ';
        const std::string stem = numbered ? name.substr(0, blank - 1) : name;
        const int first = numbered ? std::stoi(name.substr(blank)) + 1 : 2;
        Run& run = runs_[stem];
        const int begin = run.contains(first) ? run.begin : first;
        int number = first;
        std::string result;
        do
        {
            if (run.contains(number))
                number = run.end;
            result = fmt::format("{} {}", stem, number++);
        } while (!taken_.insert(result).second);
        run = {begin, number};
        return result;
    }

private:
    /// Numbers that are known to be taken, so that many copies of one name do not count from its first one each.
    struct Run
    {
        [[nodiscard]] bool contains(int number) const { return begin <= number && number < end; }

        int begin = 0;
        int end = 0;
    };

    std::unordered_set<std::string> taken_;
    std::unordered_map<std::string, Run> runs_;
};

/// The nearest object that all of `objects` are below.
Object& commonParent(const Children& objects)
{
    Object* common = objects.front()->parent();
    const auto isAbove = [&](const std::shared_ptr<Object>& object)
    {
        const Object* above = object->parent();
        while (above && above != common)
            above = above->parent();
        return above != nullptr;
    };
    for (const std::shared_ptr<Object>& object : objects)
    {
        while (common->parent() && !isAbove(object))
            common = common->parent();
    }
    return *common;
}

} // namespace

void deleteSelectedFaces(Viewer& viewer)
{
    SceneEdit edit(*viewer.getGlobalHistoryStore(), translatable("Delete Selection"));
    Children emptied;
    for (const std::shared_ptr<ObjectMesh>& object : shownMeshesWithSelectedFaces(viewer.scene()))
    {
        auto mesh = std::make_shared<Mesh>(deleteFaces(*object->mesh(), *object->selectedFaces()));
        if (mesh->triangles.empty() && object->children().empty())
        {
            emptied.push_back(object);
            continue;
        }
        edit.touch(object);
        object->setMesh(std::move(mesh));
        object->setSelectedFaces(nullptr);
    }
    removeObjects(edit, emptied);
}

void deleteSelectedObjects(Viewer& viewer)
{
    SceneEdit edit(*viewer.getGlobalHistoryStore(), translatable("Delete Selection"));
    removeObjects(edit, topmostSelectedObjects(viewer.scene()));
}

void removeObjects(SceneEdit& edit, const Children& objects)
{
    std::unordered_set<const Object*> doomed;
    std::unordered_set<Object*> parents;
    for (const std::shared_ptr<Object>& object : objects)
    {
        doomed.insert(object.get());
        parents.insert(object->parent());
    }
    // From each parent at once.
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
    std::unordered_set<const Object*> originals;
    std::unordered_set<Object*> parents;
    for (const std::shared_ptr<Object>& object : topmostSelectedObjects(viewer.scene()))
    {
        originals.insert(object.get());
        parents.insert(object->parent());
    }
    for (const std::shared_ptr<Object>& object : selectedObjects(viewer.scene()))
    {
        edit.touch(object);
        object->setSelected(false);
    }
    for (Object* parent : parents)
    {
        edit.touch(parent->shared_from_this());
        CopyNames names(parent->children());
        Children children;
        for (const std::shared_ptr<Object>& child : parent->children())
        {
            children.push_back(child);
            if (!originals.contains(child.get()))
                continue;
            children.push_back(copyTree(*child));
            children.back()->setName(names.take(child->name()));
            children.back()->setSelected(true);
        }
        parent->setChildren(std::move(children));
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
    group->setName(trc("object", "Group"));
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

#include "SceneEditAction.h"

#include "StepObjects.h"

#include <VXViewer/Selection.h>

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace VX
{

namespace
{

const std::vector<std::shared_ptr<Object>>& childrenOf(const ObjectChange& change, ChangeSide side)
{
    return side == ChangeSide::Before ? change.childrenBefore : change.childrenAfter;
}

const Object* topOf(const Object* object)
{
    while (object->parent())
        object = object->parent();
    return object;
}

} // namespace

SceneEditAction::SceneEditAction(std::string name, std::vector<ObjectChange> changes,
                                 std::vector<SelectionChange> selections)
    : HistoryAction(std::move(name))
    , changes_(std::move(changes))
    , selections_(std::move(selections))
{
    updateHeapBytes_(ChangeSide::Before);
}

void SceneEditAction::undo()
{
    apply_(ChangeSide::Before);
    updateHeapBytes_(ChangeSide::After);
}

void SceneEditAction::redo()
{
    apply_(ChangeSide::After);
    updateHeapBytes_(ChangeSide::Before);
}

void SceneEditAction::apply_(ChangeSide side)
{
    // All objects come out of the lists before any goes in: on the way from one tree to another no object is then below
    // itself.
    for (const ObjectChange& change : changes_)
    {
        if (change.childrenDiffer)
            change.object->setChildren({});
    }
    for (const ObjectChange& change : changes_)
    {
        if (change.childrenDiffer)
            change.object->setChildren(childrenOf(change, side));
        for (const std::unique_ptr<FieldChange>& field : change.fields)
            field->apply(*change.object, side);
    }
    applySelection_(side);
}

void SceneEditAction::applySelection_(ChangeSide side)
{
    // What leaves the scene is selected no longer: coming back it would be selected besides what is clicked meanwhile.
    const ChangeSide other = side == ChangeSide::Before ? ChangeSide::After : ChangeSide::Before;
    for (const ObjectChange& change : changes_)
    {
        for (const std::shared_ptr<Object>& child : childrenOf(change, other))
        {
            if (!child->parent())
                selectOnly(*child, nullptr);
        }
    }
    for (const SelectionChange& selection : selections_)
        (side == ChangeSide::Before ? selection.before : selection.after).apply(*selection.root);
}

std::vector<std::shared_ptr<Object>> SceneEditAction::objects() const
{
    StepObjects objects;
    const bool selectsOnly = !changesFile();
    for (const ObjectChange& change : changes_)
    {
        const bool hasOtherChildren = objects.addDifference(change.childrenBefore, change.childrenAfter);
        const bool isSorted = change.childrenDiffer && !hasOtherChildren;
        if (selectsOnly || isSorted || std::ranges::any_of(change.fields, &FieldChange::isInFile))
            objects.add(change.object);
    }
    return objects.take();
}

bool SceneEditAction::changesFile() const
{
    return std::ranges::any_of(
        changes_, [](const ObjectChange& change)
        { return change.childrenDiffer || std::ranges::any_of(change.fields, &FieldChange::isInFile); });
}

void SceneEditAction::updateHeapBytes_(ChangeSide held)
{
    HeldGeometry geometry;
    std::unordered_set<const Object*> detached;
    for (const ObjectChange& change : changes_)
    {
        for (const std::unique_ptr<FieldChange>& field : change.fields)
            field->collect(geometry, held);
        for (const std::shared_ptr<Object>& child : childrenOf(change, held))
        {
            if (!child->parent() && detached.insert(child.get()).second)
                geometry.addTree(*child);
        }
    }
    heapBytes_ = ownBytes_();
    if (geometry.isEmpty())
        return;
    std::unordered_set<const Object*> scenes;
    for (const ObjectChange& change : changes_)
        scenes.insert(topOf(change.object.get()));
    HeldGeometry shown;
    for (const Object* scene : scenes)
    {
        if (!detached.contains(scene))
            shown.addTree(*scene);
    }
    geometry.remove(shown);
    heapBytes_ += geometry.heapBytes();
}

std::size_t SceneEditAction::ownBytes_() const
{
    std::size_t bytes = sizeof(*this);
    for (const SelectionChange& selection : selections_)
        bytes += sizeof(selection) + selection.before.heapBytes() + selection.after.heapBytes();
    for (const ObjectChange& change : changes_)
    {
        bytes += sizeof(change);
        bytes += (change.childrenBefore.size() + change.childrenAfter.size()) * sizeof(std::shared_ptr<Object>);
        for (const std::unique_ptr<FieldChange>& field : change.fields)
            bytes += field->ownBytes();
    }
    return bytes;
}

} // namespace VX

#pragma once

#include "FieldChange.h"
#include "SceneSelection.h"

#include <VXViewer/HistoryAction.h>

#include <memory>
#include <string>
#include <vector>

namespace VX
{

/// What a step changed in one object.
struct ObjectChange
{
    std::shared_ptr<Object> object;
    std::vector<std::unique_ptr<FieldChange>> fields;
    bool childrenDiffer = false;
    std::vector<std::shared_ptr<Object>> childrenBefore; ///< empty where they do not differ
    std::vector<std::shared_ptr<Object>> childrenAfter;  ///< empty where they do not differ
};

/// A step that is made of changes of objects. Where it changes what is selected, undo and redo give the whole selection
/// of that moment again: what was clicked since is no step, and would be selected besides.
/// @threads the UI thread
class SceneEditAction : public HistoryAction
{
public:
    /// @param changes  already done; not empty
    /// @param selections  of each scene in which it is another than before
    SceneEditAction(std::string name, std::vector<ObjectChange> changes, std::vector<SelectionChange> selections);

    void undo() override;
    void redo() override;

    [[nodiscard]] std::vector<std::shared_ptr<Object>> objects() const override;

    [[nodiscard]] std::size_t heapBytes() const override { return heapBytes_; }

    [[nodiscard]] bool changesFile() const override;

private:
    void apply_(ChangeSide side);
    void applySelection_(ChangeSide side);
    void updateHeapBytes_(ChangeSide held);
    [[nodiscard]] std::size_t ownBytes_() const;

    std::vector<ObjectChange> changes_;
    std::vector<SelectionChange> selections_;
    std::size_t heapBytes_ = 0;
};

} // namespace VX

#include "OpenFilesAction.h"

#include "HeldGeometry.h"

#include <VXMesh/Object.h>

#include <utility>

namespace VX
{

OpenFilesAction::OpenFilesAction(std::shared_ptr<Object> root, std::vector<std::shared_ptr<Object>> childrenBefore)
    : HistoryAction("Open Files")
    , root_(std::move(root))
    , before_(std::move(childrenBefore))
    , after_(root_->children())
{
}

void OpenFilesAction::extend()
{
    after_ = root_->children();
}

void OpenFilesAction::undo()
{
    root_->setChildren(before_);
    HeldGeometry held;
    for (const std::shared_ptr<Object>& object : after_)
    {
        if (!object->parent())
            held.addTree(*object);
    }
    HeldGeometry shown;
    shown.addTree(*root_);
    held.remove(shown);
    heapBytes_ = held.heapBytes();
}

void OpenFilesAction::redo()
{
    root_->setChildren(after_);
    heapBytes_ = 0;
}

} // namespace VX

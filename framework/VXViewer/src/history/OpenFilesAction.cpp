#include "OpenFilesAction.h"

#include "HeldGeometry.h"
#include "StepObjects.h"

#include <VXMesh/Object.h>
#include <VXViewer/Selection.h>
#include <VXViewer/Viewer.h>

#include <utility>

namespace VX
{

OpenFilesAction::OpenFilesAction(Viewer& viewer, std::vector<std::shared_ptr<Object>> childrenBefore,
                                 std::optional<SceneOrigin> originBefore)
    : HistoryAction("Open Files")
    , viewer_(viewer)
    , root_(viewer.sceneRoot())
    , before_(std::move(childrenBefore))
    , after_(root_->children())
    , otherOrigin_(std::move(originBefore))
{
}

void OpenFilesAction::extend()
{
    after_ = root_->children();
}

void OpenFilesAction::undo()
{
    root_->setChildren(before_);
    exchangeOrigin_();
    HeldGeometry held;
    for (const std::shared_ptr<Object>& object : after_)
    {
        if (object->parent())
            continue;
        // Else a redo would add it to what is selected by then.
        selectOnly(*object, nullptr);
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
    exchangeOrigin_();
    heapBytes_ = 0;
}

std::vector<std::shared_ptr<Object>> OpenFilesAction::objects() const
{
    StepObjects objects;
    objects.addDifference(before_, after_);
    return objects.take();
}

void OpenFilesAction::exchangeOrigin_()
{
    if (!otherOrigin_)
        return;
    // What the scene was saved to meanwhile is kept, so the present origin is taken instead of that of the first file.
    SceneOrigin present{viewer_.sceneName(), viewer_.sceneFile()};
    viewer_.setSceneName(std::move(otherOrigin_->name));
    viewer_.setSceneFile(std::move(otherOrigin_->file));
    otherOrigin_ = std::move(present);
}

} // namespace VX

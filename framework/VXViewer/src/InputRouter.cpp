#include "InputRouter.h"

#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/MainLoop.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/UiSession.h>
#include <VXViewer/Viewer.h>

#include <iterator>
#include <utility>

namespace VX
{

InputRouter::InputRouter(Viewer& viewer)
    : viewer_(viewer)
{
}

bool InputRouter::route(std::vector<InputEvent> events)
{
    pending_.insert(pending_.end(), std::make_move_iterator(events.begin()), std::make_move_iterator(events.end()));
    bool any = false;
    while (!pending_.empty() && mayGoOn_())
    {
        const InputEvent event = std::move(pending_.front());
        pending_.pop_front();
        dispatch_(event);
        any = true;
    }
    return any;
}

bool InputRouter::hasPending() const
{
    return !pending_.empty() || (viewer_.ui() && viewer_.ui()->hasQueuedInput());
}

bool InputRouter::mayGoOn_() const
{
    const InputEvent& next = pending_.front();
    const bool isKeyboard = std::holds_alternative<KeyEvent>(next) || std::holds_alternative<CharEvent>(next);
    if (!isKeyboard || !viewer_.ui() || heldUntilFrame_ == 0)
        return true;
    return viewer_.loop().framesDrawn() >= heldUntilFrame_ && !viewer_.ui()->hasQueuedInput();
}

void InputRouter::holdKeys_(std::uint64_t frames)
{
    heldUntilFrame_ = viewer_.loop().framesDrawn() + frames;
}

void InputRouter::dispatch_(const InputEvent& event)
{
    if (viewer_.ui())
        viewer_.ui()->feed(event);
    std::visit([this](const auto& e) { handle_(e); }, event);
}

bool InputRouter::isOverUi_(const Vector2f& position) const
{
    return viewer_.ui() && viewer_.ui()->isOverUi(position);
}

void InputRouter::handle_(const MouseMoveEvent& event)
{
    if (dragInScene_ || !isOverUi_(event.position))
        viewer_.view().handle(event);
    else
        viewer_.view().endHover();
}

void InputRouter::handle_(const MouseButtonEvent& event)
{
    if (!event.pressed)
    {
        if (std::exchange(dragInScene_, false))
            viewer_.view().handle(event);
        return;
    }
    if (isOverUi_(event.position))
    {
        holdKeys_(2);
        return;
    }
    dragInScene_ = viewer_.view().contains(event.position);
    if (dragInScene_)
        viewer_.view().handle(event);
}

void InputRouter::handle_(const ScrollEvent& event)
{
    if (!isOverUi_(event.position))
        viewer_.view().handle(event);
}

void InputRouter::handle_(const KeyEvent& event)
{
    if (viewer_.ui() && viewer_.ui()->takesKeyboard())
        return;
    if (viewer_.getMenuPlugin() && viewer_.getMenuPlugin()->handleKey(event))
        holdKeys_(2);
    else
        viewer_.view().handle(event);
}

void InputRouter::handle_(const DropEvent& event)
{
    viewer_.openFiles(event.paths);
}

void InputRouter::handle_(const FocusEvent& event)
{
    if (event.focused)
        return;
    dragInScene_ = false;
    viewer_.view().cancelDrag();
}

} // namespace VX

#include "UiInputQueue.h"

#include "ImGuiInput.h"

#include <algorithm>

namespace VX
{

void UiInputQueue::add(const InputEvent& event)
{
    if (waiting_.empty() && !mustWait_(event))
        handOn_(event);
    else
        waiting_.push_back(event);
}

void UiInputQueue::frameBegan()
{
    // A press before the moves has a frame of its own.
    moved_ = moved_ && ImGuiInput::hasQueuedEvents();
    while (!waiting_.empty() && !mustWait_(waiting_.front()))
    {
        handOn_(waiting_.front());
        waiting_.pop_front();
    }
}

bool UiInputQueue::mustWait_(const InputEvent& event)
{
    const auto* button = std::get_if<MouseButtonEvent>(&event);
    if (!button || button->pressed)
        return false;
    // The release may tell of a move that had no event of its own.
    if (buttonsDown_ > 0 && button->position != position_)
        handOn_(MouseMoveEvent{button->position, button->mods});
    return moved_;
}

void UiInputQueue::handOn_(const InputEvent& event)
{
    if (const auto* move = std::get_if<MouseMoveEvent>(&event))
    {
        moved_ = moved_ || (buttonsDown_ > 0 && move->position != position_);
        position_ = move->position;
    }
    else if (const auto* button = std::get_if<MouseButtonEvent>(&event))
    {
        buttonsDown_ = std::max(0, buttonsDown_ + (button->pressed ? 1 : -1));
        position_ = button->position;
    }
    ImGuiInput::feed(event);
}

} // namespace VX

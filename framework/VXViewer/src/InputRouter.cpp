#include "InputRouter.h"

#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/MainLoop.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/UiSession.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerPlugin.h>

#include <algorithm>
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

bool InputRouter::isUiCovered_() const
{
    return viewer_.ui() && viewer_.getMenuPlugin() && viewer_.getMenuPlugin()->isCovered();
}

std::shared_ptr<ViewerPlugin> InputRouter::offerToPlugins_(const InputEvent& event) const
{
    // A copy: a plug-in may end itself or begin another one.
    const std::vector plugins(viewer_.plugins());
    const auto user = std::find_if(plugins.rbegin(), plugins.rend(),
                                   [&](const auto& plugin) { return plugin->handleSceneInput(event); });
    return user != plugins.rend() ? *user : nullptr;
}

bool InputRouter::continuePluginDrag_(const InputEvent& event)
{
    if (!pluginDrag_)
        return false;
    const std::shared_ptr<ViewerPlugin> owner = pluginDrag_->plugin.lock();
    const std::vector<std::shared_ptr<ViewerPlugin>>& plugins = viewer_.plugins();
    if (owner && std::find(plugins.begin(), plugins.end(), owner) != plugins.end())
        owner->handleSceneInput(event);
    return true;
}

void InputRouter::handle_(const MouseMoveEvent& event)
{
    if (continuePluginDrag_(event))
        return;
    if (dragInScene_)
    {
        viewer_.view().handle(event);
        return;
    }
    if (isOverUi_(event.position) || (viewer_.view().contains(event.position) && offerToPlugins_(event)))
        viewer_.view().endHover();
    else
        viewer_.view().handle(event);
}

void InputRouter::handle_(const MouseButtonEvent& event)
{
    if (continuePluginDrag_(event))
    {
        if (!event.pressed && pluginDrag_ && event.button == pluginDrag_->button)
            pluginDrag_.reset();
        return;
    }
    if (!event.pressed)
    {
        if (std::exchange(dragInScene_, false))
            viewer_.view().handle(event);
        return;
    }
    if (isOverUi_(event.position))
    {
        // A field that the press opens has the keyboard in the third.
        holdKeys_(3);
        return;
    }
    if (!viewer_.view().contains(event.position))
        return;
    // A drag of the camera that is under way keeps the mouse.
    if (!dragInScene_)
    {
        if (const std::shared_ptr<ViewerPlugin> user = offerToPlugins_(event))
        {
            pluginDrag_ = PluginDrag{user, event.button};
            return;
        }
    }
    dragInScene_ = true;
    viewer_.view().handle(event);
}

void InputRouter::handle_(const ScrollEvent& event)
{
    if (!isOverUi_(event.position) && !offerToPlugins_(event))
        viewer_.view().handle(event);
}

void InputRouter::handle_(const KeyEvent& event)
{
    if (viewer_.ui() && (viewer_.ui()->takesKeyboard() || viewer_.ui()->navigatesBy(event)))
        return;
    if (isUiCovered_())
        viewer_.ui()->beginNavigation(event);
    else if (viewer_.getMenuPlugin() && viewer_.getMenuPlugin()->handleKey(event))
        holdKeys_(2);
    else if (!offerToPlugins_(event) && !(viewer_.ui() && viewer_.ui()->beginNavigation(event)))
        viewer_.view().handle(event);
}

void InputRouter::handle_(const DropEvent& event)
{
    if (!isUiCovered_())
        viewer_.openFiles(event.paths);
}

void InputRouter::handle_(const FocusEvent& event)
{
    if (event.focused)
        return;
    if (viewer_.getMenuPlugin())
        viewer_.getMenuPlugin()->handleSceneInput(event);
    for (const std::shared_ptr<ViewerPlugin>& plugin : std::vector(viewer_.plugins()))
        plugin->handleSceneInput(event);
    pluginDrag_.reset();
    dragInScene_ = false;
    viewer_.view().cancelDrag();
}

} // namespace VX

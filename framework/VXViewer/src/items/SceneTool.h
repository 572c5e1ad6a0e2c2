#pragma once

#include "PanelItem.h"

#include <VXViewer/InputEvent.h>

#include <memory>

namespace VX
{

/// A tool that takes the mouse over the scene while its window is open. There is one at a time: one that begins ends
/// the one before.
/// @threads the UI thread
class SceneTool : public PanelItem
{
public:
    using PanelItem::PanelItem;
    ~SceneTool() override;

    [[nodiscard]] bool isTool() const final { return true; }

protected:
    virtual void began_() {}

    virtual void ended_() {}

    /// Takes input over the scene before the camera does (ViewerPlugin::handleSceneInput).
    virtual bool handleInput_(const InputEvent&) { return false; }

    /// Draws over the scene, each frame.
    virtual void drawOverScene_() {}

private:
    class Input;

    void opened_() final;
    void closed_() final;

    std::shared_ptr<Input> input_;
};

} // namespace VX

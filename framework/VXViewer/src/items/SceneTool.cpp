#include "SceneTool.h"

#include <VXViewer/RibbonSchemaHolder.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerPlugin.h>

#include <vector>

namespace VX
{

/// What the viewer gives the mouse to.
class SceneTool::Input : public ViewerPlugin
{
public:
    explicit Input(SceneTool& tool)
        : tool_(&tool)
    {
    }

    void detach() { tool_ = nullptr; }

    bool handleSceneInput(const InputEvent& event) override { return tool_ && tool_->handleInput_(event); }

    void draw() override
    {
        if (tool_)
            tool_->drawOverScene_();
    }

private:
    SceneTool* tool_;
};

SceneTool::~SceneTool()
{
    if (input_)
        input_->detach();
}

void SceneTool::opened_()
{
    std::vector<std::shared_ptr<RibbonMenuItem>> others;
    for (const auto& [name, info] : RibbonSchemaHolder::schema().items)
    {
        if (info.item.get() != this && info.item && info.item->isActive() &&
            dynamic_cast<const SceneTool*>(info.item.get()))
            others.push_back(info.item);
    }
    for (const std::shared_ptr<RibbonMenuItem>& other : others)
        other->deactivate();
    input_ = std::make_shared<Input>(*this);
    viewer_().addPlugin(input_);
    began_();
}

void SceneTool::closed_()
{
    ended_();
    input_->detach();
    viewer_().removePlugin(*input_);
    input_.reset();
}

} // namespace VX

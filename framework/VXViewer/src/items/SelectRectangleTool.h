#pragma once

#include "SceneTool.h"

#include <VXMesh/Geometry.h>

#include <memory>
#include <optional>

namespace VX
{

class SceneSummary;

/// Selects the faces that are seen in a rectangle drawn with the mouse; a click takes the face under it.
/// @threads the UI thread
class SelectRectangleTool final : public SceneTool
{
public:
    SelectRectangleTool(Viewer& viewer, std::shared_ptr<SceneSummary> scene);

    [[nodiscard]] std::string unavailableReason() const override;

protected:
    void drawContent_() override;
    void ended_() override;
    bool handleInput_(const InputEvent& event) override;
    void drawOverScene_() override;

private:
    struct Drag
    {
        Vector2f from;
        Vector2f to;
    };

    bool handleButton_(const MouseButtonEvent& event);

    std::shared_ptr<SceneSummary> scene_;
    std::optional<Drag> drag_;
};

} // namespace VX

#pragma once

#include "PanelItem.h"

#include <VXMesh/VisualObject.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace VX
{

class LastingEdit;
class SceneSummary;

/// The window that changes the colour and the transparency of what is selected, with all below it. A drag of the mouse
/// in it is one step.
/// @threads the UI thread
class ObjectColorItem : public PanelItem
{
public:
    ObjectColorItem(Viewer& viewer, std::shared_ptr<SceneSummary> scene);
    ~ObjectColorItem() override;

    [[nodiscard]] std::string unavailableReason() const override;

protected:
    void drawContent_() override;
    void closed_() override;

private:
    [[nodiscard]] std::vector<std::shared_ptr<VisualObject>> targets_() const;
    void change_(const std::vector<std::shared_ptr<VisualObject>>& targets,
                 const std::function<Color(Color)>& newColor);

    std::shared_ptr<SceneSummary> scene_;
    std::unique_ptr<LastingEdit> edit_; ///< while a drag goes on
};

} // namespace VX

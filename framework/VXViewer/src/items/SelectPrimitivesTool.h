#pragma once

#include "FaceSelectionEdit.h"
#include "RegionFinder.h"
#include "SceneTool.h"

#include <VXMesh/Geometry.h>
#include <VXViewer/ScenePicker.h>

#include <cstdint>
#include <memory>
#include <optional>

namespace VX
{

class ObjectMesh;
class LastingEdit;
class SceneSummary;

/// Selects the flat or smoothly curved region around the face that is clicked on. Its window has the angle that ends a
/// region; a change of it changes the region that was clicked on last. A drag of the mouse is the camera's, as ever.
/// @threads the UI thread
class SelectPrimitivesTool final : public SceneTool
{
public:
    SelectPrimitivesTool(Viewer& viewer, std::shared_ptr<SceneSummary> scene);
    ~SelectPrimitivesTool() override;

    [[nodiscard]] std::string unavailableReason() const override;

protected:
    void drawContent_() override;
    void ended_() override;
    bool handleInput_(const InputEvent& event) override;

private:
    /// The face that was clicked on, and what became of it.
    struct Seed
    {
        std::weak_ptr<ObjectMesh> object;
        std::shared_ptr<const Mesh> mesh;
        std::uint32_t face = 0;
        FaceSelectionMode mode = FaceSelectionMode::Replace;
        std::shared_ptr<const FaceSet> before; ///< of the object
        std::shared_ptr<const FaceSet> shown;
        bool selected = false; ///< its region came
    };

    bool handleButton_(const MouseButtonEvent& event);
    bool handleMove_(const MouseMoveEvent& event);
    void click_(const MouseButtonEvent& press);
    void take_(const std::optional<PickResult>& hit, FaceSelectionMode mode);
    void grow_();
    void select_(const FaceSet& region);

    /// Finds the region of the seed with another angle, unless what it gave was changed since.
    void regrow_();
    void replace_(const FaceSet& region);

    std::shared_ptr<SceneSummary> scene_;
    RegionFinder finder_;
    float tolerance_;
    std::optional<MouseButtonEvent> press_;
    bool dragging_ = false;
    std::optional<Seed> seed_;
    std::unique_ptr<LastingEdit> edit_; ///< while the angle changes

    /// Picks that come when the tool has ended, or is gone, find it changed.
    std::shared_ptr<int> life_;

    /// Of the pick that is to come; it takes a second for the first one of a large mesh.
    std::weak_ptr<int> picking_;
};

} // namespace VX

#pragma once

#include "BackgroundTasks.h"
#include "SceneFacts.h"
#include "panels/MeshMeasure.h"

#include <VXMesh/Object.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace VX
{

class Viewer;

/// The facts of what is selected, or of the whole scene.
/// @threads the UI thread
class InformationPanel
{
public:
    explicit InformationPanel(Viewer& viewer);

    /// Draws into the current window.
    void draw();

    /// What is selected, parents first, as of the last `draw`.
    [[nodiscard]] const std::vector<std::shared_ptr<Object>>& selected() const { return selected_; }

private:
    /// A mesh where it stands.
    struct Measured
    {
        std::shared_ptr<const Mesh> mesh;
        Transform toScene = Transform::Identity();
    };

    /// What a worker found out about it.
    struct Measure
    {
        Measured of;
        std::optional<MeshMeasure> found;
    };

    void update_();
    void measure_();
    void drawMeasure_() const;

    Viewer& viewer_;
    std::uint64_t revision_ = 0;
    std::vector<std::shared_ptr<Object>> selected_;
    SceneFacts facts_;
    std::uint64_t selectedFaces_ = 0;
    std::shared_ptr<Measure> measured_; ///< of a single mesh
    BackgroundTasks worker_{1};
};

} // namespace VX

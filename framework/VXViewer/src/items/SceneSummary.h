#pragma once

#include <VXMesh/Object.h>

#include <cstdint>
#include <memory>
#include <string>

namespace VX
{

class Viewer;

/// What items ask about the scene in each frame, found out anew only when the scene has changed.
/// @threads the UI thread
class SceneSummary
{
public:
    explicit SceneSummary(Viewer& viewer)
        : viewer_(viewer)
    {
    }

    struct Facts
    {
        std::size_t objects = 0; ///< without the root
        std::size_t selected = 0;
        std::size_t hidden = 0; ///< whose own switch is off
        std::size_t selectedHidden = 0;
        std::size_t meshes = 0; ///< with triangles
        std::size_t selectedMeshes = 0;
        std::size_t flatMeshes = 0;
        std::size_t selectedFlatMeshes = 0;
        std::size_t selectedVisual = 0;   ///< what has a colour
        bool colorsSelected = false;      ///< something selected has a colour, or something below it
        bool facesSelected = false;       ///< of a mesh that shows
        bool hiddenFacesSelected = false; ///< of a mesh that does not
    };

    [[nodiscard]] const Facts& facts();

    // Reasons why something cannot be done, translated; empty where it can.
    [[nodiscard]] std::string needsObjects();
    [[nodiscard]] std::string needsSelectedObjects();
    [[nodiscard]] std::string needsSelectedColors();
    [[nodiscard]] std::string needsSelectedFaces();
    [[nodiscard]] std::string needsAnySelection();
    [[nodiscard]] std::string needsAnyShownSelection();
    [[nodiscard]] std::string needsMeshes();

private:
    void update_();

    Viewer& viewer_;
    const Object* root_ = nullptr;
    std::uint64_t revision_ = 0;
    Facts facts_;
};

} // namespace VX

#pragma once

#include <VXMesh/Object.h>

#include <cstdint>
#include <unordered_set>
#include <vector>

namespace VX
{

class Viewer;

/// The scene as a tree: rows that are selected by a click (with Control: one more or one less; with Shift: a range),
/// shown whole by a double click, and hidden by the eye at their end.
/// @threads the UI thread
class SceneTreePanel
{
public:
    explicit SceneTreePanel(Viewer& viewer);

    /// Draws into the current window.
    void draw();

private:
    struct Row
    {
        Object* object;
        int depth;
    };

    void collectRows_(const Object& parent, int depth);
    void revealSelected_();
    void drawRow_(const Row& row);
    void drawArrow_(const Object& object, float indent);
    void drawEye_(Object& object);
    void pressed_(Object& object);

    Viewer& viewer_;
    std::vector<Row> rows_;
    std::unordered_set<std::uint64_t> expanded_;
    std::unordered_set<std::uint64_t> known_; ///< top-level objects that were expanded by themselves already
    std::uint64_t anchor_ = 0;                ///< where a range begins
    std::uint64_t revealed_ = 0;              ///< the selected object that was last brought into view
    std::uint64_t revision_ = 0;
    bool hasGroups_ = false; ///< some row can be folded: all leave room for the arrow
};

} // namespace VX

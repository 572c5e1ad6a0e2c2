#pragma once

#include "panels/SceneRows.h"

#include <VXMesh/Object.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace VX
{

class Viewer;

/// The scene as a list with a search field: rows that are selected by a click (with Control: one more or one less;
/// with Shift: a range), renamed in place by a double click, and hidden by the eye at their end.
/// @threads the UI thread
class SceneTreePanel
{
public:
    /// @param openContextMenu  called after a right click has selected what it is for
    SceneTreePanel(Viewer& viewer, std::function<void()> openContextMenu);

    /// Draws into the current window.
    void draw();

    /// Lets the user type a name for `object` in its row, which is brought into view.
    void rename(const std::shared_ptr<Object>& object);

private:
    void drawSearch_();
    void drawRows_();
    void scrollTo_(std::size_t line) const;
    void revealSelected_();
    void drawRow_(const SceneRow& row);
    void drawArrow_(const Object& object, float indent);
    void drawLabel_(Object& object, float left, float right);
    void drawNameField_(const Object& object, float left, float right);
    void drawEye_(Object& object);
    void pressed_(Object& object);
    void toggleVisibility_(Object& object);
    void endRename_(bool keep);

    Viewer& viewer_;
    std::function<void()> openContextMenu_;
    SceneRows rows_;
    std::string filter_;
    std::weak_ptr<Object> renamed_;
    std::string newName_;
    int focusTries_ = 0;         ///< frames in which the field of the name asks for the keyboard
    std::uint64_t anchor_ = 0;   ///< where a range begins
    std::uint64_t revealed_ = 0; ///< what is brought into view with the next frame
    std::uint64_t revision_ = 0;
};

} // namespace VX

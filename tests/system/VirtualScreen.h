#pragma once

#include "tests/support/EnvironmentVariable.h"
#include "tests/support/TempDir.h"
#include "tests/system/RunningProgram.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace VX::Test
{

/// An X server of 1280x800 pixels without a window manager until the end of the scope, on a display that is free. What
/// is started meanwhile shows its windows there; keyboard and mouse are used as a person uses them, slowly enough for
/// the modifiers of a chord and the moves of a drag to come one after the other.
class VirtualScreen
{
public:
    VirtualScreen();
    ~VirtualScreen();

    VirtualScreen(const VirtualScreen&) = delete;
    VirtualScreen& operator=(const VirtualScreen&) = delete;

    /// Gives the keyboard to the visible window whose title contains `title`.
    /// @return false where there is none
    [[nodiscard]] bool focus(const std::string& title) const;

    /// Presses a key together with modifiers, the key last: {"ctrl", "shift", "p"}; names of X11's keys.
    void press(const std::vector<std::string>& chord) const;

    void type(const std::string& text) const;

    struct Point
    {
        int x = 0; ///< pixels from the left
        int y = 0; ///< from the top
    };

    void click(Point point) const;

    /// With the left button.
    void drag(Point from, Point to) const;

    /// Puts a text onto the clipboard, where it stays until another takes its place.
    void copy(const std::string& text) const;

    /// What lies on the clipboard as `type`; empty where nothing does.
    [[nodiscard]] std::string clipboard(const std::string& type) const;

private:
    ProgramResult xdotool_(const std::vector<std::string>& arguments) const;
    void input_(const std::vector<std::string>& arguments) const;

    TempDir serverFolder_;
    TempDir toolFolder_;
    RunningProgram server_;
    std::optional<EnvironmentVariable> display_;
};

} // namespace VX::Test

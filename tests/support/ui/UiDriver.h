#pragma once

#include "ViewerSession.h"

#include <VXViewer/InputEvent.h>
#include <VXViewer/UiTree.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace VX::Test
{

/// Uses the interface as a user does: with the mouse and the keyboard of the off-screen window. A widget is named by
/// its label and, where that is not enough, its window. What cannot be done fails the test and says why.
class UiDriver
{
public:
    explicit UiDriver(const ViewerSession& session);

    /// Draws frames until nothing changes any more.
    void settle();

    /// Runs the loop until `done`, for at most half a minute. @return what `done` answered last
    bool waitFor(const std::function<bool()>& done);

    /// The widget as it was drawn last, or nothing where there is none or more than one.
    [[nodiscard]] std::optional<UiItem> find(std::string_view label, std::string_view window = {}) const;

    /// True where a widget of this label is to be seen.
    [[nodiscard]] bool shows(std::string_view label, std::string_view window = {}) const;

    /// Moves the mouse to the middle of the widget's visible part and presses the left button there.
    /// @return false, with a failure of the test, where the widget is missing, clipped away, covered or disabled
    bool press(std::string_view label, std::string_view window = {}, int mods = 0);

    /// Presses twice.
    bool doublePress(std::string_view label, std::string_view window = {});

    /// Why a press would not reach the widget; empty where it would. Moves the mouse there.
    [[nodiscard]] std::string obstacle(std::string_view label, std::string_view window = {});

    /// Rests the mouse on the widget.
    void hover(std::string_view label, std::string_view window = {});

    void moveTo(const Vector2f& position, int mods = 0);
    void click(const Vector2f& position, int button = 0, int mods = 0, int clicks = 1);
    void drag(const Vector2f& from, const Vector2f& to, int button = 0, int mods = 0);
    void scroll(const Vector2f& position, float notches);

    /// Presses and releases a key. @param key  GLFW's number
    void key(int key, int mods = 0);

    /// Types `text`, in UTF-8.
    void type(std::string_view text);

private:
    void inject_(InputEvent event);

    const ViewerSession& session_;
};

} // namespace VX::Test

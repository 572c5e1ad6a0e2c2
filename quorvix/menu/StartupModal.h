#pragma once

#include <imgui.h>

#include <string>

namespace VX
{

/// A modal window that the program shows by itself when it starts. Where another modal window takes its place, it
/// comes back after that.
/// @threads the UI thread, within a frame
class StartupModal
{
public:
    /// @param name  lives as long as the program
    explicit StartupModal(const char* name)
        : name_(name)
    {
    }

    [[nodiscard]] bool isOpen() const { return open_; }

    void open() { open_ = true; }

    /// To be called between `begin` and `end`.
    void close();

    enum class Width
    {
        Fixed,
        Content ///< it grows with what is in it
    };

    /// Begins the window in the middle of the program's, never larger than that.
    /// @param size  the least, in units of the design; the height grows with the content
    /// @return true when it is drawn: call `end` then
    [[nodiscard]] bool begin(ImVec2 size, Width width);

    static void end();

    /// Draws `text` in the middle of the width of the window, its top `top` units below the window's.
    static void centeredText(const std::string& text, float top);

private:
    const char* name_;
    bool open_ = false;
};

} // namespace VX

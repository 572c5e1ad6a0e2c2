#include "tests/system/VirtualScreen.h"

#include "tests/support/WaitUntil.h"

#include <gtest/gtest.h>

#include <csignal>
#include <sstream>

namespace VX::Test
{

namespace
{

/// Seconds between two events, more than a frame takes.
constexpr const char* pause = "0.05";

void append(std::vector<std::string>& arguments, const std::vector<std::string>& more)
{
    arguments.insert(arguments.end(), more.begin(), more.end());
    arguments.insert(arguments.end(), {"sleep", pause});
}

std::vector<std::string> moveTo(int x, int y)
{
    return {"mousemove", std::to_string(x), std::to_string(y)};
}

} // namespace

VirtualScreen::VirtualScreen()
    : server_("/usr/bin/Xvfb", {"-displayfd", "1", "-noreset", "-nolisten", "tcp", "-screen", "0", "1280x800x24"},
              serverFolder_.path())
{
    std::string number;
    // It writes the number and the end of the line once it listens.
    const bool started = waitUntil(
        [&]
        {
            number = readFile(serverFolder_.path() / "stdout");
            return number.ends_with('\n');
        });
    EXPECT_TRUE(started) << readFile(serverFolder_.path() / "stderr");
    display_.emplace("DISPLAY", ":" + number.substr(0, number.find('\n')));
}

VirtualScreen::~VirtualScreen()
{
    // Killed, it would leave its lock behind.
    server_.send(SIGTERM);
    static_cast<void>(server_.wait());
}

bool VirtualScreen::focus(const std::string& title) const
{
    std::istringstream found(xdotool_({"search", "--onlyvisible", "--name", title}).output);
    std::string window;
    return static_cast<bool>(found >> window) && xdotool_({"windowfocus", "--sync", window}).status == 0;
}

void VirtualScreen::press(const std::vector<std::string>& chord) const
{
    std::vector<std::string> events;
    for (const std::string& key : chord)
        append(events, {"keydown", key});
    for (auto key = chord.rbegin(); key != chord.rend(); ++key)
        append(events, {"keyup", *key});
    input_(events);
}

void VirtualScreen::type(const std::string& text) const
{
    input_({"type", "--delay", "50", text});
}

void VirtualScreen::click(Point point) const
{
    std::vector<std::string> events;
    append(events, moveTo(point.x, point.y));
    append(events, {"mousedown", "1"});
    append(events, {"mouseup", "1"});
    input_(events);
}

void VirtualScreen::drag(Point from, Point to) const
{
    constexpr int steps = 4;
    std::vector<std::string> events;
    append(events, moveTo(from.x, from.y));
    append(events, {"mousedown", "1"});
    for (int step = 1; step <= steps; ++step)
        append(events, moveTo(from.x + (to.x - from.x) * step / steps, from.y + (to.y - from.y) * step / steps));
    append(events, {"mouseup", "1"});
    input_(events);
}

void VirtualScreen::copy(const std::string& text) const
{
    // The process that offers the text goes on until another program offers something, or the server ends.
    const auto file = toolFolder_.write("copied", text);
    const ProgramResult result =
        RunningProgram("/usr/bin/xclip", {"-selection", "clipboard", "-in", file.string()}, toolFolder_.path()).wait();
    EXPECT_EQ(result.status, 0) << result.errors;
}

std::string VirtualScreen::clipboard(const std::string& type) const
{
    return RunningProgram("/usr/bin/xclip", {"-selection", "clipboard", "-target", type, "-out"}, toolFolder_.path())
        .wait()
        .output;
}

ProgramResult VirtualScreen::xdotool_(const std::vector<std::string>& arguments) const
{
    return RunningProgram("/usr/bin/xdotool", arguments, toolFolder_.path()).wait();
}

void VirtualScreen::input_(const std::vector<std::string>& arguments) const
{
    const ProgramResult result = xdotool_(arguments);
    EXPECT_EQ(result.status, 0) << result.errors;
}

} // namespace VX::Test

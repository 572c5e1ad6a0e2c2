#include "UiDriver.h"

#include <VXViewer/MainLoop.h>
#include <VXViewer/Viewer.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

#include <thread>
#include <utility>

namespace VX::Test
{

namespace
{

constexpr int leftButton = 0;
constexpr std::chrono::seconds patience{30};
constexpr std::pair<int, int> modifierKeys[] = {{GLFW_KEY_LEFT_CONTROL, GLFW_MOD_CONTROL},
                                                {GLFW_KEY_LEFT_SHIFT, GLFW_MOD_SHIFT},
                                                {GLFW_KEY_LEFT_ALT, GLFW_MOD_ALT},
                                                {GLFW_KEY_LEFT_SUPER, GLFW_MOD_SUPER}};

Vector2f middle(const UiItem& item)
{
    return (item.visibleMin + item.visibleMax) / 2;
}

std::string nameOf(std::string_view label, std::string_view window)
{
    std::string name = "\"" + std::string(label) + "\"";
    if (!window.empty())
        name += " in \"" + std::string(window) + "\"";
    return name;
}

/// The code points of UTF-8.
std::u32string decode(std::string_view text)
{
    std::u32string result;
    for (std::size_t i = 0; i < text.size();)
    {
        const auto lead = static_cast<unsigned char>(text[i]);
        const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        char32_t codepoint = length == 1 ? lead : lead & (0xFFU >> (length + 1));
        for (std::size_t k = 1; k < length && i + k < text.size(); ++k)
            codepoint = codepoint << 6U | (static_cast<unsigned char>(text[i + k]) & 0x3FU);
        result.push_back(codepoint);
        i += length;
    }
    return result;
}

} // namespace

UiDriver::UiDriver(const ViewerSession& session)
    : session_(session)
{
}

void UiDriver::settle()
{
    if (!session_.viewer().loop().runUntilIdle())
        ADD_FAILURE() << "the interface does not come to rest";
}

bool UiDriver::waitFor(const std::function<bool()>& done)
{
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!done() && std::chrono::steady_clock::now() < end)
    {
        if (!session_.viewer().loop().turn(false))
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return done();
}

std::optional<UiItem> UiDriver::find(std::string_view label, std::string_view window) const
{
    const std::vector<UiItem> found = UiTree::instance().find(label, window);
    return found.size() == 1 ? std::optional(found.front()) : std::nullopt;
}

bool UiDriver::shows(std::string_view label, std::string_view window) const
{
    for (const UiItem& item : UiTree::instance().find(label, window))
    {
        if (item.isVisible())
            return true;
    }
    return false;
}

std::string UiDriver::obstacle(std::string_view label, std::string_view window)
{
    const std::size_t count = UiTree::instance().find(label, window).size();
    if (count != 1)
        return nameOf(label, window) + (count == 0 ? " is not there" : " is there more than once");
    const UiItem item = *find(label, window);
    if (!item.enabled)
        return nameOf(label, window) + " is disabled";
    if (!item.isVisible())
        return nameOf(label, window) + " is clipped away";
    moveTo(middle(item));
    const std::optional<UiItem> under = find(label, window);
    if (!under || !under->hovered)
        return nameOf(label, window) + " is covered";
    return {};
}

bool UiDriver::press(std::string_view label, std::string_view window, int mods)
{
    const std::string problem = obstacle(label, window);
    if (!problem.empty())
    {
        ADD_FAILURE() << problem;
        return false;
    }
    click(middle(*find(label, window)), leftButton, mods);
    return true;
}

bool UiDriver::doublePress(std::string_view label, std::string_view window)
{
    const std::string problem = obstacle(label, window);
    if (!problem.empty())
    {
        ADD_FAILURE() << problem;
        return false;
    }
    const Vector2f position = middle(*find(label, window));
    for (int clicks = 1; clicks <= 2; ++clicks)
    {
        inject_(MouseButtonEvent{leftButton, true, 0, position, clicks});
        inject_(MouseButtonEvent{leftButton, false, 0, position, clicks});
    }
    settle();
    return true;
}

void UiDriver::hover(std::string_view label, std::string_view window)
{
    if (const std::optional<UiItem> item = find(label, window))
        moveTo(middle(*item));
    else
        ADD_FAILURE() << nameOf(label, window) << " is not there";
}

void UiDriver::moveTo(const Vector2f& position, int mods)
{
    inject_(MouseMoveEvent{position, mods});
    settle();
}

void UiDriver::click(const Vector2f& position, int button, int mods, int clicks)
{
    moveTo(position, mods);
    inject_(MouseButtonEvent{button, true, mods, position, clicks});
    inject_(MouseButtonEvent{button, false, mods, position, clicks});
    settle();
}

void UiDriver::drag(const Vector2f& from, const Vector2f& to, int button, int mods)
{
    constexpr int steps = 4;
    moveTo(from, mods);
    inject_(MouseButtonEvent{button, true, mods, from, 1});
    for (int i = 1; i <= steps; ++i)
        inject_(MouseMoveEvent{from + (to - from) * (static_cast<float>(i) / steps), mods});
    inject_(MouseButtonEvent{button, false, mods, to, 1});
    settle();
}

void UiDriver::scroll(const Vector2f& position, float notches)
{
    moveTo(position);
    inject_(ScrollEvent{{0, notches}, 0, position});
    settle();
}

void UiDriver::key(int key, int mods)
{
    inject_(KeyEvent{key, 0, KeyEvent::Action::Press, mods});
    inject_(KeyEvent{key, 0, KeyEvent::Action::Release, mods});
    for (const auto& [modifierKey, modifier] : modifierKeys)
    {
        if ((mods & modifier) == 0)
            continue;
        mods &= ~modifier;
        inject_(KeyEvent{modifierKey, 0, KeyEvent::Action::Release, mods});
    }
    settle();
}

void UiDriver::type(std::string_view text)
{
    for (const char32_t codepoint : decode(text))
        inject_(CharEvent{codepoint});
    settle();
}

void UiDriver::inject_(InputEvent event)
{
    session_.window().inject(std::move(event));
}

} // namespace VX::Test

#pragma once

#include <VXViewer/RibbonNotifier.h>
#include <VXViewer/Window.h>

namespace VX
{

/// What the user did with a notification in a frame.
struct NotificationResponse
{
    bool hovered = false;
    bool closed = false;
    bool buttonPressed = false;
};

/// A notification as a window of its own.
/// @threads the UI thread, within a frame
class NotificationView
{
public:
    /// @param area  what the window stays within, in pixels
    NotificationView(const RibbonNotifier::Entry& entry, const PixelRect& area);

    /// How high it is in pixels, at most as high as the area.
    [[nodiscard]] float height() const { return height_; }

    /// Draws it at the right of the area. @param bottom  of the window, in pixels
    [[nodiscard]] NotificationResponse draw(float bottom) const;

private:
    void drawText_() const;

    const RibbonNotifier::Entry& entry_;
    const PixelRect& area_;
    float width_ = 0;
    float textWidth_ = 0;
    float textHeight_ = 0; ///< of header and text, at most as much as fits
    float height_ = 0;
};

/// Draws the mark of a kind of message into a square of `side` pixels at the cursor, as an item of the layout.
void drawNotificationMark(NotificationType type, float side);

/// Draws header (with `count`, if it is more than 1) and text of a notification, broken at `width` pixels.
void drawNotificationText(const RibbonNotifier::Entry& entry, float width);

/// True when it has a button to press.
[[nodiscard]] bool hasButton(const RibbonNotification& notification);

} // namespace VX

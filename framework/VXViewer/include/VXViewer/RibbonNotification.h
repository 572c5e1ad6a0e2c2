#pragma once

#include <VXViewer/NotificationType.h>

#include <functional>
#include <string>

namespace VX
{

/// What a notification is about, one bit each.
enum class NotificationTag : unsigned
{
    General = 1, ///< what just happened
    Result = 2,  ///< what a tool found out
    Service = 4, ///< what an online service has to say
    Advice = 8   ///< what could go better
};

constexpr unsigned allNotificationTags = 15;

/// A short message in a corner of the scene that goes away by itself. The texts are the user's language already.
struct RibbonNotification
{
    std::function<void()> onButtonClick; ///< of the button that carries `buttonName`; there is none without either
    std::string buttonName;
    std::string header; ///< may be empty
    std::string text;
    NotificationType type = NotificationType::Info;
    float lifeTimeSec = 5; ///< from when it is first seen, while the mouse is elsewhere; 0 or less: until it is closed
    unsigned tags = static_cast<unsigned>(NotificationTag::General); ///< bits of `NotificationTag`
};

} // namespace VX

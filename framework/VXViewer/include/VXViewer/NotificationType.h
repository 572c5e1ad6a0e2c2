#pragma once

namespace VX
{

/// How serious a message to the user is.
enum class NotificationType
{
    Error = 0,
    Warning = 1,
    Info = 2
};

} // namespace VX

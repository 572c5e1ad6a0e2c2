#pragma once

/// The names under which `ViewerSettingsManager` keeps what more than one file reads or writes.
namespace VX::SettingsKey
{

inline constexpr const char* language = "language";
inline constexpr const char* uiScalePercent = "UIScalePercent";
inline constexpr const char* notificationTags = "NotificationTags";

} // namespace VX::SettingsKey

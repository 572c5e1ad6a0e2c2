#pragma once

namespace VX
{

class RibbonNotifier;
class Viewer;

/// Brings what is stored of which notifications are shown into `notifier`.
void loadNotificationSettings(const Viewer& viewer, RibbonNotifier& notifier);

/// Draws the switches of the kinds of notifications, where the menu shows notifications.
void drawNotificationSettings(const Viewer& viewer);

void resetNotificationSettings(const Viewer& viewer);

} // namespace VX

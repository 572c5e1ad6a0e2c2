#pragma once

#include <functional>
#include <string>

namespace VX
{

/// A headline over settings that belong together. @param name  translated
void settingSection(const std::string& name);

/// One line of the settings window: the name, the control below the others' controls, and, unless the setting has its
/// default, the button that brings it back. Texts are translated.
/// @param drawControl  draws one widget without a label of its own, in the width that is set for the next item
/// @return true when the button was pressed
bool settingRow(const std::string& name, const std::string& tooltip, bool isDefault,
                const std::function<void()>& drawControl);

/// The same of a switch, which stands before its name.
/// @return true when `value` changed, be it to the default
bool settingSwitch(const std::string& name, const std::string& tooltip, bool defaultValue, bool& value);

} // namespace VX

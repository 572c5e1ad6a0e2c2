#pragma once

#include <VXViewer/Locale.h>

#include <string>

namespace VX::Product
{

/// `text`, one of the application's own, in the user's language.
/// @threads any
[[nodiscard]] inline std::string tr(const char* text)
{
    return Locale::translate(text, Locale::findDomain("Quorvix"));
}

} // namespace VX::Product

#pragma once

#include <VXViewer/Locale.h>

#include <fmt/format.h>

#include <string>
#include <utility>

namespace VX
{

/// `text` in the user's language.
inline std::string tr(const char* text)
{
    return Locale::translate(text);
}

/// The same of a text with places for `arguments` ("{}"). A translation that does not fit them is shown as it is.
template <typename... Arguments>
std::string trf(const char* text, Arguments&&... arguments)
{
    std::string translated = Locale::translate(text);
    try
    {
        return fmt::format(fmt::runtime(translated), std::forward<Arguments>(arguments)...);
    }
    catch (const fmt::format_error&)
    {
        return translated;
    }
}

} // namespace VX

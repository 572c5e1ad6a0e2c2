#pragma once

#include <VXViewer/Locale.h>

#include <fmt/format.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

namespace VX
{

/// `text` in the user's language.
inline std::string tr(const char* text)
{
    return Locale::translate(text);
}

/// `text`, a word that is several in other languages, in the user's language: `context` says which.
inline std::string trc(const char* context, const char* text)
{
    return Locale::translateIn(context, text);
}

/// Puts `arguments` into the places of `translated` ("{}"). A translation that does not fit them is returned as it is.
template <typename... Arguments>
std::string formatTranslated(std::string translated, Arguments&&... arguments)
{
    try
    {
        return fmt::format(fmt::runtime(translated), std::forward<Arguments>(arguments)...);
    }
    catch (const fmt::format_error&)
    {
        return translated;
    }
}

/// `text` in the user's language with `arguments` in its places.
template <typename... Arguments>
std::string trf(const char* text, Arguments&&... arguments)
{
    return formatTranslated(Locale::translate(text), std::forward<Arguments>(arguments)...);
}

/// The same of a text about `count` things. @param arguments  among them the number as it is to be read
template <typename... Arguments>
std::string trn(const char* singular, const char* plural, std::size_t count, Arguments&&... arguments)
{
    return formatTranslated(Locale::translate(singular, plural, static_cast<std::int64_t>(count)),
                            std::forward<Arguments>(arguments)...);
}

} // namespace VX

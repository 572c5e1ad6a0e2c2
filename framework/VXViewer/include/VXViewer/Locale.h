#pragma once

#include <VXViewer/Export.h>

#include <boost/signals2/connection.hpp>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace VX
{

/// The language of the interface. Texts are written in English in the code; catalogues (gettext, .mo) of the other
/// languages lie in `locale/LANGUAGE/LC_MESSAGES/DOMAIN.mo` beside the executable's folder. Nothing of them is read
/// while the language is "en".
class VXVIEWER_API Locale
{
public:
    Locale() = delete;

    /// `text` in the user's language; as it is where there is no translation.
    /// @param domain  of `findDomain`; 0 is the framework's own, which finds the texts of the others too: it shows
    ///                their names of steps, settings and the like
    /// @threads any
    [[nodiscard]] static std::string translate(const std::string& text, int domain = 0);

    /// The same of a text that means several things in English: `context` (gettext's msgctxt) says which.
    /// @threads any
    [[nodiscard]] static std::string translateIn(const char* context, const std::string& text, int domain = 0);

    /// The same of a text about `count` things, in the form that the language has for that number. In English it is
    /// `singular` for 1 and `plural` for any other number; the number itself is put in by the caller.
    /// @threads any
    [[nodiscard]] static std::string translate(const std::string& singular, const std::string& plural,
                                               std::int64_t count, int domain = 0);

    /// The catalogues called `name` are used from now on.
    /// @return the number of the domain
    /// @threads the UI thread
    static int addDomain(const char* name);

    /// @return the number of a domain that was added; 0, the framework's own, for any other name
    /// @threads any
    [[nodiscard]] static int findDomain(const char* name);

    /// The languages that have a catalogue, and "en" first.
    /// @threads any
    [[nodiscard]] static std::vector<std::string> getAvailableLocales();

    /// A language in its own words: "de" is "Deutsch"; the name itself where it is not known.
    /// @threads any
    [[nodiscard]] static std::string getDisplayName(const std::string& name);

    /// The language in use, "en" at first.
    /// @threads any
    [[nodiscard]] static std::string getName();

    /// Changes the language, or goes back to "en" where there is no catalogue for `name`.
    /// @return true when `name` is the language now
    /// @threads the UI thread
    static bool set(const std::string& name);

    /// `slot` is called after every change of the language.
    /// @threads the UI thread
    static boost::signals2::connection onChanged(const std::function<void()>& slot);
};

/// Marks a text that is translated elsewhere, where it is shown, for the tool that collects the texts.
constexpr const char* translatable(const char* text)
{
    return text;
}

} // namespace VX

#pragma once

#include <VXViewer/Export.h>

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
    /// @param domain  of `findDomain`; 0 is the framework's own
    /// @threads any
    [[nodiscard]] static std::string translate(const std::string& text, int domain = 0);

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
};

} // namespace VX

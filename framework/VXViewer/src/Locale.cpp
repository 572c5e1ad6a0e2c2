#include "LocaleCatalogs.h"

#include <VXMesh/StringConvert.h>
#include <VXMesh/SystemPath.h>
#include <VXMesh/ThreadAnnotations.h>
#include <VXViewer/Locale.h>

#include <boost/locale/generator.hpp>
#include <boost/locale/message.hpp>
#include <boost/signals2/signal.hpp>

#include <algorithm>
#include <array>
#include <atomic>
#include <filesystem>
#include <iterator>
#include <locale>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>

namespace VX
{

namespace
{

constexpr std::string_view english = "en";

/// What `translate` reads; replaced as a whole.
struct Language
{
    using Texts = boost::locale::message_format<char>;

    Language(std::string languageName, const std::locale& catalogs, const std::vector<std::string>& domains)
        : name(std::move(languageName))
        , locale(catalogs)
        , texts(std::use_facet<Texts>(locale))
    {
        std::transform(domains.begin(), domains.end(), std::back_inserter(catalogOfDomain),
                       [this](const std::string& domain) { return texts.domain(domain); });
    }

    std::string name;
    std::locale locale;
    const Texts& texts;
    std::vector<int> catalogOfDomain; ///< the library's numbers of our domains
};

/// Looks a text up with `find` (number of a catalogue to text or null): in `domain`, and where that is the framework's
/// own, in those of others too, whose texts the framework shows for them.
/// @return null where there is no translation
template <typename Find>
const char* findIn(const Language& language, int domain, const Find& find)
{
    const std::vector<int>& catalogs = language.catalogOfDomain;
    if (domain < 0 || domain >= static_cast<int>(catalogs.size()))
        return nullptr;
    const auto begin = catalogs.begin() + domain;
    const auto end = domain == 0 ? catalogs.end() : begin + 1;
    const char* text = nullptr;
    std::find_if(begin, end, [&](int catalog) { return (text = find(catalog)) != nullptr; });
    return text;
}

class LocaleState
{
public:
    static LocaleState& instance()
    {
        static LocaleState state;
        return state;
    }

    /// Null while the language is English: nothing is looked up then.
    [[nodiscard]] std::shared_ptr<const Language> language() const
    {
        const MutexLock lock(mutex_);
        return language_;
    }

    void setLanguage(std::shared_ptr<const Language> language)
    {
        // From English to English nothing changes.
        if (language || translates_)
            ++revision_;
        translates_ = language != nullptr;
        const MutexLock lock(mutex_);
        language_ = std::move(language);
    }

    [[nodiscard]] std::uint64_t revision() const { return revision_; }

    [[nodiscard]] bool translates() const { return translates_; }

    [[nodiscard]] std::vector<std::string> domains() const
    {
        const MutexLock lock(mutex_);
        return domains_;
    }

    int addDomain(const std::string& name)
    {
        const MutexLock lock(mutex_);
        const auto found = std::find(domains_.begin(), domains_.end(), name);
        if (found != domains_.end())
            return static_cast<int>(found - domains_.begin());
        domains_.push_back(name);
        return static_cast<int>(domains_.size()) - 1;
    }

private:
    std::atomic<bool> translates_ = false;
    std::atomic<std::uint64_t> revision_ = 0;
    mutable Mutex mutex_;
    std::shared_ptr<const Language> language_ VX_GUARDED_BY(mutex_);
    std::vector<std::string> domains_ VX_GUARDED_BY(mutex_) = {"VXViewer"};
};

boost::signals2::signal<void()>& changedSignal()
{
    static boost::signals2::signal<void()> signal;
    return signal;
}

std::filesystem::path catalogFolder()
{
    const auto executable = SystemPath::getExecutablePath();
    return executable ? executable->parent_path().parent_path() / "locale" : std::filesystem::path();
}

std::vector<std::filesystem::path> catalogsOf(const std::string& name)
{
    const std::filesystem::path folder = catalogFolder() / name / "LC_MESSAGES";
    std::vector<std::filesystem::path> catalogs;
    for (const std::string& domain : LocaleState::instance().domains())
    {
        std::error_code error;
        if (std::filesystem::path file = folder / (domain + ".mo"); std::filesystem::is_regular_file(file, error))
            catalogs.push_back(std::move(file));
    }
    return catalogs;
}

bool hasCatalog(const std::string& name)
{
    return !catalogsOf(name).empty();
}

std::shared_ptr<const Language> loadLanguage(const std::string& name)
{
    boost::locale::generator generator;
    generator.categories(boost::locale::category_t::message);
    generator.add_messages_path(utf8string(catalogFolder()));
    for (const std::string& domain : LocaleState::instance().domains())
        generator.add_messages_domain(domain);
    return std::make_shared<Language>(name, generator(name + ".UTF-8"), LocaleState::instance().domains());
}

} // namespace

std::vector<std::filesystem::path> catalogsInUse()
{
    return LocaleState::instance().translates() ? catalogsOf(Locale::getName()) : std::vector<std::filesystem::path>();
}

std::uint64_t catalogsRevision()
{
    return LocaleState::instance().revision();
}

std::string Locale::translate(const std::string& text, int domain)
{
    return translateIn(nullptr, text, domain);
}

std::string Locale::translateIn(const char* context, const std::string& text, int domain)
{
    const LocaleState& state = LocaleState::instance();
    // The empty text is the key of a catalogue's own header.
    const std::shared_ptr<const Language> language =
        state.translates() && !text.empty() ? state.language() : std::shared_ptr<const Language>();
    if (!language)
        return text;
    const char* translated =
        findIn(*language, domain, [&](int catalog) { return language->texts.get(catalog, context, text.c_str()); });
    return translated ? translated : text;
}

std::string Locale::translate(const std::string& singular, const std::string& plural, std::int64_t count, int domain)
{
    const LocaleState& state = LocaleState::instance();
    const std::shared_ptr<const Language> language = state.translates() ? state.language() : nullptr;
    // The library takes an int; the last digits decide in every language.
    constexpr std::int64_t modulus = 1'000'000;
    const auto number = static_cast<int>(count < modulus ? count : modulus + count % modulus);
    const char* translated = nullptr;
    if (language)
        translated = findIn(*language, domain, [&](int catalog)
                            { return language->texts.get(catalog, nullptr, singular.c_str(), number); });
    return translated ? translated : count == 1 ? singular : plural;
}

int Locale::addDomain(const char* name)
{
    LocaleState& state = LocaleState::instance();
    const int domain = state.addDomain(name);
    if (state.translates())
        state.setLanguage(loadLanguage(getName()));
    return domain;
}

int Locale::findDomain(const char* name)
{
    const std::vector<std::string> domains = LocaleState::instance().domains();
    const auto found = std::find(domains.begin(), domains.end(), name);
    return found != domains.end() ? static_cast<int>(found - domains.begin()) : 0;
}

std::vector<std::string> Locale::getAvailableLocales()
{
    std::vector<std::string> names{std::string(english)};
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(catalogFolder(), error))
    {
        const std::string name = utf8string(entry.path().filename());
        if (name != english && hasCatalog(name))
            names.push_back(name);
    }
    std::sort(names.begin() + 1, names.end());
    return names;
}

std::string Locale::getDisplayName(const std::string& name)
{
    static constexpr std::array<std::pair<const char*, const char*>, 10> known{{{"en", "English"},
                                                                                {"de", "Deutsch"},
                                                                                {"es", "Español"},
                                                                                {"fr", "Français"},
                                                                                {"it", "Italiano"},
                                                                                {"ja", "日本語"},
                                                                                {"ko", "한국어"},
                                                                                {"pt", "Português"},
                                                                                {"ru", "Русский"},
                                                                                {"zh_CN", "简体中文"}}};
    const auto* const found =
        std::find_if(known.begin(), known.end(), [&](const auto& entry) { return entry.first == name; });
    return found != known.end() ? found->second : name;
}

std::string Locale::getName()
{
    const std::shared_ptr<const Language> language = LocaleState::instance().language();
    return language ? language->name : std::string(english);
}

bool Locale::set(const std::string& name)
{
    const bool known = name == english || hasCatalog(name);
    LocaleState::instance().setLanguage(known && name != english ? loadLanguage(name) : nullptr);
    changedSignal()();
    return known;
}

boost::signals2::connection Locale::onChanged(const std::function<void()>& slot)
{
    return changedSignal().connect(slot);
}

} // namespace VX

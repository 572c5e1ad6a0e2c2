#include "tests/support/TempDir.h"

#include <VXMesh/SystemFacts.h>
#include <VXViewer/Locale.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace VX
{

namespace
{

void appendNumber(std::string& bytes, std::size_t number)
{
    for (unsigned shift = 0; shift < 32; shift += 8)
        bytes.push_back(static_cast<char>(number >> shift & 0xFFU));
}

/// A gettext catalogue, as msgfmt makes it, of the header and one text. The forms of a plural have a NUL between them.
std::string catalog(const std::string& text, const std::string& translation)
{
    const std::vector<std::pair<std::string, std::string>> entries{
        {"", "Content-Type: text/plain; charset=UTF-8\nPlural-Forms: nplurals=3; plural=n==1 ? 0 : n<5 ? 1 : 2;\n"},
        {text, translation}};
    const std::size_t tables = 28;
    const std::size_t texts = tables + entries.size() * 16;
    std::string originals;
    std::string translations;
    std::string data;
    for (const auto& [key, value] : entries)
    {
        appendNumber(originals, key.size());
        appendNumber(originals, texts + data.size());
        data += key + '\0';
    }
    for (const auto& [key, value] : entries)
    {
        appendNumber(translations, value.size());
        appendNumber(translations, texts + data.size());
        data += value + '\0';
    }
    std::string bytes;
    for (const std::size_t number : {std::size_t{0x950412DE}, std::size_t{0}, entries.size(), tables,
                                     tables + entries.size() * 8, std::size_t{0}, std::size_t{0}})
        appendNumber(bytes, number);
    return bytes + originals + translations + data;
}

} // namespace

class LocaleTests : public testing::Test
{
protected:
    LocaleTests()
    {
        SystemFacts facts;
        facts.executablePath = folder_.path() / "bin" / "Quorvix";
        overrideSystemFacts(facts);
    }

    ~LocaleTests() override
    {
        Locale::set("en");
        overrideSystemFacts({});
    }

    VX::Test::TempDir folder_;
};

TEST_F(LocaleTests, ReturnsTheTextInEnglish)
{
    EXPECT_EQ(Locale::getName(), "en");
    EXPECT_EQ(Locale::translate("Open"), "Open");
    EXPECT_EQ(Locale::translate("Open", 99), "Open");
}

TEST_F(LocaleTests, TranslatesWithTheCatalogueOfTheLanguage)
{
    folder_.write("locale/de/LC_MESSAGES/VXViewer.mo", catalog("Open", "Öffnen"));
    EXPECT_TRUE(Locale::set("de"));
    EXPECT_EQ(Locale::getName(), "de");
    EXPECT_EQ(Locale::translate("Open"), "Öffnen");
    EXPECT_EQ(Locale::translate("Unknown text"), "Unknown text");
    EXPECT_EQ(Locale::translate(""), "");
    Locale::set("en");
    EXPECT_EQ(Locale::translate("Open"), "Open");
}

TEST_F(LocaleTests, KeepsTheCataloguesOfDomainsApart)
{
    folder_.write("locale/de/LC_MESSAGES/VXViewer.mo", catalog("Open", "Öffnen"));
    folder_.write("locale/de/LC_MESSAGES/LocaleTest.mo", catalog("Open", "Auf"));
    const int domain = Locale::addDomain("LocaleTest");
    EXPECT_EQ(Locale::findDomain("LocaleTest"), domain);
    EXPECT_EQ(Locale::addDomain("LocaleTest"), domain);
    ASSERT_TRUE(Locale::set("de"));
    EXPECT_EQ(Locale::translate("Open", domain), "Auf");
    EXPECT_EQ(Locale::translate("Open"), "Öffnen");
}

TEST_F(LocaleTests, FindsTheTextsOfOtherDomainsInTheFrameworksOwn)
{
    folder_.write("locale/de/LC_MESSAGES/LocaleTest.mo", catalog("Behavior", "Verhalten"));
    Locale::addDomain("LocaleTest");
    ASSERT_TRUE(Locale::set("de"));
    EXPECT_EQ(Locale::translate("Behavior"), "Verhalten");
}

TEST_F(LocaleTests, TakesTheFormThatTheLanguageHasForANumber)
{
    using namespace std::string_literals;
    EXPECT_EQ(Locale::translate("a file", "{} files", 1), "a file");
    EXPECT_EQ(Locale::translate("a file", "{} files", 0), "{} files");
    folder_.write("locale/pl/LC_MESSAGES/VXViewer.mo", catalog("a file\0{} files"s, "plik\0{} pliki\0{} plików"s));
    ASSERT_TRUE(Locale::set("pl"));
    EXPECT_EQ(Locale::translate("a file", "{} files", 1), "plik");
    EXPECT_EQ(Locale::translate("a file", "{} files", 3), "{} pliki");
    EXPECT_EQ(Locale::translate("a file", "{} files", 25), "{} plików");
    EXPECT_EQ(Locale::translate("a thing", "{} things", 25), "{} things");
}

TEST_F(LocaleTests, TellsOfAChange)
{
    folder_.write("locale/de/LC_MESSAGES/VXViewer.mo", catalog("Open", "Öffnen"));
    std::vector<std::string> names;
    const boost::signals2::scoped_connection connection =
        Locale::onChanged([&] { names.push_back(Locale::getName()); });
    Locale::set("de");
    Locale::set("en");
    EXPECT_EQ(names, (std::vector<std::string>{"de", "en"}));
}

TEST_F(LocaleTests, FindsTheFrameworksOwnDomainForAnUnknownName)
{
    EXPECT_EQ(Locale::findDomain("Nobody"), 0);
}

TEST_F(LocaleTests, StaysEnglishWithoutACatalogue)
{
    EXPECT_FALSE(Locale::set("fr"));
    EXPECT_EQ(Locale::getName(), "en");
}

TEST_F(LocaleTests, ListsTheLanguagesThatHaveACatalogue)
{
    folder_.write("locale/fr/LC_MESSAGES/VXViewer.mo", catalog("Open", "Ouvrir"));
    folder_.write("locale/de/LC_MESSAGES/VXViewer.mo", catalog("Open", "Öffnen"));
    folder_.write("locale/empty/readme.txt", "");
    EXPECT_EQ(Locale::getAvailableLocales(), (std::vector<std::string>{"en", "de", "fr"}));
    EXPECT_EQ(Locale::getDisplayName("de"), "Deutsch");
    EXPECT_EQ(Locale::getDisplayName("xx"), "xx");
}

} // namespace VX

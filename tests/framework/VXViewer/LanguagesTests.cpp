#include <VXViewer/Locale.h>

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace VX
{

/// The languages that the program is translated into, with their own catalogues.
class LanguagesTests : public testing::Test
{
protected:
    ~LanguagesTests() override { Locale::set("en"); }
};

TEST_F(LanguagesTests, AreOfferedByTheirOwnNames)
{
    std::vector<std::pair<std::string, std::string>> offered;
    for (const std::string& name : Locale::getAvailableLocales())
        offered.emplace_back(name, Locale::getDisplayName(name));
    EXPECT_EQ(offered,
              (std::vector<std::pair<std::string, std::string>>{
                  {"en", "English"}, {"de", "Deutsch"}, {"fr", "Français"}, {"ja", "日本語"}, {"zh_CN", "简体中文"}}));
}

TEST_F(LanguagesTests, AreChangedBackAndForth)
{
    for (const auto& [name, text] :
         {std::pair("de", "Öffnen"), std::pair("fr", "Ouvrir"), std::pair("ja", "開く"), std::pair("zh_CN", "打开"),
          std::pair("en", "Open"), std::pair("ja", "開く"), std::pair("de", "Öffnen")})
    {
        ASSERT_TRUE(Locale::set(name));
        EXPECT_EQ(Locale::translate("Open"), text);
    }
}

TEST_F(LanguagesTests, SayAWordOfSeveralMeaningsInEachOfThem)
{
    EXPECT_EQ(Locale::translateIn("object", "Group"), "Group");
    ASSERT_TRUE(Locale::set("fr"));
    EXPECT_EQ(Locale::translateIn("object", "Group"), "Groupe");
    EXPECT_EQ(Locale::translate("Group"), "Grouper");
    EXPECT_EQ(Locale::translateIn("nothing that there is", "Group"), "Group");
}

TEST_F(LanguagesTests, HaveTheirOwnPlurals)
{
    const auto selected = [](int count) { return Locale::translate("{} face selected", "{} faces selected", count); };
    ASSERT_TRUE(Locale::set("fr"));
    EXPECT_EQ(selected(0), "{} face sélectionnée");
    EXPECT_EQ(selected(1), "{} face sélectionnée");
    EXPECT_EQ(selected(2), "{} faces sélectionnées");
    ASSERT_TRUE(Locale::set("ja"));
    EXPECT_EQ(selected(1), selected(2));
    ASSERT_TRUE(Locale::set("de"));
    EXPECT_EQ(selected(0), "{} Flächen ausgewählt");
    EXPECT_EQ(selected(1), "{} Fläche ausgewählt");
}

} // namespace VX

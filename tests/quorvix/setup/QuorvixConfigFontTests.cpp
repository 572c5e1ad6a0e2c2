#include "tests/support/TempDir.h"
#include "tests/support/ui/ViewerSession.h"
#include <quorvix/setup/QuorvixConfig.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace VX
{

namespace
{

using ::testing::Each;
using ::testing::ElementsAre;

class QuorvixConfigFontTest : public ::testing::Test
{
protected:
    std::filesystem::path write_(const std::filesystem::path& name) const { return folder_.write(name, "font"); }

    /// The slots for a document whose "Fonts" has this text for each key.
    static std::array<std::filesystem::path, 5>
    slots_(const std::vector<std::pair<const char*, std::filesystem::path>>& fonts)
    {
        Json::Value document(Json::objectValue);
        for (const auto& [key, path] : fonts)
            document["Fonts"][key] = path.string();
        return createQuorvixConfigFromJson(document).fontPaths;
    }

    static std::filesystem::path regular_(const std::filesystem::path& path)
    {
        return slots_({{"Regular", path}}).front();
    }

    const VX::Test::ViewerSession session_{nullptr};
    const VX::Test::TempDir folder_;
};

TEST_F(QuorvixConfigFontTest, goIntoTheirSlots)
{
    const auto regular = write_("a.ttf");
    const auto cjk = write_("b.otf");
    const auto semiBold = write_("c.ttf");
    const auto monospace = write_("d.otf");
    EXPECT_THAT(slots_({{"Regular", regular}, {"RegularCJK", cjk}, {"SemiBold", semiBold}, {"Monospace", monospace}}),
                ElementsAre(regular, cjk, semiBold, monospace, ""));
}

TEST_F(QuorvixConfigFontTest, takeTheOlderKeyWhereTheNewerOneIsNotThere)
{
    const auto font = write_("b.otf");
    EXPECT_THAT(slots_({{"RegularSC", font}}), ElementsAre("", font, "", "", ""));
}

TEST_F(QuorvixConfigFontTest, takeTheOlderKeyWhereTheNewerOneIsNoString)
{
    const auto font = write_("b.otf");
    Json::Value document;
    document["Fonts"]["RegularCJK"] = 1;
    document["Fonts"]["RegularSC"] = font.string();
    EXPECT_EQ(createQuorvixConfigFromJson(document).fontPaths[1], font);
}

TEST_F(QuorvixConfigFontTest, takeTheNewerKeyAloneEvenIfItsFileIsMissing)
{
    EXPECT_THAT(slots_({{"RegularCJK", folder_.path() / "missing.ttf"}, {"RegularSC", write_("b.otf")}}),
                Each(std::filesystem::path()));
}

TEST_F(QuorvixConfigFontTest, areKeptWhateverTheCaseOfTheExtension)
{
    for (const char* name : {"a.TTF", "b.OtF", "c.d.ttf"})
    {
        const auto font = write_(name);
        EXPECT_EQ(regular_(font), font);
    }
}

TEST_F(QuorvixConfigFontTest, areKeptWhereTheNameIsNothingButTheExtension)
{
    const auto font = write_(".ttf");
    EXPECT_EQ(regular_(font), font);
}

TEST_F(QuorvixConfigFontTest, areKeptWithALetterThatIsNotLatin)
{
    const auto font = write_("\xE5\xAD\x97.ttf");
    EXPECT_EQ(regular_(font), font);
}

TEST_F(QuorvixConfigFontTest, areDroppedWithAnotherExtension)
{
    for (const char* name : {"a.ttc", "a", "ttf", "a.ttf.bak", "a.ttf ", "a.", "b.woff"})
        EXPECT_EQ(regular_(write_(name)), "") << name;
}

TEST_F(QuorvixConfigFontTest, areDroppedWhereOnlyTheFolderHasTheExtension)
{
    EXPECT_EQ(regular_(write_("fonts.ttf/a")), "");
}

TEST_F(QuorvixConfigFontTest, areDroppedWhereThereIsNoFile)
{
    EXPECT_EQ(regular_(folder_.path() / "missing.ttf"), "");
    EXPECT_EQ(regular_(""), "");
    EXPECT_EQ(regular_(std::string(100'000, 'x') + ".ttf"), "");
}

TEST_F(QuorvixConfigFontTest, areDroppedWhereTheNameIsAFolders)
{
    std::filesystem::create_directory(folder_.path() / "x.ttf");
    EXPECT_EQ(regular_(folder_.path() / "x.ttf"), "");
}

TEST_F(QuorvixConfigFontTest, areDroppedWhereTheNameIsALinks)
{
    std::filesystem::create_symlink(write_("a.ttf"), folder_.path() / "link.ttf");
    EXPECT_EQ(regular_(folder_.path() / "link.ttf"), "");
}

TEST_F(QuorvixConfigFontTest, areDroppedWhereTheSystemWouldCutTheName)
{
    const std::string secret = write_("secret").string();
    Json::Value document;
    document["Fonts"]["Regular"] = secret + std::string("\0.ttf", 5);
    EXPECT_THAT(createQuorvixConfigFromJson(document).fontPaths, Each(std::filesystem::path()));
}

} // namespace

} // namespace VX

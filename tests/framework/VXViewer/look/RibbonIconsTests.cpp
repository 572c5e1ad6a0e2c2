#include "GalleryMenu.h"
#include "tests/support/ui/ViewerSession.h"

#include <VXMesh/Json.h>
#include <VXViewer/RibbonIcons.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace VX
{

namespace
{

using ColorType = RibbonIcons::ColorType;
using IconType = RibbonIcons::IconType;

float sizeOf(std::string_view name, float pixels, IconType type = IconType::RibbonItem)
{
    const RibbonIcons::Icon* icon = RibbonIcons::find(name, pixels, ColorType::White, type);
    return icon ? icon->size : 0;
}

/// The texts of all members "icon" in `value`, however deep.
void collectIcons(const Json::Value& value, std::vector<std::string>& names)
{
    if (value.isObject() && value["icon"].isString())
        names.push_back(value["icon"].asString());
    if (value.isObject() || value.isArray())
    {
        for (const Json::Value& member : value)
            collectIcons(member, names);
    }
}

} // namespace

class RibbonIconsTests : public testing::Test
{
protected:
    VX::Test::ViewerSession session_{std::make_shared<VX::Test::GalleryMenu>()};
};

TEST_F(RibbonIconsTests, HasEachIconInTheSizesOfTheDesign)
{
    for (const float size : {16.0F, 20.0F, 24.0F, 28.0F, 30.0F, 32.0F, 40.0F, 42.0F, 48.0F, 56.0F, 60.0F, 84.0F})
        EXPECT_EQ(sizeOf("cube", size), size);
}

TEST_F(RibbonIconsTests, TakesTheNextLargerSize)
{
    EXPECT_EQ(sizeOf("cube", 12), 16);
    EXPECT_EQ(sizeOf("cube", 35), 40);
    EXPECT_EQ(sizeOf("cube", 500), 84);
}

TEST_F(RibbonIconsTests, HasThePicturesOfTheWelcomeWindowInLargeSizesToo)
{
    EXPECT_EQ(sizeOf("DragDrop", 128), 128);
    EXPECT_EQ(sizeOf("DragDrop", 256), 256);
    EXPECT_EQ(sizeOf("Youtube", 130), 130);
    EXPECT_EQ(sizeOf("Youtube", 16), 16);
}

TEST_F(RibbonIconsTests, HasTheShapesOfTheWelcomeWindow)
{
    for (const char* name : {"cube", "cylinder", "sphere", "prism", "torus", "arrow"})
        EXPECT_EQ(sizeOf(name, 16), 16) << name;
}

TEST_F(RibbonIconsTests, FindsTheLogoAsALogoOnly)
{
    EXPECT_EQ(sizeOf("MainLogo", 28, IconType::Logo), 28);
    EXPECT_EQ(sizeOf("MainLogo", 56, IconType::Logo), 56);
    EXPECT_EQ(RibbonIcons::find("MainLogo", 28), nullptr);
    EXPECT_EQ(RibbonIcons::find("cube", 28, ColorType::White, IconType::Logo), nullptr);
}

TEST_F(RibbonIconsTests, HasNoIconOfAnUnknownName)
{
    EXPECT_EQ(RibbonIcons::find("no such icon", 16), nullptr);
    EXPECT_EQ(RibbonIcons::find("", 16), nullptr);
    EXPECT_EQ(RibbonIcons::find("family", 16), nullptr);
}

TEST_F(RibbonIconsTests, KeepsAnIconOnceItIsMade)
{
    const RibbonIcons::Icon* icon = RibbonIcons::find("cube", 16);
    EXPECT_EQ(RibbonIcons::find("cube", 16), icon);
    EXPECT_NE(RibbonIcons::find("cube", 28)->texture, icon->texture);
    EXPECT_NE(RibbonIcons::find("cube", 16, ColorType::Colored)->texture, icon->texture);
}

TEST_F(RibbonIconsTests, HasEveryIconThatTheRibbonNames)
{
    const std::filesystem::path folder = QX_SOURCE_DIR "/resources/ribbon";
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
    {
        const auto file = deserializeJsonValue(entry.path());
        if (entry.path().extension() == ".json" && file)
            collectIcons(*file, names);
    }
    EXPECT_FALSE(names.empty());
    for (const std::string& name : names)
        EXPECT_NE(RibbonIcons::find(name, 28), nullptr) << "\"" << name << "\" is not in resources/icons";
}

} // namespace VX

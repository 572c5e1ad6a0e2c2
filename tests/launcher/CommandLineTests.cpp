#include "launcher/CommandLine.h"

#include <gtest/gtest.h>

namespace VX
{

namespace
{

CommandLine parsed(const std::vector<std::string>& arguments)
{
    const auto line = parseCommandLine(arguments);
    EXPECT_TRUE(line) << line.error();
    return line.value_or(CommandLine());
}

std::string errorOf(const std::vector<std::string>& arguments)
{
    const auto line = parseCommandLine(arguments);
    return line ? "" : line.error();
}

TEST(CommandLine, TurnsTwoLeadingDashesIntoOne)
{
    const char* argv[] = {"Quorvix", "--hidden", "-size", "--", "a--b", "--x.stl"};
    EXPECT_EQ(normalizeArguments(6, argv), (std::vector<std::string>{"-hidden", "-size", "--", "a--b", "-x.stl"}));
}

TEST(CommandLine, HasNoArgumentsWhenStartedWithoutEvenAName)
{
    EXPECT_TRUE(normalizeArguments(0, nullptr).empty());
}

TEST(CommandLine, TakesWhatIsNoOptionForFilesInTheirOrder)
{
    const auto line = parsed({"b.step", "-hidden", "a b.stl", "-"});
    EXPECT_EQ(line.files, (std::vector<std::filesystem::path>{"b.step", "a b.stl", "-"}));
    EXPECT_TRUE(line.hidden);
}

TEST(CommandLine, TakesNothingButAPortForAgents)
{
    for (const char* text : {"0", "65536", "-1", "7431x", ""})
        EXPECT_FALSE(errorOf({"-mcpPort", text}).empty()) << text;
}

TEST(CommandLine, ReadsEveryOption)
{
    const auto line = parsed({"-screenshot", "s.png",   "-windowShot",     "w.png",    "-sceneInfo", "-",
                              "-size",       "640x480", "-deployment",     "d.json",   "-uiConfig",  "u.json",
                              "-creds",      "c.json",  "-noTelemetry",    "-mcpPort", "7500",       "-mcpStdio",
                              "-version",    "-help",   "-exitWithParent", "42"});
    EXPECT_EQ(line.screenshot, "s.png");
    EXPECT_EQ(line.windowShot, "w.png");
    EXPECT_EQ(line.sceneInfo, "-");
    ASSERT_TRUE(line.size);
    EXPECT_EQ(line.size->width, 640);
    EXPECT_EQ(line.size->height, 480);
    EXPECT_EQ(line.deployment, "d.json");
    EXPECT_EQ(line.uiDocument, "u.json");
    EXPECT_EQ(line.credentials, "c.json");
    EXPECT_TRUE(line.noTelemetry);
    EXPECT_EQ(line.mcpPort, 7500);
    EXPECT_TRUE(line.mcpStdio);
    EXPECT_EQ(line.parent, 42);
    EXPECT_TRUE(line.version);
    EXPECT_TRUE(line.help);
}

TEST(CommandLine, IsABatchRunOnlyWhenItLeavesSomethingBehind)
{
    EXPECT_FALSE(parsed({"-hidden", "a.stl"}).isBatch());
    EXPECT_TRUE(parsed({"-screenshot", "a.png"}).isBatch());
    EXPECT_TRUE(parsed({"-windowShot", "a.png"}).isBatch());
    EXPECT_TRUE(parsed({"-sceneInfo", "-"}).isBatch());
}

TEST(CommandLine, IsPlainOnlyWhenTheSceneAloneIsAskedFor)
{
    EXPECT_FALSE(parsed({"-hidden", "a.stl"}).isPlain());
    EXPECT_TRUE(parsed({"-screenshot", "a.png"}).isPlain());
    EXPECT_FALSE(parsed({"-windowShot", "a.png"}).isPlain());
    EXPECT_TRUE(parsed({"-sceneInfo", "-"}).isPlain());
}

TEST(CommandLine, TakesTheLastCredentials)
{
    EXPECT_EQ(parsed({"-creds", "a.json", "-creds", "b.json"}).credentials, "b.json");
}

TEST(CommandLine, NamesALinkThatIsMissing)
{
    EXPECT_EQ(errorOf({"-url"}), "Option \"-url\" needs a value: -url LINK.");
    EXPECT_EQ(errorOf({"-url", ""}), "\"\" is not a value for -url: write -url LINK.");
}

TEST(CommandLine, NamesAnUnknownOption)
{
    EXPECT_EQ(errorOf({"-frobnicate"}), "Unknown option \"-frobnicate\". \"Quorvix -help\" lists them.");
    EXPECT_EQ(errorOf({"-Hidden"}), "Unknown option \"-Hidden\". \"Quorvix -help\" lists them.");
}

TEST(CommandLine, NamesAnOptionWithoutItsValue)
{
    EXPECT_EQ(errorOf({"a.stl", "-screenshot"}), "Option \"-screenshot\" needs a value: -screenshot F.png.");
}

TEST(CommandLine, RefusesAnEmptyFileName)
{
    EXPECT_EQ(errorOf({"-screenshot", ""}), "\"\" is not a value for -screenshot: write -screenshot F.png.");
}

class UnusableSize : public testing::TestWithParam<std::string>
{
};

TEST_P(UnusableSize, IsRefusedWithTheFormToWrite)
{
    EXPECT_EQ(errorOf({"-size", GetParam()}), "\"" + GetParam() + "\" is not a value for -size: write -size WxH.");
}

INSTANTIATE_TEST_SUITE_P(CommandLine, UnusableSize,
                         testing::Values("", "x", "640", "640x", "x480", "0x480", "-1x480", "640x480x2", "640 x480",
                                         "99999x10", "640X480"));

TEST(CommandLine, ListsEveryOptionInItsHelp)
{
    const auto help = commandLineHelp();
    for (const char* option : {"-hidden", "-screenshot F.png", "-windowShot F.png", "-sceneInfo F", "-size WxH",
                               "-deployment F", "-creds F", "-url LINK", "-noTelemetry", "-version", "-help"})
        EXPECT_NE(help.find(option), std::string::npos) << option;
}

} // namespace

} // namespace VX

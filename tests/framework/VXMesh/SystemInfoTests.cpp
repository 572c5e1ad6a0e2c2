#include <VXMesh/SystemFacts.h>
#include <VXMesh/SystemInfo.h>
#include <VXMesh/SystemPath.h>
#include <VXMesh/Version.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

namespace VX
{

namespace
{

// Ends what a test overrides.
class SystemInfoTests : public testing::Test
{
protected:
    void TearDown() override
    {
        overrideSystemFacts({});
        setSystemInfoContributor({});
    }
};

} // namespace

TEST_F(SystemInfoTests, TheSystemsShortNameHasNoBlanksAndSaysTheArchitecture)
{
    EXPECT_THAT(getOSNoSpaces(), testing::MatchesRegex("[a-z0-9.-]+_(x86_64|aarch64|[a-z0-9_]+)"));
}

TEST_F(SystemInfoTests, TheSystemAndTheProcessorHaveNames)
{
    EXPECT_FALSE(GetDetailedOSName().empty());
    EXPECT_THAT(GetDetailedOSName(), testing::Not(testing::HasSubstr("\"")));
    EXPECT_FALSE(GetCpuId().empty());
}

TEST_F(SystemInfoTests, TheInfoNamesSystemProcessorAndMemory)
{
    const Json::Value info = GetSystemInfoJson();
    EXPECT_EQ(info["OS Version"], Json::Value(GetDetailedOSName()));
    EXPECT_EQ(info["CPU Info"]["CPU"], Json::Value(GetCpuId()));
    EXPECT_EQ(info["CPU Info"]["Concurrent threads"], Json::Value(std::thread::hardware_concurrency()));
    ASSERT_TRUE(info["Memory Info"]["Physical memory total MB"].isString());
    EXPECT_GT(std::stoul(info["Memory Info"]["Physical memory total MB"].asString()), 0U);
    EXPECT_FALSE(info.isMember("Graphics Info"));
    EXPECT_FALSE(info.isMember("Window Info"));
}

TEST_F(SystemInfoTests, AContributorAddsToTheInfoUntilItIsTakenAway)
{
    setSystemInfoContributor([](Json::Value& info) { info["Window Info"]["Number of monitors"] = 2; });
    EXPECT_EQ(GetSystemInfoJson()["Window Info"]["Number of monitors"], Json::Value(2));
    setSystemInfoContributor({});
    EXPECT_FALSE(GetSystemInfoJson().isMember("Window Info"));
}

TEST_F(SystemInfoTests, AContributorMayAskForTheInfoItself)
{
    setSystemInfoContributor(
        [](Json::Value& info)
        {
            setSystemInfoContributor({});
            info["Nested"] = GetSystemInfoJson()["OS Version"];
        });
    EXPECT_EQ(GetSystemInfoJson()["Nested"], Json::Value(GetDetailedOSName()));
}

TEST_F(SystemInfoTests, TheVersionHasFourNumbersAndNoBlanks)
{
    EXPECT_THAT(GetVXVersionString(), testing::MatchesRegex("D?[0-9]+\\.[0-9]+\\.[0-9]+\\.[0-9]+"));
}

TEST_F(SystemInfoTests, TheExecutableIsThisProgram)
{
    const auto path = SystemPath::getExecutablePath();
    ASSERT_TRUE(path) << path.error();
    EXPECT_EQ(path->filename(), "VXMeshTests");
    EXPECT_TRUE(std::filesystem::is_regular_file(*path));
}

TEST_F(SystemInfoTests, TestsCanOverrideEveryAnswer)
{
    SystemFacts facts;
    facts.version = "D9.8.7.6";
    facts.osNoSpaces = "Apple_x86_64";
    facts.detailedOsName = "Some OS";
    facts.cpuId = "Apple M9";
    facts.executablePath = tl::unexpected<std::string>("no");
    overrideSystemFacts(facts);
    EXPECT_EQ(GetVXVersionString(), "D9.8.7.6");
    EXPECT_EQ(getOSNoSpaces(), "Apple_x86_64");
    EXPECT_EQ(GetDetailedOSName(), "Some OS");
    EXPECT_EQ(GetCpuId(), "Apple M9");
    EXPECT_EQ(GetSystemInfoJson()["CPU Info"]["CPU"], Json::Value("Apple M9"));
    EXPECT_EQ(SystemPath::getExecutablePath().error(), "no");

    facts.systemInfo = Json::Value("all else");
    overrideSystemFacts(facts);
    EXPECT_EQ(GetSystemInfoJson(), Json::Value("all else"));
}

} // namespace VX

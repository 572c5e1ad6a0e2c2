#include "tests/support/LogCapture.h"
#include "tests/support/StartThreads.h"
#include "tests/support/TempConfig.h"

#include <VXMesh/Config.h>
#include <VXMesh/Json.h>
#include <VXMesh/UserFolders.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace VX
{

namespace
{

using Test::EnvironmentVariable;
using Test::LogCapture;
using Test::modeOf;
using Test::readFile;
using Test::startThreads;
using Test::TempConfig;
using Test::TempDir;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::filesystem::path configFile()
{
    return getUserConfigDir() / "config.json";
}

Json::Value storedDocument()
{
    return deserializeJsonValue(configFile()).value_or(Json::Value());
}

void store(const std::string& text)
{
    std::filesystem::create_directories(getUserConfigDir());
    const TempDir scratch;
    std::filesystem::copy_file(scratch.write("text", text), configFile(),
                               std::filesystem::copy_options::overwrite_existing);
}

std::vector<std::string> filesOf(const std::filesystem::path& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
}

// The settings of an application that never ran, or ran with what the test stores.
class ConfigTests : public testing::Test
{
protected:
    // As a new process would see the files.
    static void startAgain_() { Config::instance().reset("QuorvixTest"); }

    TempConfig temp_;
    LogCapture log_;
};

} // namespace

TEST_F(ConfigTests, WithoutAFileEveryKeyHasItsDefault)
{
    EXPECT_TRUE(Config::instance().getBool("key", true));
    EXPECT_FALSE(Config::instance().getBool("key", false));
    EXPECT_EQ(Config::instance().getJson("key", 7), Json::Value(7));
    EXPECT_THAT(log_.texts(spdlog::level::warn), IsEmpty());
}

TEST_F(ConfigTests, ReadingCreatesNoFolder)
{
    static_cast<void>(Config::instance().getBool("key", true));
    EXPECT_FALSE(std::filesystem::exists(getUserConfigDir()));
}

TEST_F(ConfigTests, AValueThatIsSetIsThereAfterARestart)
{
    Config::instance().setBool("shown", true);
    Config::instance().setJson("telemetryDisclaimerModalShowed", 0);
    startAgain_();
    EXPECT_TRUE(Config::instance().getBool("shown", false));
    EXPECT_EQ(Config::instance().getJson("telemetryDisclaimerModalShowed", 1), Json::Value(0));
}

TEST_F(ConfigTests, GetBoolOfAnythingButABooleanIsTheDefault)
{
    for (const char* text : {"null", "0", "1", "1.5", "\"true\"", "[true]", "{\"key\":true}"})
    {
        Config::instance().setJson("key", deserializeJsonValue(text).value());
        EXPECT_TRUE(Config::instance().getBool("key", true)) << text;
        EXPECT_FALSE(Config::instance().getBool("key", false)) << text;
    }
}

TEST_F(ConfigTests, ANullThatIsStoredIsNotTheDefault)
{
    Config::instance().setJson("key", Json::Value());
    EXPECT_TRUE(Config::instance().getJson("key", 7).isNull());
}

TEST_F(ConfigTests, EachApplicationNameHasSettingsOfItsOwn)
{
    Config::instance().setBool("key", true);
    const auto folder = getUserConfigDir();
    Config::instance().reset("AnotherTest");
    EXPECT_NE(getUserConfigDir(), folder);
    EXPECT_FALSE(Config::instance().getBool("key", false));
}

TEST_F(ConfigTests, TheFileIsForItsOwnerAloneAndLeavesNoTemporaryFileBehind)
{
    Config::instance().setBool("key", true);
    EXPECT_EQ(modeOf(configFile()), 0600U);
    EXPECT_EQ(modeOf(getUserConfigDir()), 0700U);
    EXPECT_THAT(filesOf(getUserConfigDir()), ElementsAre("config.json"));
}

TEST_F(ConfigTests, SettingOneKeyKeepsTheOthers)
{
    store(R"({"a": 1, "b": {"c": [true]}})");
    Config::instance().setBool("d", false);
    EXPECT_EQ(storedDocument(), deserializeJsonValue(R"({"a": 1, "b": {"c": [true]}, "d": false})").value());
}

TEST_F(ConfigTests, SettingOneKeyKeepsWhatAnotherInstanceStoredMeanwhile)
{
    Config::instance().setBool("mine", true);
    store(R"({"mine": true, "theirs": 5})");
    Config::instance().setBool("mine", false);
    EXPECT_EQ(storedDocument(), deserializeJsonValue(R"({"mine": false, "theirs": 5})").value());
    EXPECT_EQ(Config::instance().getJson("theirs", 0), Json::Value(5));
}

TEST_F(ConfigTests, AReplacedDocumentCountsAtOnceAndIsSavedByTheNextSet)
{
    Config::instance().setBool("old", true);
    Config::instance().setDocument(deserializeJsonValue(R"({"new": true})").value());
    EXPECT_FALSE(Config::instance().getBool("old", false));
    EXPECT_TRUE(Config::instance().getBool("new", false));
    EXPECT_EQ(storedDocument(), deserializeJsonValue(R"({"old": true})").value());

    Config::instance().setBool("more", true);
    EXPECT_EQ(storedDocument(), deserializeJsonValue(R"({"new": true, "more": true})").value());
}

TEST_F(ConfigTests, AReplacedDocumentIsSavedAtTheLatestWhenItsTimeIsOver)
{
    Config::instance().setDocument(deserializeJsonValue(R"({"new": true})").value());
    startAgain_();
    EXPECT_TRUE(Config::instance().getBool("new", false));
}

TEST_F(ConfigTests, ADocumentThatIsNoObjectCountsAsAnEmptyOne)
{
    Config::instance().setBool("old", true);
    Config::instance().setDocument(Json::Value("text"));
    EXPECT_FALSE(Config::instance().getBool("old", false));
    Config::instance().setBool("new", true);
    EXPECT_EQ(storedDocument(), deserializeJsonValue(R"({"new": true})").value());
}

TEST_F(ConfigTests, ADamagedFileIsSetAsideWithAWarningAndTheDefaultsCount)
{
    store("{\"key\": tru");
    EXPECT_FALSE(Config::instance().getBool("key", false));
    EXPECT_THAT(log_.texts(spdlog::level::warn), ElementsAre(HasSubstr("\"config.json.damaged\"")));
    EXPECT_EQ(readFile(getUserConfigDir() / "config.json.damaged"), "{\"key\": tru");
    EXPECT_FALSE(std::filesystem::exists(configFile()));
}

TEST_F(ConfigTests, DamagedFilesDoNotReplaceEachOther)
{
    for (const char* text : {"first", "[]", "\"third\""})
    {
        store(text);
        startAgain_();
        EXPECT_FALSE(Config::instance().getBool("key", false));
    }
    EXPECT_THAT(filesOf(getUserConfigDir()),
                ElementsAre("config.json.damaged", "config.json.damaged.1", "config.json.damaged.2"));
    EXPECT_EQ(readFile(getUserConfigDir() / "config.json.damaged.2"), "\"third\"");
}

TEST_F(ConfigTests, ADamagedFileIsSetAsideEvenWhereTheDocumentIsReplaced)
{
    store("damaged");
    Config::instance().setDocument(Json::Value(Json::objectValue));
    EXPECT_EQ(readFile(getUserConfigDir() / "config.json.damaged"), "damaged");
}

TEST_F(ConfigTests, AFileThatCannotBeReadStaysWhereItIsAndNothingIsSaved)
{
    // What cannot be read as a file, whoever the user is.
    std::filesystem::create_directories(configFile());
    EXPECT_FALSE(Config::instance().getBool("key", false));
    Config::instance().setBool("key", true);
    EXPECT_TRUE(Config::instance().getBool("key", false));
    EXPECT_TRUE(std::filesystem::is_directory(configFile()));
    EXPECT_THAT(filesOf(getUserConfigDir()), ElementsAre("config.json"));
    EXPECT_THAT(log_.texts(spdlog::level::warn), ElementsAre(HasSubstr("cannot be read")));
}

TEST_F(ConfigTests, TellsEachProblemOnce)
{
    EXPECT_EQ(Config::instance().takeProblem(), Config::Problem::None);
    const auto blocker = temp_.folder().write("config", "");
    Config::instance().setBool("first", true);
    Config::instance().setBool("second", true);
    EXPECT_EQ(Config::instance().takeProblem(), Config::Problem::Unwritable);
    EXPECT_EQ(Config::instance().takeProblem(), Config::Problem::None);
    std::filesystem::remove(blocker);
    startAgain_();
    std::filesystem::remove_all(getUserConfigDir());
    store("damaged");
    startAgain_();
    EXPECT_FALSE(Config::instance().getBool("key", false));
    EXPECT_EQ(Config::instance().takeProblem(), Config::Problem::Damaged);
    std::filesystem::create_directories(configFile());
    startAgain_();
    EXPECT_FALSE(Config::instance().getBool("key", false));
    EXPECT_EQ(Config::instance().takeProblem(), Config::Problem::Unreadable);
}

TEST_F(ConfigTests, AFolderThatCannotBeWrittenCostsOneWarningAndTheValuesHoldMeanwhile)
{
    // A file where the folder should be stops root too.
    const EnvironmentVariable base("XDG_CONFIG_HOME", temp_.folder().write("file", ""));
    startAgain_();
    Config::instance().setBool("first", true);
    Config::instance().setBool("second", true);
    EXPECT_TRUE(Config::instance().getBool("first", false));
    EXPECT_TRUE(Config::instance().getBool("second", false));
    EXPECT_THAT(log_.texts(spdlog::level::warn),
                ElementsAre("The settings cannot be saved; changes last until the program ends"));
}

TEST_F(ConfigTests, WhatCouldNotBeSavedIsSavedOnceItCan)
{
    const auto blocker = temp_.folder().write("config", "");
    Config::instance().setBool("first", true);
    std::filesystem::remove(blocker);
    Config::instance().setBool("second", true);
    EXPECT_EQ(storedDocument(), deserializeJsonValue(R"({"first": true, "second": true})").value());
}

TEST_F(ConfigTests, ASymbolicLinkInPlaceOfTheFileIsReplacedAndItsTargetKept)
{
    const auto target = temp_.folder().write("target.json", R"({"key": true})");
    std::filesystem::create_directories(getUserConfigDir());
    std::filesystem::create_symlink(target, configFile());
    Config::instance().setBool("key", false);
    EXPECT_FALSE(std::filesystem::is_symlink(configFile()));
    EXPECT_EQ(readFile(target), R"({"key": true})");
}

TEST_F(ConfigTests, ManyThreadsSetAndGetAtOnce)
{
    constexpr int threadCount = 4;
    constexpr int rounds = 20;
    auto threads = startThreads(threadCount,
                                [](int t)
                                {
                                    const std::string key = "key" + std::to_string(t);
                                    for (int i = 0; i < rounds; ++i)
                                    {
                                        Config::instance().setJson(key, i);
                                        EXPECT_EQ(Config::instance().getJson(key, -1), Json::Value(i));
                                        static_cast<void>(getUserConfigDir());
                                    }
                                });
    threads.clear();
    startAgain_();
    for (int t = 0; t < threadCount; ++t)
        EXPECT_EQ(Config::instance().getJson("key" + std::to_string(t), -1), Json::Value(rounds - 1));
}

} // namespace VX

#include "tests/support/LogCapture.h"
#include "tests/support/TempConfig.h"
#include <quorvix/auth/AuthToken.h>

#include <VXMesh/Config.h>
#include <VXMesh/UserFolders.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <ostream>

namespace VX
{

/// For GoogleTest's messages.
void PrintTo(const AuthToken& token, std::ostream* stream) // NOLINT(misc-use-internal-linkage)
{
    *stream << token.login << '|' << token.token << '|' << token.endpoint;
}

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const AuthToken ann{"ann@example.com", "refresh", "endpoint"};

class AuthTokenTest : public ::testing::Test
{
protected:
    static std::filesystem::path folder_() { return getUserConfigDir() / "Token"; }

    static std::filesystem::path file_() { return folder_() / ".token"; }

    /// What a file of this content loads as.
    [[nodiscard]] AuthToken loaded_(const std::string& content) const
    {
        config_.folder().write(file_(), content);
        return loadAuthToken();
    }

    /// The files in the folder.
    static std::vector<std::string> names_()
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder_()))
            names.push_back(entry.path().filename().string());
        return names;
    }

    const VX::Test::TempConfig config_;
    const VX::Test::LogCapture log_;
};

TEST_F(AuthTokenTest, isEmptyWithoutAFile)
{
    EXPECT_EQ(loadAuthToken(), AuthToken());
    EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(AuthTokenTest, isReadAsItWasWritten)
{
    saveAuthToken(ann);
    EXPECT_EQ(loadAuthToken(), ann);
    const AuthToken strange{"\xC3\xBC\"\\\n", std::string(5000, 't'), "\t"};
    saveAuthToken(strange);
    EXPECT_EQ(loadAuthToken(), strange);
}

TEST_F(AuthTokenTest, isWrittenAsJsonOfThisForm)
{
    saveAuthToken(ann);
    EXPECT_EQ(VX::Test::readFile(file_()),
              "{\n\t\"endpoint\" : \"endpoint\",\n\t\"login\" : \"ann@example.com\",\n\t\"token\" : \"refresh\"\n}");
}

TEST_F(AuthTokenTest, keepsEmptyTexts)
{
    const AuthToken signedOut{"ann@example.com", "", ""};
    saveAuthToken(signedOut);
    EXPECT_EQ(loadAuthToken(), signedOut);
    saveAuthToken({});
    EXPECT_EQ(loadAuthToken(), AuthToken());
    EXPECT_TRUE(std::filesystem::exists(file_()));
}

TEST_F(AuthTokenTest, isReadWithAnEmptyToken)
{
    const AuthToken expected{"ann@example.com", "", "endpoint"};
    EXPECT_EQ(loaded_(R"({"login": "ann@example.com", "token": "", "endpoint": "endpoint"})"), expected);
}

TEST_F(AuthTokenTest, isReadWithoutALogin)
{
    const AuthToken expected{"", "refresh", "endpoint"};
    EXPECT_EQ(loaded_(R"({"token": "refresh", "endpoint": "endpoint"})"), expected);
    EXPECT_EQ(loaded_(R"({"login": 3, "token": "refresh", "endpoint": "endpoint", "more": []})"), expected);
}

TEST_F(AuthTokenTest, isEmptyWhereTokenOrEndpointIsNoText)
{
    for (const char* const content :
         {R"({"login": "a@b.c", "token": "refresh"})", R"({"login": "a@b.c", "endpoint": "endpoint"})",
          R"({"login": "a@b.c", "token": 1, "endpoint": "endpoint"})",
          R"({"login": "a@b.c", "token": "refresh", "endpoint": null})"})
        EXPECT_EQ(loaded_(content), AuthToken()) << content;
}

TEST_F(AuthTokenTest, isEmptyWhereTheFileIsNoObject)
{
    for (const char* const content : {"", "{", "[]", "\"token\"", "null", "3", "\xFF\xFE"})
        EXPECT_EQ(loaded_(content), AuthToken()) << content;
    EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(AuthTokenTest, isForTheUserAlone)
{
    saveAuthToken(ann);
    EXPECT_EQ(VX::Test::modeOf(folder_()), 0700U);
    EXPECT_EQ(VX::Test::modeOf(file_()), 0600U);
}

TEST_F(AuthTokenTest, isTakenFromOthersWhoCouldReadIt)
{
    config_.folder().write(file_(), "{}");
    std::filesystem::permissions(folder_(), std::filesystem::perms(0755));
    std::filesystem::permissions(file_(), std::filesystem::perms(0644));
    saveAuthToken(ann);
    EXPECT_EQ(VX::Test::modeOf(folder_()), 0700U);
    EXPECT_EQ(VX::Test::modeOf(file_()), 0600U);
}

TEST_F(AuthTokenTest, leavesNoOtherFileBehind)
{
    saveAuthToken(ann);
    saveAuthToken(ann);
    EXPECT_THAT(names_(), ElementsAre(".token"));
}

TEST_F(AuthTokenTest, replacesALinkInPlaceOfTheFile)
{
    const auto target = config_.folder().write("elsewhere", "precious");
    std::filesystem::create_directories(folder_());
    std::filesystem::create_symlink(target, file_());
    saveAuthToken(ann);
    EXPECT_EQ(VX::Test::readFile(target), "precious");
    EXPECT_FALSE(std::filesystem::is_symlink(file_()));
    EXPECT_EQ(loadAuthToken(), ann);
}

TEST_F(AuthTokenTest, isNotWrittenThroughALinkInPlaceOfTheFolder)
{
    const auto target = config_.folder().path() / "elsewhere";
    std::filesystem::create_directories(target);
    std::filesystem::create_directories(folder_().parent_path());
    std::filesystem::create_symlink(target, folder_());
    saveAuthToken(ann);
    EXPECT_TRUE(std::filesystem::is_empty(target));
    EXPECT_THAT(log_.texts(spdlog::level::err), ElementsAre("Cannot create folder..."));
}

TEST_F(AuthTokenTest, saysWhereItsFolderCannotBeCreated)
{
    config_.folder().write(folder_(), "a file");
    saveAuthToken(ann);
    EXPECT_THAT(log_.texts(spdlog::level::err), ElementsAre("Cannot create folder..."));
    EXPECT_EQ(loadAuthToken(), AuthToken());
}

TEST_F(AuthTokenTest, saysNothingWhereTheFileCannotBeWritten)
{
    std::filesystem::create_directories(file_() / "a folder in its place");
    saveAuthToken(ann);
    EXPECT_THAT(log_.lines(), IsEmpty());
    EXPECT_THAT(names_(), ElementsAre(".token"));
}

TEST_F(AuthTokenTest, belongsToTheApplicationName)
{
    saveAuthToken(ann);
    Config::instance().reset("Another");
    EXPECT_EQ(loadAuthToken(), AuthToken());
}

TEST_F(AuthTokenTest, isNotLogged)
{
    saveAuthToken(ann);
    static_cast<void>(loadAuthToken());
    EXPECT_THAT(log_.lines(), IsEmpty());
}

} // namespace

} // namespace VX

#include "tests/backend/system/BackendProcess.h"
#include "tests/support/ProcessMemory.h"
#include "tests/support/WaitUntil.h"
#include "tests/system/ProgramRun.h"
#include "tests/system/VirtualScreen.h"
#include <quorvix/auth/AuthToken.h>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <json/json.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace VX
{

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* ann = "ann@example.com";
constexpr const char* password = "s3cret-words";

/// The program on a screen, at its sign-in window, and a service that knows the user. What the program keeps of a
/// sign-in lies in its user's folders, which are the test's, too.
class RealSignIn : public testing::Test
{
protected:
    RealSignIn()
    {
        program_.userFolder().write("config/Quorvix/config.json",
                                    R"({"cShowWelcomeWindow": false, "telemetryDisclaimerModalShowed": 0,
                                        "viewer": {"launchCount": 1, "QuickSetupVersion": 2}})");
        const auto& folder = program_.folder();
        const auto data = folder.path() / "data";
        const auto log = folder.path() / "log";
        const auto input = folder.write("password", std::string(password) + "\n");
        EXPECT_EQ(VX::Test::runBackend({"user", "add", ann, "--password-stdin", "--data", data.string()}, log, input),
                  0);
        backend_.emplace(data, log, std::vector<std::string>());
        running_.emplace(program_.start({"-deployment", folder.write("deployment.json", deployment_()).string(),
                                         "-noTelemetry", "-size", "1280x800"}));
        EXPECT_TRUE(VX::Test::waitUntil([&] { return screen_.focus("Quorvix"); })) << "there is no window";
        EXPECT_TRUE(VX::Test::waitUntil(
            [&]
            {
                screen_.press({"ctrl", "a"});
                screen_.type("x");
                return copyField_() == "x";
            }))
            << "the e-mail field does not have the keyboard";
    }

    /// What is in the field that has the keyboard, which is selected then.
    [[nodiscard]] std::string copyField_() const
    {
        screen_.press({"ctrl", "a"});
        screen_.press({"ctrl", "c"});
        return screen_.clipboard("UTF8_STRING");
    }

    [[nodiscard]] bool isSignedIn_() const
    {
        return VX::Test::waitUntil([&] { return screen_.focus(ann); });
    }

    void signIn_() const
    {
        screen_.type(ann);
        screen_.press({"Tab"});
        screen_.type(password);
        screen_.press({"Return"});
        EXPECT_TRUE(isSignedIn_());
    }

    /// The files in the user's folders that hold `text`.
    [[nodiscard]] std::vector<std::string> filesWith_(const std::string& text) const
    {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(program_.userFolder().path()))
        {
            if (entry.is_regular_file() && VX::Test::readFile(entry.path()).find(text) != std::string::npos)
                found.push_back(entry.path().filename().string());
        }
        return found;
    }

    [[nodiscard]] std::size_t countInMemory_(const std::string& text) const
    {
        return VX::Test::countInMemory(running_->id(), text);
    }

    const VX::Test::ProgramRun program_;
    const VX::Test::VirtualScreen screen_;

private:
    [[nodiscard]] std::string deployment_() const
    {
        const std::string address = fmt::format("http://127.0.0.1:{}", backend_->port());
        Json::Value record;
        record["services"] = "none";
        record["signIn"] = "inApp";
        for (const char* service : {"account", "converter", "telemetry", "logs", "version", "webApp", "website"})
            record[service] = address;
        return record.toStyledString();
    }

    std::optional<VX::Test::BackendProcess> backend_;
    std::optional<VX::Test::RunningProgram> running_;
};

TEST_F(RealSignIn, TakesWhatIsTypedAndTheKeyEnter)
{
    signIn_();
    EXPECT_EQ(loadAuthToken().login, ann);
}

TEST_F(RealSignIn, TakesAnAddressThatIsPasted)
{
    screen_.copy(ann);
    screen_.press({"ctrl", "v"});
    screen_.press({"Tab"});
    screen_.type(password);
    screen_.press({"Return"});
    EXPECT_TRUE(isSignedIn_());
}

TEST_F(RealSignIn, GoesFromTheFieldsToTheButtonByTab)
{
    screen_.type(ann);
    screen_.press({"Tab"});
    screen_.type(password);
    screen_.press({"Tab"}); // shows the password
    screen_.press({"Tab"}); // remembers the user
    screen_.press({"space"});
    screen_.press({"Tab"}); // leads to a new password
    screen_.press({"Tab"}); // signs in
    screen_.press({"space"});
    EXPECT_TRUE(isSignedIn_());
    EXPECT_EQ(loadAuthToken().login, "") << "the user is not to be remembered";
}

TEST_F(RealSignIn, GoesBackByShiftAndTab)
{
    screen_.press({"Tab"});
    screen_.type(password);
    screen_.press({"shift", "Tab"});
    screen_.type(ann);
    EXPECT_TRUE(VX::Test::waitUntil([&] { return copyField_() == ann; }));
    screen_.press({"Return"});
    EXPECT_TRUE(isSignedIn_());
}

TEST_F(RealSignIn, KeepsNoPasswordInTheMemoryOfTheProgram)
{
    screen_.type(ann);
    screen_.press({"Tab"});
    screen_.type(password);
    ASSERT_TRUE(VX::Test::waitUntil([&] { return countInMemory_(password) > 0; })) << "it would not be found";
    screen_.press({"Return"});
    ASSERT_TRUE(isSignedIn_());
    EXPECT_TRUE(VX::Test::waitUntil([&] { return countInMemory_(password) == 0; })) << countInMemory_(password);
}

TEST_F(RealSignIn, WritesTheTokenIntoItsFileAloneAndThePasswordNowhere)
{
    signIn_();
    const std::string token = loadAuthToken().token;
    ASSERT_FALSE(token.empty());
    EXPECT_THAT(filesWith_(token), ElementsAre(".token"));
    EXPECT_THAT(filesWith_(password), IsEmpty());
}

} // namespace

} // namespace VX

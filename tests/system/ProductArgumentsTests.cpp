#include "launcher/Launcher.h"
#include "launcher/LocalAccount.h"
#include "tests/support/TempConfig.h"
#include <quorvix/auth/AuthToken.h>
#include <quorvix/setup/Deployment.h>

#include <VXMesh/SystemFacts.h>
#include <VXMesh/UserFolders.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/Viewer.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace VX::Test
{

namespace
{

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::Not;

/// What the launcher gives to the parts of the product besides what the user has typed.
class ProductArguments : public testing::Test
{
protected:
    ProductArguments()
    {
        SystemFacts facts;
        facts.executablePath = QX_BIN_DIR "/Quorvix";
        overrideSystemFacts(facts);
        resetDeployment();
    }

    ~ProductArguments() override
    {
        getViewerInstance().reset();
        overrideSystemFacts({});
        resetDeployment();
    }

    /// Those of a run that takes a picture of the window.
    [[nodiscard]] std::vector<std::string> argumentsOfRun_(std::vector<std::string> arguments = {},
                                                           DeepLink given = DeepLink::None) const
    {
        arguments.insert(arguments.end(), {"-windowShot", (folder_.path() / "window.png").string()});
        std::vector<std::string> seen;
        CommandLoop::appendCommand([&seen] { seen = getViewerInstance().commandLineArguments(); });
        EXPECT_EQ(runLauncher(parseCommandLine(arguments).value(), arguments, given), 0);
        return seen;
    }

    const TempConfig config_{"Quorvix"};
    const EnvironmentVariable display_{"DISPLAY", std::nullopt};
    const EnvironmentVariable wayland_{"WAYLAND_DISPLAY", std::nullopt};
    const EnvironmentVariable doNotTrack_{"DO_NOT_TRACK", std::nullopt};
    const EnvironmentVariable deployment_{"QUORVIX_DEPLOYMENT", std::nullopt};
    const TempDir folder_;
};

TEST_F(ProductArguments, ForbidTelemetryWhereAllTrackingIsForbidden)
{
    const EnvironmentVariable forbidden("DO_NOT_TRACK", "1");
    EXPECT_THAT(argumentsOfRun_(), Contains("-noTelemetry"));
}

TEST_F(ProductArguments, ForbidNoTelemetryOtherwise)
{
    EXPECT_THAT(argumentsOfRun_(), Not(Contains("-noTelemetry")));
    const EnvironmentVariable allowed("DO_NOT_TRACK", "0");
    EXPECT_THAT(argumentsOfRun_(), Not(Contains("-noTelemetry")));
}

TEST_F(ProductArguments, SignInWithTheAccountOfTheLocalServices)
{
    EXPECT_THAT(argumentsOfRun_(),
                AllOf(Contains("-creds"), Contains((getUserConfigDir() / "local-account.json").string())));
}

TEST_F(ProductArguments, SignInWithThatAccountAgain)
{
    saveAuthToken({LocalAccount::address, "token", "endpoint"});
    EXPECT_THAT(argumentsOfRun_(), Contains("-creds"));
}

TEST_F(ProductArguments, LeaveTheCredentialsOfTheUser)
{
    const auto file = folder_.write("mine.json", "{}").string();
    const auto arguments = argumentsOfRun_({"-creds", file});
    EXPECT_THAT(arguments, Contains(file));
    EXPECT_EQ(std::ranges::count(arguments, "-creds"), 1);
}

TEST_F(ProductArguments, LeaveAnotherUserSignedIn)
{
    saveAuthToken({"ann@example.com", "token", "endpoint"});
    EXPECT_THAT(argumentsOfRun_(), Not(Contains("-creds")));
}

TEST_F(ProductArguments, LeaveTheSignInOfALink)
{
    EXPECT_THAT(argumentsOfRun_({}, DeepLink::Stored), Not(Contains("-creds")));
}

TEST_F(ProductArguments, SignNobodyInAtTheServicesOfOthers)
{
    std::string record = R"({"services": "none")";
    for (const char* name : {"account", "converter", "telemetry", "logs", "version", "webApp", "website"})
        record += ", \"" + std::string(name) + "\": \"https://services.example.com\"";
    const auto file = folder_.write("deployment.json", record + "}").string();
    EXPECT_THAT(argumentsOfRun_({"-deployment", file}), Not(Contains("-creds")));
    EXPECT_FALSE(std::filesystem::exists(getUserConfigDir() / "local-account.json"));
}

} // namespace

} // namespace VX::Test

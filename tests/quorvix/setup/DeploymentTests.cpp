#include "tests/support/StartThreads.h"
#include <quorvix/setup/Deployment.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/support/EnvironmentVariable.h>
#include <tests/support/LogCapture.h>
#include <tests/support/TempDir.h>

#include <vector>

namespace VX
{

namespace
{

using Test::EnvironmentVariable;
using Test::LogCapture;
using Test::TempDir;
using ::testing::StartsWith;

/// The record that a file of this content gives.
tl::expected<Deployment, std::string> loadText(const std::string& text)
{
    const TempDir folder;
    DeploymentSources sources;
    sources.argument = folder.write("services.json", text);
    return loadDeployment(sources);
}

TEST(Deployment, isTheEmbeddedDefaultWithoutAFile)
{
    const TempDir folder;
    DeploymentSources sources;
    sources.system = folder.path() / "deployment.json";
    EXPECT_EQ(loadDeployment(sources), Deployment{});
    EXPECT_EQ(Deployment{}.services, Deployment::Services::Embedded);
    EXPECT_EQ(Deployment{}.signIn, Deployment::SignIn::InApp);
}

TEST(Deployment, readsEveryMember)
{
    const TempDir folder;
    folder.write("authorities.pem", "certificates");
    DeploymentSources sources;
    sources.argument = folder.write("d.json", R"({
        "account": "https://account.example.com", "converter": "https://converter.example.com",
        "telemetry": "https://telemetry.example.com", "logs": "https://logs.example.com",
        "version": "https://version.example.com", "webApp": "https://app.example.com",
        "website": "https://www.example.com", "signIn": "browser", "services": "none", "caFile": "authorities.pem"})");
    const auto deployment = loadDeployment(sources);
    ASSERT_TRUE(deployment) << deployment.error();
    EXPECT_EQ(deployment->account, "https://account.example.com");
    EXPECT_EQ(deployment->converter, "https://converter.example.com");
    EXPECT_EQ(deployment->telemetry, "https://telemetry.example.com");
    EXPECT_EQ(deployment->logs, "https://logs.example.com");
    EXPECT_EQ(deployment->version, "https://version.example.com");
    EXPECT_EQ(deployment->webApp, "https://app.example.com");
    EXPECT_EQ(deployment->website, "https://www.example.com");
    EXPECT_EQ(deployment->signIn, Deployment::SignIn::Browser);
    EXPECT_EQ(deployment->services, Deployment::Services::None);
    EXPECT_EQ(deployment->caFile, folder.path() / "authorities.pem");
}

TEST(Deployment, takesAnAbsoluteCertificateFileAsItIs)
{
    const TempDir folder;
    const auto authorities = folder.write("a/authorities.pem", "certificates");
    EXPECT_EQ(loadText(R"({"caFile": ")" + authorities.string() + "\"}").value().caFile, authorities);
}

TEST(Deployment, keepsTheDefaultsOfTheMembersThatAFileLeavesOut)
{
    Deployment expected;
    expected.converter = "https://converter.example.com";
    EXPECT_EQ(loadText(R"({"converter": "https://converter.example.com/"})"), expected);
}

TEST(Deployment, comesFromTheArgumentBeforeAllOthers)
{
    const TempDir folder;
    DeploymentSources sources;
    sources.argument = folder.write("argument.json", R"({"logs": "https://argument.example.com"})");
    sources.environment = folder.write("environment.json", R"({"logs": "https://environment.example.com"})");
    sources.system = folder.write("system.json", R"({"logs": "https://system.example.com"})");
    EXPECT_EQ(loadDeployment(sources).value().logs, "https://argument.example.com");
}

TEST(Deployment, comesFromTheEnvironmentBeforeTheSystem)
{
    const TempDir folder;
    DeploymentSources sources;
    sources.environment = folder.write("environment.json", R"({"logs": "https://environment.example.com"})");
    sources.system = folder.write("system.json", R"({"logs": "https://system.example.com"})");
    EXPECT_EQ(loadDeployment(sources).value().logs, "https://environment.example.com");
}

TEST(Deployment, comesFromTheSystemsFileWhereThereIsNoOther)
{
    const TempDir folder;
    DeploymentSources sources;
    sources.system = folder.write("system.json", R"({"logs": "https://system.example.com"})");
    EXPECT_EQ(loadDeployment(sources).value().logs, "https://system.example.com");
}

TEST(Deployment, isRefusedWhereANamedFileIsMissing)
{
    const TempDir folder;
    DeploymentSources sources;
    sources.system = folder.write("system.json", "{}");
    sources.environment = folder.path() / "environment.json";
    EXPECT_THAT(loadDeployment(sources).error(), StartsWith("Cannot open \"environment.json\": "));
    sources.argument = folder.path() / "argument.json";
    EXPECT_THAT(loadDeployment(sources).error(), StartsWith("Cannot open \"argument.json\": "));
}

TEST(Deployment, isRefusedWhereTheSystemsFileCannotBeUsed)
{
    const TempDir folder;
    DeploymentSources sources;
    sources.system = folder.write("system.json", "[]");
    EXPECT_EQ(loadDeployment(sources).error(), "Cannot use \"system.json\": a deployment is a JSON object.");
}

TEST(Deployment, saysWhichMemberOfWhichFileIsWrong)
{
    EXPECT_EQ(
        loadText(R"({"converter": "http://example.com"})").error(),
        "Cannot use \"services.json\": \"converter\" must begin with https:// (http:// is for this computer's own "
        "services).");
    EXPECT_EQ(loadText(R"({"account": ""})").error(), "Cannot use \"services.json\": \"account\" is not a URL.");
    EXPECT_EQ(loadText(R"({"logs": 5})").error(), "Cannot use \"services.json\": \"logs\" is not a text.");
    EXPECT_EQ(loadText(R"({"signIn": "web"})").error(),
              "Cannot use \"services.json\": \"signIn\" is neither \"inApp\" nor \"browser\".");
    EXPECT_EQ(loadText(R"({"services": true})").error(),
              "Cannot use \"services.json\": \"services\" is neither \"embedded\" nor \"none\".");
    EXPECT_EQ(loadText(R"({"caFile": "missing.pem"})").error(),
              "Cannot use \"services.json\": \"caFile\" names no file that is there.");
    EXPECT_EQ(loadText(R"({"caFile": ""})").error(),
              "Cannot use \"services.json\": \"caFile\" names no file that is there.");
    EXPECT_EQ(loadText(R"({"convertor": "https://example.com"})").error(),
              "Cannot use \"services.json\": it has no member \"convertor\".");
}

TEST(Deployment, isRefusedWhereItsTextIsNoJson)
{
    EXPECT_THAT(loadText("{").error(), StartsWith("Cannot read \"services.json\": line "));
}

TEST(Deployment, needsEveryUrlWithoutEmbeddedServices)
{
    EXPECT_EQ(loadText(R"({"services": "none", "account": "https://example.com"})").error(),
              "Cannot use \"services.json\": \"converter\" is missing; with \"services\": \"none\" every URL must be "
              "given.");
}

TEST(Deployment, hasTheEmbeddedServicesAtOnePort)
{
    const Deployment deployment = withEmbeddedServices({}, 4711);
    for (const auto& url : {deployment.account, deployment.converter, deployment.telemetry, deployment.logs,
                            deployment.version, deployment.webApp, deployment.website})
        EXPECT_EQ(url, "http://127.0.0.1:4711");
}

TEST(Deployment, keepsItsOwnUrlsBesideTheEmbeddedServices)
{
    Deployment deployment;
    deployment.converter = "https://converter.example.com";
    deployment = withEmbeddedServices(deployment, 4711);
    EXPECT_EQ(deployment.converter, "https://converter.example.com");
    EXPECT_EQ(deployment.account, "http://127.0.0.1:4711");
}

TEST(DeploymentSources, areTheArgumentTheEnvironmentAndTheSystem)
{
    const EnvironmentVariable variable("QUORVIX_DEPLOYMENT", "/tmp/e.json");
    const DeploymentSources sources = deploymentSources("/tmp/a.json");
    EXPECT_EQ(sources.argument, "/tmp/a.json");
    EXPECT_EQ(sources.environment, "/tmp/e.json");
    EXPECT_EQ(sources.system, "/etc/quorvix/deployment.json");
}

TEST(DeploymentSources, leaveOutAVariableThatIsEmptyOrNotSet)
{
    {
        const EnvironmentVariable variable("QUORVIX_DEPLOYMENT", "");
        EXPECT_FALSE(deploymentSources(std::nullopt).environment);
    }
    const EnvironmentVariable variable("QUORVIX_DEPLOYMENT", std::nullopt);
    EXPECT_FALSE(deploymentSources(std::nullopt).environment);
    EXPECT_FALSE(deploymentSources(std::nullopt).argument);
}

/// The record of the process.
class DeploymentOfProcess : public ::testing::Test
{
protected:
    void SetUp() override { resetDeployment(); }

    void TearDown() override { resetDeployment(); }
};

TEST_F(DeploymentOfProcess, isTheOneThatWasSet)
{
    EXPECT_TRUE(setDeployment(withEmbeddedServices({}, 4711)));
    EXPECT_EQ(deployment().converter, "http://127.0.0.1:4711");
}

TEST_F(DeploymentOfProcess, isFixedOnceItWasSet)
{
    EXPECT_TRUE(setDeployment(withEmbeddedServices({}, 4711)));
    EXPECT_FALSE(setDeployment(withEmbeddedServices({}, 4712)));
    EXPECT_EQ(deployment().converter, "http://127.0.0.1:4711");
}

TEST_F(DeploymentOfProcess, isReadAtItsFirstUseAndFixedThen)
{
    const TempDir folder;
    const EnvironmentVariable variable("QUORVIX_DEPLOYMENT",
                                       folder.write("d.json", R"({"logs": "https://logs.example.com"})").string());
    EXPECT_EQ(deployment().logs, "https://logs.example.com");
    EXPECT_FALSE(setDeployment({}));
}

TEST_F(DeploymentOfProcess, knowsNoServiceWhereItCannotBeUsedAndSaysSoInTheLog)
{
    const TempDir folder;
    const EnvironmentVariable variable("QUORVIX_DEPLOYMENT", folder.write("d.json", "[]").string());
    const LogCapture log;
    EXPECT_EQ(deployment(), Deployment{});
    EXPECT_EQ(log.texts(spdlog::level::err),
              std::vector<std::string>{"The deployment cannot be used: no service is known"});
}

TEST_F(DeploymentOfProcess, isTheSameForThreadsThatUseItFirstTogether)
{
    const TempDir folder;
    const EnvironmentVariable variable("QUORVIX_DEPLOYMENT", folder.write("d.json", "{}").string());
    std::vector<const Deployment*> seen(4);
    VX::Test::startThreads(std::size(seen), [&](std::size_t i) { seen[i] = &deployment(); }).clear();
    for (const Deployment* record : seen)
        EXPECT_EQ(record, seen.front());
}

} // namespace

} // namespace VX

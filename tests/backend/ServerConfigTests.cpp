#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <backend/ServerConfig.h>

namespace VX::Test
{

namespace
{

using namespace std::chrono_literals;

TEST(ServerConfig, readsEverySetting)
{
    const auto config = parseServerConfig(R"({
        "publicUrl": "https://service.example/quorvix/", "requireToken": true, "converter": "/opt/convert",
        "workers": 3, "timeLimitSeconds": 60, "memoryLimitMiB": 100, "inputLimitMiB": 5, "uploadLimitMiB": 2,
        "leaseSeconds": 7, "linkLifetimeSeconds": 8, "keepSeconds": 9, "keepLogsDays": 11,
        "statusHoldMilliseconds": 10,
        "blockedDomains": ["Example.com", "b.c"], "trustForwardedFor": true,
        "identityEndpoint": "https://identity.example/", "identityClientId": "client"})");
    ASSERT_TRUE(config) << config.error();
    EXPECT_EQ(config->publicUrl, "https://service.example/quorvix");
    EXPECT_TRUE(config->requireToken);
    EXPECT_EQ(config->converter, "/opt/convert");
    EXPECT_EQ(config->workers, 3U);
    EXPECT_EQ(config->limits.time, 60s);
    EXPECT_EQ(config->limits.memory, 100U << 20U);
    EXPECT_EQ(config->limits.input, 5U << 20U);
    EXPECT_EQ(config->uploadLimit, 2U << 20U);
    EXPECT_EQ(config->lease, 7s);
    EXPECT_EQ(config->linkLifetime, 8s);
    EXPECT_EQ(config->keep, 9s);
    EXPECT_EQ(config->keepLogs, 264h);
    EXPECT_EQ(config->statusHold, 10ms);
    EXPECT_EQ(config->blockedDomains, (std::vector<std::string>{"example.com", "b.c"}));
    EXPECT_TRUE(config->trustForwardedFor);
    EXPECT_EQ(config->identityEndpoint, "https://identity.example/");
    EXPECT_EQ(config->identityClientId, "client");
}

TEST(ServerConfig, keepsTheDefaultOfWhatIsLeftOut)
{
    const auto config = parseServerConfig("{}");
    ASSERT_TRUE(config) << config.error();
    EXPECT_EQ(config->workers, 2U);
    EXPECT_EQ(config->keep, 24h);
    EXPECT_EQ(config->keepLogs, 720h);
    EXPECT_FALSE(config->requireToken);
    EXPECT_EQ(config->limits.memory, defaultServerConfig().limits.memory);
}

TEST(ServerConfig, refusesWhatItDoesNotUnderstand)
{
    const std::pair<const char*, const char*> cases[] = {
        {"[]", "It must be a JSON object."},
        {R"({"worker": 2})", "\"worker\" is not a known setting."},
        {R"({"workers": 0})", "\"workers\" must be a whole number from 1 to 256."},
        {R"({"keepLogsDays": 0})", "\"keepLogsDays\" must be a whole number from 1 to 3650."},
        {R"({"workers": -1})", "\"workers\" must be a whole number from 1 to 256."},
        {R"({"workers": 1.5})", "\"workers\" must be a whole number from 1 to 256."},
        {R"({"workers": "2"})", "\"workers\" must be a whole number from 1 to 256."},
        {R"({"leaseSeconds": 301})", "\"leaseSeconds\" must be a whole number from 1 to 300."},
        {R"({"requireToken": 1})", "\"requireToken\" must be true or false."},
        {R"({"identityEndpoint": "http://a.b", "identityClientId": "c"})",
         "\"identityEndpoint\" must be an https address, or an http address of this machine."},
        {R"({"identityEndpoint": "http://127.0.0.1.evil.example", "identityClientId": "c"})",
         "\"identityEndpoint\" must be an https address, or an http address of this machine."},
        {R"({"identityClientId": ""})", "\"identityClientId\" must be a string that is not empty."},
        {R"({"identityClientId": "c"})", "\"identityEndpoint\" and \"identityClientId\" go together."},
        {R"({"trustForwardedFor": "yes"})", "\"trustForwardedFor\" must be true or false."},
        {R"({"blockedDomains": "a.b"})", "\"blockedDomains\" must be a list of domains."},
        {R"({"blockedDomains": [1]})", "\"blockedDomains\" must be a list of domains."},
        {R"({"publicUrl": 1})", "\"publicUrl\" must be an http or https address."},
        {R"({"publicUrl": "ftp://a"})", "\"publicUrl\" must be an http or https address."},
        {R"({"converter": "convert"})", "\"converter\" must be the absolute path of a program."},
        {R"({"converter": {}})", "\"converter\" must be the absolute path of a program."},
    };
    for (const auto& [text, error] : cases)
    {
        const auto config = parseServerConfig(text);
        ASSERT_FALSE(config) << text;
        EXPECT_EQ(config.error(), error);
    }
}

TEST(ServerConfig, namesTheFileThatIsWrong)
{
    const TempDir folder;
    const auto config = loadServerConfig(folder.write("service.json", R"({"x": 1})"));
    ASSERT_FALSE(config);
    EXPECT_EQ(config.error(), "The configuration file \"service.json\" cannot be used: \"x\" is not a known setting.");
    EXPECT_FALSE(loadServerConfig(folder.path() / "missing.json"));
}

} // namespace

} // namespace VX::Test

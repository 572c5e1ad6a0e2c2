#pragma once

#include "tests/quorvix/support/RecordingTransport.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TempConfig.h"
#include <quorvix/auth/UserInfo.h>
#include <quorvix/setup/Deployment.h>
#include <quorvix/telemetry/SessionLogs.h>

#include <VXMesh/Json.h>
#include <VXMesh/SystemFacts.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/WebRequests.h>

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace VX::Test
{

/// Nobody is signed in, nothing is configured, the services are at example.com and requests stay in `transport_`; the
/// clock stands still until the test moves it.
class AccountsFixture : public ::testing::Test
{
protected:
    void SetUp() override
    {
        Deployment services;
        services.account = "https://account.example.com";
        services.webApp = "https://web.example.com";
        services.telemetry = "https://telemetry.example.com";
        services.version = "https://version.example.com";
        services.website = "https://www.example.com";
        resetDeployment();
        ASSERT_TRUE(setDeployment(services));
        SystemFacts facts;
        facts.version = "1.2.3 beta";
        facts.osNoSpaces = "debian_x86_64";
        facts.detailedOsName = "Debian GNU/Linux 12";
        facts.systemInfo = Json::Value(Json::objectValue);
        overrideSystemFacts(facts);
        getViewerInstance().reset();
        SessionLogs::reset([this] { return now_; });
    }

    void TearDown() override
    {
        SessionLogs::allow(true);
        UserInfo::setEmail({});
        UserInfo::setAccessToken({});
        SessionLogs::reset();
        WebRequests::reset();
        getViewerInstance().reset();
        overrideSystemFacts({});
        resetDeployment();
    }

    /// The bodies of the telemetry requests so far, in order.
    [[nodiscard]] std::vector<Json::Value> bodies_() const
    {
        std::vector<Json::Value> all;
        for (const auto& sent : transport_->sent())
            all.push_back(deserializeJsonValue(sent.request.body.value_or("")).value_or(Json::Value()));
        return all;
    }

    /// What kinds of telemetry requests there were so far, in order: "createSession", "logAction" …
    [[nodiscard]] std::vector<std::string> types_() const
    {
        std::vector<std::string> all;
        for (const Json::Value& body : bodies_())
            all.push_back(body["type"].asString());
        return all;
    }

    /// The names of the actions that were sent, in order.
    [[nodiscard]] std::vector<std::string> actions_() const
    {
        std::vector<std::string> names;
        for (const Json::Value& body : bodies_())
            for (const Json::Value& action : body["actionNames"])
                names.push_back(action["name"].asString());
        return names;
    }

    /// Opens the session of this user.
    void openSession_(const std::string& email, Json::Int64 sessionId = 7)
    {
        SessionLogs::requestSessionId(email);
        answerLast_("{\"sessionId\": " + std::to_string(sessionId) + "}");
    }

    /// Answers the request that was sent last with status 200.
    void answerLast_(const std::string& body) { transport_->last().answer(makeAnswer(200, body)); }

    const TempConfig config_;
    const LogCapture log_;
    const std::shared_ptr<RecordingTransport> transport_ = RecordingTransport::install();
    std::chrono::system_clock::time_point now_{std::chrono::milliseconds(1'700'000'000'123)};
};

} // namespace VX::Test

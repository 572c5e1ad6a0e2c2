#include "tests/quorvix/support/AccountsFixture.h"
#include "tests/support/StartThreads.h"
#include <quorvix/telemetry/SessionLogs.h>

#include <VXMesh/Logger.h>
#include <VXMesh/TelemetrySignal.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <spdlog/sinks/sink.h>

namespace VX
{

namespace
{

using std::chrono::seconds;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SessionLogsTest : public VX::Test::AccountsFixture
{
};

TEST_F(SessionLogsTest, asksForASessionOfTheUser)
{
    SessionLogs::requestSessionId("ann@example.com");
    const WebRequestData request = transport_->last().request;
    EXPECT_EQ(request.method, WebMethod::Post);
    EXPECT_EQ(request.url, "https://telemetry.example.com/stats/log");
    EXPECT_EQ(request.logName, "requestSessionId");
    EXPECT_TRUE(request.async);
    EXPECT_TRUE(request.headers.empty());
    Json::Value body;
    body["type"] = "createSession";
    body["email"] = "ann@example.com";
    EXPECT_THAT(bodies_(), ElementsAre(body));
}

TEST_F(SessionLogsTest, asksForNoSessionWithoutAnAddress)
{
    SessionLogs::requestSessionId("");
    EXPECT_THAT(types_(), IsEmpty());
}

TEST_F(SessionLogsTest, sendsWhatWasGatheredBeforeTheSessionOnceItIsThere)
{
    SessionLogs::logAction("First", false);
    SessionLogs::logAction("Second", false);
    SessionLogs::flushIfNeeded(true);
    EXPECT_THAT(types_(), IsEmpty());
    openSession_("ann@example.com");
    EXPECT_THAT(types_(), ElementsAre("createSession", "logAction", "setPlatform"));
    EXPECT_THAT(actions_(), ElementsAre("First", "Second"));
}

TEST_F(SessionLogsTest, sendsActionsWithTheirTimesInOrder)
{
    UserInfo::setEmail("ann@example.com");
    answerLast_(R"({"sessionId": 9007199254740993})");
    SessionLogs::logAction("First", false);
    now_ += std::chrono::milliseconds(5);
    SessionLogs::logAction("Second", false);
    SessionLogs::flushIfNeeded(true);
    const WebRequestData request = transport_->last().request;
    EXPECT_EQ(request.method, WebMethod::Post);
    EXPECT_EQ(request.url, "https://telemetry.example.com/stats/log");
    EXPECT_EQ(request.logName, "logAction");
    EXPECT_TRUE(request.async);
    Json::Value body;
    body["type"] = "logAction";
    body["sessionId"] = Json::Int64(9007199254740993);
    body["email"] = "ann@example.com";
    body["actionNames"][0]["name"] = "First";
    body["actionNames"][0]["ts"] = Json::Int64(1'700'000'000'123);
    body["actionNames"][1]["name"] = "Second";
    body["actionNames"][1]["ts"] = Json::Int64(1'700'000'000'128);
    EXPECT_EQ(request.body, body.toStyledString());
}

TEST_F(SessionLogsTest, says60SecondsLaterWhatHappenedSince)
{
    SessionLogs::logAction("First", false);
    openSession_("ann@example.com");
    SessionLogs::logAction("Second", false);
    now_ += seconds(30);
    SessionLogs::flushIfNeeded(false);
    EXPECT_THAT(actions_(), ElementsAre("First"));
    now_ += seconds(30) - std::chrono::microseconds(1);
    SessionLogs::flushIfNeeded(false);
    EXPECT_THAT(actions_(), ElementsAre("First"));
    now_ += std::chrono::microseconds(1);
    SessionLogs::flushIfNeeded(false);
    EXPECT_THAT(actions_(), ElementsAre("First", "Second"));
}

TEST_F(SessionLogsTest, sendsTheFirstBatchOfTheProcessWithoutWaiting)
{
    openSession_("ann@example.com");
    SessionLogs::logAction("First", false);
    SessionLogs::flushIfNeeded(false);
    EXPECT_THAT(actions_(), ElementsAre("First"));
}

TEST_F(SessionLogsTest, sendsAtOnceWhereItIsForced)
{
    SessionLogs::logAction("First", false);
    openSession_("ann@example.com");
    SessionLogs::logAction("Second", false);
    SessionLogs::flushIfNeeded(true);
    EXPECT_THAT(actions_(), ElementsAre("First", "Second"));
}

TEST_F(SessionLogsTest, aFlushWithNothingToSendDoesNotStartTheWaitAnew)
{
    SessionLogs::logAction("First", false);
    openSession_("ann@example.com");
    now_ += seconds(50);
    SessionLogs::flushIfNeeded(true);
    now_ += seconds(10);
    SessionLogs::logAction("Second", false);
    SessionLogs::flushIfNeeded(false);
    EXPECT_THAT(actions_(), ElementsAre("First", "Second"));
}

TEST_F(SessionLogsTest, forgetsABatchThatCouldNotBeSent)
{
    SessionLogs::logAction("First", false);
    SessionLogs::requestSessionId("ann@example.com");
    answerLast_(R"({"sessionId": 7})");
    for (const auto& sent : transport_->sent())
        sent.answer(VX::Test::makeAnswer(0, ""));
    SessionLogs::flushIfNeeded(true);
    EXPECT_THAT(actions_(), ElementsAre("First"));
}

TEST_F(SessionLogsTest, tellsThePlatformOnceASession)
{
    SessionLogs::logAction("First", false);
    openSession_("ann@example.com");
    SessionLogs::logAction("Second", false);
    SessionLogs::flushIfNeeded(true);
    SessionLogs::clearSessionId();
    SessionLogs::logAction("Third", false);
    openSession_("bob@example.com", 8);
    EXPECT_THAT(types_(), ElementsAre("createSession", "logAction", "setPlatform", "logAction", "createSession",
                                      "logAction", "setPlatform"));
}

TEST_F(SessionLogsTest, tellsThePlatformInTheWordsOfItsMaker)
{
    SessionLogs::logAction("First", false);
    openSession_("ann@example.com");
    EXPECT_EQ(transport_->last().request.logName, "setPlatform");
    Json::Value body;
    body["type"] = "setPlatform";
    body["sessionId"] = 7;
    body["platform"] = "Debian GNU/Linux 12";
    body["version"] = "1.2.3-beta";
    EXPECT_EQ(bodies_().back(), body);
}

TEST_F(SessionLogsTest, forgetsWhatWasNotSentWithTheSession)
{
    openSession_("ann@example.com");
    SessionLogs::logAction("First", false);
    SessionLogs::clearSessionId();
    SessionLogs::flushIfNeeded(true);
    openSession_("bob@example.com");
    EXPECT_THAT(types_(), ElementsAre("createSession", "createSession"));
}

TEST_F(SessionLogsTest, hasNoSessionAfterAnAnswerWithoutAnIntegerId)
{
    for (const char* const body :
         {"{}", "[]", "null", "3", R"({"sessionId": "7"})", R"({"sessionId": 1.5})", R"({"sessionId": null})", ""})
    {
        SessionLogs::logAction("First", false);
        SessionLogs::requestSessionId("ann@example.com");
        answerLast_(body);
        EXPECT_THAT(actions_(), IsEmpty()) << body;
    }
    EXPECT_THAT(log_.texts(spdlog::level::err), IsEmpty());
}

TEST_F(SessionLogsTest, saysInTheLogWhyThereIsNoSession)
{
    SessionLogs::requestSessionId("ann@example.com");
    transport_->last().answer(VX::Test::makeAnswer(500, R"({"message": "Out of order"})"));
    EXPECT_THAT(log_.texts(spdlog::level::err),
                ElementsAre("Failed to parse response from \"SessionLogsImpl::requestSessionId\": Out of order"));
}

TEST_F(SessionLogsTest, saysInTheLogWhatBecameOfTheOtherRequests)
{
    SessionLogs::logAction("First", false);
    openSession_("ann@example.com");
    transport_->sent().at(1).answer(VX::Test::makeAnswer(0, ""));
    transport_->sent().at(2).answer(VX::Test::makeAnswer(404, "no"));
    EXPECT_THAT(log_.texts(spdlog::level::err),
                ElementsAre("Failed to parse response from \"SessionLogsImpl::logAction\": Connection error",
                            "Failed to parse response from \"SessionLogsImpl::setPlatform\": HTTP 404"));
}

TEST_F(SessionLogsTest, logsEachActionThatItSendsForDebugging)
{
    SessionLogs::logAction("First", false);
    openSession_("ann@example.com", 12);
    EXPECT_THAT(log_.texts(spdlog::level::debug), Contains("Telemetry: 12->First"));
    EXPECT_THAT(log_.texts(spdlog::level::debug), Contains("{\n\t\"sessionId\" : 12\n}\n"));
}

TEST_F(SessionLogsTest, isAllowedAtFirst)
{
    EXPECT_TRUE(SessionLogs::isAllowed());
    EXPECT_TRUE(SessionLogs::isEnabled());
}

TEST_F(SessionLogsTest, keepsOnlyForcedActionsWhileItIsNotAllowed)
{
    SessionLogs::allow(false);
    SessionLogs::clearSessionId();
    SessionLogs::logAction("Dropped", false);
    SessionLogs::logAction("Forced", true);
    openSession_("ann@example.com");
    EXPECT_THAT(actions_(), ElementsAre("Forced"));
}

TEST_F(SessionLogsTest, tellsTheServiceOnceThatItIsNotAllowedAnyMore)
{
    SessionLogs::allow(false);
    SessionLogs::allow(false);
    EXPECT_FALSE(SessionLogs::isAllowed());
    openSession_("ann@example.com");
    EXPECT_THAT(actions_(), ElementsAre("Forbid Telemetry"));
}

TEST_F(SessionLogsTest, isAllowedAgainWithoutAReport)
{
    SessionLogs::allow(false);
    SessionLogs::clearSessionId();
    SessionLogs::allow(true);
    EXPECT_TRUE(SessionLogs::isAllowed());
    SessionLogs::logAction("First", false);
    openSession_("ann@example.com");
    EXPECT_THAT(actions_(), ElementsAre("First"));
}

TEST_F(SessionLogsTest, asksForASessionAlsoWhereItIsNotAllowed)
{
    SessionLogs::allow(false);
    SessionLogs::requestSessionId("ann@example.com");
    EXPECT_THAT(types_(), ElementsAre("createSession"));
}

TEST_F(SessionLogsTest, isForbiddenByTheCommandLine)
{
    getViewerInstance().setCommandLineArguments({"-hidden", "-noTelemetry", "part.stl"});
    EXPECT_FALSE(SessionLogs::isEnabled());
    EXPECT_FALSE(SessionLogs::isAllowed());
    SessionLogs::requestSessionId("ann@example.com");
    SessionLogs::logAction("Dropped", false);
    SessionLogs::logAction("Forced", true);
    SessionLogs::flushIfNeeded(true);
    EXPECT_THAT(types_(), IsEmpty());
}

TEST_F(SessionLogsTest, isForbiddenByTheWholeArgumentOnly)
{
    getViewerInstance().setCommandLineArguments({"-notelemetry", "-noTelemetry=1", "x-noTelemetry"});
    EXPECT_TRUE(SessionLogs::isEnabled());
}

TEST_F(SessionLogsTest, readsTheCommandLineOnce)
{
    EXPECT_TRUE(SessionLogs::isEnabled());
    getViewerInstance().setCommandLineArguments({"-noTelemetry"});
    EXPECT_TRUE(SessionLogs::isEnabled());
}

TEST_F(SessionLogsTest, takesWhatTheFrameworkReports)
{
    static_cast<void>(SessionLogs::isAllowed());
    TelemetrySignal::instance()("Open Settings");
    SessionLogs::allow(false);
    TelemetrySignal::instance()("Dropped");
    openSession_("ann@example.com");
    EXPECT_THAT(actions_(), ElementsAre("Open Settings", "Forbid Telemetry"));
}

TEST_F(SessionLogsTest, takesActionsFromSeveralThreads)
{
    VX::Test::startThreads(4,
                           [](int)
                           {
                               for (int i = 0; i < 100; ++i)
                                   SessionLogs::logAction("Action", false);
                           })
        .clear();
    openSession_("ann@example.com");
    EXPECT_EQ(actions_().size(), 400U);
}

/// Asks, from within a line of the log, what the line's writer may be holding a lock of.
class AskingSink : public spdlog::sinks::sink
{
public:
    void log(const spdlog::details::log_msg&) override { static_cast<void>(SessionLogs::isAllowed()); }

    void flush() override {}

    void set_pattern(const std::string&) override {}

    void set_formatter(std::unique_ptr<spdlog::formatter>) override {}
};

TEST_F(SessionLogsTest, answersFromWithinALineOfTheLog)
{
    const auto sink = std::make_shared<AskingSink>();
    Logger::instance().addSink(sink);
    SessionLogs::logAction("First", false);
    openSession_("ann@example.com");
    transport_->last().answer(VX::Test::makeAnswer(0, ""));
    Logger::instance().removeSink(sink);
    EXPECT_THAT(actions_(), ElementsAre("First"));
}

} // namespace

} // namespace VX

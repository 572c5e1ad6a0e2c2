#include "tests/support/HttpRecorder.h"
#include "tests/support/StartThreads.h"
#include "tests/support/TempConfig.h"
#include "tests/support/WaitUntil.h"
#include <quorvix/auth/UserInfo.h>
#include <quorvix/telemetry/ServerSendSink.h>
#include <quorvix/telemetry/SessionLogs.h>

#include <VXMesh/Json.h>
#include <VXViewer/WebRequests.h>

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <spdlog/details/log_msg.h>

#include <atomic>
#include <map>
#include <mutex>

namespace VX
{

namespace
{

constexpr int threadCount = 8;
constexpr int lineCount = 2000;

/// A service on loopback that takes every third batch and fails with the others, each in another way.
class UnreliableService
{
public:
    UnreliableService()
    {
        recorder_.answer("/v1/logs", [this](const HttpRequest& request) { return take_(request); });
    }

    [[nodiscard]] std::string url() const { return recorder_.url("/v1/logs"); }

    /// The messages that it has taken, in their order.
    [[nodiscard]] std::vector<std::string> messages() const
    {
        const std::lock_guard lock(mutex_);
        return messages_;
    }

    void becomeReliable() { reliable_ = true; }

private:
    VX::Test::HttpRecorder::Answer take_(const HttpRequest& request)
    {
        const std::lock_guard lock(mutex_);
        const unsigned number = count_++ % 3;
        if (!reliable_ && number != 2)
            return {.status = number == 0 ? 503 : 0};
        const auto body = deserializeJsonValue(request.body);
        for (const Json::Value& item : body.value()["items"])
            messages_.push_back(item["message"].asString());
        return {.status = 201, .body = "{}"};
    }

    mutable std::mutex mutex_;
    std::vector<std::string> messages_;
    unsigned count_ = 0;
    std::atomic<bool> reliable_ = false;
    VX::Test::HttpRecorder recorder_;
};

class ServerSendSinkThreadsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        SessionLogs::reset();
        UserInfo::setAccessToken("token");
    }

    void TearDown() override
    {
        WebRequests::reset();
        UserInfo::setAccessToken({});
        SessionLogs::reset();
    }

    void logLine_(const std::string& text) { sink_.log(spdlog::details::log_msg("", spdlog::level::info, text)); }

    /// Every thread logs "THREAD LINE" for its lines, while this one flushes.
    void logFromAllThreads_()
    {
        std::atomic<int> running = threadCount;
        const auto threads = VX::Test::startThreads(threadCount,
                                                    [this, &running](int t)
                                                    {
                                                        for (int i = 0; i < lineCount; ++i)
                                                            logLine_(fmt::format("{} {}", t, i));
                                                        --running;
                                                    });
        while (running > 0)
            sink_.flush();
    }

    [[nodiscard]] ServerSendSink::Params params_() const
    {
        ServerSendSink::Params params;
        params.url = service_.url();
        params.batchSize = 1;
        params.sendIntervalSec = 0;
        return params;
    }

    const VX::Test::TempConfig config_;
    UnreliableService service_;
    ServerSendSink sink_{params_()};
};

TEST_F(ServerSendSinkThreadsTest, loseNoLineWhileBatchesFailAndSucceed)
{
    logFromAllThreads_();
    service_.becomeReliable();
    ASSERT_TRUE(VX::Test::waitUntil(
        [&]
        {
            logLine_("x 0");
            sink_.flush();
            return service_.messages().size() > threadCount * lineCount;
        }));

    std::map<std::string, int> next;
    for (const std::string& message : service_.messages())
    {
        const auto blank = message.find(' ');
        const std::string thread = message.substr(0, blank);
        if (thread == "x")
            continue;
        // One flush runs at a time, so nothing is sent twice that has arrived.
        EXPECT_EQ(std::stoi(message.substr(blank + 1)), next[thread]++) << thread;
    }
    EXPECT_EQ(next.size(), threadCount);
    for (const auto& [thread, count] : next)
        EXPECT_EQ(count, lineCount) << thread;
}

TEST_F(ServerSendSinkThreadsTest, doNotWaitForARequest)
{
    VX::Test::HttpRecorder silent;
    silent.answer("/v1/logs", VX::Test::HttpRecorder::Answer{.status = 201, .delay = std::chrono::hours(1)});
    auto params = params_();
    params.url = silent.url("/v1/logs");
    ServerSendSink sink(params);
    sink.log(spdlog::details::log_msg("", spdlog::level::info, "line"));
    sink.flush();
    ASSERT_TRUE(silent.waitForRequests(1));
    // Would not return while the request is unanswered.
    sink.log(spdlog::details::log_msg("", spdlog::level::info, "line"));
    sink.flush();
    EXPECT_EQ(silent.requests().size(), 1U);
}

} // namespace

} // namespace VX

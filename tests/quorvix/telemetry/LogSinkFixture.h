#pragma once

#include "tests/quorvix/support/AccountsFixture.h"
#include <quorvix/telemetry/ServerSendSink.h>

#include <spdlog/details/log_msg.h>

#include <functional>

namespace VX::Test
{

/// A sink of its own, which no logger has, in a process whose user is signed in with the token "token".
class LogSinkFixture : public AccountsFixture
{
protected:
    void SetUp() override
    {
        AccountsFixture::SetUp();
        UserInfo::setAccessToken("token");
    }

    [[nodiscard]] static ServerSendSink::Params params_()
    {
        ServerSendSink::Params params;
        params.url = "https://logs.example.com/v1/logs";
        params.serviceName = "Service";
        params.serviceVersion = "1.2.3.4";
        params.platform = "debian_x86_64";
        params.environment = "test";
        params.batchSize = 200;
        params.sendIntervalSec = 60;
        return params;
    }

    /// The sink under test with a function that gets fresh tokens.
    void refreshWith_(std::function<void(ServerSendSink::TakeToken)> refreshToken)
    {
        auto params = params_();
        params.refreshToken = std::move(refreshToken);
        sink_ = std::make_shared<ServerSendSink>(params, clock_);
    }

    void logLine_(const std::string& text, spdlog::level::level_enum level = spdlog::level::info) const
    {
        sink_->log(spdlog::details::log_msg("", level, text));
    }

    /// Logs "TEXT 1" to "TEXT COUNT".
    void logLines_(int count, const std::string& text = "line") const
    {
        for (int i = 1; i <= count; ++i)
            logLine_(text + " " + std::to_string(i));
    }

    /// The messages of the request at `index`.
    [[nodiscard]] std::vector<std::string> messages_(std::size_t index) const
    {
        const Json::Value body = bodies_().at(index);
        std::vector<std::string> all;
        for (const Json::Value& item : body["items"])
            all.push_back(item["message"].asString());
        return all;
    }

    [[nodiscard]] std::vector<std::string> lastMessages_() const { return messages_(transport_->sent().size() - 1); }

    [[nodiscard]] std::size_t sendCount_() const { return transport_->sent().size(); }

    /// Answers the request that was sent last.
    void answer_(int code) const { transport_->last().answer(makeAnswer(code, "{}")); }

    const ServerSendSink::Clock clock_ = [this] { return now_; };
    std::shared_ptr<ServerSendSink> sink_ = std::make_shared<ServerSendSink>(params_(), clock_);
};

} // namespace VX::Test

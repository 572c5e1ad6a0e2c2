#pragma once

#include <quorvix/Export.h>

#include <spdlog/details/null_mutex.h>
#include <spdlog/sinks/base_sink.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace VX
{

/// Ships the lines of the log in batches to a service, as {"items": […]} by POST with the signed-in user's access
/// token. Lines gather at once and without waiting for anything; `flush` hands them over when there are enough of them
/// and the last batch is long enough ago. A batch that did not arrive is sent again, in front of the next one.
/// Only a process whose telemetry is allowed (`SessionLogs::isAllowed`) and whose user is signed in sends anything:
/// without a user the lines wait, without a limit, and where telemetry is not allowed a batch is dropped as it becomes
/// due. Failures are reported nowhere.
/// The lines come from `Logger`, which has taken secrets out of them; they are sent without its pattern.
/// @threads any; answers may arrive after the sink is gone
class QUORVIX_API ServerSendSink final : public spdlog::sinks::base_sink<spdlog::details::null_mutex>
{
public:
    using TakeToken = std::function<void(const std::string& token)>;
    using Clock = std::function<std::chrono::system_clock::time_point()>;

    struct Params
    {
        std::string url{}; ///< of the service's operation
        /// Sent with every line, as "serviceName", "serviceVersion", "platform" and "environment".
        std::string serviceName{};
        std::string serviceVersion{};
        std::string platform{};
        std::string environment{};
        std::int32_t batchSize = 200;      ///< from so many lines on a flush sends them
        std::int32_t sendIntervalSec = 60; ///< whole seconds between the beginnings of two sends
        /// Asked once a send, when the service answers 401: it hands over a fresh access token, now or later, on any
        /// thread; an empty one where none is to be had.
        std::function<void(TakeToken)> refreshToken{};
    };

    /// Takes lines from level info on.
    /// @param clock  tells the time; threads call it at once
    explicit ServerSendSink(Params params, Clock clock = std::chrono::system_clock::now);

    /// Off: the lines that wait are dropped, and so is every later one. A batch under way stays.
    void enable(bool enabled);

    /// The least level of lines from now on; those of the waiting ones that are below it are dropped.
    void setLogLevel(spdlog::level::level_enum level);

    /// From now on `flush` sends nothing.
    void preShutdown();

    /// Sends the lines that wait, if there are any, and returns with the answer. A batch that could not be sent goes
    /// with them, but does not cause a send by itself.
    void shutdown();

    /// Sends the lines that wait, behind those that could not be sent before, where a user is signed in.
    /// @param async  false: return once the service has answered
    void trySendBatch(bool async);

protected:
    void sink_it_(const spdlog::details::log_msg& message) override;
    void flush_() override;

private:
    struct State;

    const std::shared_ptr<State> state_; ///< shared with the requests under way
};

/// Adds such a sink to `Logger`, unless it has one.
/// @threads the UI thread
QUORVIX_API void addServerSendSink(const ServerSendSink::Params& params);

/// The sink of this kind that `Logger` has; null where there is none.
/// @threads the UI thread
[[nodiscard]] QUORVIX_API std::shared_ptr<ServerSendSink> getServerSendSink();

} // namespace VX

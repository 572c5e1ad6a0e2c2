#include <quorvix/auth/UserInfo.h>
#include <quorvix/telemetry/LogBatch.h>
#include <quorvix/telemetry/LogLines.h>
#include <quorvix/telemetry/ServerSendSink.h>
#include <quorvix/telemetry/SessionLogs.h>

#include <VXMesh/Logger.h>
#include <VXMesh/ThreadAnnotations.h>
#include <VXViewer/WebRequest.h>

#include <spdlog/logger.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <optional>
#include <utility>

namespace VX
{

/// Its lock is held for reading and changing it alone: a request writes lines of the log, and so comes back. A send
/// copies and frees no line under it, however many wait.
struct ServerSendSink::State
{
    State(Params p, Clock c)
        : params(std::move(p))
        , clock(std::move(c))
    {
    }

    const Params params;
    const Clock clock;
    Mutex mutex;
    bool enabled VX_GUARDED_BY(mutex) = true;
    std::optional<std::chrono::system_clock::time_point> lastSendTime VX_GUARDED_BY(mutex);
    LogLines pending VX_GUARDED_BY(mutex);
    LogChunks inFlight VX_GUARDED_BY(mutex);           ///< being sent, or waiting to be sent again
    std::uint64_t handedOver VX_GUARDED_BY(mutex) = 0; ///< how many chunks ever came into `inFlight`
    bool sending VX_GUARDED_BY(mutex) = false;
    bool shuttingDown VX_GUARDED_BY(mutex) = false;

    [[nodiscard]] bool isBatchDue() VX_REQUIRES(mutex);
    [[nodiscard]] bool handOver(bool allowed);
    [[nodiscard]] std::pair<LogChunks, std::uint64_t> beginSend();
    void endSend(bool arrived, std::uint64_t end);
    static void send(const std::shared_ptr<State>& state, bool async, const std::string& token, bool mayRefresh);
    static void refresh(const std::shared_ptr<State>& state, bool async);
};

namespace
{

/// Long enough for the service to store what gathered while it was away; the usual time-out for usual batches.
int timeoutMs(const LogChunks& lines)
{
    constexpr std::size_t usual = 60'000;
    constexpr std::size_t linesPerMs = 10;
    std::size_t count = 0;
    for (const auto& chunk : lines)
        count += chunk->count();
    return static_cast<int>(std::clamp<std::size_t>(count / linesPerMs, usual, std::numeric_limits<int>::max()));
}

/// The HTTP status; 0 where there was no answer.
int statusOf(const Json::Value& answer)
{
    if (!answer.isObject())
        return 0;
    const Json::Value& code = answer["code"];
    return code.isInt() ? code.asInt() : 0;
}

} // namespace

bool ServerSendSink::State::isBatchDue()
{
    if (!enabled || sending || shuttingDown || pending.count() < static_cast<std::size_t>(params.batchSize))
        return false;
    return !lastSendTime ||
           std::chrono::duration_cast<std::chrono::seconds>(clock() - *lastSendTime).count() >= params.sendIntervalSec;
}

/// Moves what waits behind what could not be sent. @return whether there is to be a send
bool ServerSendSink::State::handOver(bool allowed)
{
    LogChunks dropped; // freed without the lock
    const MutexLock lock(mutex);
    LogChunks chunks = pending.take();
    handedOver += chunks.size();
    std::ranges::move(chunks, std::back_inserter(inFlight));
    if (allowed)
        return true;
    lastSendTime = clock();
    dropped.swap(inFlight);
    return false;
}

/// @return the lines to send, and the value of `handedOver` behind the last of them
std::pair<LogChunks, std::uint64_t> ServerSendSink::State::beginSend()
{
    const MutexLock lock(mutex);
    sending = true;
    lastSendTime = clock();
    return {inFlight, handedOver};
}

/// @param end  of `beginSend`: what the end of the program handed over while this send was under way stays
void ServerSendSink::State::endSend(bool arrived, std::uint64_t end)
{
    LogChunks kept;
    const MutexLock lock(mutex);
    sending = false;
    if (!arrived)
        return;
    const auto newer = std::min<std::uint64_t>(handedOver - end, inFlight.size());
    std::move(inFlight.end() - static_cast<std::ptrdiff_t>(newer), inFlight.end(), std::back_inserter(kept));
    kept.swap(inFlight);
}

void ServerSendSink::State::send(const std::shared_ptr<State>& state, bool async, const std::string& token,
                                 bool mayRefresh)
{
    const auto [lines, end] = state->beginSend();
    WebRequest request;
    request.setMethod(WebRequest::Method::Post);
    request.setHeaders({{"Content-Type", "application/json"}, {"Authorization", "Bearer " + token}});
    request.setTimeout(timeoutMs(lines));
    request.setBody(logBatchBody(lines, state->params));
    request.send(
        state->params.url, "sendLogs",
        [state, async, mayRefresh, sentEnd = end](const Json::Value& answer)
        {
            const int status = statusOf(answer);
            state->endSend(status == 200 || status == 201, sentEnd);
            if (status == 401 && mayRefresh && state->params.refreshToken)
                refresh(state, async);
        },
        async);
}

void ServerSendSink::State::refresh(const std::shared_ptr<State>& state, bool async)
{
    state->params.refreshToken(
        [state, async](const std::string& token)
        {
            if (!token.empty())
                send(state, async, token, false);
        });
}

ServerSendSink::ServerSendSink(Params params, Clock clock)
    : state_(std::make_shared<State>(std::move(params), std::move(clock)))
{
    set_level(spdlog::level::info);
}

void ServerSendSink::enable(bool enabled)
{
    LogChunks dropped;
    const MutexLock lock(state_->mutex);
    state_->enabled = enabled;
    if (!enabled)
        dropped = state_->pending.take();
}

void ServerSendSink::setLogLevel(spdlog::level::level_enum level)
{
    const MutexLock lock(state_->mutex);
    set_level(level);
    state_->pending.dropBelow(level);
}

void ServerSendSink::preShutdown()
{
    const MutexLock lock(state_->mutex);
    state_->shuttingDown = true;
}

void ServerSendSink::shutdown()
{
    {
        const MutexLock lock(state_->mutex);
        if (state_->pending.count() == 0)
            return;
    }
    trySendBatch(false);
}

void ServerSendSink::trySendBatch(bool async)
{
    const std::string token = UserInfo::getAccessToken();
    if (token.empty())
        return;
    if (state_->handOver(SessionLogs::isAllowed()))
        State::send(state_, async, token, true);
}

void ServerSendSink::sink_it_(const spdlog::details::log_msg& message)
{
    const MutexLock lock(state_->mutex);
    if (!state_->enabled || !should_log(message.level))
        return;
    state_->pending.add({std::chrono::floor<LogRecord::Ticks>(state_->clock()),
                         message.level,
                         {message.payload.data(), message.payload.size()}});
}

void ServerSendSink::flush_()
{
    {
        const MutexLock lock(state_->mutex);
        if (level() == spdlog::level::off || !state_->isBatchDue())
            return;
    }
    trySendBatch(true);
}

void addServerSendSink(const ServerSendSink::Params& params)
{
    if (!getServerSendSink())
        Logger::instance().addSink(std::make_shared<ServerSendSink>(params));
}

std::shared_ptr<ServerSendSink> getServerSendSink()
{
    for (const auto& sink : Logger::instance().getSpdLogger()->sinks())
        if (auto found = std::dynamic_pointer_cast<ServerSendSink>(sink))
            return found;
    return nullptr;
}

} // namespace VX

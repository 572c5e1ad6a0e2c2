#include <quorvix/auth/UserInfo.h>
#include <quorvix/setup/Deployment.h>
#include <quorvix/setup/Version.h>
#include <quorvix/telemetry/SessionLogs.h>
#include <quorvix/telemetry/TelemetryRecord.h>

#include <VXMesh/Config.h>
#include <VXMesh/SystemInfo.h>
#include <VXMesh/TelemetrySignal.h>
#include <VXMesh/ThreadAnnotations.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/WebRequest.h>

#include <boost/signals2/connection.hpp>
#include <spdlog/spdlog.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

using Clock = std::function<std::chrono::system_clock::time_point()>;
/// The unit of the time between two batches.
using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;

constexpr Ticks flushInterval{599'999'999};
constexpr std::int64_t noSession = -1;

struct ActionRecord
{
    std::string name;
    std::int64_t ts; ///< milliseconds since the Unix epoch
};

struct Batch
{
    std::int64_t sessionId;
    std::vector<ActionRecord> actions;
    bool first; ///< of its session: the platform follows it
};

bool forbidsTelemetry(const std::vector<std::string>& arguments)
{
    return std::ranges::find(arguments, "-noTelemetry") != arguments.end();
}

void logBadResponse(const char* operation, const std::string& error)
{
    spdlog::error("Failed to parse response from \"SessionLogsImpl::{}\": {}", operation, error);
}

/// What `SessionLogs` knows. Its lock is held for reading and changing that alone: a line of the log and a request end
/// in code that asks it again.
class SessionLogsImpl
{
public:
    static SessionLogsImpl& instance()
    {
        // Never destroyed: answers may arrive during the exit.
        static auto* const impl = new SessionLogsImpl;
        return *impl;
    }

    void reset(Clock clock)
    {
        const MutexLock lock(mutex_);
        state_ = {};
        clock_ = std::move(clock);
    }

    void allow(bool allowed)
    {
        const MutexLock lock(mutex_);
        state_.allowed = allowed;
    }

    bool isAllowed()
    {
        const MutexLock lock(mutex_);
        return state_.allowed;
    }

    bool isEnabled()
    {
        if (const auto known = knownEnabled_())
            return *known;
        const bool forbidden = forbidsTelemetry(getViewerInstance().commandLineArguments());
        const MutexLock lock(mutex_);
        state_.argumentsRead = true;
        if (forbidden)
            state_.enabled = state_.allowed = false;
        return state_.enabled;
    }

    void logAction(std::string name, bool force)
    {
        const MutexLock lock(mutex_);
        if (!state_.allowed && !force)
            return;
        const auto now = std::chrono::duration_cast<std::chrono::milliseconds>(now_().time_since_epoch());
        state_.actions.push_back({std::move(name), now.count()});
    }

    void setSessionId(std::int64_t sessionId)
    {
        const MutexLock lock(mutex_);
        state_.sessionId = sessionId;
    }

    void clearSessionId()
    {
        const MutexLock lock(mutex_);
        state_.sessionId = noSession;
        state_.actions.clear();
        state_.platformSent = false;
    }

    /// The actions to send, which are the caller's from then on. Whether they are the first of their session is settled
    /// here: a sign-out may end the session before they are sent.
    std::optional<Batch> takeDueBatch(bool force)
    {
        const MutexLock lock(mutex_);
        if (state_.sessionId == noSession || state_.actions.empty())
            return {};
        const auto now = now_();
        if (!force && std::chrono::duration_cast<Ticks>(now - state_.lastFlushTime) <= flushInterval)
            return {};
        state_.lastFlushTime = now;
        return Batch{state_.sessionId, std::exchange(state_.actions, {}), !std::exchange(state_.platformSent, true)};
    }

    /// Posts `body`; every request of telemetry goes this way.
    void send(const Json::Value& body, const char* logName, WebRequest::Callback callback)
    {
        record_.add(body, lockedNow_());
        WebRequest request;
        request.setMethod(WebRequest::Method::Post);
        request.setBody(body.toStyledString());
        request.send(deployment().telemetry + "/stats/log", logName, std::move(callback));
    }

private:
    struct State
    {
        bool argumentsRead = false;
        bool enabled = true;
        bool allowed = true;
        bool platformSent = false;
        std::int64_t sessionId = noSession;
        std::chrono::system_clock::time_point lastFlushTime; ///< the epoch: the first batch is due at once
        std::vector<ActionRecord> actions;
    };

    SessionLogsImpl()
        : telemetry_(TelemetrySignal::instance().connect([this](const std::string& name) { logAction(name, false); }))
    {
    }

    std::optional<bool> knownEnabled_()
    {
        const MutexLock lock(mutex_);
        return state_.argumentsRead ? std::optional(state_.enabled) : std::nullopt;
    }

    std::chrono::system_clock::time_point lockedNow_()
    {
        const MutexLock lock(mutex_);
        return now_();
    }

    std::chrono::system_clock::time_point now_() VX_REQUIRES(mutex_)
    {
        return clock_ ? clock_() : std::chrono::system_clock::now();
    }

    Mutex mutex_;
    State state_ VX_GUARDED_BY(mutex_);
    Clock clock_ VX_GUARDED_BY(mutex_);
    TelemetryRecord record_;
    boost::signals2::scoped_connection telemetry_;
};

void takeSession(const Json::Value& answer)
{
    const auto response = parseResponse(answer);
    if (!response)
        return logBadResponse("requestSessionId", response.error());
    spdlog::debug("{}", response->toStyledString());
    if (response->isObject())
    {
        const Json::Value& sessionId = (*response)["sessionId"];
        if (sessionId.isInt64())
            SessionLogsImpl::instance().setSessionId(sessionId.asInt64());
    }
    SessionLogs::flushIfNeeded(true);
}

/// Checks an answer that brings nothing.
WebRequest::Callback checkAnswer(const char* operation)
{
    return [operation](const Json::Value& answer)
    {
        if (const auto response = parseResponse(answer); !response)
            logBadResponse(operation, response.error());
    };
}

void sendActions(const Batch& batch)
{
    Json::Value body(Json::objectValue);
    body["type"] = "logAction";
    body["sessionId"] = Json::Int64(batch.sessionId);
    body["email"] = std::string(UserInfo::getEmail());
    Json::Value& names = body["actionNames"] = Json::Value(Json::arrayValue);
    for (const ActionRecord& action : batch.actions)
    {
        Json::Value& entry = names.append(Json::objectValue);
        entry["name"] = action.name;
        entry["ts"] = Json::Int64(action.ts);
        spdlog::debug("Telemetry: {}->{}", batch.sessionId, action.name);
    }
    SessionLogsImpl::instance().send(body, "logAction", checkAnswer("logAction"));
}

void sendPlatform(std::int64_t sessionId)
{
    Json::Value body(Json::objectValue);
    body["type"] = "setPlatform";
    body["sessionId"] = Json::Int64(sessionId);
    body["platform"] = GetDetailedOSName();
    body["version"] = versionNoSpaces(true);
    SessionLogsImpl::instance().send(body, "setPlatform", checkAnswer("setPlatform"));
}

} // namespace

void SessionLogs::allow(bool allowed)
{
    if (!allowed)
        logAction("Forbid Telemetry", false);
    SessionLogsImpl::instance().allow(allowed);
}

bool SessionLogs::isAllowed()
{
    return SessionLogsImpl::instance().isAllowed();
}

bool SessionLogs::isEnabled()
{
    return SessionLogsImpl::instance().isEnabled();
}

void SessionLogs::followSetting()
{
    allow(isEnabled() && Config::instance().getBool("allowSimpleTelemetry", true));
}

void SessionLogs::requestSessionId(const std::string& email)
{
    if (email.empty() || !isEnabled())
        return;
    Json::Value body(Json::objectValue);
    body["type"] = "createSession";
    body["email"] = email;
    SessionLogsImpl::instance().send(body, "requestSessionId", takeSession);
}

void SessionLogs::logAction(std::string name, bool force)
{
    SessionLogsImpl::instance().logAction(std::move(name), force);
}

void SessionLogs::flushIfNeeded(bool force)
{
    const auto batch = SessionLogsImpl::instance().takeDueBatch(force);
    if (!batch)
        return;
    sendActions(*batch);
    if (batch->first)
        sendPlatform(batch->sessionId);
}

void SessionLogs::clearSessionId()
{
    SessionLogsImpl::instance().clearSessionId();
}

void SessionLogs::reset(Clock clock)
{
    SessionLogsImpl::instance().reset(std::move(clock));
}

} // namespace VX

#pragma once

#include <VXMesh/ThreadAnnotations.h>
#include <VXViewer/WebRequests.h>
#include <VXViewer/WebTransport.h>

#include <json/value.h>

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace VX::Test
{

/// Carries requests nowhere: it records them and delivers the answers that the test gives, at once, later, from any
/// thread, twice or never.
/// @threads any
class RecordingTransport final : public WebTransport
{
public:
    using AnswerFunction = std::function<Json::Value(const WebRequestData&)>;

    /// Puts a new one in place of libcurl until the end of its scope.
    class Scope
    {
    public:
        Scope() { WebRequests::setTransport(transport_); }

        ~Scope() { WebRequests::setTransport(nullptr); }

        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

        RecordingTransport* operator->() const { return transport_.get(); }

    private:
        std::shared_ptr<RecordingTransport> transport_ = std::make_shared<RecordingTransport>();
    };

    /// An answer as libcurl's transport makes them; without `error` it has no such member.
    static Json::Value answer(int code, const std::string& text, const std::string& error = {})
    {
        Json::Value value(Json::objectValue);
        value["code"] = code;
        value["text"] = text;
        if (!error.empty())
            value["error"] = error;
        return value;
    }

    /// Answers every request from now on within `send`; empty: `deliver` does.
    void answerAtOnce(AnswerFunction function)
    {
        const MutexLock lock(mutex_);
        answerAtOnce_ = std::move(function);
    }

    /// Calls the callback of the request, counted from 0, on this thread.
    void deliver(std::size_t index, const Json::Value& answer)
    {
        WebCallback callback;
        {
            const MutexLock lock(mutex_);
            callback = callbacks_.at(index);
        }
        callback(answer);
    }

    [[nodiscard]] std::vector<WebRequestData> requests() const
    {
        const MutexLock lock(mutex_);
        return requests_;
    }

    /// @return false where that takes longer than ten seconds
    [[nodiscard]] bool waitForRequests(std::size_t count) const
    {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        MutexLock lock(mutex_);
        while (requests_.size() < count)
            if (changed_.wait_until(lock, deadline) == std::cv_status::timeout)
                return requests_.size() >= count;
        return true;
    }

    void send(WebRequestData request, WebCallback callback) override
    {
        AnswerFunction function;
        {
            const MutexLock lock(mutex_);
            requests_.push_back(request);
            callbacks_.push_back(callback);
            function = answerAtOnce_;
        }
        changed_.notify_all();
        if (function)
            callback(function(request));
    }

private:
    mutable Mutex mutex_;
    mutable std::condition_variable_any changed_;
    std::vector<WebRequestData> requests_ VX_GUARDED_BY(mutex_);
    std::vector<WebCallback> callbacks_ VX_GUARDED_BY(mutex_);
    AnswerFunction answerAtOnce_ VX_GUARDED_BY(mutex_);
};

} // namespace VX::Test

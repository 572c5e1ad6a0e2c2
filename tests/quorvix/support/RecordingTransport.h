#pragma once

#include <VXMesh/ThreadAnnotations.h>
#include <VXViewer/WebRequests.h>
#include <VXViewer/WebTransport.h>

#include <json/value.h>

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace VX::Test
{

/// The answer object of a request, as the framework makes it.
inline Json::Value makeAnswer(int code, const std::string& text)
{
    Json::Value answer(Json::objectValue);
    answer["code"] = code;
    answer["text"] = text;
    return answer;
}

/// Takes the place of the network: keeps every request, and leaves it to the test when, how often and on which thread
/// it is answered.
/// @threads any
class RecordingTransport final : public WebTransport
{
public:
    struct Sent
    {
        WebRequestData request;
        WebCallback answer;
    };

    /// What to answer within `send`; nothing leaves the request to the test.
    using AnswerAtOnce = std::function<std::optional<Json::Value>(const WebRequestData&)>;

    /// Carries the requests of the process from now on, until `WebRequests::reset`.
    static std::shared_ptr<RecordingTransport> install(AnswerAtOnce answerAtOnce = {})
    {
        auto transport = std::make_shared<RecordingTransport>(std::move(answerAtOnce));
        WebRequests::setTransport(transport);
        return transport;
    }

    explicit RecordingTransport(AnswerAtOnce answerAtOnce)
        : answerAtOnce_(std::move(answerAtOnce))
    {
    }

    void send(WebRequestData request, WebCallback callback) override
    {
        {
            const MutexLock lock(mutex_);
            sent_.push_back({request, callback});
        }
        if (!answerAtOnce_)
            return;
        if (const auto answer = answerAtOnce_(request))
            callback(*answer);
    }

    [[nodiscard]] std::vector<Sent> sent() const
    {
        const MutexLock lock(mutex_);
        return sent_;
    }

    /// The request that was sent last.
    [[nodiscard]] Sent last() const
    {
        const MutexLock lock(mutex_);
        return sent_.back();
    }

    /// Lets go of the callbacks, as the framework does once they were called.
    void forget()
    {
        std::vector<Sent> gone;
        const MutexLock lock(mutex_);
        gone.swap(sent_);
    }

private:
    const AnswerAtOnce answerAtOnce_;
    mutable Mutex mutex_;
    std::vector<Sent> sent_ VX_GUARDED_BY(mutex_);
};

} // namespace VX::Test

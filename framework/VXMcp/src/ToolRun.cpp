#include "ToolRun.h"

#include "Replies.h"
#include "Wire.h"

#include <atomic>
#include <utility>

namespace VX::Mcp
{

namespace
{

/// How often a tool may ask before it is taken for one that never ends.
constexpr unsigned maxRounds = 32;

/// Hands over the first answer of a tool, or a failure where it gives none.
class AnswerOnce
{
public:
    explicit AnswerOnce(std::function<void(ToolResult)> take)
        : take_(std::move(take))
    {
    }

    ~AnswerOnce() { give(ToolResult::error("The tool ended without an answer.")); }

    AnswerOnce(const AnswerOnce&) = delete;
    AnswerOnce& operator=(const AnswerOnce&) = delete;

    void give(ToolResult result)
    {
        if (!isGiven_.exchange(true))
            take_(std::move(result));
    }

private:
    const std::function<void(ToolResult)> take_;
    std::atomic<bool> isGiven_ = false;
};

} // namespace

ToolRun::ToolRun(std::shared_ptr<Shared> shared, std::shared_ptr<const ClientRequest> request,
                 std::shared_ptr<const Tool> tool, Json::Value arguments)
    : shared_(std::move(shared))
    , request_(std::move(request))
    , tool_(std::move(tool))
    , arguments_(std::move(arguments))
{
}

ToolRun::~ToolRun()
{
    forget_();
}

void ToolRun::forget_()
{
    std::uint64_t number = 0;
    std::vector<std::string> open;
    {
        const MutexLock lock(mutex_);
        number = std::exchange(callNumber_, 0);
        open.swap(open_);
    }
    shared_->calls.remove(number);
    for (const auto& id : open)
        shared_->questions.remove(id);
}

ToolCall::Client ToolRun::client_(Json::Value inputResponses, std::string state) const
{
    ToolCall::Client out{.capabilities = request_->capabilities,
                         .inputResponses = std::move(inputResponses),
                         .requestState = std::move(state)};
    const Json::Value& params = request_->message.params;
    const Json::Value token = params["_meta"].isObject() ? params["_meta"]["progressToken"] : Json::Value();
    if (token.isString() || token.isIntegral())
        out.progress = [exchange = request_->exchange, token](double value, double total, const std::string& message)
        {
            Json::Value report(Json::objectValue);
            report["progressToken"] = token;
            report["progress"] = value;
            if (total > 0)
                report["total"] = total;
            if (!message.empty())
                report["message"] = message;
            exchange->notify(makeRpcNotification("notifications/progress", std::move(report)));
        };
    out.log = [request = request_](const std::string& level, const Json::Value& data)
    {
        const auto wanted = request->session ? request->session->logLevel() : request->logLevel;
        const auto known = logLevelOf(level);
        if (!wanted || !known || *known < *wanted)
            return;
        Json::Value report(Json::objectValue);
        report["level"] = level;
        report["data"] = data;
        request->exchange->notify(makeRpcNotification("notifications/message", std::move(report)));
    };
    return out;
}

void ToolRun::start(Json::Value inputResponses, std::string state)
{
    const auto call = std::make_shared<ToolCall>(arguments_, client_(std::move(inputResponses), std::move(state)));
    {
        const MutexLock lock(mutex_);
        callNumber_ = shared_->calls.add(request_->sessionId(), request_->message.id, call);
    }
    const auto answer = std::make_shared<AnswerOnce>([self = shared_from_this()](ToolResult result)
                                                     { self->take_(std::move(result)); });
    try
    {
        tool_->run(call, [answer](ToolResult result) { answer->give(std::move(result)); });
    }
    catch (const std::exception& exception)
    {
        answer->give(ToolResult::error(std::string("The tool has failed: ") + exception.what()));
    }
    bool isWaiting = false;
    {
        const MutexLock lock(mutex_);
        isWaiting = !isFinished_;
    }
    // In the older revisions clients cancel by a message, and may leave and come back.
    if (request_->isModern && isWaiting)
        request_->exchange->onGone([call] { call->cancel(); });
}

void ToolRun::take_(ToolResult result)
{
    forget_();
    if (!result.inquiry)
    {
        finish_(result);
        return;
    }
    if (!request_->isModern)
    {
        ask_(std::move(*result.inquiry));
        return;
    }
    {
        const MutexLock lock(mutex_);
        isFinished_ = true;
    }
    const std::string& state = result.inquiry->state;
    replyInputRequired(*request_, shared_->registry.info(), *result.inquiry,
                       state.empty() ? std::string() : shared_->seal.close("tool " + tool_->name, state));
}

void ToolRun::ask_(Inquiry inquiry)
{
    if (!missingCapabilities(inquiry, request_->capabilities).empty() || !request_->exchange->canStream())
    {
        finish_(ToolResult::error("This tool has to ask the user or the client something, which this client does not "
                                  "offer."));
        return;
    }
    std::vector<std::pair<std::string, Json::Value>> questions;
    bool isEndless = false;
    {
        const MutexLock lock(mutex_);
        isEndless = ++rounds_ > maxRounds;
        state_ = std::move(inquiry.state);
        for (const auto& key : inquiry.requests.getMemberNames())
        {
            // While the client thinks, it is its questions that keep this object alive.
            const auto take = [self = shared_from_this(), key](const RpcMessage& answer)
            { self->takeAnswer_(key, answer); };
            open_.push_back(shared_->questions.add(request_->sessionId(), take));
            questions.emplace_back(open_.back(), inquiry.requests[key]);
        }
    }
    if (isEndless)
    {
        finish_(ToolResult::error("The tool asks without end."));
        return;
    }
    if (questions.empty())
    {
        takeNextRound_();
        return;
    }
    request_->exchange->onGone(
        [weak = weak_from_this()]
        {
            if (const auto self = weak.lock())
                self->finish_(ToolResult::error("The client has gone."));
        });
    for (auto& [id, question] : questions)
    {
        Json::Value message(Json::objectValue);
        message["jsonrpc"] = "2.0";
        message["id"] = id;
        message["method"] = question["method"];
        message["params"] = question["params"].isObject() ? question["params"] : Json::Value(Json::objectValue);
        request_->exchange->ask(message);
    }
}

void ToolRun::takeAnswer_(const std::string& key, const RpcMessage& answer)
{
    if (!answer.error.isNull())
    {
        const std::string reason = answer.error.isObject() ? answer.error["message"].asString() : std::string();
        finish_(ToolResult::error("The client did not answer what the tool asked: " + reason));
        return;
    }
    {
        const MutexLock lock(mutex_);
        std::erase(open_, answer.id.asString());
        answers_[key] = answer.result;
        if (isFinished_ || !open_.empty())
            return;
    }
    takeNextRound_();
}

void ToolRun::takeNextRound_()
{
    Json::Value answers(Json::objectValue);
    std::string state;
    {
        const MutexLock lock(mutex_);
        answers.swap(answers_);
        state.swap(state_);
    }
    start(std::move(answers), std::move(state));
}

void ToolRun::finish_(const ToolResult& result)
{
    {
        const MutexLock lock(mutex_);
        if (std::exchange(isFinished_, true))
            return;
    }
    forget_();
    shared_->activity.addCall(tool_->name, request_->clientName, result.isError);
    reply(*request_, shared_->registry.info(), toWire(result));
}

} // namespace VX::Mcp

#include "launcher/McpBridge.h"

#include "launcher/McpPost.h"

#include <VXMesh/Json.h>

#include <fmt/format.h>
#include <json/json.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <utility>

namespace VX
{

namespace
{

constexpr const char* revisionKey = "io.modelcontextprotocol/protocolVersion";

constexpr int parseErrorCode = -32700;
constexpr int invalidRequestCode = -32600;
constexpr int unreachableCode = -32000;

// Of HTTP.
constexpr long succeeded = 200;
constexpr long sessionLost = 404;

/// For messages that come back at once, where the server is well.
constexpr auto deliveryLimit = std::chrono::milliseconds(5000);
constexpr auto finishStep = std::chrono::milliseconds(10);

constexpr const char* notRunning = "Quorvix is not running, or its server for agents is switched off. Start Quorvix, "
                                   "or let the command that connects to "
                                   "it be \"Quorvix -mcpStdio -hidden\", which starts one without a window.";

std::string lineOf(const Json::Value& value)
{
    Json::StreamWriterBuilder writer;
    writer["indentation"] = "";
    writer["emitUTF8"] = true;
    return Json::writeString(writer, value);
}

std::string textAt(const Json::Value& value, const char* key)
{
    return value.isObject() && value[key].isString() ? value[key].asString() : std::string();
}

} // namespace

/// What the client sent.
struct McpBridge::Message
{
    explicit Message(Json::Value message)
        : body(std::move(message))
    {
    }

    [[nodiscard]] std::string method() const { return textAt(body, "method"); }

    [[nodiscard]] bool isRequest() const { return body.isMember("method") && body.isMember("id"); }

    /// Whether it begins a session of the older revisions.
    [[nodiscard]] bool isBeginning() const { return method() == "initialize" && ownRevision().empty(); }

    /// The revision that a message of the newer ones carries itself.
    [[nodiscard]] std::string ownRevision() const
    {
        const Json::Value& parameters = body["params"];
        return parameters.isObject() ? textAt(parameters["_meta"], revisionKey) : std::string();
    }

    /// What the newer revisions repeat in a header.
    [[nodiscard]] std::string name() const
    {
        const std::string name = textAt(body["params"], "name");
        return name.empty() ? textAt(body["params"], "uri") : name;
    }

    const Json::Value body;
};

/// A message on its way, and what comes back.
struct McpBridge::Request
{
    Request(Message sent, std::function<void(const std::string&)> answer)
        : message(std::move(sent))
        , take(std::move(answer))
        , post([this](const std::string& text) { receive(text); })
    {
    }

    void receive(const std::string& text)
    {
        answered = true;
        take(text);
    }

    const Message message;
    const std::function<void(const std::string&)> take;
    McpPost post;
    std::atomic<bool> done = false;
    std::thread thread;
    std::string session; ///< that it was sent in
    bool answered = false;
    bool isOurs = false; ///< the client did not send it
};

McpBridge::McpBridge(FindPort findPort, Write write, std::string token)
    : findPort_(std::move(findPort))
    , writeLine_(std::move(write))
    , token_(std::move(token))
{
}

McpBridge::~McpBridge()
{
    {
        const MutexLock lock(mutex_);
        for (const std::shared_ptr<Request>& request : running_)
            request->post.abandon();
    }
    reap_(true);
}

void McpBridge::handle(const std::string& line)
{
    reap_(false);
    if (line.find_first_not_of(" \t\r") == std::string::npos)
        return;
    auto value = deserializeJsonValue(line);
    if (!value)
    {
        writeError_(Json::Value(), "The line is no JSON.", parseErrorCode);
        return;
    }
    if (!value->isObject())
    {
        writeError_(Json::Value(), "A line has to be one message, a JSON object.", invalidRequestCode);
        return;
    }
    Message message(std::move(*value));
    if (message.method() == "notifications/cancelled" && cancel_(message))
        return;
    auto request = std::make_shared<Request>(std::move(message), [this](const std::string& text) { write_(text); });
    if (request->message.isRequest())
        start_(std::move(request));
    else
        deliver_(*request);
}

bool McpBridge::cancel_(const Message& message)
{
    if (!message.body["params"].isObject())
        return false;
    const Json::Value& id = message.body["params"]["requestId"];
    const MutexLock lock(mutex_);
    const auto found = std::ranges::find_if(running_, [&](const auto& each) { return each->message.body["id"] == id; });
    // The newer revisions have no such message over HTTP: who cancels closes the stream.
    if (found == running_.end() || (*found)->message.ownRevision().empty())
        return false;
    (*found)->post.abandon();
    return true;
}

void McpBridge::start_(std::shared_ptr<Request> request)
{
    Request& started = *request;
    const auto run = [this, &started]
    {
        deliver_(started);
        started.done = true;
    };
    const MutexLock lock(mutex_);
    running_.push_back(std::move(request));
    started.thread = std::thread(run);
}

void McpBridge::deliver_(Request& request)
{
    send_(request);
    if (isSessionLost_(request) && beginAgain_(request.session))
        send_(request);
    if (request.post.isAbandoned())
        return;
    learn_(request);
    if (const std::string answer = request.post.message(); !answer.empty())
        request.receive(answer);
    if (!request.message.isRequest() || request.answered)
        return;
    writeError_(request.message.body["id"],
                !request.post.isAnswered()
                    ? notRunning
                    : fmt::format("The server for agents answered with the HTTP status {}. If it wants a token, "
                                  "check \"mcpToken\" in the configuration.",
                                  request.post.status()),
                unreachableCode);
}

void McpBridge::send_(Request& request)
{
    const auto port = findPort_();
    if (!port)
        return;
    McpPost::Headers headers{{"Content-Type", "application/json"},
                             {"Accept", "application/json, text/event-stream"},
                             {"Authorization", token_.empty() ? std::string() : "Bearer " + token_},
                             {"Expect", " "}};
    if (const std::string own = request.message.ownRevision(); !own.empty())
    {
        headers.emplace_back("MCP-Protocol-Version", own);
        headers.emplace_back("Mcp-Method", request.message.method());
        headers.emplace_back("Mcp-Name", request.message.name());
    }
    else if (!request.message.isBeginning())
    {
        const MutexLock lock(mutex_);
        request.session = session_;
        headers.emplace_back("Mcp-Session-Id", session_);
        headers.emplace_back("MCP-Protocol-Version", revision_);
    }
    // Tools may take their time. What nobody waits for may not: the next message would wait for it.
    const auto limit = request.message.isRequest() && !request.isOurs ? std::chrono::milliseconds(0) : deliveryLimit;
    request.post.send(*port, lineOf(request.message.body), headers, limit);
}

bool McpBridge::isSessionLost_(const Request& request)
{
    return request.post.status() == sessionLost && !request.session.empty() && !request.post.isAbandoned();
}

bool McpBridge::beginAgain_(const std::string& lost)
{
    const MutexLock oneAtATime(beginning_);
    Json::Value initialize;
    {
        const MutexLock lock(mutex_);
        if (session_ != lost)
            return true;
        initialize = initialize_;
    }
    Request again{Message(std::move(initialize)), [](const std::string&) {}};
    again.isOurs = true;
    send_(again);
    if (again.post.status() != succeeded)
        return false;
    learn_(again);
    Json::Value text;
    text["jsonrpc"] = "2.0";
    text["method"] = "notifications/initialized";
    Request initialized{Message(std::move(text)), [](const std::string&) {}};
    send_(initialized);
    return true;
}

void McpBridge::learn_(const Request& request)
{
    if (!request.message.isBeginning() || request.post.status() != succeeded)
        return;
    const auto answer = deserializeJsonValue(request.post.message());
    const MutexLock lock(mutex_);
    initialize_ = request.message.body;
    session_ = request.post.session();
    if (answer && answer->isObject())
        revision_ = textAt((*answer)["result"], "protocolVersion");
}

void McpBridge::reap_(bool all)
{
    std::vector<std::shared_ptr<Request>> ended;
    {
        const MutexLock lock(mutex_);
        const auto first = std::partition(running_.begin(), running_.end(),
                                          [&](const auto& request) { return !all && !request->done; });
        ended.assign(first, running_.end());
        running_.erase(first, running_.end());
    }
    for (const std::shared_ptr<Request>& request : ended)
        request->thread.join();
}

void McpBridge::finish(std::chrono::milliseconds limit)
{
    const auto end = std::chrono::steady_clock::now() + limit;
    const auto isBusy = [this]
    {
        reap_(false);
        const MutexLock lock(mutex_);
        return !running_.empty();
    };
    while (isBusy() && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(finishStep);
}

void McpBridge::write_(const std::string& line)
{
    // The protocol's lines have none within.
    std::string text = line;
    std::erase(text, '\n');
    const MutexLock lock(writing_);
    writeLine_(text);
}

void McpBridge::writeError_(const Json::Value& id, const std::string& text, int code)
{
    Json::Value message;
    message["jsonrpc"] = "2.0";
    message["id"] = id;
    message["error"]["code"] = code;
    message["error"]["message"] = text;
    write_(lineOf(message));
}

} // namespace VX

#include "launcher/McpBridge.h"

#include <VXMesh/Json.h>

#include <curl/curl.h>
#include <fmt/format.h>
#include <json/json.h>

#include <algorithm>
#include <atomic>
#include <string_view>
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

struct Headers
{
    Headers() = default;
    Headers(const Headers&) = delete;
    Headers& operator=(const Headers&) = delete;

    ~Headers() { curl_slist_free_all(list); }

    void add(const std::string& name, const std::string& value)
    {
        if (!value.empty())
            list = curl_slist_append(list, (name + ": " + value).c_str());
    }

    curl_slist* list = nullptr;
};

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
    explicit Request(Message sent)
        : message(std::move(sent))
    {
    }

    const Message message;
    std::atomic<bool> abandoned = false;
    std::atomic<bool> done = false;
    std::thread thread;

    std::function<void(const std::string&)> received;
    std::string contentType;
    std::string session;
    std::string text; ///< what came and was not handed on yet
    long status = 0;
    bool reachable = false;
    bool answered = false;

    [[nodiscard]] bool isStream() const { return contentType.starts_with("text/event-stream"); }

    /// Hands on the events that are complete.
    void takeEvents()
    {
        for (std::size_t end = text.find("\n\n"); end != std::string::npos; end = text.find("\n\n"))
        {
            std::string data;
            std::string_view rest = std::string_view(text).substr(0, end);
            while (!rest.empty())
            {
                const std::string_view line = rest.substr(0, rest.find('\n'));
                rest.remove_prefix(std::min(rest.size(), line.size() + 1));
                if (line.starts_with("data:"))
                    data += line.substr(line.starts_with("data: ") ? 6 : 5);
            }
            text.erase(0, end + 2);
            if (!data.empty())
                received(data);
        }
    }

    static std::size_t take(char* bytes, std::size_t size, std::size_t count, void* self)
    {
        auto& request = *static_cast<Request*>(self);
        for (const char c : std::string_view(bytes, size * count))
        {
            if (c != '\r')
                request.text += c;
        }
        if (request.isStream())
            request.takeEvents();
        return size * count;
    }

    static std::size_t takeHeader(char* bytes, std::size_t size, std::size_t count, void* self)
    {
        auto& request = *static_cast<Request*>(self);
        const std::string_view line(bytes, size * count);
        const std::size_t colon = line.find(':');
        if (colon == std::string_view::npos)
            return size * count;
        std::string name(line.substr(0, colon));
        std::ranges::transform(name, name.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? char(c + 32) : c; });
        std::string_view value = line.substr(colon + 1);
        value.remove_prefix(std::min(value.find_first_not_of(" \t"), value.size()));
        value = value.substr(0, value.find_last_not_of("\r\n \t") + 1);
        if (name == "content-type")
            request.contentType = value;
        else if (name == "mcp-session-id")
            request.session = value;
        return size * count;
    }

    static int isToStop(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t)
    {
        return static_cast<Request*>(self)->abandoned ? 1 : 0;
    }
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
            request->abandoned = true;
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
    auto request = std::make_shared<Request>(std::move(message));
    request->received = [this, raw = request.get()](const std::string& text)
    {
        raw->answered = true;
        write_(text);
    };
    if (request->message.isRequest())
        start_(std::move(request));
    else
        deliver_(*request);
}

bool McpBridge::cancel_(const Message& message)
{
    const Json::Value& id = message.body["params"]["requestId"];
    const MutexLock lock(mutex_);
    const auto found = std::ranges::find_if(running_, [&](const auto& each) { return each->message.body["id"] == id; });
    // The newer revisions have no such message over HTTP: who cancels closes the stream.
    if (found == running_.end() || (*found)->message.ownRevision().empty())
        return false;
    (*found)->abandoned = true;
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
    const auto port = findPort_();
    const std::unique_ptr<CURL, void (*)(CURL*)> curl(port ? curl_easy_init() : nullptr, curl_easy_cleanup);
    if (curl)
    {
        const std::string url = fmt::format("http://127.0.0.1:{}/mcp", *port);
        const std::string body = lineOf(request.message.body);
        const std::string own = request.message.ownRevision();
        Headers headers;
        headers.add("Content-Type", "application/json");
        headers.add("Accept", "application/json, text/event-stream");
        headers.add("Authorization", token_.empty() ? std::string() : "Bearer " + token_);
        headers.add("Expect", " ");
        if (!own.empty())
        {
            headers.add("MCP-Protocol-Version", own);
            headers.add("Mcp-Method", request.message.method());
            headers.add("Mcp-Name", request.message.name());
        }
        else
        {
            const MutexLock lock(mutex_);
            headers.add("Mcp-Session-Id", session_);
            headers.add("MCP-Protocol-Version", revision_);
        }
        curl_easy_setopt(curl.get(), CURLOPT_URL, url.c_str());
        curl_easy_setopt(curl.get(), CURLOPT_PROXY, "");
        curl_easy_setopt(curl.get(), CURLOPT_NOSIGNAL, 1L);
        curl_easy_setopt(curl.get(), CURLOPT_HTTPHEADER, headers.list);
        curl_easy_setopt(curl.get(), CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
        curl_easy_setopt(curl.get(), CURLOPT_POSTFIELDS, body.c_str());
        curl_easy_setopt(curl.get(), CURLOPT_WRITEFUNCTION, Request::take);
        curl_easy_setopt(curl.get(), CURLOPT_WRITEDATA, &request);
        curl_easy_setopt(curl.get(), CURLOPT_HEADERFUNCTION, Request::takeHeader);
        curl_easy_setopt(curl.get(), CURLOPT_HEADERDATA, &request);
        curl_easy_setopt(curl.get(), CURLOPT_NOPROGRESS, 0L);
        curl_easy_setopt(curl.get(), CURLOPT_XFERINFOFUNCTION, Request::isToStop);
        curl_easy_setopt(curl.get(), CURLOPT_XFERINFODATA, &request);
        request.reachable = curl_easy_perform(curl.get()) == CURLE_OK;
        curl_easy_getinfo(curl.get(), CURLINFO_RESPONSE_CODE, &request.status);
    }
    if (request.abandoned)
        return;
    learn_(request);
    if (!request.isStream() && request.text.starts_with('{'))
        request.received(request.text);
    if (!request.message.isRequest() || request.answered)
        return;
    writeError_(request.message.body["id"],
                !request.reachable
                    ? notRunning
                    : fmt::format("The server for agents answered with the HTTP status {}. If it wants a token, "
                                  "check \"mcpToken\" in the configuration.",
                                  request.status),
                unreachableCode);
}

void McpBridge::learn_(const Request& request)
{
    if (request.message.method() != "initialize" || !request.message.ownRevision().empty())
        return;
    const auto answer = deserializeJsonValue(request.text);
    const MutexLock lock(mutex_);
    session_ = request.session;
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

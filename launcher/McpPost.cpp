#include "launcher/McpPost.h"

#include <curl/curl.h>
#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <string_view>

namespace VX
{

namespace
{

struct HeaderList
{
    explicit HeaderList(const McpPost::Headers& headers)
    {
        for (const auto& [name, value] : headers)
            if (!value.empty())
                list = curl_slist_append(list, fmt::format("{}: {}", name, value).c_str());
    }

    HeaderList(const HeaderList&) = delete;
    HeaderList& operator=(const HeaderList&) = delete;

    ~HeaderList() { curl_slist_free_all(list); }

    curl_slist* list = nullptr;
};

int isToStop(void* abandoned, curl_off_t, curl_off_t, curl_off_t, curl_off_t)
{
    return *static_cast<std::atomic<bool>*>(abandoned) ? 1 : 0;
}

} // namespace

McpPost::McpPost(std::function<void(const std::string& message)> received)
    : received_(std::move(received))
{
}

void McpPost::send(std::uint16_t port, const std::string& body, const Headers& headers, std::chrono::milliseconds limit)
{
    contentType_.clear();
    session_.clear();
    text_.clear();
    status_ = 0;
    answered_ = false;
    const std::unique_ptr<CURL, void (*)(CURL*)> curl(curl_easy_init(), curl_easy_cleanup);
    if (!curl)
        return;
    const HeaderList list(headers);
    const std::string url = fmt::format("http://127.0.0.1:{}/mcp", port);
    curl_easy_setopt(curl.get(), CURLOPT_URL, url.c_str());
    curl_easy_setopt(curl.get(), CURLOPT_PROXY, "");
    curl_easy_setopt(curl.get(), CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl.get(), CURLOPT_TIMEOUT_MS, static_cast<long>(limit.count()));
    curl_easy_setopt(curl.get(), CURLOPT_HTTPHEADER, list.list);
    curl_easy_setopt(curl.get(), CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
    curl_easy_setopt(curl.get(), CURLOPT_POSTFIELDS, body.c_str());
    curl_easy_setopt(curl.get(), CURLOPT_WRITEFUNCTION, take_);
    curl_easy_setopt(curl.get(), CURLOPT_WRITEDATA, this);
    curl_easy_setopt(curl.get(), CURLOPT_HEADERFUNCTION, takeHeader_);
    curl_easy_setopt(curl.get(), CURLOPT_HEADERDATA, this);
    curl_easy_setopt(curl.get(), CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(curl.get(), CURLOPT_XFERINFOFUNCTION, isToStop);
    curl_easy_setopt(curl.get(), CURLOPT_XFERINFODATA, &abandoned_);
    answered_ = curl_easy_perform(curl.get()) == CURLE_OK;
    curl_easy_getinfo(curl.get(), CURLINFO_RESPONSE_CODE, &status_);
}

std::string McpPost::message() const
{
    return !isStream_() && text_.starts_with('{') ? text_ : std::string();
}

bool McpPost::isStream_() const
{
    return contentType_.starts_with("text/event-stream");
}

/// Hands on the events that are complete.
void McpPost::takeEvents_()
{
    for (std::size_t end = text_.find("\n\n"); end != std::string::npos; end = text_.find("\n\n"))
    {
        std::string data;
        std::string_view rest = std::string_view(text_).substr(0, end);
        while (!rest.empty())
        {
            const std::string_view line = rest.substr(0, rest.find('\n'));
            rest.remove_prefix(std::min(rest.size(), line.size() + 1));
            if (line.starts_with("data:"))
                data += line.substr(line.starts_with("data: ") ? 6 : 5);
        }
        text_.erase(0, end + 2);
        if (!data.empty())
            received_(data);
    }
}

std::size_t McpPost::take_(char* bytes, std::size_t size, std::size_t count, void* self)
{
    auto& post = *static_cast<McpPost*>(self);
    for (const char c : std::string_view(bytes, size * count))
    {
        if (c != '\r')
            post.text_ += c;
    }
    if (post.isStream_())
        post.takeEvents_();
    return size * count;
}

std::size_t McpPost::takeHeader_(char* bytes, std::size_t size, std::size_t count, void* self)
{
    auto& post = *static_cast<McpPost*>(self);
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
        post.contentType_ = value;
    else if (name == "mcp-session-id")
        post.session_ = value;
    return size * count;
}

} // namespace VX

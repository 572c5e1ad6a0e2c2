#include "HttpRecorder.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace VX::Test
{

namespace
{

/// Enough for answers that wait while others are given.
constexpr unsigned serverThreads = 8;
constexpr std::uint64_t bodyLimit = 512U << 20U;

} // namespace

HttpRecorder::HttpRecorder()
{
    auto server = HttpServer::start({.threads = serverThreads}, *this);
    if (!server)
    {
        std::fprintf(stderr, "%s\n", server.error().c_str());
        std::abort();
    }
    server_ = std::move(*server);
    port_ = server_->port();
}

HttpRecorder::~HttpRecorder()
{
    stop();
}

std::string HttpRecorder::url(std::string_view path) const
{
    return "http://127.0.0.1:" + std::to_string(port_) + std::string(path);
}

void HttpRecorder::enqueue(Answer answer)
{
    const std::lock_guard lock(mutex_);
    queue_.push_back(std::move(answer));
}

void HttpRecorder::answer(std::string path, Answer answer)
{
    this->answer(std::move(path), [answer = std::move(answer)](const HttpRequest&) { return answer; });
}

void HttpRecorder::answer(std::string path, AnswerFunction answer)
{
    const std::lock_guard lock(mutex_);
    byPath_.insert_or_assign(std::move(path), std::move(answer));
}

std::vector<HttpRequest> HttpRecorder::requests() const
{
    const std::lock_guard lock(mutex_);
    return requests_;
}

bool HttpRecorder::waitForRequests(std::size_t count, std::chrono::milliseconds deadline) const
{
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, deadline, [&] { return requests_.size() >= count; });
}

void HttpRecorder::stop()
{
    {
        const std::lock_guard lock(mutex_);
        isStopping_ = true;
    }
    changed_.notify_all();
    server_.reset();
}

tl::expected<HttpBodySink, HttpResponse> HttpRecorder::acceptBody(const HttpRequest&)
{
    return HttpBodySink{.limit = bodyLimit};
}

HttpRecorder::Answer HttpRecorder::answerTo_(const HttpRequest& request)
{
    std::unique_lock lock(mutex_);
    requests_.push_back(request);
    changed_.notify_all();
    if (!queue_.empty())
    {
        auto answer = std::move(queue_.front());
        queue_.pop_front();
        return answer;
    }
    const auto found = byPath_.find(request.path);
    if (found == byPath_.end())
        return {};
    const auto function = found->second;
    lock.unlock();
    return function(request);
}

void HttpRecorder::handle(HttpRequest request, Respond respond)
{
    auto answer = answerTo_(request);
    if (answer.delay.count() > 0)
    {
        std::unique_lock lock(mutex_);
        changed_.wait_for(lock, answer.delay, [&] { return isStopping_; });
    }
    respond({.status = answer.status,
             .headers = std::move(answer.headers),
             .body = std::move(answer.body),
             .file = std::move(answer.file)});
}

} // namespace VX::Test

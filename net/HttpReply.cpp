#include <net/HttpReply.h>

#include <utility>

namespace VX
{

void HttpReplyGate::pass(const std::weak_ptr<HttpReplyTaker>& to, const std::function<void(HttpReplyTaker&)>& action)
{
    const std::lock_guard lock(mutex_);
    if (!isOpen_)
        return;
    // Released before the lock is: a connection must not outlive the server.
    if (const auto taker = to.lock())
        action(*taker);
}

void HttpReplyGate::close()
{
    const std::lock_guard lock(mutex_);
    isOpen_ = false;
}

HttpReplyGate::Exchange::Exchange(std::shared_ptr<HttpReplyGate> gate)
    : gate_(std::move(gate))
{
    const std::lock_guard lock(gate_->mutex_);
    ++gate_->exchanges_;
}

HttpReplyGate::Exchange::~Exchange()
{
    const std::lock_guard lock(gate_->mutex_);
    if (--gate_->exchanges_ == 0)
        gate_->allAnswered_.notify_all();
}

void HttpReplyGate::waitForExchanges(std::chrono::milliseconds limit)
{
    std::unique_lock lock(mutex_);
    allAnswered_.wait_for(lock, limit, [this] { return exchanges_ == 0; });
}

HttpReply::HttpReply(std::shared_ptr<HttpReplyGate> gate, std::weak_ptr<HttpReplyTaker> to)
    : gate_(std::move(gate))
    , to_(std::move(to))
{
}

HttpReply::~HttpReply()
{
    give({.status = 500});
}

void HttpReply::give(HttpResponse response)
{
    if (!isGiven_.exchange(true))
        gate_->pass(to_, [&](HttpReplyTaker& taker) { taker.takeReply(std::move(response)); });
}

} // namespace VX

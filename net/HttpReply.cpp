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

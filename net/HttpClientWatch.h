#pragma once

#include <functional>
#include <mutex>

namespace VX
{

/// Tells the handler of a request whether the client still waits for the answer.
/// @threads any, for all operations
class HttpClientWatch
{
public:
    /// @param begin  called when somebody wants to know for the first time
    explicit HttpClientWatch(std::function<void()> begin);

    HttpClientWatch(const HttpClientWatch&) = delete;
    HttpClientWatch& operator=(const HttpClientWatch&) = delete;

    /// Calls `callback` when the client closes its connection, or its sending half, before it has the whole answer; at
    /// once where it has done so. It is called on a thread of the server, and not when the server itself stops. Of
    /// several callbacks the last one counts, an empty one for none. A client that has sent more requests meanwhile is
    /// not seen to go.
    void onGone(std::function<void()> callback);

    /// For the server: the client has gone.
    void reportGone();

private:
    std::mutex mutex_;
    std::function<void()> begin_;
    std::function<void()> callback_;
    bool isGone_ = false;
};

} // namespace VX

#pragma once

#include <quorvix/Export.h>

#include <VXViewer/WebRequest.h>

#include <json/value.h>

#include <memory>
#include <optional>

namespace VX
{

/// The answer of one web request, to be polled from the UI loop or waited for. A future may be destroyed before its
/// answer arrives; copies share the answer.
class QUORVIX_API WebRequestFuture
{
public:
    /// Sends `request` at once. A request that is not asynchronous has its answer before this returns.
    explicit WebRequestFuture(WebRequest request);

    /// Polls: a copy of the answer where it has arrived. The answer stays.
    /// @threads any
    [[nodiscard]] std::optional<Json::Value> operator()() const;

    /// Waits for the answer and returns a copy of it. The answer stays.
    /// @threads any but the one that delivers the answer; one thread at a time may wait
    [[nodiscard]] Json::Value get() const;

private:
    struct State;

    std::shared_ptr<State> state_;
};

} // namespace VX

#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>

namespace VX
{

/// The body of an answer that is written while the client reads it: `HttpResponse::stream`. It ends with `end`, or
/// when the client goes; each stream belongs to one answer.
/// @threads any, for all operations
class HttpBodyStream
{
public:
    HttpBodyStream() = default;

    /// @param heartbeat  bytes that mean nothing to the client, sent whenever nothing else was for the time `pause`
    HttpBodyStream(std::string heartbeat, std::chrono::milliseconds pause);

    HttpBodyStream(const HttpBodyStream&) = delete;
    HttpBodyStream& operator=(const HttpBodyStream&) = delete;

    /// Appends to the body.
    /// @return false where nobody reads any more, or the body has ended; the bytes are dropped then
    bool write(std::string_view bytes);

    /// Completes the body.
    void end();

    /// Bytes written and not sent yet: they pile up where the client reads slowly.
    [[nodiscard]] std::size_t waiting() const;

    /// What has piled up.
    struct Piece
    {
        std::string bytes;
        bool isLast = false;
        bool isClosed = false;
    };

    /// For the server, as are the operations below.
    Piece take();

    /// Calls `wake` from now on when there is something to take.
    void attach(std::function<void()> wake);

    /// Nobody reads any more; the last piece is the one before.
    void close();

    [[nodiscard]] const std::string& heartbeat() const { return heartbeat_; }

    /// Zero: none.
    [[nodiscard]] std::chrono::milliseconds pause() const { return pause_; }

private:
    const std::string heartbeat_;
    const std::chrono::milliseconds pause_{0};
    mutable std::mutex mutex_;
    std::function<void()> wake_;
    std::string bytes_;
    bool isEnded_ = false;
    bool isClosed_ = false;
};

} // namespace VX

#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace VX
{

/// A message on its way to a server of the Model Context Protocol on this computer, and what comes back. It may be sent
/// again.
class McpPost
{
public:
    /// By name; those with an empty value are left out.
    using Headers = std::vector<std::pair<std::string, std::string>>;

    /// @param received  takes each message of an answer that is a stream of events; called on the thread that sends
    explicit McpPost(std::function<void(const std::string& message)> received);

    McpPost(const McpPost&) = delete;
    McpPost& operator=(const McpPost&) = delete;

    /// Sends `body` and returns when the answer has ended, or there is none.
    /// @param limit  for all of it; 0: none
    void send(std::uint16_t port, const std::string& body, const Headers& headers, std::chrono::milliseconds limit);

    /// Ends the sending, now and for good. @threads any
    void abandon() { abandoned_ = true; }

    [[nodiscard]] bool isAbandoned() const { return abandoned_; }

    /// Whether there was an answer, and all of it has come.
    [[nodiscard]] bool isAnswered() const { return answered_; }

    /// Of HTTP.
    [[nodiscard]] long status() const { return status_; }

    /// The message that the answer is; empty where it is none, or was a stream.
    [[nodiscard]] std::string message() const;

    /// The session that the server names; empty where it does not.
    [[nodiscard]] const std::string& session() const { return session_; }

private:
    [[nodiscard]] bool isStream_() const;
    void takeEvents_();

    static std::size_t take_(char* bytes, std::size_t size, std::size_t count, void* self);
    static std::size_t takeHeader_(char* bytes, std::size_t size, std::size_t count, void* self);

    const std::function<void(const std::string&)> received_;
    std::atomic<bool> abandoned_ = false;
    std::string contentType_;
    std::string session_;
    std::string text_; ///< what came and was not handed on yet
    long status_ = 0;
    bool answered_ = false;
};

} // namespace VX

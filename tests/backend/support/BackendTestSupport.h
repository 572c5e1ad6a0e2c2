#pragma once

#include "tests/support/WaitUntil.h"

#include <json/value.h>

#include <backend/JobQueue.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace VX::Test
{

/// The program that stands in for the converter; FakeConverter.cpp says what it understands.
[[nodiscard]] std::filesystem::path fakeConverter();

/// Writes a zip archive of these entries, names and contents, and gives back its bytes.
[[nodiscard]] std::string zipOf(const std::vector<std::pair<std::string, std::string>>& entries);

[[nodiscard]] std::vector<std::string> readLines(const std::filesystem::path& file);

/// The next job of the queue; an empty one, and a failure of the test, where there is none.
[[nodiscard]] ClaimedJob claimJob(JobQueue& queue);

/// An answer of the service.
struct ClientAnswer
{
    int status = 0; ///< 0 where none came
    std::string head;
    std::string body;

    [[nodiscard]] Json::Value json() const;

    /// The "message" of its "error"; empty where there is none.
    [[nodiscard]] std::string errorMessage() const;
};

/// Speaks the protocol of the service, each request on a connection of its own.
/// @threads any
class Client
{
public:
    explicit Client(std::uint16_t port)
        : port_(port)
    {
    }

    /// @param target   path and query, or a whole link of the service
    /// @param headers  more header fields, each with its line end
    [[nodiscard]] ClientAnswer send(std::string_view method, std::string target, std::string_view body = {},
                                    std::string_view headers = {}) const;

    [[nodiscard]] ClientAnswer post(const std::string& path, const Json::Value& body) const;

    /// Asks for a link and uploads an archive whose "input" holds `input`. @return the job's identifier
    [[nodiscard]] std::string upload(const std::string& input) const;

    [[nodiscard]] ClientAnswer convert(const std::string& id) const;

    [[nodiscard]] ClientAnswer status(const std::string& id) const;

    /// Asks for the status until the job has ended. @return the last answer
    [[nodiscard]] ClientAnswer waitForEnd(const std::string& id) const;

    /// All of it. @return the content of the result; or, behind "error: ", the message of the failure
    [[nodiscard]] std::string run(const std::string& input) const;

private:
    std::uint16_t port_;
};

/// The body of a request to the service, with these members besides those that are always the same.
[[nodiscard]] Json::Value converterBody(const std::string& requestId = {});

} // namespace VX::Test

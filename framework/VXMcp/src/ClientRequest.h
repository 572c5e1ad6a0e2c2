#pragma once

#include "Exchange.h"
#include "LogLevel.h"
#include "Session.h"

#include <memory>
#include <optional>
#include <string>

namespace VX::Mcp
{

/// The newest revision: without sessions, each request says all about its client.
inline constexpr const char* modernVersion = "2026-07-28";
/// The newest of the revisions that begin with "initialize".
inline constexpr const char* legacyVersion = "2025-11-25";
inline constexpr const char* olderLegacyVersion = "2025-06-18";

/// One request with all that is known about who sent it.
struct ClientRequest
{
    RpcMessage message;
    bool isModern = false;
    std::shared_ptr<Session> session{}; ///< null: modern, or a client that leaves it out
    std::string clientName{};
    Json::Value capabilities{Json::objectValue};
    std::optional<LogLevel> logLevel{}; ///< the least level of log messages that it wants; empty: none
    std::shared_ptr<Exchange> exchange{};

    [[nodiscard]] std::string sessionId() const { return session ? session->id : std::string(); }
};

} // namespace VX::Mcp

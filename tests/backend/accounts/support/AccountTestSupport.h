#pragma once

#include "tests/backend/support/BackendTestSupport.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>
#include <json/value.h>

#include <backend/Router.h>
#include <backend/ServerConfig.h>
#include <backend/accounts/AccountServices.h>
#include <net/HttpServer.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <memory>
#include <string>

namespace VX::Test
{

/// Does one identity operation over HTTP, as the application does: with no header but the target.
/// @param headers  more header fields, each with its line end
[[nodiscard]] ClientAnswer callIdentity(std::uint16_t port, const std::string& operation, const Json::Value& body,
                                        const std::string& headers = {});

/// Calls with these arguments.
[[nodiscard]] Json::Value passwordSignIn(const std::string& address, const std::string& password);
[[nodiscard]] Json::Value tokenSignIn(const std::string& token);
[[nodiscard]] Json::Value userBody(const std::string& address, const std::string& password = {},
                                   const std::string& code = {});

/// How many messages are in the outbox.
[[nodiscard]] std::size_t mailCount(const std::filesystem::path& outbox);

/// The newest message; empty where there is none.
[[nodiscard]] std::string newestMail(const std::filesystem::path& outbox);

/// The six-digit number in a message, and a failure of the test where there is not exactly one.
[[nodiscard]] std::string codeIn(const std::string& mail);

/// "TYPE: MESSAGE" of an answer with status 400; otherwise the status and the body.
[[nodiscard]] std::string errorOf(const ClientAnswer& answer);

/// The account services of a data folder behind a real server, with a clock of their own.
class AccountServiceTest : public ::testing::Test
{
public:
    static constexpr const char* address = "ann@example.com";
    static constexpr const char* password = "passw0rd!";

    void start();

    [[nodiscard]] std::uint16_t port() const { return server->port(); }

    [[nodiscard]] Client client() const { return Client(port()); }

    [[nodiscard]] ClientAnswer call(const std::string& operation, const Json::Value& body,
                                    const std::string& headers = {}) const;

    [[nodiscard]] ClientAnswer signIn(const std::string& name = address, const std::string& word = password) const;

    /// Signs up and confirms.
    void makeAccount(const std::string& name = address, const std::string& word = password) const;

    [[nodiscard]] std::string newestCode() const { return codeIn(newestMail(outbox)); }

    /// One that is not `code`.
    [[nodiscard]] static std::string wrongCode(const std::string& code)
    {
        return code == "000000" ? "111111" : "000000";
    }

    TempDir folder;
    const std::filesystem::path data = folder.path() / "data";
    const std::filesystem::path outbox = data / "outbox";
    ServerConfig config;
    std::atomic<std::chrono::system_clock::time_point> now{std::chrono::system_clock::now()};
    std::unique_ptr<AccountServices> services;
    std::unique_ptr<Router> router;
    std::unique_ptr<HttpServer> server;
};

} // namespace VX::Test

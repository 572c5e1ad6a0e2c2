#pragma once

#include "AuthWindowAccess.h"
#include "tests/quorvix/support/AccountsFixture.h"
#include <quorvix/auth/AuthToken.h>
#include <quorvix/auth/Cognito.h>

#include <VXMesh/Json.h>
#include <VXMesh/UserFolders.h>
#include <VXViewer/CommandLoop.h>

#include <fmt/format.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace VX::Test
{

/// A sign-in window without an interface; nothing runs until the test lets the loop run, and no request is answered
/// until the test does.
class AuthWindowFixture : public AccountsFixture
{
protected:
    static constexpr const char* ann = "ann@example.com";

    void TearDown() override
    {
        window_.reset();
        CommandLoop::clear();
        AccountsFixture::TearDown();
    }

    /// Makes the window and lets the loop begin.
    AuthWindowAccess start_()
    {
        window_.emplace(false);
        CommandLoop::processCommands();
        return AuthWindowAccess(*window_);
    }

    /// The window on its sign-in screen with what the user has typed.
    AuthWindowAccess startWith_(const std::string& email, const std::string& password)
    {
        const AuthWindowAccess window = start_();
        window.email() = email;
        window.password() = password;
        return window;
    }

    static AuthToken tokenOf_(const std::string& email)
    {
        return {email, "refresh-" + email, Cognito::getEndpoint(email)};
    }

    /// What the account service was asked so far.
    [[nodiscard]] std::vector<WebRequestData> asked_() const
    {
        std::vector<WebRequestData> all;
        for (const auto& sent : transport_->sent())
        {
            if (sent.request.url == "https://account.example.com/auth")
                all.push_back(sent.request);
        }
        return all;
    }

    /// The log names of those requests: "signInEmail", …
    [[nodiscard]] std::vector<std::string> askedFor_() const
    {
        std::vector<std::string> names;
        for (const WebRequestData& request : asked_())
            names.push_back(request.logName);
        return names;
    }

    [[nodiscard]] Json::Value lastBody_() const
    {
        return deserializeJsonValue(asked_().back().body.value_or("")).value_or(Json::Value());
    }

    /// Answers the account request that was sent last.
    void answerAccount_(int code, const std::string& text)
    {
        RecordingTransport::Sent last;
        for (const auto& sent : transport_->sent())
        {
            if (sent.request.url == "https://account.example.com/auth")
                last = sent;
        }
        last.answer(makeAnswer(code, text));
    }

    /// Answers it as where no connection was made.
    void answerNothing_()
    {
        Json::Value answer = makeAnswer(0, "");
        answer.removeMember("text");
        answer["error"] = "Cannot connect to account.example.com. Check the network connection.";
        const auto sent = transport_->sent();
        sent.back().answer(answer);
    }

    static std::string refusal_(const std::string& message)
    {
        return fmt::format(R"({{"__type":"NotAuthorizedException","message":"{}"}})", message);
    }

    static std::string tokens_(const std::string& refreshToken = "new refresh token")
    {
        return fmt::format(R"({{"AuthenticationResult":{{"AccessToken":"access token","RefreshToken":"{}"}}}})",
                           refreshToken);
    }

    static std::string sentTo_(const std::string& destination)
    {
        return fmt::format(R"({{"CodeDeliveryDetails":{{"Destination":"{}"}}}})", destination);
    }

    std::optional<AuthWindow> window_;
};

} // namespace VX::Test

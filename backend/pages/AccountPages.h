#pragma once

#include "AccountPageViews.h"
#include "FormGuard.h"
#include "backend/accounts/IdentityProvider.h"

#include <json/value.h>

#include <net/HttpServer.h>

#include <functional>
#include <map>
#include <string>

namespace VX
{

class Router;

/// The pages /sign-in, /sign-up and /forgot-password, for a browser. Their forms do identity operations; a sign-in ends
/// in the deep link quorvix://auth, which hands the refresh token to the application.
/// @threads any
class AccountPages
{
public:
    struct Settings
    {
        bool isSecure = false;          ///< whether browsers reach the pages by https
        bool trustForwardedFor = false; ///< see `peerOf`
    };

    /// `provider` must outlive it.
    AccountPages(IdentityProvider& provider, const AccountSecrets& secrets, Settings settings);

    void addRoutes(Router& router);

private:
    using Fields = std::map<std::string, std::string>;
    using Respond = HttpHandler::Respond;
    using View = std::function<std::string(const PageContext&)>;

    /// A form that somebody sent, with all that its answer needs.
    struct Form
    {
        Fields fields;
        PageContext page;
        std::string cookie;
        std::string peer;
        Json::Value metadata;
    };

    /// What an operation answered.
    struct Outcome
    {
        std::string errorType; ///< empty where it was done
        std::string error;     ///< for the user
        Json::Value document;
    };

    void addPage_(Router& router, const std::string& path, const View& view,
                  void (AccountPages::*submit)(const Form&, const Respond&) const);
    [[nodiscard]] Form formOf_(const HttpRequest& request) const;
    void signIn_(const Form& form, const Respond& respond) const;
    void signUp_(const Form& form, const Respond& respond) const;
    void confirm_(const Form& form, const Respond& respond) const;
    void resend_(const Form& form, const Respond& respond) const;
    void forgot_(const Form& form, const Respond& respond) const;
    void reset_(const Form& form, const Respond& respond) const;
    void call_(const std::string& operation, Json::Value body, const Form& form,
               std::function<void(const Outcome&)> then) const;
    [[nodiscard]] static Outcome outcomeOf_(const IdentityAnswer& answer);
    [[nodiscard]] HttpResponse answer_(const Form& form, const std::string& html, int status = 200) const;

    IdentityProvider& provider_;
    const FormGuard guard_;
    const Settings settings_;
};

} // namespace VX

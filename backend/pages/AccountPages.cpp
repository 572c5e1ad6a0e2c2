#include "AccountPages.h"

#include "HtmlText.h"
#include "PageAssets.h"
#include "backend/Router.h"
#include "backend/accounts/AuthApi.h"

#include <VXMesh/Json.h>

#include <fmt/format.h>
#include <json/writer.h>

#include <string_view>
#include <utility>

namespace VX
{

namespace
{

/// Of the query, what a page keeps, in bytes.
constexpr std::size_t longestParameter = 100;

HttpResponse asset(std::string_view type, std::string_view content)
{
    HttpResponse response;
    response.headers["Content-Type"] = type;
    response.headers["X-Content-Type-Options"] = "nosniff";
    response.headers["Cache-Control"] = "no-cache";
    response.body = content;
    return response;
}

HttpResponse page(const std::string& html, int status)
{
    HttpResponse response = asset("text/html; charset=utf-8", html);
    response.status = status;
    // It may hold a token, and what was typed.
    response.headers["Cache-Control"] = "no-store";
    response.headers["Content-Security-Policy"] =
        "default-src 'none'; style-src 'self'; script-src 'self'; form-action 'self'; base-uri 'none'; "
        "frame-ancestors 'none'";
    response.headers["Cross-Origin-Opener-Policy"] = "same-origin";
    response.headers["Referrer-Policy"] = "same-origin";
    return response;
}

std::string field(const std::map<std::string, std::string>& fields, const std::string& name)
{
    const auto found = fields.find(name);
    return found == fields.end() ? std::string() : found->second;
}

/// What is wrong, for the user: the provider's text without what only programs want to know.
std::string readableError(const std::string& message)
{
    for (const std::string_view prefix : {"PreSignUp failed with error ", "Password did not conform with policy: "})
        if (message.starts_with(prefix))
            return message.substr(prefix.size());
    return message;
}

std::string textMember(const Json::Value& document, const char* object, const char* name)
{
    const Json::Value& null = Json::Value::nullSingleton();
    const Json::Value& inner = document.isObject() ? document[object] : null;
    const Json::Value& value = inner.isObject() ? inner[name] : null;
    return value.isString() ? value.asString() : std::string();
}

std::string destinationOf(const Json::Value& document)
{
    return textMember(document, "CodeDeliveryDetails", "Destination");
}

std::string deepLink(const std::string& address, const std::string& refreshToken)
{
    return fmt::format("quorvix://auth?email={}&refresh-token={}", urlEscaped(address), urlEscaped(refreshToken));
}

Json::Value userBody(const std::string& address)
{
    Json::Value body;
    body["Username"] = address;
    return body;
}

PageContext withError(PageContext context, const std::string& error)
{
    context.error = error;
    return context;
}

PageContext withNotice(PageContext context, const std::string& notice)
{
    context.notice = notice;
    return context;
}

} // namespace

AccountPages::AccountPages(IdentityProvider& provider, const AccountSecrets& secrets, Settings settings)
    : provider_(provider)
    , guard_(secrets, settings.isSecure)
    , settings_(settings)
{
}

void AccountPages::addRoutes(Router& router)
{
    addPage_(router, "/sign-in", signInPage, &AccountPages::signIn_);
    addPage_(router, "/sign-up", signUpPage, &AccountPages::signUp_);
    addPage_(router, "/forgot-password", forgotPasswordPage, &AccountPages::forgot_);
    router.add("GET", "/account-pages/style.css",
               [](const auto&, const auto& respond) { respond(asset("text/css; charset=utf-8", pageStyle())); });
    router.add("GET", "/account-pages/script.js", [](const auto&, const auto& respond)
               { respond(asset("text/javascript; charset=utf-8", pageScript())); });
}

void AccountPages::addPage_(Router& router, const std::string& path, const View& view,
                            void (AccountPages::*submit)(const Form&, const Respond&) const)
{
    router.add("GET", path,
               [this, view](const HttpRequest& request, const Respond& respond)
               {
                   const Form form = formOf_(request);
                   respond(answer_(form, view(form.page)));
               });
    router.add("POST", path,
               [this, view, submit](const HttpRequest& request, const Respond& respond)
               {
                   const Form form = formOf_(request);
                   if (!guard_.isOurs(request, field(form.fields, "form-token")))
                       return respond(answer_(
                           form, view(withError(form.page, "This page was out of date. Please try again.")), 403));
                   (this->*submit)(form, respond);
               });
}

AccountPages::Form AccountPages::formOf_(const HttpRequest& request) const
{
    Form form;
    form.fields = parseForm(request.body);
    form.cookie = guard_.cookieOf(request);
    form.peer = peerOf(request, settings_.trustForwardedFor);
    form.page.formToken = guard_.tokenFor(form.cookie);
    form.page.address = field(form.fields, "email");
    for (const char* name : {"source", "platform", "version"})
    {
        const auto parameter = request.query.find(name);
        if (parameter == request.query.end())
            continue;
        const std::string value = parameter->second.substr(0, longestParameter);
        form.page.query += fmt::format("{}{}={}", form.page.query.empty() ? '?' : '&', name, urlEscaped(value));
        form.metadata[name] = value;
    }
    return form;
}

HttpResponse AccountPages::answer_(const Form& form, const std::string& html, int status) const
{
    HttpResponse response = page(html, status);
    response.headers["Set-Cookie"] = guard_.cookieHeader(form.cookie);
    return response;
}

void AccountPages::call_(const std::string& operation, Json::Value body, const Form& form,
                         std::function<void(const Outcome&)> then) const
{
    if (!form.metadata.isNull())
        body["ClientMetadata"] = form.metadata;
    provider_.call(
        {.operation = operation, .body = Json::writeString(Json::StreamWriterBuilder(), body), .peer = form.peer},
        [then = std::move(then)](const IdentityAnswer& answer) { then(outcomeOf_(answer)); });
}

AccountPages::Outcome AccountPages::outcomeOf_(const IdentityAnswer& answer)
{
    Outcome outcome;
    outcome.document = deserializeJsonValue(answer.body).value_or(Json::Value());
    if (answer.status == 200 && outcome.document.isObject())
        return outcome;
    const Json::Value none(Json::objectValue);
    const Json::Value& document = outcome.document.isObject() ? outcome.document : none;
    outcome.errorType = document["__type"].isString() ? document["__type"].asString() : "Unknown";
    outcome.error = document["message"].isString() ? readableError(document["message"].asString())
                                                   : "The account service failed: try again.";
    return outcome;
}

void AccountPages::signIn_(const Form& form, const Respond& respond) const
{
    Json::Value body;
    body["AuthFlow"] = "USER_PASSWORD_AUTH";
    body["AuthParameters"]["USERNAME"] = form.page.address;
    body["AuthParameters"]["PASSWORD"] = field(form.fields, "password");
    call_("InitiateAuth", body, form,
          [this, form, respond](const Outcome& outcome)
          {
              const std::string token = textMember(outcome.document, "AuthenticationResult", "RefreshToken");
              if (outcome.errorType == "UserNotConfirmedException")
                  respond(answer_(form, confirmSignUpPage(withError(form.page, "Confirm your account first."), {})));
              else if (!outcome.errorType.empty() || token.empty())
                  respond(answer_(
                      form, signInPage(withError(form.page, outcome.error.empty() ? "Unknown error." : outcome.error)),
                      400));
              else
                  respond(answer_(form, signedInPage(deepLink(form.page.address, token))));
          });
}

void AccountPages::signUp_(const Form& form, const Respond& respond) const
{
    const std::string step = field(form.fields, "step");
    if (step == "confirm")
        return confirm_(form, respond);
    if (step == "resend")
        return resend_(form, respond);
    Json::Value body = userBody(form.page.address);
    body["Password"] = field(form.fields, "password");
    call_("SignUp", body, form,
          [this, form, respond](const Outcome& outcome)
          {
              if (!outcome.errorType.empty())
                  return respond(answer_(form, signUpPage(withError(form.page, outcome.error)), 400));
              respond(answer_(form, confirmSignUpPage(form.page, destinationOf(outcome.document))));
          });
}

void AccountPages::confirm_(const Form& form, const Respond& respond) const
{
    Json::Value body = userBody(form.page.address);
    body["ConfirmationCode"] = field(form.fields, "code");
    call_("ConfirmSignUp", body, form,
          [this, form, respond](const Outcome& outcome)
          {
              if (!outcome.errorType.empty())
                  return respond(answer_(form, confirmSignUpPage(withError(form.page, outcome.error), {}), 400));
              respond(answer_(form, signInPage(withNotice(form.page, "Your account is confirmed. Sign in to go on."))));
          });
}

void AccountPages::resend_(const Form& form, const Respond& respond) const
{
    call_("ResendConfirmationCode", userBody(form.page.address), form,
          [this, form, respond](const Outcome& outcome)
          {
              if (!outcome.errorType.empty())
                  return respond(answer_(form, confirmSignUpPage(withError(form.page, outcome.error), {}), 400));
              respond(answer_(form, confirmSignUpPage(withNotice(form.page, "Here is another code."),
                                                      destinationOf(outcome.document))));
          });
}

void AccountPages::forgot_(const Form& form, const Respond& respond) const
{
    if (field(form.fields, "step") == "reset")
        return reset_(form, respond);
    call_("ForgotPassword", userBody(form.page.address), form,
          [this, form, respond](const Outcome& outcome)
          {
              if (!outcome.errorType.empty())
                  return respond(answer_(form, forgotPasswordPage(withError(form.page, outcome.error)), 400));
              respond(answer_(form, resetPasswordPage(form.page, destinationOf(outcome.document))));
          });
}

void AccountPages::reset_(const Form& form, const Respond& respond) const
{
    Json::Value body = userBody(form.page.address);
    body["ConfirmationCode"] = field(form.fields, "code");
    body["Password"] = field(form.fields, "password");
    call_("ConfirmForgotPassword", body, form,
          [this, form, respond](const Outcome& outcome)
          {
              if (!outcome.errorType.empty())
                  return respond(answer_(form, resetPasswordPage(withError(form.page, outcome.error), {}), 400));
              respond(answer_(form, signInPage(withNotice(form.page, "Your password is changed. Sign in to go on."))));
          });
}

} // namespace VX

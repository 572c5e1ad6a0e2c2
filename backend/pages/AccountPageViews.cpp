#include "AccountPageViews.h"

#include "HtmlText.h"

#include <fmt/format.h>

#include <string_view>

namespace VX
{

namespace
{

std::string document(std::string_view title, const std::string& content)
{
    return fmt::format("<!DOCTYPE html>\n"
                       "<html lang=\"en\">\n"
                       "<head>\n"
                       "<meta charset=\"utf-8\">\n"
                       "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
                       "<title>{0} - Quorvix</title>\n"
                       "<link rel=\"stylesheet\" href=\"/account-pages/style.css\">\n"
                       "<script src=\"/account-pages/script.js\" defer></script>\n"
                       "</head>\n"
                       "<body>\n"
                       "<main>\n"
                       "<p class=\"brand\">Quorvix</p>\n"
                       "<h1>{0}</h1>\n"
                       "{1}"
                       "</main>\n"
                       "</body>\n"
                       "</html>\n",
                       title, content);
}

std::string messages(const PageContext& context)
{
    std::string html;
    if (!context.error.empty())
        html += fmt::format("<p class=\"error\" role=\"alert\" id=\"error\">{}</p>\n", htmlEscaped(context.error));
    if (!context.notice.empty())
        html += fmt::format("<p class=\"notice\" role=\"status\" id=\"notice\">{}</p>\n", htmlEscaped(context.notice));
    return html;
}

std::string hidden(std::string_view name, const std::string& value)
{
    return fmt::format("<input type=\"hidden\" name=\"{}\" value=\"{}\">\n", name, htmlEscaped(value));
}

/// A form of the page `path` that does `step`.
std::string form(const PageContext& context, std::string_view path, std::string_view step, const std::string& content)
{
    return fmt::format("<form method=\"post\" action=\"/{}{}\">\n{}{}{}</form>\n", path, htmlEscaped(context.query),
                       hidden("form-token", context.formToken), hidden("step", std::string(step)), content);
}

std::string button(std::string_view label, bool isPlain = false)
{
    return fmt::format("<button type=\"submit\"{}>{}</button>\n", isPlain ? " class=\"plain\"" : "", label);
}

std::string addressInput(const PageContext& context)
{
    return fmt::format("<label for=\"email\">Email</label>\n"
                       "<input id=\"email\" name=\"email\" type=\"email\" value=\"{}\" autocomplete=\"username\" "
                       "required{}>\n",
                       htmlEscaped(context.address), context.address.empty() ? " autofocus" : "");
}

std::string codeInput()
{
    return "<label for=\"code\">Code</label>\n"
           "<input id=\"code\" name=\"code\" inputmode=\"numeric\" autocomplete=\"one-time-code\" required "
           "autofocus>\n";
}

/// The same rules that the service itself looks at.
/// @param isFirst  whether it is the first that is to be typed
std::string newPasswordInput(std::string_view label, bool isFirst)
{
    constexpr std::pair<const char*, const char*> rules[] = {
        {"^.{8,99}$", "At least 8 chars"},
        {"[a-z]", "Lowercase letter"},
        {"[0-9]", "Number"},
        {R"([\^$*.\[\]{}()?\-"!@#%&\/,><':;|_~`])", "Special character"},
    };
    std::string html = fmt::format("<label for=\"password\">{}</label>\n"
                                   "<input id=\"password\" name=\"password\" type=\"password\" "
                                   "autocomplete=\"new-password\" aria-describedby=\"rules\" required{}>\n"
                                   "<ul class=\"rules\" id=\"rules\" data-for=\"password\">\n",
                                   label, isFirst ? " autofocus" : "");
    for (const auto& [pattern, text] : rules)
        html += fmt::format("<li data-rule=\"{}\">{}<span class=\"hidden-text\"></span></li>\n", htmlEscaped(pattern),
                            text);
    return html + "</ul>\n";
}

std::string link(const PageContext& context, std::string_view path, std::string_view text)
{
    return fmt::format("<a href=\"/{}{}\">{}</a>", path, htmlEscaped(context.query), text);
}

/// Says where the code is, which only the answer to asking for one tells.
std::string whereTheCodeIs(const PageContext& context, std::string_view kind, const std::string& destination)
{
    if (destination.empty())
        return fmt::format("<p>Enter the {} from the email to {}.</p>\n", kind, htmlEscaped(context.address));
    return fmt::format("<p>We have sent a {} by email to {}.</p>\n", kind, htmlEscaped(destination));
}

} // namespace

std::string signInPage(const PageContext& context)
{
    const std::string focus = context.address.empty() ? "" : " autofocus";
    const std::string content =
        messages(context) +
        form(context, "sign-in", "sign-in",
             addressInput(context) +
                 fmt::format("<label for=\"password\">Password</label>\n"
                             "<input id=\"password\" name=\"password\" type=\"password\" "
                             "autocomplete=\"current-password\" required{}>\n",
                             focus) +
                 button("Sign In")) +
        fmt::format("<p>{}</p>\n<p>Need an account? {}</p>\n",
                    link(context, "forgot-password", "Forgot your password?"), link(context, "sign-up", "Sign Up"));
    return document("Sign In", content);
}

std::string signUpPage(const PageContext& context)
{
    const std::string content =
        messages(context) +
        form(context, "sign-up", "sign-up",
             addressInput(context) + newPasswordInput("Password", !context.address.empty()) + button("Sign Up")) +
        fmt::format("<p>Already have an account? {}</p>\n", link(context, "sign-in", "Sign In"));
    return document("Sign Up", content);
}

std::string confirmSignUpPage(const PageContext& context, const std::string& destination)
{
    const std::string content =
        messages(context) + whereTheCodeIs(context, "code", destination) +
        form(context, "sign-up", "confirm",
             hidden("email", context.address) + codeInput() + button("Confirm Account")) +
        form(context, "sign-up", "resend", hidden("email", context.address) + button("Send another code", true)) +
        fmt::format("<p>Back to {}</p>\n", link(context, "sign-up", "Sign Up"));
    return document("Confirm Sign Up", content);
}

std::string forgotPasswordPage(const PageContext& context)
{
    const std::string content =
        messages(context) +
        form(context, "forgot-password", "send", addressInput(context) + button("Reset My Password")) +
        fmt::format("<p>Back to {}</p>\n", link(context, "sign-in", "Sign In"));
    return document("Reset Password", content);
}

std::string resetPasswordPage(const PageContext& context, const std::string& destination)
{
    const std::string content = messages(context) + whereTheCodeIs(context, "password reset code", destination) +
                                form(context, "forgot-password", "reset",
                                     hidden("email", context.address) + codeInput() +
                                         newPasswordInput("New Password", false) + button("Change Password")) +
                                fmt::format("<p>Back to {}</p>\n", link(context, "sign-in", "Sign In"));
    return document("Confirm Reset Password", content);
}

std::string signedInPage(const std::string& deepLink)
{
    return document("You are signed in",
                    fmt::format("<p role=\"status\">Go on in the application. If your browser asks, allow it to open "
                                "Quorvix.</p>\n"
                                "<a class=\"button\" id=\"open\" href=\"{}\">Open Quorvix</a>\n"
                                "<p class=\"faint\">You can close this page then.</p>\n",
                                htmlEscaped(deepLink)));
}

} // namespace VX

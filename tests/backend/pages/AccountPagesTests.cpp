#include "tests/backend/accounts/support/AccountTestSupport.h"
#include "tests/support/LogCapture.h"

#include <gmock/gmock.h>

#include <backend/pages/HtmlText.h>

#include <map>
#include <regex>

namespace VX::Test
{

namespace
{

using ::testing::HasSubstr;
using ::testing::Not;

/// A browser of one tab that sends the forms it is shown.
class AccountPagesTest : public AccountServiceTest
{
public:
    AccountPagesTest() { start(); }

    /// The value of a header field of the last answer; empty where there is none.
    [[nodiscard]] std::string header(const std::string& name) const
    {
        const auto start = answer.head.find("\r\n" + name + ": ");
        if (start == std::string::npos)
            return {};
        const auto value = start + name.size() + 4;
        return answer.head.substr(value, answer.head.find("\r\n", value) - value);
    }

    void open(const std::string& target)
    {
        answer = client().send("GET", target, {}, cookieHeader());
        keepCookie();
    }

    /// Sends the form of `step` with these values typed in.
    void submit(const std::string& step, const std::map<std::string, std::string>& typed)
    {
        const std::string form = formOf(step);
        ASSERT_NE(form, "") << answer.body;
        std::map<std::string, std::string> fields = typed;
        static const std::regex hidden("<input type=\"hidden\" name=\"([^\"]*)\" value=\"([^\"]*)\">");
        for (std::sregex_iterator i(form.begin(), form.end(), hidden), end; i != end; ++i)
            fields[(*i)[1]] = (*i)[2];
        std::string body;
        for (const auto& [name, value] : fields)
            body += (body.empty() ? "" : "&") + name + "=" + urlEscaped(value);
        static const std::regex action("action=\"([^\"]*)\"");
        std::smatch found;
        ASSERT_TRUE(std::regex_search(form, found, action));
        const std::string target = std::regex_replace(found[1].str(), std::regex("&amp;"), "&");
        answer = client().send("POST", target, body, cookieHeader() + more);
        keepCookie();
    }

    [[nodiscard]] std::string cookieHeader() const { return cookie.empty() ? "" : "Cookie: a=b; " + cookie + "\r\n"; }

    void keepCookie()
    {
        const std::string set = header("Set-Cookie");
        if (!set.empty())
            cookie = set.substr(0, set.find(';'));
    }

    [[nodiscard]] std::string formOf(const std::string& step) const
    {
        const auto marker = answer.body.find("name=\"step\" value=\"" + step + "\"");
        if (marker == std::string::npos)
            return {};
        const auto begin = answer.body.rfind("<form", marker);
        return answer.body.substr(begin, answer.body.find("</form>", marker) - begin);
    }

    /// The text of the error or the notice.
    [[nodiscard]] std::string message(const std::string& id) const
    {
        const auto start = answer.body.find("id=\"" + id + "\">");
        if (start == std::string::npos)
            return {};
        const auto text = start + id.size() + 6;
        return answer.body.substr(text, answer.body.find('<', text) - text);
    }

    ClientAnswer answer;
    std::string cookie;
    std::string more;
};

TEST_F(AccountPagesTest, showsItsThreePages)
{
    for (const auto& [path, title] :
         {std::pair("/sign-in", "<h1>Sign In</h1>"), std::pair("/sign-up", "<h1>Sign Up</h1>"),
          std::pair("/forgot-password", "<h1>Reset Password</h1>")})
    {
        open(path);
        EXPECT_EQ(answer.status, 200);
        EXPECT_EQ(header("Content-Type"), "text/html; charset=utf-8");
        EXPECT_THAT(answer.body, HasSubstr(title));
        EXPECT_EQ(message("error"), "");
    }
}

TEST_F(AccountPagesTest, labelsEveryField)
{
    for (const char* path : {"/sign-in", "/sign-up", "/forgot-password"})
    {
        open(path);
        static const std::regex input("<input id=\"([^\"]*)\"");
        const std::string& html = answer.body;
        ASSERT_TRUE(std::regex_search(html, input));
        for (std::sregex_iterator i(html.begin(), html.end(), input), end; i != end; ++i)
            EXPECT_THAT(html, HasSubstr("<label for=\"" + (*i)[1].str() + "\">")) << path;
    }
}

TEST_F(AccountPagesTest, protectsItsPages)
{
    open("/sign-in");
    EXPECT_EQ(header("Content-Security-Policy"),
              "default-src 'none'; style-src 'self'; script-src 'self'; form-action 'self'; base-uri 'none'; "
              "frame-ancestors 'none'");
    EXPECT_EQ(header("X-Content-Type-Options"), "nosniff");
    EXPECT_EQ(header("Cache-Control"), "no-store");
    EXPECT_THAT(header("Set-Cookie"), HasSubstr("; Path=/; HttpOnly; SameSite=Strict"));
    EXPECT_THAT(header("Set-Cookie"), Not(HasSubstr("Secure")));
}

TEST_F(AccountPagesTest, keepsItsCookieToHttpsWhereItCan)
{
    config.publicUrl = "https://service.example";
    start();
    open("/sign-in");
    EXPECT_THAT(header("Set-Cookie"), HasSubstr("; SameSite=Strict; Secure"));
}

TEST_F(AccountPagesTest, usesNothingOfOtherSites)
{
    for (const char* path : {"/sign-in", "/sign-up", "/forgot-password"})
    {
        open(path);
        EXPECT_THAT(answer.body, Not(HasSubstr("//"))) << path;
        EXPECT_THAT(answer.body, Not(HasSubstr("<script>"))) << path;
    }
    for (const auto& [path, type] : {std::pair("/account-pages/style.css", "text/css; charset=utf-8"),
                                     std::pair("/account-pages/script.js", "text/javascript; charset=utf-8")})
    {
        open(path);
        EXPECT_EQ(answer.status, 200);
        EXPECT_EQ(header("Content-Type"), type);
        EXPECT_THAT(answer.body, Not(HasSubstr("http")));
    }
}

TEST_F(AccountPagesTest, handsASignInToTheApplication)
{
    makeAccount("ann+x@example.com");
    open("/sign-in");
    submit("sign-in", {{"email", "ann+x@example.com"}, {"password", password}});
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(header("Cache-Control"), "no-store");
    static const std::regex link("<a class=\"button\" id=\"open\" href=\"quorvix://auth\\?email=ann%2Bx%40example.com"
                                 "&amp;refresh-token=([A-Za-z0-9_-]{43})\">Open Quorvix</a>");
    std::smatch found;
    ASSERT_TRUE(std::regex_search(answer.body, found, link)) << answer.body;
    EXPECT_EQ(call("InitiateAuth", tokenSignIn(found[1])).status, 200);
}

TEST_F(AccountPagesTest, saysThatAPasswordIsWrong)
{
    makeAccount();
    open("/sign-in");
    submit("sign-in", {{"email", address}, {"password", "wrong-password"}});
    EXPECT_EQ(answer.status, 400);
    EXPECT_EQ(message("error"), "Incorrect username or password.");
    EXPECT_THAT(answer.body, HasSubstr("value=\"ann@example.com\""));
    EXPECT_THAT(answer.body, Not(HasSubstr("wrong-password")));
    submit("sign-in", {{"email", address}, {"password", password}});
    EXPECT_THAT(answer.body, HasSubstr("Open Quorvix"));
}

TEST_F(AccountPagesTest, signsUpConfirmsAndSignsIn)
{
    open("/sign-up");
    submit("sign-up", {{"email", address}, {"password", password}});
    EXPECT_EQ(answer.status, 200);
    EXPECT_THAT(answer.body, HasSubstr("a***@e***"));
    const std::string code = newestCode();
    submit("confirm", {{"code", wrongCode(code)}});
    EXPECT_EQ(answer.status, 400);
    EXPECT_EQ(message("error"), "Invalid verification code provided, please try again.");
    submit("confirm", {{"code", code}});
    EXPECT_EQ(message("notice"), "Your account is confirmed. Sign in to go on.");
    submit("sign-in", {{"email", address}, {"password", password}});
    EXPECT_THAT(answer.body, HasSubstr("Open Quorvix"));
}

TEST_F(AccountPagesTest, namesTheAddressAgainAfterAWrongCode)
{
    open("/sign-up");
    submit("sign-up", {{"email", address}, {"password", password}});
    submit("confirm", {{"code", wrongCode(newestCode())}});
    EXPECT_THAT(answer.body, HasSubstr("<p>Enter the code from the email to ann@example.com.</p>"));
}

TEST_F(AccountPagesTest, goesOnWithThePasswordThatWasRefused)
{
    open("/sign-up");
    submit("sign-up", {{"email", address}, {"password", "short"}});
    static const std::regex focused("<input id=\"password\"[^>]* autofocus>");
    EXPECT_TRUE(std::regex_search(answer.body, focused)) << answer.body;
}

TEST_F(AccountPagesTest, sendsAnotherCode)
{
    open("/sign-up");
    submit("sign-up", {{"email", address}, {"password", password}});
    submit("resend", {});
    EXPECT_EQ(message("notice"), "Here is another code.");
    EXPECT_EQ(mailCount(outbox), 2U);
    submit("confirm", {{"code", newestCode()}});
    EXPECT_NE(message("notice"), "");
}

TEST_F(AccountPagesTest, asksForTheConfirmationAtTheSignIn)
{
    ASSERT_EQ(call("SignUp", userBody(address, password)).status, 200);
    open("/sign-in");
    submit("sign-in", {{"email", address}, {"password", password}});
    EXPECT_EQ(message("error"), "Confirm your account first.");
    submit("confirm", {{"code", newestCode()}});
    EXPECT_EQ(message("notice"), "Your account is confirmed. Sign in to go on.");
}

TEST_F(AccountPagesTest, tellsWhyASignUpIsRefused)
{
    config.blockedDomains = {"example.org"};
    start();
    open("/sign-up");
    submit("sign-up", {{"email", address}, {"password", "abcdefgh"}});
    EXPECT_EQ(message("error"), "Password must have numeric characters");
    submit("sign-up", {{"email", "a@example.org"}, {"password", password}});
    EXPECT_EQ(message("error"), "Addresses of example.org cannot be used here: choose another one.");
}

TEST_F(AccountPagesTest, resetsAPassword)
{
    makeAccount();
    open("/forgot-password");
    submit("send", {{"email", address}});
    EXPECT_THAT(answer.body, HasSubstr("a***@e***"));
    const std::string code = newestCode();
    submit("reset", {{"code", code}, {"password", "short"}});
    EXPECT_EQ(message("error"), "Password not long enough");
    submit("reset", {{"code", code}, {"password", "an0ther-word"}});
    EXPECT_EQ(message("notice"), "Your password is changed. Sign in to go on.");
    submit("sign-in", {{"email", address}, {"password", "an0ther-word"}});
    EXPECT_THAT(answer.body, HasSubstr("Open Quorvix"));
}

TEST_F(AccountPagesTest, showsTheRulesOfPasswords)
{
    for (const char* path : {"/sign-up", "/forgot-password"})
    {
        open(path);
        if (path == std::string("/forgot-password"))
            submit("send", {{"email", address}});
        for (const char* rule : {"At least 8 chars", "Lowercase letter", "Number", "Special character"})
            EXPECT_THAT(answer.body, HasSubstr(rule)) << path;
    }
}

TEST_F(AccountPagesTest, keepsWhatTheApplicationSays)
{
    const std::string query = "source=native-application&platform=Some%20System&version=QX_1.0";
    open("/sign-in?" + query + "&other=1");
    EXPECT_THAT(answer.body, HasSubstr("href=\"/sign-up?source=native-application&amp;platform=Some%20System&amp;"
                                       "version=QX_1.0\""));
    EXPECT_THAT(answer.body, Not(HasSubstr("other")));
    submit("sign-in", {{"email", address}, {"password", password}});
    EXPECT_THAT(formOf("sign-in"), HasSubstr("version=QX_1.0"));
}

TEST_F(AccountPagesTest, escapesWhatComesFromOutside)
{
    open("/sign-in?source=%22%3E%3Cscript%3E");
    EXPECT_THAT(answer.body, Not(HasSubstr("\"><script>")));
    submit("sign-in", {{"email", "\"><script>alert(1)</script>"}, {"password", password}});
    EXPECT_THAT(answer.body, Not(HasSubstr("<script>")));
    EXPECT_THAT(answer.body, HasSubstr("value=\"&quot;&gt;&lt;script&gt;alert(1)&lt;/script&gt;\""));
}

TEST_F(AccountPagesTest, refusesFormsOfOtherSites)
{
    makeAccount();
    const std::string body = "step=sign-in&email=ann%40example.com&password=passw0rd%21";
    answer = client().send("POST", "/sign-in", body);
    EXPECT_EQ(answer.status, 403);
    EXPECT_EQ(message("error"), "This page was out of date. Please try again.");

    for (const char* header : {"Origin: http://evil.example\r\n", "Origin: null\r\n", "Sec-Fetch-Site: cross-site\r\n",
                               "Sec-Fetch-Site: same-site\r\n"})
    {
        open("/sign-in");
        more = header;
        submit("sign-in", {{"email", address}, {"password", password}});
        EXPECT_EQ(answer.status, 403) << header;
        EXPECT_THAT(answer.body, Not(HasSubstr("Open Quorvix"))) << header;
    }
    open("/sign-in");
    more = "Origin: http://127.0.0.1\r\nSec-Fetch-Site: same-origin\r\n";
    submit("sign-in", {{"email", address}, {"password", password}});
    EXPECT_EQ(answer.status, 200);
}

TEST_F(AccountPagesTest, refusesAFormOfAnotherBrowser)
{
    makeAccount();
    open("/sign-in");
    cookie = "quorvix-form=" + std::string(43, 'a');
    submit("sign-in", {{"email", address}, {"password", password}});
    EXPECT_EQ(answer.status, 403);
    submit("sign-in", {{"email", address}, {"password", password}});
    EXPECT_EQ(answer.status, 200);
}

TEST_F(AccountPagesTest, sendsNoForeignCookieBack)
{
    cookie = "quorvix-form=x\"; evil";
    open("/sign-in");
    EXPECT_TRUE(std::regex_match(cookie, std::regex("quorvix-form=[A-Za-z0-9_-]{43}"))) << cookie;
}

TEST_F(AccountPagesTest, logsNothingThatWasTyped)
{
    const LogCapture log;
    makeAccount();
    open("/sign-in?source=typed-source");
    submit("sign-in", {{"email", address}, {"password", password}});
    for (const char* text : {address, password, "refresh-token", "typed-source"})
        EXPECT_FALSE(log.contains(text)) << text;
}

} // namespace

} // namespace VX::Test

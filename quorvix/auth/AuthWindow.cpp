#include <quorvix/auth/AuthScreens.h>
#include <quorvix/auth/AuthWindow.h>
#include <quorvix/auth/Credentials.h>
#include <quorvix/auth/UserInfo.h>
#include <quorvix/converter/WebAnswer.h>
#include <quorvix/setup/Translate.h>

#include <VXMesh/Secret.h>
#include <VXMesh/StringConvert.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/Locale.h>
#include <VXViewer/ProgressBar.h>
#include <VXViewer/RibbonMenu.h>
#include <VXViewer/RibbonNotification.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/WebRequest.h>

#include <fmt/format.h>
#include <spdlog/spdlog.h>

#include <string_view>
#include <utility>

namespace VX
{

namespace
{

constexpr std::int32_t startRetries = 3;
constexpr int framesAfterAnswer = 4;
constexpr float announcementSec = 20;

/// In bytes: room for the longest password that the field takes, so that typing never leaves copies behind.
constexpr std::size_t passwordRoom = 4 * 1024 + 1;

std::shared_ptr<RibbonMenu> ribbonMenu()
{
    return std::dynamic_pointer_cast<RibbonMenu>(getViewerInstance().getMenuPlugin());
}

/// The menu has not drawn a frame since the sign-in that is over.
void takeBackFirstFrame()
{
    if (const auto menu = ribbonMenu())
        menu->clearFirstSignInFrame();
}

std::string codeDestination(const Json::Value& answer)
{
    return WebAnswer::text(WebAnswer::member(answer, "CodeDeliveryDetails"), "Destination").value_or("");
}

/// What the service's check before a sign-up says itself, of an error that passes it on.
std::string withoutPreSignUp(const std::string& message)
{
    constexpr std::string_view prefix = "PreSignUp failed with error";
    if (!message.starts_with(prefix))
        return message;
    // One more character stands between them.
    return message.size() > prefix.size() ? trimLeft(std::string_view(message).substr(prefix.size() + 1)) : "";
}

void redraw()
{
    getViewerInstance().incrementForceRedrawFrames(framesAfterAnswer);
}

} // namespace

AuthWindow::AuthWindow(bool useWebAuth)
    : self_(this, [](AuthWindow*) {})
    , screens_(std::make_unique<AuthScreens>(*this))
{
    password.reserve(passwordRoom);
    const std::weak_ptr<AuthWindow> weak = self_;
    if (useWebAuth)
    {
        const auto onUiThread = [weak]
        {
            if (const auto window = weak.lock())
                window->webAuthSignInCallback_();
        };
        webAuth = makeDefaultWebAuth([onUiThread] { CommandLoop::appendCommand(onUiThread); });
    }
    CommandLoop::appendCommand(
        [weak]
        {
            if (const auto window = weak.lock())
                window->start_();
        },
        StartPosition::LoopStart);
}

AuthWindow::~AuthWindow()
{
    wipe(password);
    screens_->forget();
}

void AuthWindow::drawIfNeeded()
{
    if (!ProgressBar::isOrdered())
        screens_->draw();
}

void AuthWindow::coveringBegins_()
{
    if (!std::exchange(backgroundShown, true))
        takeBackFirstFrame();
}

void AuthWindow::start_()
{
    if (auto credentials = readCredentials())
    {
        email = credentials->email;
        password.assign(credentials->password);
        wipe(credentials->password);
        requestSignIn({});
        return;
    }
    const AuthToken stored = loadAuthToken();
    email = stored.login;
    if (stored.token.empty() || stored.endpoint.empty())
        return;
    state = Screen::Starting;
    retriesLeft = startRetries;
    requestSignIn(stored);
}

Cognito::Callback AuthWindow::beginRequest_(AnswerHandler handler)
{
    busy = true;
    redraw();
    request_ = std::make_shared<AnswerHandler>(
        [this, handle = std::move(handler)](const Json::Value& answer)
        {
            abandonRequest_();
            handle(answer);
        });
    // It is looked up on the UI thread only, where the window lives and dies.
    return [request = std::weak_ptr(request_)](const Json::Value& answer)
    {
        const auto deliver = [request, answer]
        {
            if (const auto handle = request.lock())
                (*handle)(answer);
        };
        if (CommandLoop::isOnUiThread())
            deliver();
        else
            CommandLoop::appendCommand(deliver);
    };
}

void AuthWindow::abandonRequest_()
{
    busy = false;
    request_.reset();
}

void AuthWindow::requestSignIn(const AuthToken& token)
{
    auto answered = beginRequest_([this, token](const Json::Value& answer) { signInAnswered_(token, answer); });
    if (token.token.empty() || token.endpoint.empty())
        Cognito::signInEmail(email, password, std::move(answered));
    else
        Cognito::signInToken(token.token, token.endpoint, std::move(answered));
}

void AuthWindow::requestSignUp()
{
    Cognito::signUp(email, password, beginRequest_([this](const Json::Value& answer) { signUpAnswered_(answer); }));
}

void AuthWindow::requestConfirmSignUp()
{
    Cognito::confirmSignUp(email, code, beginRequest_([this](const Json::Value& answer) { confirmAnswered_(answer); }));
}

void AuthWindow::requestResendConfirm()
{
    Cognito::resendConfirmationCode(email,
                                    beginRequest_([this](const Json::Value& answer) { resendAnswered_(answer); }));
}

void AuthWindow::requestForgot()
{
    Cognito::forget(email, beginRequest_([this](const Json::Value& answer) { forgotAnswered_(answer); }));
}

void AuthWindow::requestConfirmForgot()
{
    Cognito::confirmForget(email, password, code,
                           beginRequest_([this](const Json::Value& answer) { confirmAnswered_(answer); }));
}

void AuthWindow::signInAnswered_(const AuthToken& token, const Json::Value& answer)
{
    const auto value = parseResponse(answer);
    if (!value)
    {
        signInFailed_(token, value.error(), WebAnswer::code(answer));
        return;
    }
    const Json::Value& result = WebAnswer::member(*value, "AuthenticationResult");
    if (!result.isObject())
    {
        state = Screen::Error;
        errorText = translatable("Unknown error.");
        spdlog::warn("Sign in error: \"{}\"", errorText);
        redraw();
        return;
    }
    remember_(WebAnswer::text(result, "RefreshToken").value_or(""));
    spdlog::info("Signed in.");
    UserInfo::setAccessToken(WebAnswer::text(result, "AccessToken").value_or(""));
    enterSignedIn_();
}

void AuthWindow::signInFailed_(const AuthToken& token, const std::string& message, int answerCode)
{
    errorText = message;
    const bool expired = message.find("Refresh Token has expired") != std::string::npos;
    const bool noAnswer = answerCode == 0;
    if (state == Screen::Starting)
    {
        const bool hadRetries = retriesLeft-- > 0;
        if (hadRetries && (expired || noAnswer))
        {
            spdlog::warn("Sign in error: \"{}\", retrying ({} left)", message, retriesLeft);
            requestSignIn(token);
            return;
        }
    }
    state = Screen::SignIn;
    const bool isServersFault = answerCode >= 500 && answerCode <= 599;
    if (!noAnswer && !isServersFault)
        spdlog::warn("Sign in error: \"{}\"", message);
    if (expired)
        errorText += sessionExpired;
    redraw();
}

bool AuthWindow::isGood_(const Json::Value& answer, Json::Value& value)
{
    const auto parsed = parseResponse(answer);
    redraw();
    if (parsed)
    {
        value = *parsed;
        return true;
    }
    errorText = parsed.error();
    spdlog::warn("Auth error: \"{}\"", errorText);
    return false;
}

void AuthWindow::signUpAnswered_(const Json::Value& answer)
{
    Json::Value value;
    if (!isGood_(answer, value))
    {
        errorText = withoutPreSignUp(errorText);
        return;
    }
    destination = codeDestination(value);
    code.clear();
    state = Screen::ConfirmSignUp;
}

void AuthWindow::forgotAnswered_(const Json::Value& answer)
{
    Json::Value value;
    if (!isGood_(answer, value))
        return;
    destination = codeDestination(value);
    code.clear();
    state = Screen::ConfirmReset;
}

void AuthWindow::confirmAnswered_(const Json::Value& answer)
{
    Json::Value value;
    if (!isGood_(answer, value))
        return;
    destination.clear();
    state = Screen::SignIn;
}

void AuthWindow::resendAnswered_(const Json::Value& answer)
{
    Json::Value value;
    static_cast<void>(isGood_(answer, value));
}

void AuthWindow::remember_(const std::string& refreshToken) const
{
    if (!rememberMe)
        saveAuthToken({});
    else if (!refreshToken.empty())
        saveAuthToken({email, refreshToken, Cognito::getEndpoint(email)});
}

void AuthWindow::enterSignedIn_()
{
    errorText.clear();
    state = Screen::SignedIn;
    wipe(password);
    screens_->forget();
    if (const auto menu = ribbonMenu())
        menu->raiseFirstSignInFrame();
    UserInfo::setEmail(email);
    getViewerInstance().incrementForceRedrawFrames(framesAfterAnswer, true);
    if (std::exchange(isFromBrowser_, false))
        announceSignIn_();
}

void AuthWindow::announceSignIn_()
{
    const auto menu = ribbonMenu();
    if (!menu)
        return;
    RibbonNotification notification;
    notification.header = Product::tr("Signed in by the browser");
    notification.text = email;
    notification.buttonName = Product::tr("Sign Out");
    // In the list of earlier ones it stays when this user is gone.
    notification.onButtonClick = [weak = std::weak_ptr(self_), user = email]
    {
        if (const auto window = weak.lock(); window && window->isAuthed() && window->email == user)
            window->signOut();
    };
    notification.lifeTimeSec = announcementSec;
    notification.tags |= static_cast<unsigned>(NotificationTag::Service);
    menu->pushNotification(notification);
}

void AuthWindow::resetToSignedOut_()
{
    abandonRequest_();
    isFromBrowser_ = false;
    wipe(password);
    code.clear();
    destination.clear();
    errorText.clear();
    screens_->forget();
    state = Screen::SignIn;
    backgroundShown = false;
    takeBackFirstFrame();
    UserInfo::setAccessToken("");
    UserInfo::setEmail("");
    redraw();
}

void AuthWindow::signOut()
{
    saveAuthToken({rememberMe ? email : std::string(), {}, {}});
    resetToSignedOut_();
    if (webAuth)
        webAuth->notifyAboutSignOut();
}

void AuthWindow::webAuthSignInCallback_()
{
    const AuthToken stored = loadAuthToken();
    resetToSignedOut_();
    if (stored.token.empty() || stored.endpoint.empty())
        return;
    email = stored.login;
    isFromBrowser_ = true;
    requestSignIn(stored);
    if (Window* const window = getViewerInstance().window())
        window->focus();
}

} // namespace VX

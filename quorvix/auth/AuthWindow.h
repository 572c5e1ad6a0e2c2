#pragma once

#include <quorvix/Export.h>
#include <quorvix/auth/AuthToken.h>
#include <quorvix/auth/Cognito.h>
#include <quorvix/auth/WebAuth.h>

#include <json/value.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace VX
{

class AuthScreens;

/// The sign-in: signs the user in when the program starts, by the file that "-creds" names or by the stored sign-in,
/// and otherwise draws what an account is signed in to, made and recovered with. The browser variant leaves that to
/// the pages of the web application. Whoever is signed in is told to `UserInfo`.
/// Nothing that still is under way for the window acts once it is destroyed.
/// @threads the UI thread
class QUORVIX_API AuthWindow
{
public:
    /// Signs in once the loop runs.
    /// @param useWebAuth  the browser variant
    explicit AuthWindow(bool useWebAuth);
    ~AuthWindow();

    AuthWindow(const AuthWindow&) = delete;
    AuthWindow& operator=(const AuthWindow&) = delete;

    /// Draws what the user has to do to be signed in, over everything; nothing while a task shows its progress.
    void drawIfNeeded();

    [[nodiscard]] bool isAuthed() const { return state == Screen::SignedIn; }

    /// A request is under way, or the stored sign-in is being tried.
    [[nodiscard]] bool isInProcess() const { return busy || state == Screen::Starting; }

    /// The user has to sign in first: the window covers everything, and nothing else should take keys.
    [[nodiscard]] bool isCovering() const { return state != Screen::Starting && !isAuthed(); }

    /// Ends the sign-in here, and in the browser variant in every instance. Of the stored sign-in the address stays
    /// where the user wants to be remembered.
    void signOut();

    // The requests, of what the user has typed. Each takes the place of the one before, whose answer then does not
    // count.
    void requestSignIn(const AuthToken& token); ///< by e-mail and password where `token` or its endpoint is empty
    void requestSignUp();
    void requestConfirmSignUp();
    void requestResendConfirm();
    void requestForgot();
    void requestConfirmForgot();

private:
    friend class AuthScreens;
    friend class AuthWindowAccess;

    enum class Screen : std::int32_t
    {
        Starting = 0, ///< the stored sign-in is being tried; nothing is drawn
        Error = 1,
        SignIn = 2,
        SignUp = 3,
        ConfirmSignUp = 4,
        ResetPassword = 5,
        ConfirmReset = 6,
        SignedIn = 7 ///< nothing is drawn
    };

    using AnswerHandler = std::function<void(const Json::Value&)>;

    void start_();

    /// Signs in anew with what is stored, which another process or instance has changed.
    void webAuthSignInCallback_();

    /// @return what calls `handler` on the UI thread, unless the request was abandoned or the window destroyed
    [[nodiscard]] Cognito::Callback beginRequest_(AnswerHandler handler);
    void abandonRequest_();

    void signInAnswered_(const AuthToken& token, const Json::Value& answer);
    void signInFailed_(const AuthToken& token, const std::string& message, int code);
    void signUpAnswered_(const Json::Value& answer);
    void forgotAnswered_(const Json::Value& answer);
    void confirmAnswered_(const Json::Value& answer);
    void resendAnswered_(const Json::Value& answer);

    /// The body of an answer; without one the error is shown and logged. @param shown  what of the error is shown
    [[nodiscard]] bool isGood_(const Json::Value& answer, Json::Value& value);

    /// Nothing that was asked of the menu for a sign-in holds any more.
    void coveringBegins_();
    void remember_(const std::string& refreshToken) const;
    void enterSignedIn_();
    void resetToSignedOut_();
    void announceSignIn_();

    /// What others hold weakly to reach the window as long as it lives.
    const std::shared_ptr<AuthWindow> self_;

    std::unique_ptr<WebAuthInterface> webAuth; ///< null in the variant with screens of its own
    std::string email;
    std::string password; ///< wiped once it was good, at the sign-out and with the window
    std::string code;
    std::string destination; ///< where the service has sent a code, masked by it
    std::string errorText;
    std::int32_t retriesLeft = 0;
    Screen state = Screen::SignIn;
    bool rememberMe = true;
    bool backgroundShown = false;
    bool busy = false;

    /// Of the request under way; null while there is none.
    std::shared_ptr<AnswerHandler> request_;
    /// The sign-in under way began in the browser: its success is told to the user, who may not have meant it.
    bool isFromBrowser_ = false;
    std::unique_ptr<AuthScreens> screens_;
};

} // namespace VX

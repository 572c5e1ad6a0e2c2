#include "AuthUiFixture.h"

#include <VXViewer/ProgressBar.h>
#include <VXViewer/UiTree.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>

namespace VX
{

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class AuthScreensTest : public VX::Test::AuthUiFixture
{
protected:
    [[nodiscard]] UiItem windowItem_(const char* name) const { return driver_->find(name, name).value_or(UiItem()); }

    void expectTexts_(std::initializer_list<const char*> labels) const
    {
        for (const char* label : labels)
            EXPECT_TRUE(shows_(label)) << label;
    }

    static bool showsLogo_()
    {
        const auto& items = UiTree::instance().items();
        return std::ranges::any_of(
            items, [](const UiItem& item)
            { return item.kind == UiKind::Icon && item.value == "MainLogo" && item.isVisible(); });
    }
};

TEST_F(AuthScreensTest, StandInTheMiddleOverAWholeBackground)
{
    show_();
    const UiItem background = windowItem_("Background");
    EXPECT_EQ(background.min, Vector2f(0, 0));
    EXPECT_EQ(background.max, Vector2f(1000, 700));
    const UiItem window = windowItem_(authWindow);
    EXPECT_EQ(window.max - window.min, Vector2f(440, 332));
    EXPECT_EQ((window.max + window.min) / 2, Vector2f(500, 350));
}

TEST_F(AuthScreensTest, GrowWithTheScale)
{
    show_(2, false, {2000, 1400}, 2);
    const UiItem window = windowItem_(authWindow);
    EXPECT_EQ(window.max - window.min, Vector2f(880, 664));
}

TEST_F(AuthScreensTest, StayInsideASmallWindow)
{
    show_(2, false, {400, 300});
    const UiItem window = windowItem_(authWindow);
    EXPECT_EQ(window.max - window.min, Vector2f(400, 300));
}

TEST_F(AuthScreensTest, HideTheRibbon)
{
    show_();
    EXPECT_EQ(driver_->obstacle("Notifications"), "\"Notifications\" is covered");
}

TEST_F(AuthScreensTest, StayInFrontOfWhatIsPressedBesideThem)
{
    show_();
    driver_->click({20, 600});
    redraw_();
    EXPECT_EQ(driver_->obstacle("Sign Up", authWindow), "");
    EXPECT_EQ(driver_->obstacle("Notifications"), "\"Notifications\" is covered");
}

TEST_F(AuthScreensTest, LeaveAMessageOpen)
{
    show_();
    menu_->showModalMessage("Something happened.", NotificationType::Error);
    redraw_();
    redraw_();
    EXPECT_TRUE(driver_->shows("Something happened."));
    EXPECT_EQ(driver_->obstacle("Sign Up", authWindow), "\"Sign Up\" in \"Auth window\" is covered");
}

TEST_F(AuthScreensTest, AreNotThereWhileATaskShowsItsProgress)
{
    show_();
    auto done = std::make_shared<std::atomic<bool>>(false);
    ProgressBar::order("Task",
                       [done](const ProgressCallback&)
                       {
                           while (!*done)
                               std::this_thread::yield();
                           return [] {};
                       });
    driver_->waitFor([] { return !UiTree::instance().hasWindow("Background"); });
    EXPECT_FALSE(UiTree::instance().hasWindow(authWindow));
    *done = true;
    EXPECT_TRUE(driver_->waitFor([] { return UiTree::instance().hasWindow("Auth window"); }));
}

TEST_F(AuthScreensTest, AreNotThereWhileTheStoredSignInIsTried)
{
    const auto window = show_();
    goTo_(window, 0);
    EXPECT_FALSE(UiTree::instance().hasWindow(authWindow));
    EXPECT_FALSE(UiTree::instance().hasWindow("Background"));
}

TEST_F(AuthScreensTest, AnnounceTheFirstFrameOfASignIn)
{
    const auto window = show_();
    EXPECT_TRUE(window.isBackgroundShown());
    EXPECT_EQ(menu_->firstSignInFrames, 0);
    window.email() = ann;
    window.password() = "s3cret";
    window.requestSignIn();
    answer_(200, tokens_());
    EXPECT_EQ(menu_->firstSignInFrames, 1);
}

TEST_F(AuthScreensTest, TakeThatBackWhereTheSignInEndsBeforeTheFrame)
{
    const auto window = show_();
    window.requestSignIn();
    answerAccount_(200, tokens_());
    ASSERT_TRUE(menu_->auth->isAuthed());
    menu_->auth->signOut();
    driver_->settle();
    EXPECT_EQ(menu_->firstSignInFrames, 0);
    EXPECT_TRUE(window.isBackgroundShown());
}

TEST_F(AuthScreensTest, LeadFromOneToAnother)
{
    const auto window = show_();
    expectTexts_({"Email", "Password", "Remember me", "Sign In", "Forgot your", "password?", "Need an account?"});
    EXPECT_TRUE(showsLogo_());
    press_("Sign Up");
    EXPECT_EQ(window.state(), 3);
    expectTexts_({"Email", "Password", "At least 8 chars", "Lowercase letter", "Number", "Special character", "Sign Up",
                  "Already have an account?"});
    press_("Sign In");
    EXPECT_EQ(window.state(), 2);
    press_("password?");
    EXPECT_EQ(window.state(), 5);
    expectTexts_({"Email", "Reset My Password", "Back to"});
    press_("Sign In");
    EXPECT_EQ(window.state(), 2);
}

TEST_F(AuthScreensTest, ConfirmASignUp)
{
    const auto window = show_(3);
    fill_("Email", ann);
    fill_("Password", "s3cret-word");
    press_("Sign Up");
    answer_(200, sentTo_("a***@e***"));
    expectTexts_({"We have sent a code by email to", "a***@e***", "Enter it below to confirm your account.",
                  "Didn't receive a code?"});
    press_("Confirm Account");
    EXPECT_TRUE(shows_("Please enter verification code"));
    press_("Resend it");
    EXPECT_FALSE(shows_("Please enter verification code"));
    answer_(200, "{}");
    fill_("Code", "123456");
    driver_->key(GLFW_KEY_ENTER);
    EXPECT_THAT(askedFor_(), ElementsAre("signUp", "resendConfirmationCode", "confirmSignUp"));
    EXPECT_EQ(lastBody_()["ConfirmationCode"], "123456");
    answer_(200, "{}");
    EXPECT_EQ(window.state(), 2);
    press_("Sign In");
    EXPECT_EQ(lastBody_()["AuthParameters"]["PASSWORD"], "s3cret-word");
}

TEST_F(AuthScreensTest, GoBackFromTheConfirmation)
{
    const auto window = show_(4);
    expectTexts_({"Back to"});
    press_("Sign Up");
    EXPECT_EQ(window.state(), 3);
}

TEST_F(AuthScreensTest, ResetAPassword)
{
    const auto window = show_(5);
    press_("Reset My Password");
    EXPECT_TRUE(shows_("Please enter valid email"));
    fill_("Email", ann);
    press_("Reset My Password");
    answer_(200, sentTo_("a***@e***"));
    expectTexts_({"We have sent a password reset code by email to", "a***@e***",
                  "Enter it below to reset your password.", "At least 8 chars", "Back to"});
    press_("Change Password");
    expectTexts_({"Please enter verification code", "Please enter valid password"});
    fill_("Code", "123456");
    fill_("New Password", "n3w-s3cret");
    press_("Change Password");
    EXPECT_EQ(lastBody_()["Password"], "n3w-s3cret");
    EXPECT_EQ(lastBody_()["ConfirmationCode"], "123456");
    answer_(200, "{}");
    EXPECT_EQ(window.state(), 2);
}

TEST_F(AuthScreensTest, OfferAnotherTryAfterAnUnknownError)
{
    const auto window = show_();
    fill_("Email", ann);
    fill_("Password", "s3cret");
    press_("Sign In");
    answer_(200, "{}");
    EXPECT_EQ(window.state(), 1);
    expectTexts_({"Unknown error.", "and try with another account."});
    EXPECT_TRUE(showsLogo_());
    press_("Retry");
    EXPECT_THAT(askedFor_(), ElementsAre("signInEmail", "signInEmail"));
    EXPECT_EQ(lastBody_()["AuthParameters"]["PASSWORD"], "s3cret");
    answer_(200, "{}");
    saveAuthToken(tokenOf_(ann));
    press_("Retry");
    EXPECT_EQ(askedFor_().back(), "signInToken");
    press_("Sign Out");
    EXPECT_EQ(window.state(), 2);
    EXPECT_FALSE(window.isBusy());
    EXPECT_EQ(loadAuthToken(), (AuthToken{ann, "", ""}));
}

TEST_F(AuthScreensTest, LeadToTheBrowser)
{
    const auto window = show_(2, true);
    expectTexts_({"Welcome back!", "Don't have an account?", "Remember me"});
    EXPECT_TRUE(showsLogo_());
    EXPECT_FALSE(shows_("Email"));
    press_("Sign In");
    press_("Sign Up");
    EXPECT_THAT(calls_, ElementsAre("sign-in", "sign-up"));
    press_("Remember me");
    EXPECT_FALSE(window.rememberMe());
    EXPECT_THAT(asked_(), IsEmpty());
}

TEST_F(AuthScreensTest, TellWhyASignInOfTheBrowserFailed)
{
    const auto window = show_(2, true);
    window.requestSignIn(tokenOf_(ann));
    redraw_();
    EXPECT_TRUE(shows_("Waiting for the account service"));
    answer_(400, refusal_("Invalid Refresh Token."));
    EXPECT_TRUE(shows_("Error: Invalid Refresh Token."));
}

TEST_F(AuthScreensTest, ShowAnUnknownErrorInTheBrowserVariantToo)
{
    const auto window = show_(2, true);
    window.requestSignIn(tokenOf_(ann));
    answer_(200, "{}");
    expectTexts_({"Unknown error.", "Retry"});
    press_("Sign Out");
    EXPECT_EQ(window.state(), 2);
    EXPECT_THAT(calls_, ElementsAre("signed out"));
}

} // namespace

} // namespace VX

#include "AuthUiFixture.h"
#include "tests/quorvix/support/WindowLook.h"

#include <VXViewer/MainLoop.h>

#include <gtest/gtest.h>

namespace VX
{

namespace
{

/// The sign-in window with a little of what is behind it, as it was judged.
class AuthPictures : public VX::Test::AuthUiFixture, public testing::WithParamInterface<VX::Test::WindowLook>
{
protected:
    void TearDown() override
    {
        VX::Test::WindowLook::restore();
        AuthUiFixture::TearDown();
    }

    AuthWindowAccess open_(int state, bool browser = false)
    {
        constexpr int signedIn = 7;
        const auto window = show_(signedIn, browser, GetParam().pixels(PixelSize{480, 372}), GetParam().scale());
        GetParam().apply();
        goTo_(window, state);
        return window;
    }

    void expectPicture_(const char* name) const
    {
        EXPECT_TRUE(VX::Test::looksAsJudged(session_->viewer().loop().captureWindow(), name, GetParam()));
    }

    /// Types into the field that has the keyboard and into the next one.
    void type_(const char* email, const char* password)
    {
        driver_->key(GLFW_KEY_A, GLFW_MOD_CONTROL);
        driver_->type(email);
        driver_->key(GLFW_KEY_TAB);
        driver_->type(password);
    }

    void submit_()
    {
        driver_->key(GLFW_KEY_ENTER);
        redraw_();
    }

    void refuse_(const char* message)
    {
        answer_(400, refusal_(message));
        redraw_();
    }

    void sendCode_()
    {
        answer_(200, sentTo_("a***@e***.com"));
        redraw_();
    }
};

TEST_P(AuthPictures, OfTheSignIn)
{
    open_(2);
    expectPicture_("sign-in");
    submit_();
    expectPicture_("sign-in-empty-fields");
    type_(ann, "s3cret");
    submit_();
    expectPicture_("sign-in-waiting");
    refuse_("Incorrect username or password.");
    expectPicture_("sign-in-refused");
}

TEST_P(AuthPictures, OfTheSignUp)
{
    open_(3);
    type_("ann", "abc12345");
    expectPicture_("sign-up");
    submit_();
    expectPicture_("sign-up-wrong-fields");
    type_(ann, "abc12345!");
    submit_();
    sendCode_();
    expectPicture_("confirm-account");
}

TEST_P(AuthPictures, OfTheWayToANewPassword)
{
    open_(5);
    driver_->type(ann);
    expectPicture_("reset-password");
    submit_();
    sendCode_();
    expectPicture_("confirm-reset");
    submit_();
    expectPicture_("confirm-reset-empty-fields");
}

TEST_P(AuthPictures, OfASignInThatFailed)
{
    open_(2);
    type_(ann, "s3cret");
    submit_();
    answer_(200, "{}");
    redraw_();
    expectPicture_("sign-in-failed");
}

TEST_P(AuthPictures, OfTheSignInByTheBrowser)
{
    const auto window = open_(2, true);
    expectPicture_("browser");
    saveAuthToken(tokenOf_(ann));
    window.webAuthSignInCallback();
    redraw_();
    expectPicture_("browser-waiting");
    refuse_("Refresh Token has expired");
    expectPicture_("browser-refused");
}

INSTANTIATE_TEST_SUITE_P(In, AuthPictures, VX::Test::allLooks(), VX::Test::lookName);

} // namespace

} // namespace VX

#include "AuthUiFixture.h"

#include <VXViewer/InputEvent.h>
#include <VXViewer/Locale.h>
#include <VXViewer/MainLoop.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <imgui.h>

#include <algorithm>
#include <variant>

namespace VX
{

namespace
{

using ::testing::ElementsAre;

/// What the window does with the answers of the service.
class AuthAnswerTest : public VX::Test::AuthUiFixture
{
protected:
    void TearDown() override
    {
        Locale::set("en");
        AuthUiFixture::TearDown();
    }

    /// How many frames are drawn because of this answer.
    std::uint64_t framesOf_(int code, const std::string& text)
    {
        driver_->settle();
        const std::uint64_t before = session_->viewer().loop().framesDrawn();
        answer_(code, text);
        return session_->viewer().loop().framesDrawn() - before;
    }
};

TEST_F(AuthAnswerTest, RedrawsFourFramesForEverySuccess)
{
    const auto window = show_();
    window.email() = ann;
    window.requestSignUp();
    EXPECT_GE(framesOf_(200, sentTo_("a***")), 4U);
    window.requestResendConfirm();
    EXPECT_GE(framesOf_(200, "{}"), 4U);
    window.requestConfirmSignUp();
    EXPECT_GE(framesOf_(200, "{}"), 4U);
    window.requestForgot();
    EXPECT_GE(framesOf_(200, sentTo_("a***")), 4U);
    window.requestConfirmForgot();
    EXPECT_GE(framesOf_(200, "{}"), 4U);
    window.requestSignIn();
    EXPECT_GE(framesOf_(200, tokens_()), 4U);
}

TEST_F(AuthAnswerTest, BringsTheProgramToTheFrontForTheBrowser)
{
    const auto window = show_(2, true);
    saveAuthToken(tokenOf_("bob@example.com"));
    window.webAuthSignInCallback();
    const auto events = session_->window().takeEvents();
    EXPECT_TRUE(std::ranges::any_of(events,
                                    [](const InputEvent& event)
                                    {
                                        const auto* focus = std::get_if<FocusEvent>(&event);
                                        return focus && focus->focused;
                                    }));
}

TEST_F(AuthAnswerTest, LeavesTheProgramWhereItIsForALinkThatBringsNothing)
{
    const auto window = show_(2, true);
    window.webAuthSignInCallback();
    EXPECT_TRUE(session_->window().takeEvents().empty());
}

TEST_F(AuthAnswerTest, TriesAgainWithTheAccountOfTheWindow)
{
    saveAuthToken(tokenOf_(ann));
    show_();
    fill_("Email", "bob@example.com");
    fill_("Password", "b0bs-secret");
    press_("Sign In");
    answer_(200, "{}");
    press_("Retry");
    EXPECT_THAT(askedFor_(), ElementsAre("signInEmail", "signInEmail"));
    EXPECT_EQ(lastBody_()["AuthParameters"]["USERNAME"], "bob@example.com");
    EXPECT_EQ(lastBody_()["AuthParameters"]["PASSWORD"], "b0bs-secret");
}

TEST_F(AuthAnswerTest, IsToldInTheLanguageOfTheUser)
{
    const auto window = show_();
    Locale::addDomain("Quorvix");
    ASSERT_TRUE(Locale::set("de"));
    window.requestSignIn(tokenOf_(ann));
    answer_(200, "{}");
    EXPECT_TRUE(shows_("Unbekannter Fehler."));
    EXPECT_EQ(window.errorText(), "Unknown error.");

    goTo_(window, 2);
    window.requestSignIn(tokenOf_(ann));
    answer_(400, refusal_("Refresh Token has expired"));
    EXPECT_TRUE(shows_("Refresh Token has expired Die Sitzung ist abgelaufen. Bitte melden Sie sich erneut an."));
    EXPECT_EQ(window.errorText(), "Refresh Token has expired Session expired. Please log in again.");
}

TEST_F(AuthAnswerTest, OverwritesWhatWasPasted)
{
    const std::string secret = "a password that is longer than short strings are";
    const auto window = show_();
    session_->window().setClipboard(secret);
    driver_->press("Password", authWindow);
    driver_->key(GLFW_KEY_V, GLFW_MOD_CONTROL);
    ASSERT_EQ(window.password(), secret);
    const char* const pasted = ImGui::GetClipboardText();
    ASSERT_EQ(std::string(pasted), secret);
    menu_->auth->signOut();
    EXPECT_EQ(std::string(pasted, secret.size()), std::string(secret.size(), '\0'));
}

} // namespace

} // namespace VX

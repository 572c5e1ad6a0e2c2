#include "AuthUiFixture.h"
#include <quorvix/auth/UserInfo.h>

#include <VXViewer/RibbonNotification.h>
#include <VXViewer/RibbonNotifier.h>
#include <VXViewer/UiTree.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace VX
{

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class AccountItemTest : public VX::Test::AuthUiFixture
{
protected:
    static constexpr const char* header = "Ribbon Header";

    void signIn_(const std::string& email)
    {
        const AuthWindowAccess window(*menu_->auth);
        window.email() = email;
        window.password() = "s3cret";
        window.requestSignIn();
        answer_(200, tokens_());
    }
};

TEST_F(AccountItemTest, IsNotThereWhileNobodyIsSignedIn)
{
    show_();
    EXPECT_FALSE(driver_->shows("", header) && menu_->account->width() > 0);
    EXPECT_EQ(menu_->account->width(), 0);
}

TEST_F(AccountItemTest, ShowsWhoIsSignedIn)
{
    show_();
    signIn_(ann);
    EXPECT_TRUE(driver_->shows(ann, header));
    driver_->press(ann, header);
    EXPECT_TRUE(driver_->shows("Signed in as", "Account"));
    EXPECT_TRUE(driver_->shows(ann, "Account"));
}

TEST_F(AccountItemTest, SignsOut)
{
    show_();
    signIn_(ann);
    driver_->press(ann, header);
    driver_->press("Sign Out", "Account");
    EXPECT_EQ(UserInfo::getEmail(), "");
    EXPECT_FALSE(driver_->shows(ann, header));
    EXPECT_TRUE(UiTree::instance().hasWindow(authWindow));
    EXPECT_FALSE(UiTree::instance().hasWindow("Account"));
}

TEST_F(AccountItemTest, ClosesItsPopUpWithEscape)
{
    show_();
    signIn_(ann);
    driver_->press(ann, header);
    driver_->key(GLFW_KEY_ESCAPE);
    EXPECT_FALSE(UiTree::instance().hasWindow("Account"));
    EXPECT_TRUE(menu_->auth->isAuthed());
}

TEST_F(AccountItemTest, CutsALongAddressInTheHeaderAlone)
{
    const std::string longAddress = std::string(120, 'a') + "@example.com";
    show_();
    signIn_(longAddress);
    EXPECT_LE(menu_->account->width(), 200);
    driver_->press(longAddress, header);
    const auto whole = driver_->find(longAddress, "Account");
    ASSERT_TRUE(whole);
    EXPECT_GE(whole->visibleMin.x(), 0);
    EXPECT_LE(whole->max.x(), 1000);
}

TEST_F(AccountItemTest, IsAnIconInANarrowWindow)
{
    show_(2, false, {700, 500});
    signIn_(ann);
    EXPECT_EQ(menu_->account->width(), 28);
    driver_->press(ann, header);
    EXPECT_TRUE(driver_->shows("Sign Out", "Account"));
}

TEST_F(AccountItemTest, IsReachedByTheKeyboardControlOfTheRibbon)
{
    show_();
    signIn_(ann);
    driver_->key(GLFW_KEY_F10);
    for (int i = 0; i < 10 && !UiTree::instance().hasWindow("Account"); ++i)
    {
        driver_->key(GLFW_KEY_RIGHT);
        if (driver_->find(ann, header).has_value() && driver_->find("Notifications", header).has_value())
            driver_->key(GLFW_KEY_ENTER);
    }
    EXPECT_TRUE(UiTree::instance().hasWindow("Account"));
}

TEST_F(AccountItemTest, TellsOfASignInByTheBrowser)
{
    const auto window = show_(2, true);
    saveAuthToken(tokenOf_("bob@example.com"));
    window.webAuthSignInCallback();
    answer_(200, tokens_(""));
    ASSERT_THAT(menu_->notifier()->shown(), SizeIs(1));
    EXPECT_EQ(menu_->notifier()->shown().front().notification.text, "bob@example.com");
    driver_->press("Sign Out");
    EXPECT_EQ(UserInfo::getEmail(), "");
    EXPECT_THAT(calls_, ElementsAre("signed out"));
}

TEST_F(AccountItemTest, LeavesAnotherUserAloneWhenAnEarlierNoticeIsPressed)
{
    const auto window = show_(2, true);
    saveAuthToken(tokenOf_("bob@example.com"));
    window.webAuthSignInCallback();
    answer_(200, tokens_(""));
    const auto notice = menu_->notifier()->shown().front().notification;
    menu_->auth->signOut();
    signIn_(ann);
    notice.onButtonClick();
    EXPECT_EQ(UserInfo::getEmail(), ann);
}

TEST_F(AccountItemTest, TellsNothingOfASignInByPassword)
{
    show_();
    signIn_(ann);
    EXPECT_THAT(menu_->notifier()->shown(), IsEmpty());
}

} // namespace

} // namespace VX

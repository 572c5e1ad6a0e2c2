#include "WelcomeFixture.h"

#include <VXViewer/FileOpening.h>
#include <VXViewer/InputEvent.h>
#include <VXViewer/MainLoop.h>
#include <VXViewer/RibbonNotification.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace VX
{

namespace
{

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr const char* points = "0 0 0\n1 0 0\n0 1 0\n";

/// What the menu does while the user has to sign in.
class SignInGateTest : public VX::Test::WelcomeFixture
{
protected:
    [[nodiscard]] AuthWindowAccess access_() const { return AuthWindowAccess(*menu_->authWindow_()); }

    const VX::Test::TempDir folder_;
};

TEST_F(SignInGateTest, coversTheMenuUntilSomebodyIsSignedIn)
{
    startSignedOut_(roomy);
    EXPECT_TRUE(menu_->isCovered());
    signIn_();
    EXPECT_FALSE(menu_->isCovered());
}

TEST_F(SignInGateTest, leavesTheRibbonOutOfReachOfTheMouse)
{
    const auto item = addItem_("Mark");
    RibbonSchemaHolder::schema().quickAccess = {"Mark"};
    RibbonSchemaHolder::markChanged();
    startSignedOut_(roomy);
    const auto button = driver_->find("Mark");
    ASSERT_TRUE(button);
    driver_->click((button->min + button->max) / 2);
    EXPECT_EQ(item->presses, 0);
}

TEST_F(SignInGateTest, letsNoShortcutAct)
{
    const auto undo = addItem_("Undo");
    const auto remove = addItem_("Delete Selection");
    startSignedOut_(roomy);
    driver_->key(GLFW_KEY_Z, GLFW_MOD_CONTROL);
    driver_->key(GLFW_KEY_DELETE);
    driver_->key(GLFW_KEY_F10);
    driver_->key(GLFW_KEY_P, GLFW_MOD_CONTROL | GLFW_MOD_SHIFT);
    driver_->settle();
    EXPECT_EQ(undo->presses + remove->presses, 0);
    EXPECT_THAT(reported_(), IsEmpty());
}

TEST_F(SignInGateTest, leavesDroppedFilesClosed)
{
    startSignedOut_(roomy);
    session_->window().inject(DropEvent{{folder_.write("part.xyz", points)}, {640, 400}});
    driver_->settle();
    EXPECT_TRUE(viewer_().fileOpening().isIdle());
    EXPECT_TRUE(viewer_().scene().children().empty());
}

TEST_F(SignInGateTest, takesDroppedFilesAfterTheSignIn)
{
    start_(roomy);
    session_->window().inject(DropEvent{{folder_.write("part.xyz", points)}, {640, 400}});
    EXPECT_TRUE(driver_->waitFor([&] { return !viewer_().scene().children().empty(); }));
}

TEST_F(SignInGateTest, opensTheFilesOfTheCommandLine)
{
    startSignedOut_(roomy);
    viewer_().openFiles({folder_.write("part.xyz", points)});
    EXPECT_TRUE(driver_->waitFor([&] { return !viewer_().scene().children().empty(); }));
}

TEST_F(SignInGateTest, keepsNotificationsUntilTheSignIn)
{
    startSignedOut_(roomy);
    RibbonNotification notification;
    notification.text = "It is done.";
    menu_->pushNotification(notification);
    redraw_();
    EXPECT_FALSE(driver_->shows("It is done."));
    signIn_();
    redraw_();
    EXPECT_TRUE(driver_->shows("It is done."));
}

TEST_F(SignInGateTest, showsMessages)
{
    startSignedOut_(roomy);
    menu_->showModalMessage("It does not work.", NotificationType::Error);
    redraw_();
    EXPECT_TRUE(driver_->press("OK"));
    redraw_();
    EXPECT_FALSE(driver_->shows("It does not work."));
}

TEST_F(SignInGateTest, tellsOfASignInUnderWay)
{
    EXPECT_FALSE(menu_->isAuthInProcess());
    access_().requestSignIn();
    EXPECT_TRUE(menu_->isAuthInProcess());
    transport_->last().answer(VX::Test::makeAnswer(400, R"({"message": "No."})"));
    EXPECT_FALSE(menu_->isAuthInProcess());
}

TEST_F(SignInGateTest, countsASignInUnderWayAsLoading)
{
    startSignedOut_(roomy);
    access_().requestSignIn();
    bool loaded = false;
    viewer_().loop().whenLoaded([&] { loaded = true; });
    redraw_();
    EXPECT_FALSE(loaded);
    transport_->last().answer(VX::Test::makeAnswer(400, R"({"message": "No."})"));
    driver_->settle();
    EXPECT_TRUE(loaded);
}

TEST_F(SignInGateTest, doesNotCoverWhileAStoredSignInIsTried)
{
    constexpr int starting = 0;
    access_().setState(starting);
    startSignedOut_(roomy);
    EXPECT_FALSE(menu_->isCovered());
    EXPECT_TRUE(menu_->isAuthInProcess());
    EXPECT_FALSE(showsCards_());
}

TEST_F(SignInGateTest, comesBackWithTheSignOut)
{
    start_(roomy);
    menu_->signOut();
    redraw_();
    EXPECT_TRUE(menu_->isCovered());
    EXPECT_FALSE(showsCards_());
}

TEST_F(SignInGateTest, outlivesTheLastReport)
{
    std::vector<std::string> sentWithSignIn;
    const auto watching = VX::Test::RecordingTransport::install(
        [&](const WebRequestData& request)
        {
            if (menu_->authWindow_() && request.body)
                sentWithSignIn.push_back(*request.body);
            return std::nullopt;
        });
    start_(roomy);
    end_();
    EXPECT_THAT(sentWithSignIn, Contains(HasSubstr("Close Application")));
}

TEST_F(SignInGateTest, isGoneWithTheEndOfTheMenu)
{
    startSignedOut_(roomy);
    access_().requestSignIn();
    const auto request = transport_->last();
    end_();
    EXPECT_FALSE(menu_->isAuthInProcess());
    EXPECT_FALSE(menu_->isCovered());
    menu_->signOut();
    request.answer(VX::Test::makeAnswer(200, R"({"AuthenticationResult": {"AccessToken": "access token"}})"));
    EXPECT_FALSE(menu_->authWindow_());
    EXPECT_EQ(UserInfo::getAccessToken(), "");
}

} // namespace

} // namespace VX

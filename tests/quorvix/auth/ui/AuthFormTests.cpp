#include "AuthUiFixture.h"

#include <VXViewer/UiTree.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace VX
{

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class AuthFormTest : public VX::Test::AuthUiFixture
{
protected:
    /// Every text of the interface: labels and values.
    static bool isRecorded_(const std::string& text)
    {
        return std::ranges::any_of(
            UiTree::instance().items(), [&](const UiItem& item)
            { return item.label.find(text) != std::string::npos || item.value.find(text) != std::string::npos; });
    }

    [[nodiscard]] std::vector<Vector2f> places_(std::initializer_list<const char*> labels) const
    {
        std::vector<Vector2f> all;
        for (const char* label : labels)
            all.push_back(driver_->find(label, authWindow).value_or(UiItem()).min);
        return all;
    }
};

TEST_F(AuthFormTest, SignsInWithWhatIsTyped)
{
    const auto window = show_();
    fill_("Email", ann);
    fill_("Password", "s3cret");
    press_("Sign In");
    EXPECT_THAT(askedFor_(), ElementsAre("signInEmail"));
    EXPECT_EQ(lastBody_()["AuthParameters"]["USERNAME"], ann);
    EXPECT_EQ(lastBody_()["AuthParameters"]["PASSWORD"], "s3cret");
    answer_(200, tokens_());
    EXPECT_EQ(window.state(), 7);
    EXPECT_FALSE(UiTree::instance().hasWindow(authWindow));
}

TEST_F(AuthFormTest, NeedsNoMouse)
{
    show_();
    driver_->type(ann);
    driver_->key(GLFW_KEY_TAB);
    driver_->type("s3cret");
    driver_->key(GLFW_KEY_ENTER);
    EXPECT_THAT(askedFor_(), ElementsAre("signInEmail"));
    EXPECT_EQ(lastBody_()["AuthParameters"]["PASSWORD"], "s3cret");
}

TEST_F(AuthFormTest, BeginsInTheFirstEmptyField)
{
    const auto window = show_(7);
    window.email() = ann;
    goTo_(window, 2);
    driver_->type("s3cret");
    EXPECT_EQ(window.password(), "s3cret");
}

TEST_F(AuthFormTest, TabReachesEverythingInItsOrder)
{
    show_();
    std::vector<std::string> reached;
    for (int i = 0; i < 7; ++i)
    {
        driver_->key(GLFW_KEY_TAB);
        const auto& items = UiTree::instance().items();
        const auto focused = std::ranges::find_if(items, [](const UiItem& item) { return item.focused; });
        reached.push_back(focused != items.end() ? focused->label : "");
    }
    EXPECT_THAT(reached,
                ElementsAre("Password", "Show password", "Remember me", "password?", "Sign In", "Sign Up", "Email"));
}

TEST_F(AuthFormTest, TellsWhatIsWrongBesideEachField)
{
    show_();
    fill_("Email", "ann");
    press_("Sign In");
    EXPECT_TRUE(shows_("Please enter valid email"));
    EXPECT_TRUE(shows_("Please enter your password"));
    EXPECT_THAT(asked_(), IsEmpty());
    const auto field = driver_->find("Email", authWindow);
    const auto error = driver_->find("Please enter valid email", authWindow);
    ASSERT_TRUE(field && error);
    EXPECT_LE(error->max.y(), field->min.y());
    EXPECT_GT(error->min.y(), field->min.y() - 24);
}

TEST_F(AuthFormTest, ReturnsTheKeyboardToTheFieldThatIsWrong)
{
    const auto window = show_();
    fill_("Email", ann);
    press_("Sign In");
    EXPECT_FALSE(shows_("Please enter valid email"));
    driver_->type("s3cret");
    EXPECT_EQ(window.password(), "s3cret");
    EXPECT_FALSE(shows_("Please enter your password"));
    EXPECT_EQ(window.errorText(), "");
}

TEST_F(AuthFormTest, MovesNothingForAnError)
{
    show_();
    const auto labels = {"Email", "Password", "Remember me", "Sign In", "Sign Up"};
    const auto before = places_(labels);
    press_("Sign In");
    EXPECT_EQ(places_(labels), before);
    fill_("Email", ann);
    fill_("Password", "wrong");
    press_("Sign In");
    EXPECT_EQ(places_(labels), before);
    answer_(400, refusal_("Incorrect username or password."));
    EXPECT_TRUE(shows_("Incorrect username or password."));
    EXPECT_EQ(places_(labels), before);
}

TEST_F(AuthFormTest, ReturnsTheKeyboardToThePasswordThatWasRefused)
{
    const auto window = show_();
    fill_("Email", ann);
    fill_("Password", "wrong");
    driver_->key(GLFW_KEY_ENTER);
    answer_(400, refusal_("Incorrect username or password."));
    redraw_();
    driver_->type("right");
    EXPECT_EQ(window.password(), "right");
}

TEST_F(AuthFormTest, ChecksNewPasswordsByFourRules)
{
    const auto window = show_(3);
    fill_("Email", ann);
    const auto met = [&](const char* rule) { return driver_->find(rule, authWindow).value_or(UiItem()).value == "on"; };
    EXPECT_FALSE(met("At least 8 chars") || met("Lowercase letter") || met("Number") || met("Special character"));
    fill_("Password", "abc");
    EXPECT_TRUE(met("Lowercase letter"));
    EXPECT_FALSE(met("At least 8 chars") || met("Number") || met("Special character"));
    driver_->type("12345");
    EXPECT_TRUE(met("At least 8 chars") && met("Number"));
    press_("Sign Up");
    EXPECT_TRUE(shows_("Please enter valid password"));
    EXPECT_THAT(asked_(), IsEmpty());
    driver_->type(window.password() + "!");
    press_("Sign Up");
    EXPECT_THAT(askedFor_(), ElementsAre("signUp"));
}

TEST_F(AuthFormTest, ShowsThePasswordOnDemandAndRecordsItNever)
{
    show_();
    fill_("Password", "s3cret");
    EXPECT_FALSE(isRecorded_("s3cret"));
    press_("Show password");
    EXPECT_TRUE(shows_("Hide password"));
    EXPECT_FALSE(isRecorded_("s3cret"));
    press_("Hide password");
    EXPECT_TRUE(shows_("Show password"));
}

TEST_F(AuthFormTest, CopiesNoPassword)
{
    show_();
    session_->window().setClipboard("other");
    fill_("Password", "s3cret");
    for (const char* way : {"Show password", "Hide password"})
    {
        press_(way);
        driver_->press("Password", authWindow);
        driver_->key(GLFW_KEY_A, GLFW_MOD_CONTROL);
        driver_->key(GLFW_KEY_C, GLFW_MOD_CONTROL);
        EXPECT_EQ(session_->window().clipboard(), "other") << way;
    }
}

TEST_F(AuthFormTest, TakesWhatIsPasted)
{
    const auto window = show_();
    session_->window().setClipboard("s3cret from a keeper");
    driver_->press("Password", authWindow);
    driver_->key(GLFW_KEY_V, GLFW_MOD_CONTROL);
    EXPECT_EQ(window.password(), "s3cret from a keeper");
}

TEST_F(AuthFormTest, TakesNoMoreThanTheLimit)
{
    const auto window = show_(6);
    session_->window().setClipboard(std::string(1100, 'x'));
    for (const char* field : {"Code", "New Password"})
    {
        driver_->press(field, authWindow);
        driver_->key(GLFW_KEY_V, GLFW_MOD_CONTROL);
    }
    EXPECT_THAT(window.code(), SizeIs(1024));
    EXPECT_THAT(window.password(), SizeIs(1024));
}

TEST_F(AuthFormTest, CannotBeUsedWhileARequestIsUnderWay)
{
    show_();
    fill_("Email", ann);
    fill_("Password", "s3cret");
    press_("Sign In");
    EXPECT_TRUE(shows_("Waiting for the account service"));
    for (const char* label : {"Email", "Password", "Remember me", "Sign In"})
        EXPECT_EQ(driver_->obstacle(label, authWindow), fmt::format("\"{}\" in \"Auth window\" is disabled", label));
    driver_->key(GLFW_KEY_ENTER);
    EXPECT_THAT(asked_(), SizeIs(1));
}

TEST_F(AuthFormTest, GivesARequestUp)
{
    const auto window = show_();
    fill_("Email", ann);
    fill_("Password", "s3cret");
    press_("Sign In");
    press_("Cancel");
    EXPECT_FALSE(window.isBusy());
    EXPECT_EQ(window.password(), "s3cret");
    answer_(200, tokens_());
    EXPECT_EQ(window.state(), 2);
}

TEST_F(AuthFormTest, GivesARequestUpByEscape)
{
    const auto window = show_();
    fill_("Email", ann);
    fill_("Password", "s3cret");
    press_("Sign In");
    driver_->key(GLFW_KEY_ESCAPE);
    EXPECT_FALSE(window.isBusy());
}

TEST_F(AuthFormTest, GivesARequestUpByLeavingItsScreen)
{
    const auto window = show_(5);
    fill_("Email", ann);
    press_("Reset My Password");
    EXPECT_TRUE(window.isBusy());
    press_("Sign In");
    EXPECT_FALSE(window.isBusy());
    answer_(200, sentTo_("a***"));
    EXPECT_EQ(window.state(), 2);
}

TEST_F(AuthFormTest, LeavesAnErrorBehindWithItsScreen)
{
    show_();
    press_("Sign In");
    press_("password?");
    EXPECT_FALSE(shows_("Please enter valid email"));
    press_("Sign In");
    EXPECT_FALSE(shows_("Please enter valid email"));
}

} // namespace

} // namespace VX

#include "tests/quorvix/system/JourneyFixture.h"

#include <VXMesh/Object.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <backend/accounts/UserCommand.h>

namespace VX::Test
{

namespace
{

using ::testing::ElementsAre;

constexpr const char* address = "ann@example.com";
constexpr const char* otherAddress = "bob@example.com";
constexpr const char* password = "passw0rd!";
constexpr const char* newPassword = "n3w-passw0rd";
constexpr const char* welcomeCard = "Drag & Drop Files";

constexpr std::size_t languageList = 0;
constexpr std::size_t themeList = 1;

/// From the first start to the sign-in with another password, each step as the user does it. Before the program ends
/// and before the user signs out what is reported has arrived: both give up what is still on its way.
class JourneyTest : public JourneyFixture
{
public:
    void SetUp() override
    {
        JourneyFixture::SetUp();
        CommandArguments arguments;
        arguments.command = CommandArguments::Command::UserAdd;
        arguments.dataFolder = data_;
        arguments.address = otherAddress;
        ASSERT_TRUE(runUserCommand(arguments, [] { return password; }));
    }

    using Step = void (JourneyTest::*)();

    /// One run of the program with these steps, up to the first that fails.
    void take_(const std::vector<Step>& steps)
    {
        run_(
            [&]
            {
                for (const Step step : steps)
                {
                    if (!HasFailure())
                        (this->*step)();
                }
            });
    }

    void setUpQuickly_()
    {
        see_("Getting started with Quorvix");
        choose_(languageList, "Deutsch");
        see_("Erste Schritte mit Quorvix");
        choose_(languageList, "English");
        see_("Getting started with Quorvix");
        choose_(themeList, "Light");
        EXPECT_EQ(ColorTheme::getPreset(), ColorTheme::Preset::Light);
        press_("Close");
        redraw_();
        EXPECT_FALSE(shows_("Getting started with Quorvix"));
    }

    void trySignUp_(const std::string& email, const std::string& secret)
    {
        fill_("Email", email);
        fill_("Password", secret);
        press_("Sign Up", signInWindow);
    }

    void failToSignUp_()
    {
        press_("Sign Up", signInWindow);
        see_("Already have an account?");
        trySignUp_("ann", password);
        see_("Please enter valid email");
        trySignUp_(otherAddress, "short");
        see_("Please enter valid password");
        trySignUp_(otherAddress, password);
        see_("User already exists");
    }

    void signUp_()
    {
        trySignUp_(address, password);
        see_("Enter it below to confirm your account.");
        const std::string first = newestCode_();
        fill_("Code", first == "000000" ? "111111" : "000000");
        press_("Confirm Account");
        see_("Invalid verification code provided, please try again.");
        const auto sent = mailCount(data_ / "outbox");
        press_("Resend it");
        EXPECT_TRUE(driver_.waitFor([&] { return mailCount(data_ / "outbox") == sent + 1; }));
        press_("Confirm Account");
        see_("Invalid verification code provided, please try again.");
        fill_("Code", newestCode_());
        press_("Confirm Account");
        see_("Need an account?");
    }

    void trySignIn_(const std::string& secret)
    {
        fill_("Password", secret);
        press_("Sign In", signInWindow);
    }

    void signIn_()
    {
        trySignIn_("wr0ng-passw0rd");
        see_("Incorrect username or password.");
        trySignIn_(password);
        see_("We'd Like to Improve Your Experience");
    }

    void manageSettings_()
    {
        EXPECT_FALSE(shows_(welcomeCard));
        press_("Manage Settings");
        see_("Collect Usage Statistics");
        press_("Close", "Settings");
        redraw_();
        EXPECT_FALSE(shows_("Collect Usage Statistics"));
    }

    void createObject_()
    {
        see_(welcomeCard);
        press_("Create Object");
        press_("Place");
        EXPECT_TRUE(driver_.waitFor([this] { return !session_.viewer().scene().children().empty(); }));
        redraw_();
        EXPECT_FALSE(shows_(welcomeCard));
    }

    void emptyScene_()
    {
        driver_.key(GLFW_KEY_A, GLFW_MOD_CONTROL);
        press_("Delete", "Ribbon");
        see_(welcomeCard);
    }

    void switchWelcomeOff_()
    {
        press_("Show on Startup");
        EXPECT_FALSE(Config::instance().getBool("cShowWelcomeWindow", true));
        EXPECT_TRUE(waitForActions_(9));
    }

    /// What the program remembers when it starts again.
    void comeBack_()
    {
        see_(address);
        EXPECT_FALSE(shows_(signInWindow));
        EXPECT_FALSE(shows_("Getting started with Quorvix"));
        EXPECT_FALSE(shows_("We'd Like to Improve Your Experience"));
        EXPECT_FALSE(shows_(welcomeCard));
        EXPECT_EQ(ColorTheme::getPreset(), ColorTheme::Preset::Light);
        EXPECT_TRUE(waitForActions_(11));
    }

    void signOut_()
    {
        press_(address);
        press_("Sign Out", "Account");
        see_("Need an account?");
    }

    void resetPassword_()
    {
        press_("password?");
        press_("Reset My Password");
        see_("Enter it below to reset your password.");
        fill_("Code", newestCode_());
        fill_("New Password", newPassword);
        press_("Change Password");
        see_("Need an account?");
    }

    void signInAgain_()
    {
        trySignIn_(password);
        see_("Incorrect username or password.");
        trySignIn_(newPassword);
        see_(address);
        EXPECT_TRUE(waitForActions_(13));
    }
};

TEST_F(JourneyTest, leadsFromTheFirstStartToAnotherPassword)
{
    take_({&JourneyTest::setUpQuickly_, &JourneyTest::failToSignUp_, &JourneyTest::signUp_, &JourneyTest::signIn_,
           &JourneyTest::manageSettings_, &JourneyTest::createObject_, &JourneyTest::emptyScene_,
           &JourneyTest::switchWelcomeOff_});
    take_({&JourneyTest::comeBack_, &JourneyTest::signOut_, &JourneyTest::resetPassword_, &JourneyTest::signInAgain_});
    EXPECT_THAT(stored_("SELECT name FROM actions ORDER BY time, id"),
                ElementsAre("Color Theme Changed: Light", "Sign In", "Welcome Screen: \"Create Object\" Clicked",
                            "Tool Activated: Create Simple Objects", "History Added: Create Simple Object",
                            "Tool Activated: Select all", "History Added: Delete Selection",
                            "Tool Activated: Delete Selection", "Welcome Screen Disabled", "Close Application",
                            "Sign In", "Sign Out", "Sign In", "Close Application"));
    EXPECT_THAT(stored_("SELECT email FROM sessions"), ElementsAre(address, address, address));
}

} // namespace

} // namespace VX::Test

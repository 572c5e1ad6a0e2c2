#include "tests/quorvix/system/JourneyFixture.h"

#include <VXMesh/Object.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <backend/accounts/UserCommand.h>

#include <imgui_internal.h>
#include <iostream>

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

/// From the first start to the sign-in with another password, each step as the user does it.
class JourneyTest : public JourneyFixture
{
protected:
    void SetUp() override
    {
        JourneyFixture::SetUp();
        CommandArguments arguments;
        arguments.command = CommandArguments::Command::UserAdd;
        arguments.dataFolder = data_;
        arguments.address = otherAddress;
        ASSERT_TRUE(runUserCommand(arguments, [] { return password; }));
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
        std::cerr << "OBST " << driver_.obstacle("Manage Settings") << "\n";
        redraw_();
        std::cerr << "OBST " << driver_.obstacle("Manage Settings") << "\n";
        for (int i = 0; i < 6; ++i) redraw_();
        std::cerr << "OBST " << driver_.obstacle("Manage Settings") << "\n";
        for (const auto* w : ImGui::GetCurrentContext()->Windows) if (w->Active) std::cerr << w->Name << " " << w->Pos.x << " " << w->Pos.y << " " << w->Size.x << " " << w->Size.y << "\n";
        const auto* h = ImGui::GetCurrentContext()->HoveredWindow; std::cerr << "HOVERED " << (h ? h->Name : "none") << " id " << ImGui::GetCurrentContext()->HoveredId << " active " << ImGui::GetCurrentContext()->ActiveId << " nav " << (ImGui::GetCurrentContext()->NavWindow ? ImGui::GetCurrentContext()->NavWindow->Name : "") << " dishov " << ImGui::GetCurrentContext()->NavDisableMouseHover << " mouse " << ImGui::GetIO().MousePos.x << "\n";
        press_("Manage Settings");
        see_("Collect Usage Statistics");
        dump_();
    }

    void dump_()
    {
        for (const UiItem& item : UiTree::instance().items())
            std::cerr << static_cast<int>(item.kind) << " [" << item.window << "] '" << item.label
                      << "' = " << item.value << (item.isVisible() ? "" : " HIDDEN") << "\n";
    }
};

TEST_F(JourneyTest, endsSignedInWithAnotherPassword)
{
    run_(
        [this]
        {
            setUpQuickly_();
            failToSignUp_();
            signUp_();
            signIn_();
            manageSettings_();
        });
}

} // namespace

} // namespace VX::Test

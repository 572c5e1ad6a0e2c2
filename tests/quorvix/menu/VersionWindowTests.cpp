#include "MenuFixture.h"

#include <VXMesh/SystemFacts.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/InputEvent.h>
#include <VXViewer/MainLoop.h>
#include <VXViewer/OpenLink.h>
#include <VXViewer/RibbonConfig.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <imgui_internal.h>

#include <thread>

namespace VX
{

namespace
{

class VersionWindowTest : public VX::Test::MenuFixture
{
protected:
    void SetUp() override
    {
        MenuFixture::SetUp();
        runVersion_("1.4.0.0");
    }

    void TearDown() override
    {
        setLinkOpener({});
        MenuFixture::TearDown();
    }

    static void runVersion_(const std::string& version)
    {
        SystemFacts facts = overriddenSystemFacts();
        facts.version = version;
        overrideSystemFacts(facts);
    }

    /// The requests for the latest version so far.
    [[nodiscard]] std::vector<VX::Test::RecordingTransport::Sent> requests_() const
    {
        auto sent = transport_->sent();
        std::erase_if(sent, [](const auto& request) { return request.request.logName != "version"; });
        return sent;
    }

    void answer_(const Json::Value& answer)
    {
        requests_().front().answer(answer);
        driver_->settle();
    }

    /// The service names this version as the latest.
    void answerVersion_(const std::string& latest) { answer_(VX::Test::makeAnswer(200, latest)); }

    [[nodiscard]] bool shows_() const { return driver_->shows("Get Update"); }

    static void expectWindowAt_(float x, float y)
    {
        const ImGuiWindow* const window = ImGui::FindWindowByName("##VersionUpdateWindow");
        ASSERT_TRUE(window);
        EXPECT_EQ(window->Pos.x, x);
        EXPECT_EQ(window->Pos.y, y);
    }
};

TEST_F(VersionWindowTest, asksTheServiceOnce)
{
    start_();
    ASSERT_EQ(requests_().size(), 1U);
    const auto request = requests_().front().request;
    EXPECT_EQ(request.url, "https://version.example.com/version/latesttag");
    EXPECT_EQ(request.method, WebMethod::Get);
    EXPECT_TRUE(request.async);
    answer_(VX::Test::makeAnswer(0, ""));
    redraw_();
    EXPECT_EQ(requests_().size(), 1U);
    EXPECT_FALSE(shows_());
}

TEST_F(VersionWindowTest, asksAlsoWhileNobodyIsSignedIn)
{
    startSignedOut_();
    EXPECT_EQ(requests_().size(), 1U);
}

TEST_F(VersionWindowTest, asksNothingWhereTheUserDoesNotWantThat)
{
    // The settings are the session's.
    session_.emplace(nullptr);
    Config::instance().setBool("checkForUpdates", false);
    viewer_().setMenuPlugin(menu_);
    viewer_().startUi();
    driver_.emplace(*session_);
    redraw_();
    EXPECT_TRUE(requests_().empty());
    Config::instance().setBool("checkForUpdates", true);
    redraw_();
    EXPECT_EQ(requests_().size(), 1U);
}

TEST_F(VersionWindowTest, asksNothingWhileThereIsNoRibbon)
{
    RibbonConfig config;
    config.drawHeader = false;
    menu_->applyConfig(config);
    RibbonSchemaHolder::schema().tabs.front().forType = "Nothing";
    start_();
    ASSERT_FALSE(menu_->isRibbonShown());
    EXPECT_TRUE(requests_().empty());
}

TEST_F(VersionWindowTest, comparesVersionsByTheirNumbers)
{
    start_();
    answerVersion_("1.10.0.0");
    EXPECT_TRUE(driver_->shows("Version 1.10.0.0 is available"));
}

TEST_F(VersionWindowTest, tellsNothingOfAnOlderVersion)
{
    runVersion_("2.0.0.0");
    start_();
    answerVersion_("1.9.9.9");
    EXPECT_FALSE(shows_());
}

TEST_F(VersionWindowTest, tellsNothingOfTheSameVersion)
{
    start_();
    answerVersion_("1.4.0.0");
    EXPECT_FALSE(shows_());
}

TEST_F(VersionWindowTest, tellsNothingOfAVersionOfThreeParts)
{
    start_();
    answerVersion_("1.5.0");
    EXPECT_FALSE(shows_());
}

TEST_F(VersionWindowTest, tellsNothingToADevelopmentBuild)
{
    runVersion_("D1.0.0.0");
    start_();
    answerVersion_("9.9.9.9");
    EXPECT_FALSE(shows_());
}

TEST_F(VersionWindowTest, writesTheNumbersAnew)
{
    start_();
    answerVersion_("01.5.0.0x");
    EXPECT_TRUE(driver_->shows("Version 1.5.0.0 is available"));
}

TEST_F(VersionWindowTest, tellsNothingForAnyOtherAnswer)
{
    Json::Value noText(Json::objectValue);
    noText["code"] = 200;
    Json::Value numberForText = noText;
    numberForText["text"] = 9;
    Json::Value textForCode(Json::objectValue);
    textForCode["code"] = "200";
    textForCode["text"] = "9.9.9.9";
    start_();
    for (const Json::Value& answer :
         {VX::Test::makeAnswer(404, "9.9.9.9"), VX::Test::makeAnswer(201, "9.9.9.9"), noText, numberForText,
          textForCode, Json::Value(), Json::Value("9.9.9.9"), Json::Value(Json::arrayValue)})
    {
        answer_(answer);
        EXPECT_FALSE(shows_()) << answer.toStyledString();
    }
}

TEST_F(VersionWindowTest, staysClosedOnceTheUserHasClosedIt)
{
    start_();
    answerVersion_("1.10.0.0");
    ASSERT_TRUE(driver_->press("Close"));
    redraw_();
    EXPECT_FALSE(shows_());
    EXPECT_EQ(requests_().size(), 1U);
}

TEST_F(VersionWindowTest, opensThePageForDownloads)
{
    std::string opened;
    setLinkOpener([&](const std::string& url) { opened = url; });
    start_();
    answerVersion_("1.10.0.0");
    ASSERT_TRUE(driver_->press("Get Update"));
    EXPECT_EQ(opened, "https://www.example.com/download");
    EXPECT_TRUE(shows_());
}

TEST_F(VersionWindowTest, waitsForTheSignIn)
{
    startSignedOut_();
    answerVersion_("1.10.0.0");
    EXPECT_FALSE(shows_());
    signIn_();
    redraw_();
    EXPECT_TRUE(shows_());
}

TEST_F(VersionWindowTest, drawsNothingButItsCrossInTheFrameThatClosesIt)
{
    start_();
    answerVersion_("1.10.0.0");
    const auto close = driver_->find("Close");
    ASSERT_TRUE(close);
    const Vector2f middle = (close->min + close->max) / 2;
    for (const bool pressed : {true, false})
        session_->window().inject(MouseButtonEvent{.pressed = pressed, .position = middle});
    while (shows_() && viewer_().loop().turn(false))
    {
    }
    EXPECT_TRUE(driver_->shows("Close"));
    EXPECT_FALSE(driver_->shows("Version  is available"));
    driver_->settle();
    EXPECT_FALSE(driver_->shows("Close"));
}

TEST_F(VersionWindowTest, standsBelowTheRibbonAtTheRight)
{
    start_({1000, 700});
    answerVersion_("1.10.0.0");
    expectWindowAt_(680, 120);
}

TEST_F(VersionWindowTest, growsWithTheScale)
{
    start_({2000, 1400}, 2);
    answerVersion_("1.10.0.0");
    expectWindowAt_(1360, 240);
    const auto button = driver_->find("Get Update");
    ASSERT_TRUE(button);
    EXPECT_NEAR(button->max.y() - button->min.y(), 48, 1);
    EXPECT_GE(button->max.x() - button->min.x(), 176 - 1);
}

TEST_F(VersionWindowTest, fitsIntoTheWindow)
{
    start_({1000, 700});
    answerVersion_("12.345.678.9012");
    for (const char* label : {"Close", "Version 12.345.678.9012 is available", "Get Update"})
    {
        const auto item = driver_->find(label);
        ASSERT_TRUE(item) << label;
        EXPECT_GE(item->min.x(), 1000 - 320) << label;
        EXPECT_GE(item->min.y(), 120) << label;
        EXPECT_LE(item->max.x(), 1000) << label;
        EXPECT_TRUE((item->visibleMax - item->max).isZero()) << label;
    }
}

TEST_F(VersionWindowTest, takesAnAnswerFromAnotherThreadOnItsOwn)
{
    start_();
    std::thread([this] { requests_().front().answer(VX::Test::makeAnswer(200, "1.10.0.0")); }).join();
    EXPECT_FALSE(CommandLoop::isEmpty());
    driver_->settle();
    EXPECT_TRUE(shows_());
}

TEST_F(VersionWindowTest, takesNoHarmFromAnAnswerAfterTheEnd)
{
    auto menu = std::make_shared<QuorvixRibbonMenu>();
    session_.emplace(menu);
    const auto request = requests_().back();
    session_.reset();
    menu.reset();
    std::thread([&] { request.answer(VX::Test::makeAnswer(200, "1.10.0.0")); }).join();
    CommandLoop::processCommands();
    request.answer(VX::Test::makeAnswer(200, "1.10.0.0"));
    start_();
    EXPECT_FALSE(shows_());
}

} // namespace

} // namespace VX

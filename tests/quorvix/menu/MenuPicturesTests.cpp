#include "StartupFixture.h"
#include "tests/quorvix/support/WindowLook.h"

#include <VXViewer/MainLoop.h>

#include <gtest/gtest.h>

#include <cmath>

namespace VX
{

namespace
{

/// The windows over the viewer, each with a little of what is around it, as they were judged.
class MenuPictures : public VX::Test::StartupFixture, public testing::WithParamInterface<VX::Test::WindowLook>
{
protected:
    /// There is room for the cards.
    static constexpr PixelSize units{1220, 680};

    void SetUp() override
    {
        StartupFixture::SetUp();
        SystemFacts facts = overriddenSystemFacts();
        facts.version = "1.4.0.0";
        overrideSystemFacts(facts);
    }

    void TearDown() override
    {
        VX::Test::WindowLook::restore();
        StartupFixture::TearDown();
    }

    void open_() { start_(look_().pixels(units), look_().scale()); }

    void apply_()
    {
        look_().apply();
        redraw_();
    }

    static const VX::Test::WindowLook& look_() { return GetParam(); }

    /// The part of the window that begins at `left`, `top` and has this size, in units of the design.
    void expectPicture_(const char* name, float left, float top, PixelSize size) const
    {
        const Image whole = viewer_().loop().captureWindow();
        const Image part = VX::Test::cropped(whole, look_().pixels(left), look_().pixels(top), look_().pixels(size));
        EXPECT_TRUE(VX::Test::looksAsJudged(part, name, look_()));
    }

    /// The part of this size in the middle: of a modal window alone, as what is around it is still growing dim.
    void expectMiddle_(const char* name, PixelSize size) const
    {
        expectPicture_(name, static_cast<float>(units.width - size.width) / 2,
                       static_cast<float>(units.height - size.height) / 2, size);
    }
};

TEST_P(MenuPictures, OfTheWelcomeCards)
{
    open_();
    apply_();
    constexpr PixelSize size{898, 540};
    const float left = (units.width + menu_->leftPanelWidth() / look_().scale() - size.width) / 2;
    const float top = (units.height + menu_->topPanelHeight() - size.height) / 2;
    expectPicture_("welcome", std::floor(left), std::floor(top), size);
}

TEST_P(MenuPictures, OfTheNewVersion)
{
    open_();
    addMesh_(); // in place of the cards
    apply_();
    auto sent = transport_->sent();
    std::erase_if(sent, [](const auto& request) { return request.request.logName != "version"; });
    sent.front().answer(VX::Test::makeAnswer(200, "1.10.0.0"));
    redraw_();
    constexpr PixelSize size{336, 80};
    expectPicture_("version", units.width - size.width, 104, size);
}

TEST_P(MenuPictures, OfTheQuickSetup)
{
    open_();
    haveSettings_();
    setDisclaimer_(0);
    askAtStart_();
    apply_();
    expectMiddle_("quick-setup", {496, 316});
}

TEST_P(MenuPictures, OfTheTelemetryDisclaimer)
{
    open_();
    haveSettings_(2);
    setDisclaimer_(1);
    askAtStart_();
    apply_();
    expectMiddle_("disclaimer", {796, 186});
}

INSTANTIATE_TEST_SUITE_P(In, MenuPictures, VX::Test::allLooks(), VX::Test::lookName);

} // namespace

} // namespace VX

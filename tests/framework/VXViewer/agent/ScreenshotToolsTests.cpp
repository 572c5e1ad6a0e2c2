#include "AgentFixture.h"

#include <VXViewer/ImageFile.h>
#include <VXViewer/MainLoop.h>
#include <VXViewer/RibbonMenuItem.h>
#include <VXViewer/UI.h>

#include <gtest/gtest.h>

#include <random>

namespace VX
{

using testing::HasSubstr;
using testing::StartsWith;

/// A tool whose panel has a field with a password, shown in letters.
class PasswordForm : public RibbonMenuItem
{
public:
    PasswordForm()
        : RibbonMenuItem("Form")
    {
    }

    void press() override {}

    [[nodiscard]] bool isActive() const override { return true; }

    [[nodiscard]] bool isTool() const override { return true; }

    void drawPanel() override
    {
        ImGui::SetNextWindowPos({300, 200});
        UI::beginWindow("Form", ImGuiWindowFlags_AlwaysAutoResize);
        UI::inputText("##password", password, {.password = true, .revealed = true});
        UI::endWindow();
    }

    std::string password;
};

/// So many small triangles in all directions that a picture of them is hard to compress.
Mesh makeConfetti()
{
    std::mt19937 random(7);
    std::uniform_real_distribution<float> place(-10, 10);
    std::uniform_real_distribution<float> edge(-0.2F, 0.2F);
    Mesh mesh;
    for (std::int32_t i = 0; i < 60000; ++i)
    {
        const Vector3f middle(place(random), place(random), place(random));
        for (int corner = 0; corner < 3; ++corner)
            mesh.points.push_back(middle + Vector3f(edge(random), edge(random), edge(random)));
        mesh.triangles.emplace_back(3 * i, 3 * i + 1, 3 * i + 2);
    }
    return mesh;
}

class ScreenshotToolsTests : public VX::Test::AgentFixture
{
protected:
    /// The picture of a call that succeeds.
    Image picture_(const std::string& name, const std::string& arguments = "{}")
    {
        const Mcp::ToolResult result = run_(name, arguments);
        EXPECT_FALSE(result.isError);
        if (result.isError || result.content.empty())
            return {};
        facts_ = result.structured;
        EXPECT_EQ(result.content.front().mimeType, "image/png");
        const auto image = readPng(folder_.write("picture.png", result.content.front().data));
        EXPECT_TRUE(image) << image.error();
        return image.value_or(Image());
    }

    [[nodiscard]] static std::size_t countVisible_(const Image& image)
    {
        return static_cast<std::size_t>(std::ranges::count_if(image.pixels, [](const Color& c) { return c.a > 128; }));
    }

    Json::Value facts_;
};

TEST_F(ScreenshotToolsTests, ShowsWhatTheViewShows)
{
    const Image image = picture_("viewer.captureScreenshot");
    EXPECT_EQ(image.size.width, 1000);
    EXPECT_EQ(image.size.height, facts_["height"].asInt());
    const PixelRect& area = viewer_.view().area();
    EXPECT_NEAR(image.size.height, 1000.0 * area.height / area.width, 1);
    EXPECT_EQ(facts_["camera"]["projection"].asString(), "perspective");
}

TEST_F(ScreenshotToolsTests, DrawsChosenObjectsAlone)
{
    const std::string all = R"({"transparent": true, "maxSize": 200, "view": "front"})";
    const std::string one =
        R"({"transparent": true, "maxSize": 200, "view": "front", "fit": false, "ids": [)" + id_(*a_) + "]}";
    const std::size_t allPixels = countVisible_(picture_("viewer.captureScreenshot", all));
    const std::size_t onePixels = countVisible_(picture_("viewer.captureScreenshot", one));
    EXPECT_GT(onePixels, 0U);
    EXPECT_LT(onePixels, allPixels / 2);
}

TEST_F(ScreenshotToolsTests, DrawsAChosenObjectThatIsHidden)
{
    a_->setVisible(false);
    const std::string one = R"({"transparent": true, "maxSize": 200, "ids": [)" + id_(*a_) + "]}";
    EXPECT_GT(countVisible_(picture_("viewer.captureScreenshot", one)), 1000U);
}

TEST_F(ScreenshotToolsTests, LeavesTheUsersViewAlone)
{
    const Camera before = viewer_.view().camera();
    picture_("viewer.captureScreenshot", R"({"view": "top", "maxSize": 100})");
    EXPECT_EQ(viewer_.view().camera(), before);
}

TEST_F(ScreenshotToolsTests, DrawsTheSamePictureAgainFromTheCameraThatItAnswered)
{
    const Image first = picture_("viewer.captureScreenshot", R"({"view": "isometric", "maxSize": 300})");
    Json::Value again;
    again["maxSize"] = 300;
    again["camera"] = facts_["camera"];
    const Image second = picture_("viewer.captureScreenshot", again.toStyledString());
    std::size_t different = 0;
    for (std::size_t i = 0; i < first.pixels.size() && i < second.pixels.size(); ++i)
        different += first.pixels[i] == second.pixels[i] ? 0 : 1;
    EXPECT_LT(different, first.pixels.size() / 100);
}

TEST_F(ScreenshotToolsTests, SendsAJpegWhereAskedTo)
{
    const Mcp::ToolResult result = run_("viewer.captureScreenshot", R"({"format": "jpeg"})");
    ASSERT_FALSE(result.isError);
    EXPECT_EQ(result.content.front().mimeType, "image/jpeg");
    EXPECT_THAT(result.content.front().data, StartsWith("\xFF\xD8\xFF"));
}

TEST_F(ScreenshotToolsTests, TakesTheWholeWindow)
{
    const Image image = picture_("viewer.captureScreenshot", R"({"area": "window"})");
    EXPECT_EQ(image.size, (PixelSize{1000, 700}));
}

TEST_F(ScreenshotToolsTests, ShowsNoPasswordThatTheUserHasMadeVisible)
{
    const auto form = std::make_shared<PasswordForm>();
    RibbonSchemaHolder::addItem(form);
    const auto pictureOf = [&](const char* password)
    {
        form->password = password;
        viewer_.incrementForceRedrawFrames(2);
        driver_.settle();
        return picture_("viewer.captureScreenshot", R"({"area": "window"})").pixels;
    };
    const auto first = pictureOf("wide words");
    EXPECT_TRUE(driver_.shows("Form"));
    EXPECT_EQ(pictureOf("i.i.i.i.i."), first);
    EXPECT_NE(viewer_.loop().captureWindow().pixels, first);
}

TEST_F(ScreenshotToolsTests, KeepsAPictureShortEnoughForEveryClient)
{
    const Mcp::ToolResult result = run_("viewer.captureScreenshot", R"({"maxSize": 4096})");
    ASSERT_FALSE(result.isError);
    EXPECT_LE(result.content.front().data.size(), 700000U);
}

TEST_F(ScreenshotToolsTests, PutsSeveralViewsIntoOnePicture)
{
    const Image image = picture_("viewer.captureMontage", R"({"views": ["front", "top", "current"], "maxSize": 400})");
    ASSERT_EQ(facts_["views"].size(), 3U);
    EXPECT_EQ(facts_["views"][2]["view"].asString(), "current");
    EXPECT_EQ(facts_["views"][1]["x"].asInt(), facts_["views"][0]["width"].asInt());
    EXPECT_EQ(image.size.width, 2 * facts_["views"][0]["width"].asInt());
}

TEST_F(ScreenshotToolsTests, TellsWhereTheViewsAreInAPictureThatHadToBecomeSmaller)
{
    a_->setMesh(std::make_shared<const Mesh>(makeConfetti()));
    a_->setFlatShaded(true);
    picture_("viewer.captureMontage", R"({"views": ["front", "left", "top", "isometric"], "maxSize": 1600})");
    const int width = facts_["width"].asInt();
    ASSERT_LT(width, 1600);
    const Json::Value& last = facts_["views"][3];
    EXPECT_NEAR(last["x"].asInt(), width / 2, 1);
    EXPECT_EQ(last["x"].asInt() + last["width"].asInt(), width);
    EXPECT_EQ(last["y"].asInt() + last["height"].asInt(), facts_["height"].asInt());
}

TEST_F(ScreenshotToolsTests, TellsWhatDoesNotGoTogether)
{
    EXPECT_THAT(error_("viewer.captureScreenshot", R"({"format": "jpeg", "transparent": true})"), HasSubstr("png"));
    EXPECT_THAT(error_("viewer.captureScreenshot", R"({"area": "window", "view": "top"})"), HasSubstr("\"view\""));
}

TEST_F(ScreenshotToolsTests, RefusesACameraThatLooksNowhere)
{
    EXPECT_THAT(error_("viewer.captureScreenshot", R"({"camera": {"eye": [1, 1, 1], "target": [1, 1, 1]}})"),
                HasSubstr("must not be the same point"));
}

TEST_F(ScreenshotToolsTests, ThePointUnderTheMouseIsThatOfTheWindowAfterwards)
{
    driver_.settle();
    const PixelRect& area = viewer_.view().area();
    const Vector2f middle(static_cast<float>(area.x) + static_cast<float>(area.width) / 2,
                          static_cast<float>(area.y) + static_cast<float>(area.height) / 2);
    const auto before = viewer_.view().pointAt(middle);
    picture_("viewer.captureScreenshot", R"({"view": "bottom", "maxSize": 64})");
    const auto after = viewer_.view().pointAt(middle);
    ASSERT_TRUE(before && after);
    EXPECT_TRUE(before->isApprox(*after, 1e-3));
}

} // namespace VX

#include "tests/framework/VXViewer/UiTestScene.h"
#include "tests/support/WaitUntil.h"
#include "tests/system/ProgramRun.h"
#include "tests/system/VirtualScreen.h"

#include <VXMesh/ObjectFile.h>
#include <VXViewer/ImageFile.h>

#include <gmock/gmock.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace VX
{

namespace
{

using testing::ElementsAre;
using testing::SizeIs;
using Objects = std::vector<std::shared_ptr<Object>>;

// Where things are in the window of 1280x800 pixels that docs/user/pictures shows.
constexpr VX::Test::VirtualScreen::Point rectangleTool{738, 134};
constexpr VX::Test::VirtualScreen::Point screenshotTool{822, 134};
constexpr VX::Test::VirtualScreen::Point copyButton{388, 327};
constexpr VX::Test::VirtualScreen::Point upperLeftOfScene{545, 170};
constexpr VX::Test::VirtualScreen::Point lowerRightOfScene{1150, 765};
constexpr VX::Test::VirtualScreen::Point besideTheBox{1150, 700};

/// The program on a screen, with a scene file of a box, used with keyboard and mouse. What was done is seen in the
/// file once it is saved.
class RealInput : public testing::Test
{
protected:
    RealInput()
    {
        // A user who has seen what greets new ones.
        program_.userFolder().write("config/Quorvix/config.json",
                                    R"({"cShowWelcomeWindow": false, "telemetryDisclaimerModalShowed": 0,
                                        "viewer": {"QuickSetupVersion": 2}})");
        Object root;
        root.addChild(VX::Test::makeBox("Part"));
        EXPECT_TRUE(saveObjectToFile(root, file_, {}));
        running_.emplace(program_.start({file_.string(), "-noTelemetry", "-size", "1280x800"}));
        EXPECT_TRUE(waitUntil_([&] { return screen_.focus("scene.vxu"); })) << "there is no window";
        // A window may still lie over the interface, as of a sign-in that goes on by itself.
        EXPECT_TRUE(waitUntil_(
            [&]
            {
                rename_("Box");
                screen_.press({"ctrl", "s"});
                return savedNames_() == std::vector<std::string>{"Box"};
            }))
            << "the program does not take keys";
    }

    static bool waitUntil_(const std::function<bool()>& condition) { return VX::Test::waitUntil(condition); }

    /// Selects everything, and renames what is selected where it is one object.
    void rename_(const std::string& name)
    {
        beginRenaming_(name);
        screen_.press({"Return"});
    }

    void beginRenaming_(const std::string& name)
    {
        screen_.press({"ctrl", "a"});
        screen_.press({"F2"});
        screen_.press({"ctrl", "a"});
        screen_.type(name);
    }

    /// What is in the scene file.
    [[nodiscard]] Objects saved_() const
    {
        const auto loaded = loadObjectFromFile(file_, {});
        return loaded ? loaded->objects : Objects();
    }

    [[nodiscard]] std::vector<std::string> savedNames_() const
    {
        std::vector<std::string> names;
        for (const auto& object : saved_())
            names.push_back(object->name());
        return names;
    }

    /// Saves, and waits for a file of other objects. @return their names
    std::vector<std::string> saveAndWait_()
    {
        const std::vector<std::string> before = savedNames_();
        screen_.press({"ctrl", "s"});
        EXPECT_TRUE(waitUntil_([&] { return savedNames_() != before; })) << "the file does not change";
        return savedNames_();
    }

    /// The picture that comes onto the clipboard in place of `before`, once `prepare` is done, perhaps more than once.
    [[nodiscard]] std::string copiedPicture_(const std::string& before, const std::function<void()>& prepare)
    {
        std::string copied;
        const auto arrives = [&]
        {
            const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
            do
            {
                copied = screen_.clipboard("image/png");
            } while ((copied.empty() || copied == before) && std::chrono::steady_clock::now() < end);
            return !copied.empty() && copied != before;
        };
        EXPECT_TRUE(waitUntil_(
            [&]
            {
                // The window with the button may not be there yet, or the mouse still be where it was for the program.
                prepare();
                screen_.click(copyButton);
                return arrives();
            }))
            << "there is no picture other than one of " << before.size() << " bytes";
        return copied;
    }

    const VX::Test::ProgramRun program_;
    const std::filesystem::path file_ = program_.folder().path() / "scene.vxu";
    const VX::Test::VirtualScreen screen_;
    std::optional<VX::Test::RunningProgram> running_;
};

TEST_F(RealInput, UndoesWithKeysWhatKeysHaveDone)
{
    screen_.press({"ctrl", "a"});
    screen_.press({"ctrl", "d"});
    EXPECT_THAT(saveAndWait_(), SizeIs(2));
    screen_.press({"ctrl", "z"});
    EXPECT_THAT(saveAndWait_(), ElementsAre("Box"));
    screen_.press({"ctrl", "z"});
    EXPECT_THAT(saveAndWait_(), ElementsAre("Part"));
}

TEST_F(RealInput, KeepsTheNameThatEscapeLeaves)
{
    beginRenaming_("Other");
    screen_.press({"Escape"});
    screen_.press({"ctrl", "d"});
    EXPECT_THAT(saveAndWait_(), ElementsAre("Box", testing::Not("Other")));
}

TEST_F(RealInput, FindsACommandByWhatIsTyped)
{
    screen_.press({"ctrl", "a"});
    screen_.press({"ctrl", "shift", "p"});
    screen_.type("duplic");
    screen_.press({"Return"});
    EXPECT_THAT(saveAndWait_(), SizeIs(2));
}

TEST_F(RealInput, SelectsTheFacesOfADraggedRectangle)
{
    screen_.click(rectangleTool);
    screen_.drag(upperLeftOfScene, lowerRightOfScene);
    screen_.press({"Delete"});
    screen_.press({"ctrl", "s"});
    const auto trianglesLeft = [&]
    {
        const Objects objects = saved_();
        const auto mesh = objects.empty() ? nullptr : std::dynamic_pointer_cast<ObjectMesh>(objects.front());
        return mesh ? mesh->mesh()->triangles.size() : 0;
    };
    // Three sides of the box are seen.
    EXPECT_TRUE(waitUntil_([&] { return trianglesLeft() == 6; })) << trianglesLeft();
}

TEST_F(RealInput, TurnsTheViewByADragAndCopiesItsPicture)
{
    screen_.click(screenshotTool);
    const std::string before = copiedPicture_({}, [] {});
    const std::string after =
        copiedPicture_(before, [this] { screen_.drag(besideTheBox, {besideTheBox.x - 200, besideTheBox.y - 100}); });
    const auto picture = readPng(program_.folder().write("clipboard.png", after));
    ASSERT_TRUE(picture) << picture.error();
    EXPECT_EQ(picture->size, (PixelSize{1000, 664}));
}

} // namespace

} // namespace VX

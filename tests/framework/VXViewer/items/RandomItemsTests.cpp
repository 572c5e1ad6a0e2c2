#include "ItemsFixture.h"

#include <VXViewer/SceneEdit.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <map>
#include <random>
#include <utility>

namespace VX
{

/// Uses the items at random as a user does, on a selection that changes at random between them.
class RandomItemsTests : public VX::Test::ItemsFixture, public testing::WithParamInterface<unsigned>
{
protected:
    /// Half the pixels each way of the usual window, and the interface half as large, as it is drawn thousands of
    /// times.
    RandomItemsTests()
        : ItemsFixture({600, 400}, 0.5F)
    {
    }

    static constexpr std::size_t operations_ = 200;
    static constexpr std::size_t mostObjects_ = 12;

    /// Uses an item. @return false where the scene leaves nothing to do for it
    using Operation = std::function<bool()>;

    /// All items of the layout but those that would leave the window.
    [[nodiscard]] std::vector<std::pair<std::string, Operation>> allOperations_()
    {
        static const std::map<std::string, std::string> excluded{
            {"Open files", "asks for files"},
            {"Save", "asks for a file, as the scene has none"},
            {"Save Scene As", "asks for a file"},
            {"Save selected", "asks for a file"},
            {"Full Screen", "needs a window on a screen"},
        };
        const std::map<std::string, Operation> driven{
            {"Duplicate", [this] { return objects_().size() < mostObjects_ && press_("Duplicate"); }},
            {"Rename", [this] { return rename_(); }},
            {"Object Color", [this] { return color_(); }},
            {"Create Simple Objects", [this] { return objects_().size() < mostObjects_ && create_(); }},
            {"Select Primitives", [this] { return selectRegion_(); }},
            {"Select Rectangle", [this] { return selectRectangle_(); }},
        };
        std::vector<std::pair<std::string, Operation>> operations;
        for (const auto& [name, info] : RibbonSchemaHolder::schema().items)
        {
            if (excluded.contains(name))
                continue;
            const auto found = driven.find(name);
            const Operation press = [this, item = name] { return pressAndEnd_(item); };
            operations.emplace_back(name, found != driven.end() ? found->second : press);
        }
        return operations;
    }

    [[nodiscard]] std::size_t below_(std::size_t end)
    {
        return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_);
    }

    [[nodiscard]] std::vector<Object*> objects_() const
    {
        std::vector<Object*> objects;
        visitObjects(viewer_.scene(), [&](Object& object) { objects.push_back(&object); });
        objects.erase(objects.begin());
        return objects;
    }

    [[nodiscard]] std::string text_() const { return VX::Test::sceneText(viewer_.scene()); }

    bool press_(const std::string& name)
    {
        const bool accepted = menu_->pressItem(name);
        // A quarter of a second of frames for each turn of the view shows nothing here.
        viewer_.view().controller().update(std::numeric_limits<double>::infinity());
        driver_.settle();
        return accepted;
    }

    /// What stays open or switched on is pressed again.
    bool pressAndEnd_(const std::string& name)
    {
        const bool wasActive = item_(name).isActive();
        const bool accepted = press_(name);
        if (accepted && item_(name).isActive() && !wasActive)
            press_(name);
        return accepted;
    }

    bool rename_()
    {
        if (!press_("Rename"))
            return false;
        const std::size_t position = history_().position();
        driver_.type("Name " + std::to_string(position));
        driver_.key(GLFW_KEY_ENTER);
        driver_.settle();
        return history_().position() != position;
    }

    bool color_()
    {
        if (!press_("Object Color"))
            return false;
        driver_.press("Transparency", "Object Color");
        driver_.settle();
        press_("Object Color");
        return true;
    }

    bool create_()
    {
        if (!press_("Create Simple Objects"))
            return false;
        driver_.press("Place");
        driver_.settle();
        return true;
    }

    [[nodiscard]] Vector2f middle_() const
    {
        const PixelRect& area = viewer_.view().area();
        return {static_cast<float>(area.x) + static_cast<float>(area.width) / 2,
                static_cast<float>(area.y) + static_cast<float>(area.height) / 2};
    }

    bool selectRegion_()
    {
        viewer_.view().fitAll(false);
        driver_.settle();
        if (!viewer_.view().pointAt(middle_()) || !press_("Select Primitives"))
            return false;
        selectNoFaces_();
        const std::size_t position = history_().position();
        driver_.click(middle_());
        EXPECT_TRUE(driver_.waitFor([&] { return history_().position() != position; }));
        press_("Select Primitives");
        return true;
    }

    /// So that any region is a change.
    void selectNoFaces_()
    {
        {
            SceneEdit edit(history_(), "Select");
            for (Object* object : objects_())
            {
                auto* mesh = dynamic_cast<ObjectMesh*>(object);
                if (!mesh || facesOf_(*mesh).empty())
                    continue;
                edit.touch(mesh->shared_from_this());
                mesh->setSelectedFaces(nullptr);
            }
        }
        note_();
    }

    bool selectRectangle_()
    {
        viewer_.view().fitAll(false);
        driver_.settle();
        if (!press_("Select Rectangle"))
            return false;
        const auto side = static_cast<float>(10 + below_(60));
        driver_.drag(middle_() - Vector2f(side, side), middle_() + Vector2f(side, side));
        driver_.settle();
        press_("Select Rectangle");
        return true;
    }

    /// As steps, since a click in the list is none and would be missing in the states before it.
    void changeSelection_()
    {
        SceneEdit edit(history_(), "Select");
        for (Object* object : objects_())
        {
            if (below_(4) != 0)
                continue;
            edit.touch(object->shared_from_this());
            object->setSelected(!object->isSelected());
            auto* mesh = dynamic_cast<ObjectMesh*>(object);
            if (mesh && !mesh->mesh()->triangles.empty() && below_(4) == 0)
                selectFaces_(*mesh, {below_(mesh->mesh()->triangles.size())});
        }
    }

    void addObject_()
    {
        SceneEdit edit(history_(), "Add");
        edit.touch(viewer_.sceneRoot());
        addBox_("New");
    }

    /// Takes the state after a step in, or compares with that of the position gone to.
    void note_(bool isJump = false)
    {
        const std::size_t position = history_().position();
        if (position != position_ && !isJump)
        {
            ASSERT_EQ(position, position_ + 1);
            states_.resize(position);
            states_.push_back(text_());
        }
        position_ = position;
        ASSERT_EQ(text_(), states_[position]) << position;
    }

    std::mt19937 random_{GetParam()};
    std::vector<std::string> states_{text_()};
    std::size_t position_ = 0;
};

TEST_P(RandomItemsTests, UndoneAndRedoneGiveEveryStateAgain)
{
    const auto all = allOperations_();
    for (std::size_t done = 0; done < operations_;)
    {
        if (objects_().empty())
            addObject_();
        else if (below_(2) == 0)
            changeSelection_();
        note_();
        const auto& [name, operation] = all[below_(all.size())];
        done += operation() ? 1 : 0;
        note_(name == "Undo" || name == "Redo");
        ASSERT_FALSE(HasFailure()) << name;
    }
    const std::size_t end = history_().position();
    EXPECT_GT(end, operations_ / 2);
    while (history_().position() > 0)
    {
        ASSERT_TRUE(menu_->pressItem("Undo"));
        ASSERT_EQ(text_(), states_[history_().position()]) << history_().position();
    }
    while (history_().position() < end)
    {
        ASSERT_TRUE(menu_->pressItem("Redo"));
        ASSERT_EQ(text_(), states_[history_().position()]) << history_().position();
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomItemsTests, testing::Range(1U, 4U));

} // namespace VX

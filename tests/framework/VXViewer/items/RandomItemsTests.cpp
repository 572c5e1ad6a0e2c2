#include "ItemsFixture.h"

#include <VXViewer/SceneEdit.h>

#include <gtest/gtest.h>

#include <random>

namespace VX
{

/// Presses items at random, on a selection that changes at random between them.
class RandomItemsTests : public VX::Test::ItemsFixture, public testing::WithParamInterface<unsigned>
{
protected:
    static constexpr std::size_t steps_ = 200;
    static constexpr std::size_t mostObjects_ = 60;

    static std::vector<std::string> itemNames_()
    {
        return {"Delete Selection",
                "Duplicate",
                "Duplicate",
                "Group",
                "Hide",
                "Show All",
                "Isolate",
                "Select all",
                "Invert Selection",
                "Clear Selections",
                "Shrink selection",
                "Expand Selected Faces",
                "Flat Shading",
                "Smooth Shading"};
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

    void pressAny_()
    {
        static const std::vector<std::string> names = itemNames_();
        const std::size_t objects = objects_().size();
        if (objects == 0)
        {
            SceneEdit edit(history_(), "Add");
            edit.touch(viewer_.sceneRoot());
            addBox_("New");
            return;
        }
        const std::string& name = names[below_(names.size())];
        if (below_(2) == 0)
            changeSelection_();
        else if (name != "Duplicate" || objects < mostObjects_)
            menu_->pressItem(name);
    }

    std::mt19937 random_{GetParam()};
};

TEST_P(RandomItemsTests, UndoneAndRedoneGiveEveryStateAgain)
{
    std::vector<std::string> states{VX::Test::sceneText(viewer_.scene())};
    while (history_().position() < steps_)
    {
        const std::size_t position = history_().position();
        pressAny_();
        if (history_().position() != position)
            states.push_back(VX::Test::sceneText(viewer_.scene()));
        ASSERT_EQ(states.size(), history_().position() + 1);
        ASSERT_EQ(VX::Test::sceneText(viewer_.scene()), states.back());
    }
    while (history_().position() > 0)
    {
        ASSERT_TRUE(menu_->pressItem("Undo"));
        ASSERT_EQ(VX::Test::sceneText(viewer_.scene()), states[history_().position()]) << history_().position();
    }
    while (history_().position() < steps_)
    {
        ASSERT_TRUE(menu_->pressItem("Redo"));
        ASSERT_EQ(VX::Test::sceneText(viewer_.scene()), states[history_().position()]) << history_().position();
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomItemsTests, testing::Range(1U, 4U));

} // namespace VX

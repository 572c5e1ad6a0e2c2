#include "SceneText.h"
#include "tests/framework/VXViewer/UiTestScene.h"

#include <VXViewer/HistoryStore.h>
#include <VXViewer/SceneEdit.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <new>

namespace VX
{

using testing::Ge;
using testing::Lt;

class SceneEditTests : public testing::Test
{
protected:
    /// Does `change` to `objects` as a step, takes it back and does it again.
    void expectUndoneAndRedone_(const std::vector<std::shared_ptr<Object>>& objects,
                                const std::function<void()>& change)
    {
        const std::string before = VX::Test::sceneText(*root_);
        {
            SceneEdit edit(store_, "Step");
            for (const auto& object : objects)
                edit.touch(object);
            change();
        }
        const std::string after = VX::Test::sceneText(*root_);
        ASSERT_NE(before, after);
        ASSERT_EQ(store_.position(), 1U);
        store_.undo();
        EXPECT_EQ(VX::Test::sceneText(*root_), before);
        store_.redo();
        EXPECT_EQ(VX::Test::sceneText(*root_), after);
    }

    std::shared_ptr<ObjectMesh> addBox_(const std::string& name)
    {
        auto box = VX::Test::makeBox(name);
        root_->addChild(box);
        return box;
    }

    [[nodiscard]] std::vector<std::string> names_() const
    {
        std::vector<std::string> names;
        for (const auto& child : root_->children())
            names.push_back(child->name());
        return names;
    }

    static std::shared_ptr<const FaceSet> faces_(std::size_t face)
    {
        auto faces = std::make_shared<FaceSet>(12);
        faces->set(face);
        return faces;
    }

    std::shared_ptr<Object> root_ = std::make_shared<Object>();
    std::shared_ptr<ObjectMesh> box_ = addBox_("Box");
    HistoryStore store_;
};

TEST_F(SceneEditTests, TakesBackWhatAnExceptionInterrupts)
{
    const auto group = std::make_shared<Object>();
    root_->addChild(group);
    const std::string before = VX::Test::sceneText(*root_);
    const auto change = [&]
    {
        SceneEdit edit(store_, "Step");
        for (const std::shared_ptr<Object>& object : {root_, group, std::shared_ptr<Object>(box_)})
            edit.touch(object);
        box_->setName("Cube");
        box_->setSelected(true);
        group->addChild(box_);
        throw std::bad_alloc();
    };
    EXPECT_THROW(change(), std::bad_alloc);
    EXPECT_EQ(VX::Test::sceneText(*root_), before);
    EXPECT_EQ(store_.position(), 0U);
}

TEST_F(SceneEditTests, CommitsWhatIsDoneWhileAnExceptionIsOnItsWay)
{
    struct Cleanup
    {
        ~Cleanup()
        {
            SceneEdit edit(store, "Step");
            edit.touch(object);
            object->setName("Cube");
        }

        HistoryStore& store;
        std::shared_ptr<Object> object;
    };

    const auto interrupted = [this]
    {
        const Cleanup cleanup{store_, box_};
        throw std::bad_alloc();
    };
    EXPECT_THROW(interrupted(), std::bad_alloc);
    EXPECT_EQ(store_.position(), 1U);
}

TEST_F(SceneEditTests, RestoresTheName)
{
    expectUndoneAndRedone_({box_}, [&] { box_->setName("Cube"); });
}

TEST_F(SceneEditTests, RestoresTheTransform)
{
    expectUndoneAndRedone_({box_}, [&] { box_->setTransform(Transform(Eigen::Translation3d(0.1, 2, -3))); });
}

TEST_F(SceneEditTests, RestoresTheVisibility)
{
    expectUndoneAndRedone_({box_}, [&] { box_->setVisibilityMask(ViewportMask(2)); });
}

TEST_F(SceneEditTests, RestoresTheSelection)
{
    expectUndoneAndRedone_({box_}, [&] { box_->setSelected(true); });
}

TEST_F(SceneEditTests, RestoresTheColorWithItsTransparency)
{
    expectUndoneAndRedone_({box_}, [&] { box_->setColor({1, 2, 3, 4}); });
}

TEST_F(SceneEditTests, RestoresTheShading)
{
    expectUndoneAndRedone_({box_}, [&] { box_->setFlatShaded(true); });
}

TEST_F(SceneEditTests, RestoresTheMesh)
{
    expectUndoneAndRedone_({box_}, [&] { box_->setMesh(std::make_shared<Mesh>(*box_->mesh())); });
}

TEST_F(SceneEditTests, RestoresTheSelectedFaces)
{
    box_->setSelectedFaces(faces_(1));
    expectUndoneAndRedone_({box_}, [&] { box_->setSelectedFaces(faces_(2)); });
}

TEST_F(SceneEditTests, RestoresTheSelectedFacesThatWentWithTheMesh)
{
    box_->setSelectedFaces(faces_(11));
    expectUndoneAndRedone_({box_},
                           [&]
                           {
                               auto smaller = std::make_shared<Mesh>(*box_->mesh());
                               smaller->triangles.pop_back();
                               box_->setMesh(smaller);
                           });
}

TEST_F(SceneEditTests, RestoresThePoints)
{
    const auto points = std::make_shared<ObjectPoints>();
    root_->addChild(points);
    expectUndoneAndRedone_({points}, [&] { points->setPointCloud(std::make_shared<PointCloud>()); });
}

TEST_F(SceneEditTests, RestoresTheLines)
{
    const auto lines = std::make_shared<ObjectLines>();
    root_->addChild(lines);
    expectUndoneAndRedone_({lines}, [&] { lines->setLines(std::make_shared<Lines>()); });
}

TEST_F(SceneEditTests, RestoresTheOrderOfTheChildren)
{
    addBox_("B");
    addBox_("C");
    expectUndoneAndRedone_({root_}, [&] { root_->removeChild(*root_->children()[1]); });
}

TEST_F(SceneEditTests, TakesAnAddedObjectAwayAndBringsItBack)
{
    expectUndoneAndRedone_({root_}, [&] { addBox_("New"); });
}

TEST_F(SceneEditTests, RestoresTheParentOfAMovedObject)
{
    const auto group = std::make_shared<Object>();
    expectUndoneAndRedone_({root_, group},
                           [&]
                           {
                               group->addChild(box_);
                               root_->addChild(group);
                           });
}

TEST_F(SceneEditTests, RestoresATreeThatWasTurnedUpsideDown)
{
    const auto inner = addBox_("Inner");
    box_->addChild(inner);
    expectUndoneAndRedone_({root_, box_, inner},
                           [&]
                           {
                               root_->setChildren({});
                               box_->setChildren({});
                               root_->addChild(inner);
                               inner->addChild(box_);
                           });
}

TEST_F(SceneEditTests, LeavesAloneWhatItDidNotChange)
{
    {
        SceneEdit edit(store_, "Rename");
        edit.touch(box_);
        box_->setName("Cube");
    }
    box_->setSelected(true);
    store_.undo();
    EXPECT_EQ(box_->name(), "Box");
    EXPECT_TRUE(box_->isSelected());
}

TEST_F(SceneEditTests, AddsNothingWhereNothingDiffers)
{
    {
        SceneEdit edit(store_, "Rename");
        edit.touch(box_);
        box_->setName("Cube");
        box_->setName("Box");
    }
    EXPECT_TRUE(store_.actions().empty());
}

TEST_F(SceneEditTests, RemembersTheObjectAsItWasAtTheFirstTouch)
{
    {
        SceneEdit edit(store_, "Rename");
        edit.touch(box_);
        box_->setName("Cube");
        edit.touch(box_);
    }
    store_.undo();
    EXPECT_EQ(box_->name(), "Box");
}

TEST_F(SceneEditTests, CommitsOnce)
{
    {
        SceneEdit edit(store_, "Rename");
        edit.touch(box_);
        box_->setName("Cube");
        edit.commit();
        EXPECT_EQ(store_.position(), 1U);
    }
    EXPECT_EQ(store_.position(), 1U);
    EXPECT_EQ(store_.lastActionName(), "Rename");
}

TEST_F(SceneEditTests, JoinsTheOpenScope)
{
    {
        const HistoryScope scope(store_, "Both");
        SceneEdit(store_, "First").touch(box_);
        SceneEdit edit(store_, "Second");
        edit.touch(box_);
        box_->setName("Cube");
    }
    EXPECT_EQ(store_.lastActionName(), "Both");
}

TEST_F(SceneEditTests, ASelectionLeavesTheSceneSaved)
{
    {
        SceneEdit edit(store_, "Select");
        edit.touch(box_);
        box_->setSelected(true);
        box_->setSelectedFaces(faces_(1));
    }
    EXPECT_TRUE(store_.isSaved());
    {
        SceneEdit edit(store_, "Color");
        edit.touch(box_);
        box_->setColor({1, 2, 3});
    }
    EXPECT_FALSE(store_.isSaved());
}

class SceneEditMemoryTests : public SceneEditTests
{
protected:
    static constexpr std::size_t points_ = 100'000;
    static constexpr std::size_t bytes_ = points_ * sizeof(Vector3f);

    static std::shared_ptr<const Mesh> makeMesh_()
    {
        auto mesh = std::make_shared<Mesh>();
        mesh->points.resize(points_, Vector3f::Zero());
        return mesh;
    }

    void setMesh_(const std::shared_ptr<const Mesh>& mesh)
    {
        SceneEdit edit(store_, "Mesh");
        edit.touch(box_);
        box_->setMesh(mesh);
    }

    void remove_(const std::shared_ptr<Object>& object)
    {
        SceneEdit edit(store_, "Delete");
        edit.touch(root_);
        root_->removeChild(*object);
    }
};

TEST_F(SceneEditMemoryTests, ASmallChangeOfALargeMeshHoldsNoGeometry)
{
    box_->setMesh(makeMesh_());
    {
        SceneEdit edit(store_, "Rename");
        edit.touch(box_);
        box_->setName("Cube");
    }
    EXPECT_THAT(store_.heapBytes(), Lt(1000U));
}

TEST_F(SceneEditMemoryTests, AReplacedMeshIsHeldByTheStep)
{
    box_->setMesh(makeMesh_());
    setMesh_(std::make_shared<Mesh>());
    EXPECT_THAT(store_.heapBytes(), Ge(bytes_));
    store_.undo();
    EXPECT_THAT(store_.heapBytes(), Lt(1000U));
}

TEST_F(SceneEditMemoryTests, EachMeshOfAChainCountsOnce)
{
    box_->setMesh(makeMesh_());
    setMesh_(makeMesh_());
    setMesh_(makeMesh_());
    EXPECT_THAT(store_.heapBytes(), testing::AllOf(Ge(2 * bytes_), Lt(2 * bytes_ + 1000)));
}

TEST_F(SceneEditMemoryTests, ARemovedObjectCountsWithItsMesh)
{
    box_->setMesh(makeMesh_());
    remove_(box_);
    EXPECT_THAT(store_.heapBytes(), Ge(bytes_));
    store_.undo();
    EXPECT_THAT(store_.heapBytes(), Lt(1000U));
}

TEST_F(SceneEditMemoryTests, ARemovedInstanceOfAMeshThatStaysHoldsNoGeometry)
{
    box_->setMesh(makeMesh_());
    const auto instance = addBox_("Instance");
    instance->setMesh(box_->mesh());
    remove_(instance);
    EXPECT_THAT(store_.heapBytes(), Lt(1000U));
    remove_(box_);
    EXPECT_THAT(store_.heapBytes(), Ge(bytes_));
}

TEST_F(SceneEditMemoryTests, AnUndoneStepCountsWhatItAdded)
{
    {
        SceneEdit edit(store_, "Add");
        edit.touch(root_);
        addBox_("New")->setMesh(makeMesh_());
    }
    EXPECT_THAT(store_.heapBytes(), Lt(1000U));
    store_.undo();
    EXPECT_THAT(store_.heapBytes(), Ge(bytes_));
}

TEST_F(SceneEditTests, NamesWhatAStepIsAboutOnce)
{
    const auto gone = addBox_("Gone");
    const auto other = addBox_("Only selected");
    const auto group = std::make_shared<Object>();
    root_->addChild(group);
    const auto fresh = VX::Test::makeBox("Fresh");
    {
        const HistoryScope scope(store_, "Both");
        {
            SceneEdit edit(store_, "Step");
            edit.touch(root_);
            edit.touch(group);
            edit.touch(box_);
            root_->removeChild(*gone);
            root_->addChild(fresh);
            group->addChild(box_);
            box_->setName("Moved");
            edit.touch(other);
            other->setSelected(true);
        }
        SceneEdit edit(store_, "Hide");
        edit.touch(fresh);
        fresh->setVisible(false);
    }
    EXPECT_THAT(store_.actions().back()->objects(), testing::UnorderedElementsAre(fresh, gone, box_));
}

TEST_F(SceneEditTests, ASelectionOnTheWayIsNotWhatAStepIsAbout)
{
    const auto other = addBox_("Only selected");
    {
        const HistoryScope scope(store_, "Both");
        {
            SceneEdit select(store_, "Select");
            select.touch(other);
            other->setSelected(true);
        }
        SceneEdit hide(store_, "Hide");
        hide.touch(box_);
        box_->setVisible(false);
    }
    EXPECT_THAT(store_.actions().back()->objects(), testing::ElementsAre(box_));
}

TEST_F(SceneEditTests, ASelectionIsAboutWhatIsSelected)
{
    {
        const HistoryScope scope(store_, "Select");
        SceneEdit edit(store_, "Select");
        edit.touch(box_);
        box_->setSelected(true);
    }
    EXPECT_THAT(store_.actions().back()->objects(), testing::ElementsAre(box_));
}

TEST_F(SceneEditTests, AnotherOrderIsAboutTheObjectAbove)
{
    addBox_("Other");
    {
        SceneEdit edit(store_, "Sort");
        edit.touch(root_);
        std::vector<std::shared_ptr<Object>> children = root_->children();
        std::ranges::reverse(children);
        root_->setChildren(children);
    }
    EXPECT_THAT(store_.actions().back()->objects(), testing::ElementsAre(root_));
}

} // namespace VX

#include "SceneText.h"
#include "tests/framework/VXViewer/UiTestScene.h"

#include <VXViewer/HistoryStore.h>
#include <VXViewer/SceneEdit.h>

#include <gtest/gtest.h>

#include <functional>
#include <random>

namespace VX
{

/// Changes a scene as a user would who has no plan, always through `SceneEdit`.
class RandomEdits
{
public:
    RandomEdits(std::shared_ptr<Object> root, HistoryStore& store, unsigned seed)
        : root_(std::move(root))
        , store_(store)
        , random_(seed)
    {
    }

    void doOne()
    {
        static const std::vector<void (RandomEdits::*)()> kinds = {
            &RandomEdits::add_,    &RandomEdits::add_,     &RandomEdits::remove_,   &RandomEdits::move_,
            &RandomEdits::change_, &RandomEdits::change_,  &RandomEdits::cutFaces_, &RandomEdits::reorder_,
            &RandomEdits::select_, &RandomEdits::doScope_,
        };
        (this->*kinds[below_(kinds.size())])();
    }

private:
    [[nodiscard]] std::size_t below_(std::size_t end)
    {
        return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_);
    }

    [[nodiscard]] std::shared_ptr<Object> any_(bool orRoot)
    {
        std::vector<std::shared_ptr<Object>> all;
        visitObjects(*root_, [&](Object& object) { all.push_back(object.shared_from_this()); });
        if (all.size() == 1)
            return orRoot ? root_ : nullptr;
        return all[orRoot ? below_(all.size()) : 1 + below_(all.size() - 1)];
    }

    void add_()
    {
        const auto parent = any_(true);
        SceneEdit edit(store_, "Add");
        edit.touch(parent);
        parent->addChild(VX::Test::makeBox("Box"));
    }

    void remove_()
    {
        const auto object = any_(false);
        if (!object)
            return;
        SceneEdit edit(store_, "Delete");
        edit.touch(object->parent()->shared_from_this());
        object->parent()->removeChild(*object);
    }

    void move_()
    {
        const auto object = any_(false);
        const auto parent = any_(true);
        if (!object)
            return;
        SceneEdit edit(store_, "Move");
        edit.touch(object->parent()->shared_from_this());
        edit.touch(parent);
        parent->addChild(object);
    }

    void change_()
    {
        const auto mesh = std::dynamic_pointer_cast<ObjectMesh>(any_(false));
        if (!mesh)
            return;
        SceneEdit edit(store_, "Change");
        edit.touch(mesh);
        const auto byte = [&] { return static_cast<std::uint8_t>(below_(256)); };
        mesh->setColor({byte(), byte(), byte(), byte()});
        mesh->setName(std::to_string(below_(1000)));
        mesh->setVisibilityMask(ViewportMask(byte()));
        mesh->setFlatShaded(below_(2) == 0);
        mesh->setTransform(mesh->transform() * Eigen::AngleAxisd(0.1, Vector3d::UnitX()));
    }

    void cutFaces_()
    {
        const auto mesh = std::dynamic_pointer_cast<ObjectMesh>(any_(false));
        if (!mesh || mesh->mesh()->triangles.size() < 2)
            return;
        SceneEdit edit(store_, "Cut");
        edit.touch(mesh);
        auto smaller = std::make_shared<Mesh>(*mesh->mesh());
        smaller->triangles.pop_back();
        mesh->setMesh(smaller);
    }

    void select_()
    {
        const auto mesh = std::dynamic_pointer_cast<ObjectMesh>(any_(false));
        if (!mesh)
            return;
        SceneEdit edit(store_, "Select");
        edit.touch(mesh);
        auto faces = std::make_shared<FaceSet>(mesh->mesh()->triangles.size());
        faces->set(below_(faces->size()));
        mesh->setSelectedFaces(faces);
        mesh->setSelected(!mesh->isSelected());
    }

    void reorder_()
    {
        const auto parent = any_(true);
        SceneEdit edit(store_, "Sort");
        edit.touch(parent);
        auto children = parent->children();
        std::ranges::shuffle(children, random_);
        parent->setChildren(children);
    }

    void doScope_()
    {
        const HistoryScope scope(store_, "Several");
        for (std::size_t i = below_(4); i > 0; --i)
            doOne();
    }

    std::shared_ptr<Object> root_;
    HistoryStore& store_;
    std::mt19937 random_;
};

class RandomEditTests : public testing::TestWithParam<unsigned>
{
protected:
    std::shared_ptr<Object> root_ = std::make_shared<Object>();
    HistoryStore store_;
};

TEST_P(RandomEditTests, UndoneAndRedoneGiveEveryStateAgain)
{
    RandomEdits edits(root_, store_, GetParam());
    std::vector<std::string> states{VX::Test::sceneText(*root_)};
    while (store_.position() < 200)
    {
        const std::size_t position = store_.position();
        edits.doOne();
        if (store_.position() != position)
            states.push_back(VX::Test::sceneText(*root_));
        ASSERT_EQ(VX::Test::sceneText(*root_), states.back());
    }
    while (store_.undo())
        ASSERT_EQ(VX::Test::sceneText(*root_), states[store_.position()]) << "undone to " << store_.position();
    while (store_.redo())
        ASSERT_EQ(VX::Test::sceneText(*root_), states[store_.position()]) << "redone to " << store_.position();
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomEditTests, testing::Range(1U, 6U));

} // namespace VX

#include <VXViewer/HistoryStore.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace VX
{

namespace
{

/// Notes when it is done and undone.
class NotedAction : public HistoryAction
{
public:
    NotedAction(std::string name, std::vector<std::string>& notes, std::size_t bytes = 1, bool changesFile = true)
        : HistoryAction(std::move(name))
        , notes_(notes)
        , bytes_(bytes)
        , changesFile_(changesFile)
    {
    }

    void undo() override { notes_.push_back("undo " + name()); }

    void redo() override { notes_.push_back("redo " + name()); }

    [[nodiscard]] std::size_t heapBytes() const override { return bytes_; }

    [[nodiscard]] bool changesFile() const override { return changesFile_; }

private:
    std::vector<std::string>& notes_;
    std::size_t bytes_;
    bool changesFile_;
};

} // namespace

class HistoryStoreTests : public testing::Test
{
protected:
    void append_(const std::string& name, std::size_t bytes = 1)
    {
        store_.append(std::make_shared<NotedAction>(name, notes_, bytes));
    }

    void select_(const std::string& name) { store_.append(std::make_shared<NotedAction>(name, notes_, 1, false)); }

    [[nodiscard]] std::vector<std::string> names_() const
    {
        std::vector<std::string> names;
        for (const auto& action : store_.actions())
            names.push_back(action->name());
        return names;
    }

    std::vector<std::string> notes_;
    HistoryStore store_;
};

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(HistoryStoreTests, UndoesTheLastStepFirst)
{
    append_("A");
    append_("B");
    EXPECT_TRUE(store_.undo());
    EXPECT_TRUE(store_.undo());
    EXPECT_THAT(notes_, ElementsAre("undo B", "undo A"));
}

TEST_F(HistoryStoreTests, RedoesInTheOldOrder)
{
    append_("A");
    append_("B");
    store_.jumpTo(0);
    notes_.clear();
    EXPECT_TRUE(store_.redo());
    EXPECT_TRUE(store_.redo());
    EXPECT_THAT(notes_, ElementsAre("redo A", "redo B"));
}

TEST_F(HistoryStoreTests, SaysWhenThereIsNothingToUndoOrRedo)
{
    EXPECT_FALSE(store_.undo());
    append_("A");
    EXPECT_FALSE(store_.redo());
}

TEST_F(HistoryStoreTests, ANewStepForgetsWhatCouldBeRedone)
{
    append_("A");
    append_("B");
    store_.undo();
    append_("C");
    EXPECT_THAT(names_(), ElementsAre("A", "C"));
    EXPECT_FALSE(store_.redo());
}

TEST_F(HistoryStoreTests, NamesTheLastStepThatIsDone)
{
    EXPECT_EQ(store_.lastActionName(), "");
    append_("A");
    append_("B");
    EXPECT_EQ(store_.lastActionName(), "B");
    store_.undo();
    EXPECT_EQ(store_.lastActionName(), "A");
}

TEST_F(HistoryStoreTests, JumpsBackAndForth)
{
    for (const char* name : {"A", "B", "C", "D"})
        append_(name);
    store_.jumpTo(1);
    EXPECT_EQ(store_.position(), 1U);
    store_.jumpTo(3);
    EXPECT_EQ(store_.position(), 3U);
    EXPECT_THAT(notes_, ElementsAre("undo D", "undo C", "undo B", "redo B", "redo C"));
}

TEST_F(HistoryStoreTests, JumpsToTheEndWhereThePositionIsBeyondIt)
{
    append_("A");
    store_.undo();
    store_.jumpTo(100);
    EXPECT_EQ(store_.position(), 1U);
}

TEST_F(HistoryStoreTests, TellsWhatHappened)
{
    std::vector<HistoryChange> changes;
    store_.changed.connect([&](const HistoryStore&, HistoryChange change) { changes.push_back(change); });
    append_("A");
    store_.undo();
    store_.redo();
    store_.setMemoryLimit(0);
    append_("B");
    store_.clear();
    EXPECT_THAT(changes, ElementsAre(HistoryChange::ActionAdded, HistoryChange::Undone, HistoryChange::Redone,
                                     HistoryChange::ActionAdded, HistoryChange::Dropped, HistoryChange::Cleared));
}

TEST_F(HistoryStoreTests, TellsOfAStepOnceItIsInTheList)
{
    std::string last;
    store_.changed.connect([&](const HistoryStore& store, HistoryChange) { last = store.lastActionName(); });
    append_("A");
    EXPECT_EQ(last, "A");
}

TEST_F(HistoryStoreTests, DropsTheOldestOverTheMemoryLimit)
{
    store_.setMemoryLimit(100);
    append_("A", 40);
    append_("B", 40);
    append_("C", 40);
    EXPECT_THAT(names_(), ElementsAre("B", "C"));
    EXPECT_EQ(store_.position(), 2U);
}

TEST_F(HistoryStoreTests, KeepsTheLastStepHoweverMuchItHolds)
{
    store_.setMemoryLimit(100);
    append_("A", 1);
    append_("B", 1000);
    EXPECT_THAT(names_(), ElementsAre("B"));
}

TEST_F(HistoryStoreTests, ALowerLimitNeverDropsWhatIsUndone)
{
    append_("A", 40);
    append_("B", 40);
    append_("C", 40);
    store_.jumpTo(1);
    store_.setMemoryLimit(10);
    EXPECT_THAT(names_(), ElementsAre("B", "C"));
    EXPECT_EQ(store_.position(), 0U);
}

TEST_F(HistoryStoreTests, ClearForgetsAll)
{
    append_("A");
    store_.clear();
    EXPECT_THAT(store_.actions(), IsEmpty());
    EXPECT_EQ(store_.position(), 0U);
    EXPECT_FALSE(store_.undo());
}

TEST_F(HistoryStoreTests, IsSavedAtTheBeginningAndWhereItWasSaved)
{
    EXPECT_TRUE(store_.isSaved());
    append_("A");
    EXPECT_FALSE(store_.isSaved());
    store_.markSaved();
    EXPECT_TRUE(store_.isSaved());
}

TEST_F(HistoryStoreTests, IsSavedAgainWhereUndoOrRedoComesBackToTheFile)
{
    append_("A");
    store_.markSaved();
    append_("B");
    store_.jumpTo(0);
    EXPECT_FALSE(store_.isSaved());
    store_.redo();
    EXPECT_TRUE(store_.isSaved());
}

TEST_F(HistoryStoreTests, IsNeverSavedAgainWhenTheFilesStateWasForgotten)
{
    append_("A");
    store_.markSaved();
    store_.undo();
    append_("B");
    EXPECT_FALSE(store_.isSaved());
    store_.undo();
    EXPECT_FALSE(store_.isSaved());
}

TEST_F(HistoryStoreTests, KnowsWhatIsSavedWhenTheOldestWereDropped)
{
    append_("A");
    append_("B");
    store_.markSaved();
    append_("C");
    store_.setMemoryLimit(1);
    EXPECT_FALSE(store_.isSaved());
    store_.undo();
    EXPECT_TRUE(store_.isSaved());
}

TEST_F(HistoryStoreTests, IsNeverSavedAgainWhenTheFilesStateWasDropped)
{
    append_("A");
    append_("B");
    store_.setMemoryLimit(1);
    store_.undo();
    EXPECT_FALSE(store_.isSaved());
}

TEST_F(HistoryStoreTests, ClearChangesNotWhetherTheSceneIsSaved)
{
    append_("A");
    store_.clear();
    EXPECT_FALSE(store_.isSaved());
    store_.markSaved();
    store_.clear();
    EXPECT_TRUE(store_.isSaved());
}

TEST_F(HistoryStoreTests, AStepThatFilesDoNotHoldLeavesTheSceneSaved)
{
    append_("A");
    store_.markSaved();
    select_("Select");
    EXPECT_TRUE(store_.isSaved());
    append_("B");
    EXPECT_FALSE(store_.isSaved());
}

TEST_F(HistoryStoreTests, IsSavedWhereOnlyASelectionAfterTheFileWasForgotten)
{
    select_("Select");
    store_.markSaved();
    store_.undo();
    select_("Other");
    EXPECT_TRUE(store_.isSaved());
}

TEST_F(HistoryStoreTests, AScopeMakesOneStepOfAllInIt)
{
    {
        const HistoryScope scope(store_, "Both");
        append_("A");
        append_("B");
        EXPECT_TRUE(store_.isScopeOpen());
        EXPECT_THAT(store_.actions(), IsEmpty());
    }
    EXPECT_FALSE(store_.isScopeOpen());
    ASSERT_THAT(names_(), ElementsAre("Both"));
    EXPECT_EQ(store_.actions().front()->heapBytes(), 2U);
    store_.undo();
    store_.redo();
    EXPECT_THAT(notes_, ElementsAre("undo B", "undo A", "redo A", "redo B"));
}

TEST_F(HistoryStoreTests, AnInnerScopeIsAPartOfTheOuterOne)
{
    {
        const HistoryScope outer(store_, "Outer");
        append_("A");
        {
            const HistoryScope inner(store_, "Inner");
            append_("B");
        }
        EXPECT_TRUE(store_.isScopeOpen());
    }
    ASSERT_THAT(names_(), ElementsAre("Outer"));
    store_.undo();
    EXPECT_THAT(notes_, ElementsAre("undo B", "undo A"));
}

TEST_F(HistoryStoreTests, AnEmptyScopeAddsNothingAndForgetsNothing)
{
    append_("A");
    store_.undo();
    {
        const HistoryScope outer(store_, "Outer");
        const HistoryScope inner(store_, "Inner");
    }
    EXPECT_THAT(names_(), ElementsAre("A"));
    EXPECT_TRUE(store_.redo());
}

TEST_F(HistoryStoreTests, AScopeTellsOnceWhenItIsClosed)
{
    std::vector<bool> scopeOpen;
    store_.changed.connect([&](const HistoryStore& store, HistoryChange) { scopeOpen.push_back(store.isScopeOpen()); });
    {
        const HistoryScope scope(store_, "Both");
        append_("A");
        append_("B");
    }
    EXPECT_THAT(scopeOpen, ElementsAre(false));
}

TEST_F(HistoryStoreTests, NothingIsUndoneOrRedoneWhileAScopeIsOpen)
{
    append_("A");
    append_("B");
    store_.undo();
    const HistoryScope scope(store_, "Scope");
    EXPECT_FALSE(store_.undo());
    EXPECT_FALSE(store_.redo());
    store_.jumpTo(0);
    EXPECT_EQ(store_.position(), 1U);
}

TEST_F(HistoryStoreTests, AScopeOfSelectionsLeavesTheSceneSaved)
{
    {
        const HistoryScope scope(store_, "Both");
        select_("A");
        select_("B");
    }
    EXPECT_TRUE(store_.isSaved());
    {
        const HistoryScope scope(store_, "Both");
        select_("A");
        append_("B");
    }
    EXPECT_FALSE(store_.isSaved());
}

} // namespace VX

#include "SceneEditAction.h"

#include <VXViewer/HistoryStore.h>
#include <VXViewer/SceneEdit.h>

#include <spdlog/spdlog.h>

#include <exception>
#include <unordered_set>
#include <utility>

namespace VX
{

/// What was touched, as it was then.
class SceneEditRecord
{
public:
    void touch(const std::shared_ptr<Object>& object)
    {
        if (!known_.insert(object.get()).second)
            return;
        touched_.push_back({object, ObjectState(*object)});
        Object* root = object.get();
        while (root->parent())
            root = root->parent();
        if (knownRoots_.insert(root).second)
            selections_.push_back({root->shared_from_this(), SceneSelection(*root)});
    }

    /// What differs now.
    [[nodiscard]] std::vector<ObjectChange> changes() const
    {
        std::vector<ObjectChange> changes;
        for (const auto& [object, before] : touched_)
        {
            ObjectChange change;
            change.object = object;
            change.fields = before.changesTo(*object);
            change.childrenDiffer = before.children() != object->children();
            if (change.childrenDiffer)
            {
                change.childrenBefore = before.children();
                change.childrenAfter = object->children();
            }
            if (change.childrenDiffer || !change.fields.empty())
                changes.push_back(std::move(change));
        }
        return changes;
    }

    /// The scenes of which the selection differs now.
    [[nodiscard]] std::vector<SelectionChange> selectionChanges() const
    {
        std::vector<SelectionChange> changes;
        for (const auto& [root, before] : selections_)
        {
            // What was touched outside a scene may be in one by now, which counts for it then.
            if (root->parent())
                continue;
            SceneSelection after(*root);
            if (before != after)
                changes.push_back({root, before, std::move(after)});
        }
        return changes;
    }

private:
    struct Touched
    {
        std::shared_ptr<Object> object;
        ObjectState before;
    };

    struct TouchedScene
    {
        std::shared_ptr<Object> root;
        SceneSelection before;
    };

    std::vector<Touched> touched_;
    std::unordered_set<const Object*> known_;
    std::vector<TouchedScene> selections_;
    std::unordered_set<const Object*> knownRoots_;
};

SceneEdit::SceneEdit(HistoryStore& store, std::string name)
    : store_(store)
    , name_(std::move(name))
    , record_(std::make_unique<SceneEditRecord>())
    , exceptions_(std::uncaught_exceptions())
{
}

SceneEdit::~SceneEdit()
{
    const bool failed = std::uncaught_exceptions() > exceptions_;
    try
    {
        if (failed)
            rollBack_();
        else
            commit();
    }
    catch (const std::exception& exception)
    {
        // Nothing but memory can be missing: the scene may be changed, and the history does not know.
        spdlog::error("A step could not be {}.", failed ? "taken back" : "remembered");
        spdlog::debug("Why the step failed: {}", exception.what());
    }
}

void SceneEdit::touch(const std::shared_ptr<Object>& object)
{
    record_->touch(object);
}

void SceneEdit::rollBack_()
{
    std::vector<ObjectChange> changes = record_->changes();
    if (!changes.empty())
        SceneEditAction(name_, std::move(changes), record_->selectionChanges()).undo();
}

void SceneEdit::commit()
{
    std::vector<ObjectChange> changes = record_->changes();
    std::vector<SelectionChange> selections =
        changes.empty() ? std::vector<SelectionChange>() : record_->selectionChanges();
    record_ = std::make_unique<SceneEditRecord>();
    if (!changes.empty())
        store_.append(std::make_shared<SceneEditAction>(name_, std::move(changes), std::move(selections)));
}

} // namespace VX

#include "SceneEditAction.h"

#include <VXViewer/HistoryStore.h>
#include <VXViewer/SceneEdit.h>

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
{
}

SceneEdit::~SceneEdit()
{
    commit();
}

void SceneEdit::touch(const std::shared_ptr<Object>& object)
{
    record_->touch(object);
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

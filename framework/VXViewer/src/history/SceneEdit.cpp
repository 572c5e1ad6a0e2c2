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
        if (known_.insert(object.get()).second)
            touched_.push_back({object, ObjectState(*object)});
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

private:
    struct Touched
    {
        std::shared_ptr<Object> object;
        ObjectState before;
    };

    std::vector<Touched> touched_;
    std::unordered_set<const Object*> known_;
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
    record_ = std::make_unique<SceneEditRecord>();
    if (!changes.empty())
        store_.append(std::make_shared<SceneEditAction>(name_, std::move(changes)));
}

} // namespace VX

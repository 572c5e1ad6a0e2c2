#include "HistoryGroup.h"

#include <VXViewer/HistoryStore.h>

#include <numeric>

namespace VX
{

namespace
{

constexpr std::size_t defaultMemoryLimit = std::size_t{2} << 30;

} // namespace

HistoryStore::HistoryStore()
    : memoryLimit_(defaultMemoryLimit)
{
}

HistoryStore::~HistoryStore() = default;

void HistoryStore::append(std::shared_ptr<HistoryAction> action)
{
    if (openScopes_.empty())
        add_(std::move(action));
    else
        openScopes_.back()->add(std::move(action));
}

void HistoryStore::add_(std::shared_ptr<HistoryAction> action)
{
    forgetUndone_();
    actions_.push_back(std::move(action));
    position_ = actions_.size();
    const bool dropped = dropOverLimit_();
    changed(*this, HistoryChange::ActionAdded);
    if (dropped)
        changed(*this, HistoryChange::Dropped);
}

void HistoryStore::forgetUndone_()
{
    if (savedPosition_ && *savedPosition_ > position_)
        savedPosition_ = isSameFile_(position_, *savedPosition_) ? std::optional(position_) : std::nullopt;
    actions_.resize(position_);
}

bool HistoryStore::undo()
{
    if (isScopeOpen() || position_ == 0)
        return false;
    actions_[--position_]->undo();
    changed(*this, HistoryChange::Undone);
    return true;
}

bool HistoryStore::redo()
{
    if (isScopeOpen() || position_ == actions_.size())
        return false;
    actions_[position_++]->redo();
    changed(*this, HistoryChange::Redone);
    return true;
}

void HistoryStore::jumpTo(std::size_t position)
{
    while (position_ > position && undo())
        continue;
    while (position_ < position && redo())
        continue;
}

std::string HistoryStore::lastActionName() const
{
    return position_ == 0 ? std::string() : actions_[position_ - 1]->name();
}

void HistoryStore::clear()
{
    savedPosition_ = isSaved() ? std::optional<std::size_t>(0) : std::nullopt;
    actions_.clear();
    position_ = 0;
    changed(*this, HistoryChange::Cleared);
}

void HistoryStore::setMemoryLimit(std::size_t bytes)
{
    memoryLimit_ = bytes;
    if (dropOverLimit_())
        changed(*this, HistoryChange::Dropped);
}

std::size_t HistoryStore::heapBytes() const
{
    return std::accumulate(actions_.begin(), actions_.end(), std::size_t{0},
                           [](std::size_t bytes, const auto& action) { return bytes + action->heapBytes(); });
}

bool HistoryStore::dropOverLimit_()
{
    std::size_t bytes = heapBytes();
    std::size_t count = 0;
    // Steps that are undone cannot be the oldest: those before them would be missing.
    while (bytes > memoryLimit_ && count < position_ && count + 1 < actions_.size())
        bytes -= actions_[count++]->heapBytes();
    if (count == 0)
        return false;
    if (savedPosition_ && *savedPosition_ < count)
        savedPosition_ = isSameFile_(*savedPosition_, count) ? std::optional(count) : std::nullopt;
    if (savedPosition_)
        *savedPosition_ -= count;
    actions_.erase(actions_.begin(), actions_.begin() + static_cast<std::ptrdiff_t>(count));
    position_ -= count;
    return true;
}

bool HistoryStore::isSaved() const
{
    return savedPosition_ && isSameFile_(*savedPosition_, position_);
}

void HistoryStore::markSaved()
{
    savedPosition_ = position_;
}

bool HistoryStore::isSameFile_(std::size_t position, std::size_t other) const
{
    const auto [first, last] = std::minmax(position, other);
    for (std::size_t i = first; i < last; ++i)
    {
        if (actions_[i]->changesFile())
            return false;
    }
    return true;
}

void HistoryStore::openScope_(std::string name)
{
    openScopes_.push_back(std::make_shared<HistoryGroup>(std::move(name)));
}

void HistoryStore::closeScope_()
{
    const std::shared_ptr<HistoryGroup> group = std::move(openScopes_.back());
    openScopes_.pop_back();
    if (!group->isEmpty())
        append(group);
}

HistoryScope::HistoryScope(HistoryStore& store, std::string name)
    : store_(store)
{
    store_.openScope_(std::move(name));
}

HistoryScope::~HistoryScope()
{
    store_.closeScope_();
}

} // namespace VX

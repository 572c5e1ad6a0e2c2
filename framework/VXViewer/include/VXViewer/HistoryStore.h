#pragma once

#include <VXViewer/Export.h>
#include <VXViewer/HistoryAction.h>

#include <boost/signals2/signal.hpp>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace VX
{

class HistoryGroup;

/// What happened to a history.
enum class HistoryChange
{
    Undone = 0,
    ActionAdded = 1,
    Redone = 2,
    Dropped = 3, ///< the oldest steps went, because of the memory limit
    Cleared = 4
};

/// The steps that were done to the scene, in order, and how far they are undone.
/// @threads the UI thread
class VXVIEWER_API HistoryStore
{
public:
    HistoryStore();
    ~HistoryStore();

    HistoryStore(const HistoryStore&) = delete;
    HistoryStore& operator=(const HistoryStore&) = delete;

    /// Takes a step that is done already. What could be redone is forgotten. While a scope is open the step becomes a
    /// part of it, and the list changes when the scope ends.
    void append(std::shared_ptr<HistoryAction> action);

    /// @return false when there is nothing to undo, or a scope is open
    bool undo();

    /// @return false when there is nothing to redo, or a scope is open
    bool redo();

    /// Undoes or redoes until `position` steps are done, all of them where `position` is larger than their number.
    void jumpTo(std::size_t position);

    /// How many of `actions` are done; those behind them can be redone.
    [[nodiscard]] std::size_t position() const { return position_; }

    [[nodiscard]] const std::vector<std::shared_ptr<HistoryAction>>& actions() const { return actions_; }

    /// Of the last step that is done; empty where there is none.
    [[nodiscard]] std::string lastActionName() const;

    [[nodiscard]] bool isScopeOpen() const { return !openScopes_.empty(); }

    /// Forgets all steps; the scene stays, and with it whether it is saved.
    void clear();

    /// The oldest steps go while all of them together hold more than `bytes`; the last one stays. 2 GiB at first.
    void setMemoryLimit(std::size_t bytes);

    /// What all steps hold, in bytes.
    [[nodiscard]] std::size_t heapBytes() const;

    /// False when a file of the scene would be another than at the last `markSaved`, or at the beginning.
    [[nodiscard]] bool isSaved() const;

    /// The scene as it is now is in a file.
    void markSaved();

    /// Emitted after the change.
    boost::signals2::signal<void(const HistoryStore&, HistoryChange)> changed;

private:
    friend class HistoryScope;

    void openScope_(std::string name);
    void closeScope_();
    void add_(std::shared_ptr<HistoryAction> action);
    void forgetUndone_();
    [[nodiscard]] bool dropOverLimit_();
    [[nodiscard]] bool isSameFile_(std::size_t position, std::size_t other) const;

    std::vector<std::shared_ptr<HistoryAction>> actions_;
    std::size_t position_ = 0;
    /// Nothing: no position has the content of the file any more.
    std::optional<std::size_t> savedPosition_ = 0;
    std::size_t memoryLimit_;
    std::vector<std::shared_ptr<HistoryGroup>> openScopes_;
};

/// Makes one step of all that are appended while it lives; none, when nothing is appended. Scopes nest: the inner one
/// is one step of the outer one.
/// @threads the UI thread
class VXVIEWER_API HistoryScope
{
public:
    /// @param name  of the step, as in `HistoryAction`
    HistoryScope(HistoryStore& store, std::string name);
    ~HistoryScope();

    HistoryScope(const HistoryScope&) = delete;
    HistoryScope& operator=(const HistoryScope&) = delete;

private:
    HistoryStore& store_;
};

} // namespace VX

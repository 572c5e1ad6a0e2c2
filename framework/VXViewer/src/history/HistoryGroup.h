#pragma once

#include "StepObjects.h"

#include <VXViewer/HistoryAction.h>

#include <algorithm>
#include <memory>
#include <numeric>
#include <utility>
#include <vector>

namespace VX
{

/// Several steps that are done and undone as one.
/// @threads the UI thread
class HistoryGroup : public HistoryAction
{
public:
    using HistoryAction::HistoryAction;

    void add(std::shared_ptr<HistoryAction> action) { actions_.push_back(std::move(action)); }

    [[nodiscard]] bool isEmpty() const { return actions_.empty(); }

    void undo() override
    {
        std::for_each(actions_.rbegin(), actions_.rend(), [](const auto& action) { action->undo(); });
    }

    void redo() override
    {
        std::ranges::for_each(actions_, [](const auto& action) { action->redo(); });
    }

    [[nodiscard]] std::vector<std::shared_ptr<Object>> objects() const override
    {
        StepObjects all;
        const bool selectsOnly = !changesFile();
        for (const std::shared_ptr<HistoryAction>& action : actions_)
        {
            if (selectsOnly || action->changesFile())
                all.add(action->objects());
        }
        return all.take();
    }

    [[nodiscard]] std::size_t heapBytes() const override
    {
        return std::accumulate(actions_.begin(), actions_.end(), std::size_t{0},
                               [](std::size_t bytes, const auto& action) { return bytes + action->heapBytes(); });
    }

    [[nodiscard]] bool changesFile() const override
    {
        return std::ranges::any_of(actions_, [](const auto& action) { return action->changesFile(); });
    }

private:
    std::vector<std::shared_ptr<HistoryAction>> actions_;
};

} // namespace VX

#pragma once

#include <VXViewer/HistoryAction.h>

#include <memory>
#include <vector>

namespace VX
{

class Object;

/// The objects of files came into the scene. Files that were given together arrive one by one and are one step.
/// @threads the UI thread
class OpenFilesAction : public HistoryAction
{
public:
    /// @param root  with the new objects below it
    /// @param childrenBefore  without them
    OpenFilesAction(std::shared_ptr<Object> root, std::vector<std::shared_ptr<Object>> childrenBefore);

    /// More files arrived, with no other step between.
    void extend();

    void undo() override;
    void redo() override;

    [[nodiscard]] std::size_t heapBytes() const override { return heapBytes_; }

private:
    std::shared_ptr<Object> root_;
    std::vector<std::shared_ptr<Object>> before_;
    std::vector<std::shared_ptr<Object>> after_;
    std::size_t heapBytes_ = 0;
};

} // namespace VX

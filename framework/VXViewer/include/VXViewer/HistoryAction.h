#pragma once

#include <VXViewer/Export.h>

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace VX
{

class Object;

/// One step of the history: something that was done and can be taken back.
/// @threads the UI thread
class VXVIEWER_API HistoryAction
{
public:
    /// @param name  in English, as it is looked up; shown translated. Nothing that the user typed is in it
    explicit HistoryAction(std::string name)
        : name_(std::move(name))
    {
    }

    virtual ~HistoryAction() = default;

    HistoryAction(const HistoryAction&) = delete;
    HistoryAction& operator=(const HistoryAction&) = delete;

    [[nodiscard]] virtual const std::string& name() const { return name_; }

    /// Called only while it is done.
    virtual void undo() = 0;

    /// Called only while it is undone.
    virtual void redo() = 0;

    /// The objects that it changes, adds or takes away, each once; those that it only selects count only where it does
    /// nothing else. Some may be in no scene now.
    [[nodiscard]] virtual std::vector<std::shared_ptr<Object>> objects() const { return {}; }

    /// The memory that would be free without it: its own, and that of geometry which the scene no longer holds.
    [[nodiscard]] virtual std::size_t heapBytes() const = 0;

    /// False when a file saved after it has the same content as one saved before it, as with a selection.
    [[nodiscard]] virtual bool changesFile() const { return true; }

private:
    std::string name_;
};

} // namespace VX

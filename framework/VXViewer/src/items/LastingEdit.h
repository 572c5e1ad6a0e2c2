#pragma once

#include <VXViewer/HistoryStore.h>
#include <VXViewer/SceneEdit.h>

#include <memory>
#include <string>

namespace VX
{

/// A SceneEdit that is open for some frames. What it knows of the objects would be wrong after an undo, so nothing is
/// undone or redone until it ends.
/// @threads the UI thread
class LastingEdit
{
public:
    /// @param name  as in SceneEdit
    LastingEdit(HistoryStore& store, const std::string& name)
        : scope_(store, name)
        , edit_(store, name)
    {
    }

    void touch(const std::shared_ptr<Object>& object) { edit_.touch(object); }

private:
    // The edit commits before the scope ends.
    HistoryScope scope_;
    SceneEdit edit_;
};

} // namespace VX

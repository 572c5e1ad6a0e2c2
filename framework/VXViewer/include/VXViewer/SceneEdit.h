#pragma once

#include <VXViewer/Export.h>

#include <memory>
#include <string>

namespace VX
{

class HistoryStore;
class Object;
class SceneEditRecord;

/// Makes one step of the history out of changes to objects:
///
///     SceneEdit edit(store, "Rename");
///     edit.touch(object);
///     object->setName(name);
///
/// The step holds the fields that differ, before and after; geometry is held by its pointer.
/// @threads the UI thread
class VXVIEWER_API SceneEdit
{
public:
    /// @param name  of the step, in English; nothing that the user typed is in it
    SceneEdit(HistoryStore& store, std::string name);

    /// Commits; where an exception ends the scope, the objects that were touched become again as they were instead.
    ~SceneEdit();

    SceneEdit(const SceneEdit&) = delete;
    SceneEdit& operator=(const SceneEdit&) = delete;

    /// Call it before `object` changes: remembers its name, transform, visibility, selection, colour, shading,
    /// geometry, selected faces and list of children. Who moves an object touches its old and its new parent. Further
    /// calls for the same object do nothing.
    void touch(const std::shared_ptr<Object>& object);

    /// Appends the step, or nothing where nothing differs, and begins anew with no object touched.
    void commit();

private:
    void rollBack_();

    HistoryStore& store_;
    std::string name_;
    std::unique_ptr<SceneEditRecord> record_;
    int exceptions_; ///< that were on their way when the edit began
};

} // namespace VX

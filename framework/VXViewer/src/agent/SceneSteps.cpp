#include "SceneSteps.h"

#include <VXMesh/ObjectMesh.h>
#include <VXViewer/HistoryStore.h>
#include <VXViewer/Locale.h>
#include <VXViewer/SceneEdit.h>
#include <VXViewer/Selection.h>

#include <unordered_set>

namespace VX
{

void selectForStep(Viewer& viewer, const std::vector<std::shared_ptr<Object>>& objects)
{
    SceneEdit edit(*viewer.getGlobalHistoryStore(), translatable("Select"));
    std::unordered_set<const Object*> chosen;
    for (const std::shared_ptr<Object>& object : objects)
        chosen.insert(object.get());
    visitObjects(viewer.scene(),
                 [&](Object& object)
                 {
                     const bool selected = chosen.contains(&object);
                     auto* mesh = dynamic_cast<ObjectMesh*>(&object);
                     const bool hasFaces = mesh && mesh->selectedFaces();
                     if (object.isSelected() == selected && !hasFaces)
                         return;
                     edit.touch(object.shared_from_this());
                     object.setSelected(selected);
                     if (hasFaces)
                         mesh->setSelectedFaces(nullptr);
                 });
}

std::size_t countShownSelectedFaces(Object& root)
{
    std::size_t count = 0;
    for (const std::shared_ptr<ObjectMesh>& mesh : shownMeshesWithSelectedFaces(root))
        count += mesh->selectedFaces()->count();
    return count;
}

} // namespace VX

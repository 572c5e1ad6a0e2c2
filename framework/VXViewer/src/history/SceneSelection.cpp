#include "SceneSelection.h"

#include <VXMesh/Object.h>
#include <VXViewer/Selection.h>

#include <algorithm>

namespace VX
{

SceneSelection::SceneSelection(Object& root)
{
    for (const std::shared_ptr<Object>& object : selectedObjects(root))
        ids_.push_back(object->id());
    std::ranges::sort(ids_);
}

void SceneSelection::apply(Object& root) const
{
    visitObjects(root,
                 [&](Object& object)
                 {
                     if (&object != &root)
                         object.setSelected(std::ranges::binary_search(ids_, object.id()));
                 });
}

} // namespace VX

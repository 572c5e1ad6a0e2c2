#include <VXMesh/Object.h>
#include <VXViewer/Selection.h>

namespace VX
{

std::vector<std::shared_ptr<Object>> selectedObjects(Object& root)
{
    std::vector<std::shared_ptr<Object>> selected;
    visitObjects(root,
                 [&](Object& object)
                 {
                     if (&object != &root && object.isSelected())
                         selected.push_back(object.shared_from_this());
                 });
    return selected;
}

void selectOnly(Object& root, const Object* object)
{
    visitObjects(root, [&](Object& each) { each.setSelected(&each == object && &each != &root); });
}

std::size_t removeSelected(Object& root)
{
    std::size_t removed = 0;
    for (const std::shared_ptr<Object>& object : selectedObjects(root))
    {
        bool belowAnother = false;
        for (const Object* above = object->parent(); above && above != &root; above = above->parent())
            belowAnother = belowAnother || above->isSelected();
        if (!belowAnother && object->parent() && object->parent()->removeChild(*object))
            ++removed;
    }
    return removed;
}

} // namespace VX

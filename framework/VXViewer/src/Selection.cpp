#include <VXMesh/ObjectMesh.h>
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

std::vector<std::shared_ptr<Object>> topmostSelectedObjects(Object& root)
{
    std::vector<std::shared_ptr<Object>> selected = selectedObjects(root);
    std::erase_if(selected,
                  [&](const std::shared_ptr<Object>& object)
                  {
                      const Object* above = object->parent();
                      while (above != &root && !above->isSelected())
                          above = above->parent();
                      return above != &root;
                  });
    return selected;
}

std::vector<std::shared_ptr<ObjectMesh>> meshesWithSelectedFaces(Object& root)
{
    std::vector<std::shared_ptr<ObjectMesh>> meshes;
    visitObjects(root,
                 [&](Object& object)
                 {
                     auto* mesh = dynamic_cast<ObjectMesh*>(&object);
                     if (mesh && mesh->selectedFaces())
                         meshes.push_back(std::static_pointer_cast<ObjectMesh>(object.shared_from_this()));
                 });
    return meshes;
}

std::vector<std::shared_ptr<ObjectMesh>> shownMeshesWithSelectedFaces(Object& root)
{
    std::vector<std::shared_ptr<ObjectMesh>> meshes = meshesWithSelectedFaces(root);
    std::erase_if(meshes, [](const std::shared_ptr<ObjectMesh>& mesh) { return !isShown(*mesh); });
    return meshes;
}

bool isShown(const Object& object)
{
    const Object* each = &object;
    while (each && each->isVisible())
        each = each->parent();
    return !each;
}

void selectOnly(Object& root, const Object* object)
{
    visitObjects(root, [&](Object& each) { each.setSelected(&each == object && &each != &root); });
}

} // namespace VX

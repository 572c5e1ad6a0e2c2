#include "FaceSelectionEdit.h"

#include "menu/SceneFacts.h"
#include "menu/Translate.h"

#include <VXMesh/ObjectMesh.h>
#include <VXViewer/SceneEdit.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#include <GLFW/glfw3.h>

#include <unordered_map>

namespace VX
{

namespace
{

bool isSame(const std::shared_ptr<const FaceSet>& a, const std::shared_ptr<const FaceSet>& b)
{
    return a == b || (a && b && *a == *b);
}

} // namespace

FaceSelectionMode faceSelectionMode(int mods)
{
    if ((mods & GLFW_MOD_CONTROL) != 0)
        return FaceSelectionMode::Remove;
    return (mods & GLFW_MOD_SHIFT) != 0 ? FaceSelectionMode::Add : FaceSelectionMode::Replace;
}

std::shared_ptr<const FaceSet> combineFaces(const std::shared_ptr<const FaceSet>& before, const FaceSet& found,
                                            FaceSelectionMode mode)
{
    auto result =
        std::make_shared<FaceSet>(before && mode != FaceSelectionMode::Replace ? *before : FaceSet(found.size()));
    if (mode == FaceSelectionMode::Remove)
        *result -= found;
    else
        *result |= found;
    return result->any() ? result : nullptr;
}

void selectFaces(Viewer& viewer, const std::string& name, const std::vector<VisibleFaces>& found,
                 FaceSelectionMode mode)
{
    SceneEdit edit(*viewer.getGlobalHistoryStore(), name);
    std::unordered_map<const ObjectMesh*, const FaceSet*> foundOf;
    for (const VisibleFaces& each : found)
        foundOf.emplace(each.object, &each.faces);
    const auto change = [&](Object& object)
    {
        auto* mesh = dynamic_cast<ObjectMesh*>(&object);
        if (!mesh || !mesh->mesh())
            return;
        const auto here = foundOf.find(mesh);
        const bool isFound = here != foundOf.end() && here->second->size() == mesh->mesh()->triangles.size();
        if (!isFound && (mode != FaceSelectionMode::Replace || !mesh->selectedFaces()))
            return;
        const std::shared_ptr<const FaceSet> faces =
            isFound ? combineFaces(mesh->selectedFaces(), *here->second, mode) : nullptr;
        if (isSame(faces, mesh->selectedFaces()))
            return;
        edit.touch(object.shared_from_this());
        mesh->setSelectedFaces(faces);
    };
    visitObjects(viewer.scene(), change);
}

std::size_t countSelectedFaces(const Object& root)
{
    std::size_t count = 0;
    visitObjects(root,
                 [&](const Object& object)
                 {
                     const auto* mesh = dynamic_cast<const ObjectMesh*>(&object);
                     if (mesh && mesh->selectedFaces())
                         count += mesh->selectedFaces()->count();
                 });
    return count;
}

void drawFaceSelectionFacts(const Viewer& viewer)
{
    UI::secondaryText(tr("Shift adds, Ctrl removes."));
    const std::size_t count = countSelectedFaces(viewer.scene());
    UI::text(trn("{} face selected", "{} faces selected", count, countText(count)));
}

} // namespace VX

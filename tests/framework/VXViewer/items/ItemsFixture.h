#pragma once

#include "tests/framework/VXViewer/InstalledRibbonFixture.h"

#include <VXViewer/RibbonMenuItem.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

namespace VX::Test
{

/// The ribbon as it is installed, over a scene of the boxes A, B and C.
class ItemsFixture : public InstalledRibbonFixture
{
protected:
    /// @param size   of the window, in pixels
    /// @param scale  of the interface in it
    explicit ItemsFixture(PixelSize size = {1200, 800}, float scale = 1)
        : InstalledRibbonFixture(size, scale)
    {
    }

    [[nodiscard]] static RibbonMenuItem& item_(const std::string& name)
    {
        return *RibbonSchemaHolder::find(name)->item;
    }

    /// Presses `name`, which must be one step of the history; takes it back and does it again.
    void expectStep_(const std::string& name)
    {
        expectOneStep_([&] { EXPECT_TRUE(menu_->pressItem(name)) << item_(name).unavailableReason(); });
    }

    static void selectFaces_(ObjectMesh& mesh, std::initializer_list<std::size_t> faces)
    {
        auto set = std::make_shared<FaceSet>(mesh.mesh()->triangles.size());
        for (const std::size_t face : faces)
            set->set(face);
        mesh.setSelectedFaces(set);
    }

    [[nodiscard]] static std::vector<std::size_t> facesOf_(const ObjectMesh& mesh)
    {
        std::vector<std::size_t> faces;
        if (mesh.selectedFaces())
            mesh.selectedFaces()->forEach([&](std::size_t face) { faces.push_back(face); });
        return faces;
    }

    std::shared_ptr<ObjectMesh> a_ = addBox_("A");
    std::shared_ptr<ObjectMesh> b_ = addBox_("B");
    std::shared_ptr<ObjectMesh> c_ = addBox_("C");
};

} // namespace VX::Test

#pragma once

#include "MenuFixture.h"

#include <VXMesh/ObjectMesh.h>
#include <VXViewer/OpenLink.h>

namespace VX::Test
{

/// The application's menu over an empty scene, in a window with room for the welcome cards.
class WelcomeFixture : public MenuFixture
{
protected:
    static constexpr PixelSize roomy{1280, 800};

    /// In a card; "Drag & Drop Files" is there exactly while the cards are.
    [[nodiscard]] bool showsCards_() const { return driver_->shows("Drag & Drop Files"); }

    /// Puts something to be seen into the scene.
    std::shared_ptr<Object> addMesh_()
    {
        auto object = std::make_shared<ObjectMesh>();
        viewer_().scene().addChild(object);
        redraw_();
        return object;
    }

    void removeAll_()
    {
        viewer_().scene().setChildren({});
        redraw_();
    }

    void TearDown() override
    {
        setLinkOpener({});
        MenuFixture::TearDown();
    }
};

} // namespace VX::Test

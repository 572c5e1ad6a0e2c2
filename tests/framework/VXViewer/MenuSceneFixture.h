#pragma once

#include "tests/framework/VXViewer/UiTestScene.h"
#include "tests/support/ui/UiDriver.h"

#include <VXViewer/RibbonMenu.h>
#include <VXViewer/Viewer.h>

#include <gtest/gtest.h>

#include <memory>

namespace VX::Test
{

/// A viewer with a ribbon over an empty scene.
class MenuSceneFixture : public testing::Test
{
protected:
    /// Puts the boxes One, Two and Three into the scene.
    void addBoxes_()
    {
        for (const char* name : {"One", "Two", "Three"})
            viewer_.scene().addChild(makeBox(name));
        driver_.settle();
    }

    std::shared_ptr<RibbonMenu> menu_ = std::make_shared<RibbonMenu>();
    ViewerSession session_{menu_};
    Viewer& viewer_ = session_.viewer();
    UiDriver driver_{session_};
};

} // namespace VX::Test

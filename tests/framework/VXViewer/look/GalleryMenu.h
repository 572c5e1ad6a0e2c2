#pragma once

#include <VXViewer/ImGuiMenu.h>

#include <string>
#include <vector>

namespace VX::Test
{

/// An interface that is one window, "Gallery", with every widget in it, and what they hold.
class GalleryMenu : public ImGuiMenu
{
public:
    void draw() override;

    [[nodiscard]] float leftPanelWidth() const override { return 0; }

    std::vector<std::string> pressed; ///< the labels of buttons, in order
    bool checked = true;
    bool unchecked = false;
    int choice = 1;
    int shape = 0;
    float radius = 2.5F;
    int segments = 24;
    float angle = 30;
    std::string name = "Gear wheel";
    std::string password = "secret";
    std::string code;
    int selectedRow = 1;
    bool disabled = false; ///< all of them

private:
    void drawButtons_();
    void drawChoices_();
    void drawNumbers_();
    void drawTexts_();
    void drawTabs_();
    void drawTable_();
    void note_(bool pressed, const char* label);
};

} // namespace VX::Test

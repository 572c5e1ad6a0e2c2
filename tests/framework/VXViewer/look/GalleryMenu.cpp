#include "GalleryMenu.h"

#include <VXViewer/UI.h>

namespace VX::Test
{

namespace
{

constexpr float columnWidth = 312;
constexpr float fieldWidth = 168;

} // namespace

void GalleryMenu::note_(bool isPressed, const char* label)
{
    if (isPressed)
        pressed.emplace_back(label);
}

void GalleryMenu::draw()
{
    ImGui::SetNextWindowPos({UI::px(8), UI::px(8)});
    ImGui::SetNextWindowSize({UI::px(2 * columnWidth + 44), UI::px(484)});
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(UI::px(16), UI::px(12)));
    UI::beginWindow("Gallery", ImGuiWindowFlags_NoDecoration | ImGuiWindowFlags_NoMove);
    ImGui::PopStyleVar();
    {
        const UI::ScopedDisabled scope(disabled);
        {
            const UI::ScopedFont headline(UI::Font::Headline);
            UI::text("Widgets");
        }
        ImGui::BeginChild("##left", {UI::px(columnWidth), 0}, 0, ImGuiWindowFlags_NavFlattened);
        drawButtons_();
        drawChoices_();
        drawNumbers_();
        ImGui::EndChild();
        ImGui::SameLine(0, UI::px(16));
        ImGui::BeginChild("##right", {UI::px(columnWidth - 8), 0}, 0, ImGuiWindowFlags_NavFlattened);
        drawTexts_();
        drawTabs_();
        drawTable_();
        ImGui::EndChild();
    }
    UI::endWindow();
}

void GalleryMenu::drawButtons_()
{
    note_(UI::primaryButton("Open"), "Open");
    ImGui::SameLine();
    note_(UI::button("Save As"), "Save As");
    ImGui::SameLine();
    note_(UI::toolButton("Front"), "Front");
    ImGui::SameLine();
    note_(UI::toolButton("Perspective", true), "Perspective");
    note_(UI::iconButton("arrow-back-up", "Undo"), "Undo");
    ImGui::SameLine(0, UI::px(4));
    note_(UI::iconButton("eye", "Visible", true), "Visible");
    ImGui::SameLine(0, UI::px(4));
    {
        const UI::ScopedDisabled disabledHere;
        note_(UI::iconButton("trash", "Delete"), "Delete");
    }
    ImGui::SameLine(0, UI::px(16));
    for (const char* shape_ : {"Cube", "Torus", "Arrow"})
    {
        std::string icon(shape_);
        icon[0] = static_cast<char>(icon[0] - 'A' + 'a');
        note_(UI::buttonIconEx(icon, UI::px(16), shape_, {UI::px(56), UI::px(50)}), shape_);
        ImGui::SameLine(0, UI::px(4));
    }
    ImGui::NewLine();
    UI::separator();
}

void GalleryMenu::drawChoices_()
{
    UI::checkbox("Show edges", checked);
    ImGui::SameLine();
    UI::checkbox("Show the basis", unchecked);
    UI::radio("Flat", choice, 0);
    ImGui::SameLine();
    UI::radio("Smooth", choice, 1);
    ImGui::SameLine();
    {
        const UI::ScopedDisabled disabledHere;
        UI::radio("None", choice, 2);
    }
    ImGui::SetNextItemWidth(UI::px(fieldWidth));
    UI::combo("Shape", shape, {"Cube", "Cylinder", "Sphere"});
}

void GalleryMenu::drawNumbers_()
{
    ImGui::SetNextItemWidth(UI::px(fieldWidth));
    UI::slider("Radius", radius, 0, 10, {"mm", 2});
    ImGui::SetNextItemWidth(UI::px(fieldWidth));
    UI::sliderInt("Segments", segments, 3, 96);
    ImGui::SetNextItemWidth(UI::px(fieldWidth));
    UI::drag("Angle", angle, 0.5F, 0, 90, {"°", 1});
    ImGui::SetNextItemWidth(UI::px(fieldWidth));
    UI::inputText("Name", name);
    ImGui::SetNextItemWidth(UI::px(fieldWidth));
    UI::inputText("Password", password, {.password = true});
    ImGui::SetNextItemWidth(UI::px(fieldWidth));
    UI::inputText("Code", code, {.limit = 6, .hint = "Six digits"});
}

void GalleryMenu::drawTexts_()
{
    UI::icon("info-circle", 16, UI::Color::Accent);
    ImGui::SameLine();
    UI::text("12 objects");
    ImGui::SameLine();
    UI::secondaryText("3 selected");
    {
        const UI::ScopedFont small(UI::Font::Small);
        UI::secondaryText("Small: the name of a group");
    }
    {
        const UI::ScopedFont monospace(UI::Font::Monospace);
        UI::text("0123456789 12.50 mm");
    }
    UI::progressBar("Loading", 0.4F, {UI::px(columnWidth - 8), UI::px(4)});
    if (UI::collapsingHeader("Transform"))
        UI::secondaryText("Position 0, 0, 0");
}

void GalleryMenu::drawTabs_()
{
    if (!UI::beginTabBar("Pages"))
        return;
    if (UI::tab("Application"))
        UI::text("Language and theme");
    if (UI::tab("View"))
        UI::text("Edges and samples");
    UI::endTabBar();
}

void GalleryMenu::drawTable_()
{
    if (!UI::beginTable("Objects", {"Name", "Triangles"}, {0, UI::px(142)}))
        return;
    const std::vector<std::vector<std::string>> rows{
        {"Bolt", "12"}, {"Gear", "2304"}, {"Housing", "960"}, {"Plate", "2"}, {"Washer", "64"}};
    for (int i = 0; i < static_cast<int>(rows.size()); ++i)
    {
        if (UI::tableRow(rows[static_cast<std::size_t>(i)], i == selectedRow))
            selectedRow = i;
    }
    UI::endTable();
}

} // namespace VX::Test

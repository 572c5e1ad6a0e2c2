#include "AgentSettings.h"

#include "AllowedFolders.h"
#include "menu/Translate.h"

#include <VXMesh/StringConvert.h>
#include <VXMesh/UserHome.h>
#include <VXViewer/UI.h>
#include <VXViewer/UiTree.h>

#include <algorithm>
#include <optional>

namespace VX
{

namespace
{

constexpr float fieldWidth = 320;
constexpr float side = 28;

/// Draws the folders. @return the one that the user removes
std::optional<std::filesystem::path> drawFolders(const std::vector<std::filesystem::path>& folders)
{
    std::optional<std::filesystem::path> removed;
    for (const std::filesystem::path& folder : folders)
    {
        const std::string name = utf8string(folder);
        ImGui::PushID(name.c_str());
        if (UI::iconButton("trash", trf("Remove \"{}\"", name), false, {UI::px(side), UI::px(side)}))
            removed = folder;
        ImGui::SameLine();
        ImGui::AlignTextToFramePadding();
        UI::text(UI::elided(name, ImGui::GetContentRegionAvail().x));
        ImGui::PopID();
    }
    return removed;
}

} // namespace

const char* AgentSettings::getName()
{
    return translatable("Agents");
}

void AgentSettings::draw(float)
{
    UI::wrappedText(
        tr("Programs that drive the viewer may load and save files below these folders, hidden ones left out:"));
    std::vector<std::filesystem::path> folders = AllowedFolders::settings();
    if (folders.empty())
        UI::text(trf("{} (your home folder)", utf8string(getUserHomeDir())));
    if (const auto removed = drawFolders(folders))
    {
        std::erase(folders, *removed);
        AllowedFolders::setSettings(folders);
    }
    ImGui::SetNextItemWidth(UI::px(fieldWidth));
    const std::size_t field = UiTree::instance().drawnCount();
    UI::inputText("##folder", text_, {.hint = tr("Path of a folder")});
    UiTree::instance().nameDrawn(field, tr("Folder for agents"));
    ImGui::SameLine();
    if (UI::button(tr("Add")))
        add_();
    if (!error_.empty())
        UI::wrappedText(error_);
}

void AgentSettings::add_()
{
    const std::filesystem::path folder = pathFromUtf8(text_);
    std::error_code ignored;
    if (!folder.is_absolute() || !std::filesystem::is_directory(folder, ignored))
    {
        error_ = tr("There is no such folder. Write its whole path, beginning with \"/\".");
        return;
    }
    std::vector<std::filesystem::path> folders = AllowedFolders::settings();
    if (std::ranges::find(folders, folder) == folders.end())
        folders.push_back(folder);
    AllowedFolders::setSettings(folders);
    text_.clear();
    error_.clear();
}

void AgentSettings::reset()
{
    AllowedFolders::setSettings({});
    text_.clear();
    error_.clear();
}

} // namespace VX

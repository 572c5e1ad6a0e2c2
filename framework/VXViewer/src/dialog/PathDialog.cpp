#include "PathDialog.h"

#include "../menu/Translate.h"

#include <VXMesh/FileError.h>
#include <VXMesh/StringConvert.h>
#include <VXViewer/UI.h>

#include <imgui.h>

#include <algorithm>
#include <system_error>
#include <utility>

namespace VX
{

namespace
{

bool names(const FileFilter& filter, const std::filesystem::path& path)
{
    return std::find(filter.extensions.begin(), filter.extensions.end(), toLower(utf8string(path.extension()))) !=
           filter.extensions.end();
}

} // namespace

const char* PathDialog::windowName()
{
    return "File Dialog";
}

PathDialog::PathDialog(FileDialogRequest request, const std::filesystem::path& folder)
    : request_(std::move(request))
    , typed_(request_.fileName)
{
    openFolder_(folder);
}

void PathDialog::openFolder_(const std::filesystem::path& folder)
{
    std::error_code error;
    std::vector<Entry> entries;
    for (std::filesystem::directory_iterator it(folder, error), end; !error && it != end; it.increment(error))
    {
        std::error_code ignored;
        const bool isFolder = it->is_directory(ignored);
        const std::string name = utf8string(it->path().filename());
        if (name.front() != '.' && (isFolder || matchesFilter_(it->path())))
            entries.push_back({name, isFolder});
    }
    if (error)
    {
        problem_ = fileErrorText("open", folder, error);
        return;
    }
    problem_.clear();
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b)
              { return std::pair(!a.isFolder, toLower(a.name)) < std::pair(!b.isFolder, toLower(b.name)); });
    folder_ = folder.lexically_normal();
    entries_ = std::move(entries);
}

const FileFilter* PathDialog::filterWithExtensions_() const
{
    if (filter_ < 0 || filter_ >= static_cast<int>(request_.filters.size()))
        return nullptr;
    const FileFilter& filter = request_.filters[static_cast<std::size_t>(filter_)];
    return filter.extensions.empty() ? nullptr : &filter;
}

bool PathDialog::matchesFilter_(const std::filesystem::path& path) const
{
    const FileFilter* filter = filterWithExtensions_();
    return filter == nullptr || names(*filter, path);
}

std::filesystem::path PathDialog::typedPath_() const
{
    std::filesystem::path path = folder_ / pathFromUtf8(typed_);
    const FileFilter* filter = filterWithExtensions_();
    std::error_code error;
    if (!isSaving_() || filter == nullptr || !path.has_filename() || std::filesystem::is_directory(path, error))
        return path;
    if (std::none_of(request_.filters.begin(), request_.filters.end(),
                     [&](const FileFilter& each) { return names(each, path); }))
        path += filter->extensions.front();
    return path;
}

std::optional<std::vector<std::filesystem::path>> PathDialog::draw()
{
    if (!ImGui::IsPopupOpen(windowName()))
        ImGui::OpenPopup(windowName());
    if (!UI::beginModal(windowName(), request_.title, UI::px(560)))
        return {};
    drawFolder_();
    if (focusInput_ || ImGui::IsWindowAppearing())
        ImGui::SetKeyboardFocusHere();
    focusInput_ = false;
    ImGui::SetNextItemWidth(-1);
    const bool entered =
        UI::inputText("##path", typed_, {.hint = tr("Path or name"), .flags = ImGuiInputTextFlags_EnterReturnsTrue});
    drawFilter_();

    std::error_code error;
    const bool replaces = isSaving_() && !typed_.empty() && std::filesystem::is_regular_file(typedPath_(), error);
    if (!problem_.empty())
    {
        ImGui::PushStyleColor(ImGuiCol_Text, UI::color(UI::Color::Error));
        UI::wrappedText(problem_);
        ImGui::PopStyleColor();
    }
    else if (replaces)
    {
        ImGui::PushStyleColor(ImGuiCol_Text, UI::color(UI::Color::Warning));
        UI::wrappedText(trf("\"{}\" exists and will be replaced.", utf8string(typedPath_().filename())));
        ImGui::PopStyleColor();
    }

    ImGui::Dummy({0, UI::px(4)});
    const float width = UI::px(88);
    ImGui::SetCursorPosX(ImGui::GetWindowWidth() - UI::px(20) - 2 * width - UI::px(8));
    const bool canceled = UI::button(tr("Cancel"), {width, 0}) || ImGui::IsKeyPressed(ImGuiKey_Escape, false);
    ImGui::SameLine();
    bool wanted = entered || std::exchange(activated_, false);
    {
        const UI::ScopedDisabled disabled(typed_.empty());
        const std::string verb = replaces ? tr("Replace") : isSaving_() ? tr("Save") : tr("Open");
        wanted = UI::primaryButton(verb, {width, 0}) || wanted;
    }
    const bool accepted = wanted && !canceled && accept_();
    UI::endModal();
    if (!canceled && !accepted)
        return {};
    UI::closeModal(windowName());
    return accepted ? std::exchange(chosen_, {}) : std::vector<std::filesystem::path>();
}

void PathDialog::drawFolder_()
{
    const bool atTop = folder_ == folder_.root_path();
    {
        const UI::ScopedDisabled disabled(atTop);
        if (UI::button(tr("Up")))
            openFolder_(folder_.parent_path());
        UI::tooltip(tr("To the folder above"));
    }
    ImGui::SameLine();
    ImGui::AlignTextToFramePadding();
    UI::secondaryText(UI::elided(utf8string(folder_), ImGui::GetContentRegionAvail().x));

    std::filesystem::path entered;
    ImGui::PushStyleColor(ImGuiCol_ChildBg, UI::color(UI::Color::Window));
    const ImVec2 spacing = ImGui::GetStyle().ItemSpacing;
    ImGui::PushStyleVar(ImGuiStyleVar_ItemSpacing, ImVec2(spacing.x, 0));
    if (ImGui::BeginChild("##content", {0, UI::px(28 * 8 + 8)}, ImGuiChildFlags_AlwaysUseWindowPadding,
                          ImGuiWindowFlags_NavFlattened))
    {
        for (const Entry& entry : entries_)
        {
            const std::string label = entry.isFolder ? entry.name + "/" : entry.name;
            const bool pressed =
                UI::listRow(label, !entry.isFolder && typed_ == entry.name, ImGuiSelectableFlags_AllowDoubleClick);
            if (pressed && entry.isFolder)
                entered = folder_ / pathFromUtf8(entry.name);
            else if (pressed)
            {
                typed_ = entry.name;
                activated_ = ImGui::IsMouseDoubleClicked(ImGuiMouseButton_Left);
            }
        }
        if (entries_.empty())
            UI::secondaryText(tr("Nothing to open in this folder"));
    }
    // Before the end of the list, which is followed by a gap as everything else is.
    ImGui::PopStyleVar();
    ImGui::EndChild();
    ImGui::PopStyleColor();
    if (!entered.empty())
        openFolder_(entered);
}

void PathDialog::drawFilter_()
{
    std::vector<std::string> names;
    names.reserve(request_.filters.size());
    for (const FileFilter& filter : request_.filters)
        names.push_back(filter.name);
    if (names.empty())
        return;
    ImGui::SetNextItemWidth(-1);
    if (UI::combo("##filter", filter_, names))
        openFolder_(folder_);
}

bool PathDialog::accept_()
{
    if (typed_.empty())
        return false;
    const std::filesystem::path path = typedPath_();
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (std::filesystem::is_directory(status))
    {
        typed_.clear();
        focusInput_ = true;
        openFolder_(path);
        return false;
    }
    if (!isSaving_() && !std::filesystem::exists(status))
    {
        problem_ = fileErrorText("open", path, std::make_error_code(std::errc::no_such_file_or_directory));
        focusInput_ = true;
        return false;
    }
    chosen_ = {path};
    return true;
}

} // namespace VX

#pragma once

#include <VXViewer/FileDialog.h>

#include <optional>

namespace VX
{

/// A file dialog drawn by the interface: a path to type, and the folder's content to click.
/// @threads the UI thread
class PathDialog
{
public:
    PathDialog(FileDialogRequest request, const std::filesystem::path& folder);

    /// @return once, when the dialog ends: what was chosen, or nothing for a cancel
    [[nodiscard]] std::optional<std::vector<std::filesystem::path>> draw();

    [[nodiscard]] static const char* windowName();

    /// The folder that was shown last.
    [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }

private:
    struct Entry
    {
        std::string name;
        bool isFolder;
    };

    void openFolder_(const std::filesystem::path& folder);
    /// The chosen filter; none where any file is wanted.
    [[nodiscard]] const FileFilter* filterWithExtensions_() const;
    [[nodiscard]] bool matchesFilter_(const std::filesystem::path& path) const;
    [[nodiscard]] std::filesystem::path typedPath_() const;

    [[nodiscard]] bool isSaving_() const { return request_.mode == FileDialogRequest::Mode::SaveFile; }

    void drawFolder_();
    void drawFilter_();
    /// True when the typed path is accepted: then `chosen_` holds it.
    bool accept_();

    FileDialogRequest request_;
    std::filesystem::path folder_;
    std::vector<Entry> entries_;
    std::string typed_;
    std::string problem_;
    int filter_ = 0;
    bool focusInput_ = true;
    bool activated_ = false; ///< a file was double-clicked
    std::vector<std::filesystem::path> chosen_;
};

} // namespace VX

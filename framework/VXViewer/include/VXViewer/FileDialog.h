#pragma once

#include <VXViewer/Export.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace VX
{

class Viewer;

/// A choice of a file dialog: a name for the user and the extensions it stands for, in lower case with their dots.
struct FileFilter
{
    std::string name;
    std::vector<std::string> extensions;
};

/// What a file dialog is to ask for.
struct FileDialogRequest
{
    enum class Mode
    {
        OpenFiles, ///< one or more that exist
        SaveFile   ///< one; it may exist
    };

    Mode mode = Mode::OpenFiles;
    std::string title; ///< translated
    std::vector<FileFilter> filters;
    std::string fileName; ///< suggested, without a folder
};

/// Asks the user for files, beside the running loop. The system's own dialog runs in a process of its own; where that
/// cannot be, as without a screen, a dialog of the interface takes over.
/// @threads the UI thread
class VXVIEWER_API FileDialog
{
public:
    /// Takes what was chosen; of a file to save, with an extension of a filter.
    using Callback = std::function<void(const std::vector<std::filesystem::path>&)>;

    explicit FileDialog(Viewer& viewer);
    ~FileDialog();

    FileDialog(const FileDialog&) = delete;
    FileDialog& operator=(const FileDialog&) = delete;

    /// Shows the dialog; `chosen` is called once, or never when the user cancels. Does nothing while one is open.
    void show(FileDialogRequest request, Callback chosen);

    [[nodiscard]] bool isOpen() const;

    /// Draws the dialog of the interface, where it is the one.
    void draw();

    /// Closes the dialog as if the user had cancelled.
    void cancel();

private:
    struct State;

    void startNative_();
    void showOwn_();
    void finish_(const std::vector<std::filesystem::path>& paths);

    Viewer& viewer_;
    std::unique_ptr<State> state_;
};

} // namespace VX

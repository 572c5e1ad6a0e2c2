#pragma once

#include <VXViewer/FileDialog.h>

#include <functional>
#include <memory>
#include <thread>

namespace VX
{

class ChildProcess;

/// The system's file dialog, shown by a helper program that is found beside this one.
/// @threads the UI thread
class NativeDialog
{
public:
    /// How it ended; called on the UI thread.
    struct Result
    {
        bool shown = false; ///< false: the helper could not show a dialog
        std::vector<std::filesystem::path> paths;
    };

    /// Starts the helper.
    /// @param parentWindow  the number of the X11 window that the dialog belongs to; 0: none
    /// @return null where there is no helper
    [[nodiscard]] static std::unique_ptr<NativeDialog> start(const FileDialogRequest& request,
                                                             const std::filesystem::path& folder,
                                                             unsigned long parentWindow,
                                                             std::function<void(const Result&)> finished);

    /// Ends the helper; `finished` is not called any more.
    ~NativeDialog();

    NativeDialog(const NativeDialog&) = delete;
    NativeDialog& operator=(const NativeDialog&) = delete;

private:
    NativeDialog(std::unique_ptr<ChildProcess> process, std::function<void(const Result&)> finished);

    std::unique_ptr<ChildProcess> process_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true); ///< touched on the UI thread only
    std::thread waiter_;
};

} // namespace VX

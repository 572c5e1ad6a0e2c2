#pragma once

#include <VXMesh/ObjectFile.h>
#include <VXViewer/Camera.h>
#include <VXViewer/Export.h>
#include <VXViewer/FileDialog.h>
#include <VXViewer/NotificationType.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace VX
{

class OpenFilesAction;
class Viewer;
struct SceneOrigin;

/// Opens files into the scene, wherever they come from: the dialog, dropped files, the command line. Files load in the
/// background, several at once; what they hold comes into the scene on the UI thread, in the order in which the files
/// were given. The files of one call are one step of the history.
/// @threads the UI thread
class VXVIEWER_API FileOpening
{
public:
    /// Reads one file on a worker thread, as `loadObjectFromFile` does.
    using Opener =
        std::function<tl::expected<LoadedObjects, std::string>(const std::filesystem::path&, const ProgressCallback&)>;

    /// Takes a message about a file that could not be opened (Error) or not wholly (Warning).
    using MessageHandler = std::function<void(NotificationType, const std::string&)>;

    explicit FileOpening(Viewer& viewer);

    /// `extension` (lower case, with its dot) goes to `opener`; files of any other go to the library's readers.
    void setOpener(const std::string& extension, Opener opener);

    /// Where messages go instead of the menu's modal message.
    void setMessageHandler(MessageHandler handler);

    /// Starts to load `paths`. A folder is refused with a message. The view shows all of the scene with its first
    /// content, and follows further content until the user moves it.
    void open(const std::vector<std::filesystem::path>& paths);

    /// What became of a file.
    struct Outcome
    {
        std::vector<std::shared_ptr<Object>> objects{}; ///< that it brought into the scene
        std::vector<std::string> warnings{};            ///< what of it could not be used, a sentence each
        std::string error{}; ///< why there is nothing of it, "Operation was canceled" among them; empty: it is open
    };

    using OutcomeHandler = std::function<void(const Outcome&)>;

    /// Opens one file as `open` does, and tells `done` what became of it in place of messages to the user.
    /// @return its task in the progress panel (ProgressBar.h)
    std::uint64_t openFor(const std::filesystem::path& path, OutcomeHandler done);

    /// True while no file is being opened.
    [[nodiscard]] bool isIdle() const { return pending_ == 0; }

    /// The extensions that can be opened, in lower case with their dots.
    [[nodiscard]] std::vector<std::string> readableExtensions() const;

    /// The choices of a dialog: all of them, each format, any file.
    [[nodiscard]] std::vector<FileFilter> dialogFilters() const;

private:
    using Result = tl::expected<LoadedObjects, std::string>;

    /// Files that were given together.
    struct Batch
    {
        std::weak_ptr<OpenFilesAction> action{}; ///< nothing before the first of them is in the scene
        OutcomeHandler done{};                   ///< empty: messages tell the user
    };

    [[nodiscard]] Opener openerFor_(const std::filesystem::path& path) const;
    std::uint64_t openOne_(const std::filesystem::path& path, std::uint64_t order, const std::shared_ptr<Batch>& batch);
    void finish_(const std::filesystem::path& path, std::uint64_t order, Batch& batch, Result result);
    /// @return the origin that the scene had before
    [[nodiscard]] SceneOrigin nameScene_(const std::filesystem::path& path) const;
    void addStep_(Batch& batch, std::vector<std::shared_ptr<Object>> childrenBefore,
                  std::optional<SceneOrigin> originBefore) const;
    void addInOrder_(std::vector<std::shared_ptr<Object>> objects, std::uint64_t order);
    void showContent_(bool first);
    void report_(const Outcome& outcome) const;
    void report_(NotificationType type, const std::string& text) const;

    Viewer& viewer_;
    std::map<std::string, Opener> openers_;
    MessageHandler messageHandler_;
    int pending_ = 0;
    std::uint64_t lastOrder_ = 0;
    /// The place of top-level objects, by their id, while other files still load.
    std::map<std::uint64_t, std::uint64_t> orderOfObject_;
    std::optional<Camera> cameraShowingAll_;
};

} // namespace VX

#pragma once

#include <VXMesh/AtomicFile.h>
#include <VXViewer/Export.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace VX
{

class FileDialog;
class Object;
class Viewer;

/// Whether the scene has changes that are in no file; one without objects has none.
/// @threads the UI thread
[[nodiscard]] VXVIEWER_API bool hasUnsavedChanges(const Viewer& viewer);

/// Writes the scene into files, in the background, and sees to it that no work is lost when the program closes.
/// @threads the UI thread
class VXVIEWER_API SceneFiles
{
public:
    /// @param dialog  asks for files; it outlives this
    SceneFiles(Viewer& viewer, FileDialog& dialog);
    ~SceneFiles() = default;

    SceneFiles(const SceneFiles&) = delete;
    SceneFiles& operator=(const SceneFiles&) = delete;

    /// Saves the scene to the scene file (.vxu) that it came from; asks for a file where it came from none.
    void save();

    /// Whether `save` asks for a file.
    [[nodiscard]] bool saveAsks() const;

    /// Asks for a file and saves the scene to it.
    void saveAs();

    /// Asks for a file and saves to it what is selected, with what is below it, where it stands in the scene.
    void saveSelected();

    /// Told how it ended: with an empty text, or with why nothing was written, "Operation was canceled" among them.
    using OutcomeHandler = std::function<void(const std::string& error)>;

    /// Saves the scene to `path` and tells `done` in place of the user. Only in a scene file (.vxu), which keeps all of
    /// it, the scene counts as saved.
    /// @param existing  what becomes of a file there
    /// @return its task in the progress panel (ProgressBar.h)
    std::uint64_t saveTo(const std::filesystem::path& path, AtomicFile::Existing existing, OutcomeHandler done);

    /// The same of `part`, which nobody changes any more, with what is below it. The scene is not saved by that.
    std::uint64_t saveTo(std::shared_ptr<const Object> part, const std::filesystem::path& path,
                         AtomicFile::Existing existing, OutcomeHandler done);

    /// True while a file is being written.
    [[nodiscard]] bool isSaving() const { return saving_ > 0; }

    /// Answers the user's wish to close the program: true when it may close at once. Otherwise the user is asked about
    /// what is not saved, or a file that is being written is waited for, and the program closes after that.
    [[nodiscard]] bool mayClose();

    [[nodiscard]] bool isAsking() const { return asking_; }

    /// Draws the question.
    void drawQuestion();

private:
    struct Job;

    void ask_(const std::string& title, const std::string& fileName, std::function<void(std::filesystem::path)> chosen);
    void save_(bool thenClose);
    void saveAs_(bool thenClose);
    [[nodiscard]] std::shared_ptr<Job> jobOfScene_(const std::filesystem::path& path) const;
    void saveScene_(const std::filesystem::path& path, bool byDialog, bool thenClose);
    std::uint64_t write_(const std::shared_ptr<Job>& job);
    void finish_(const Job& job);
    void fail_(const Job& job, const std::string& error);
    void drawAnswers_();
    void closeSaved_();

    Viewer& viewer_;
    FileDialog& dialog_;
    int saving_ = 0;
    bool asking_ = false;
    bool closing_ = false; ///< the program closes once all is saved
};

} // namespace VX

#include "FileFailure.h"
#include "SceneSnapshot.h"
#include "menu/Translate.h"

#include <VXMesh/ObjectFile.h>
#include <VXMesh/StringConvert.h>
#include <VXViewer/FileDialog.h>
#include <VXViewer/FileDialogSignals.h>
#include <VXViewer/HistoryStore.h>
#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/ProgressBar.h>
#include <VXViewer/RecentFiles.h>
#include <VXViewer/SceneFiles.h>
#include <VXViewer/Selection.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#include <algorithm>
#include <exception>
#include <optional>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

constexpr const char* questionName = "Save Changes";
constexpr const char* sceneExtension = ".vxu";
constexpr float questionWidth = 420;

std::vector<FileFilter> saveFilters()
{
    std::vector<FileFilter> filters;
    for (const FileFormat& format : fileFormats())
    {
        if (format.save)
            filters.push_back({format.name, format.extensions});
    }
    return filters;
}

bool isSceneFile(const std::filesystem::path& path)
{
    return toLower(utf8string(path.extension())) == sceneExtension;
}

/// What libraries throw becomes a message.
tl::expected<void, std::string> saveSafely(const Object& root, const std::filesystem::path& path,
                                           AtomicFile::Existing existing, const ProgressCallback& progress)
{
    try
    {
        return saveObjectToFile(root, path, progress, existing);
    }
    catch (const std::exception& e)
    {
        return tl::make_unexpected(fileFailureText("write", path, e));
    }
}

/// Copies of `objects` with what is below them, where they stand in the scene.
std::shared_ptr<Object> copyInScene(const std::vector<std::shared_ptr<Object>>& objects)
{
    auto root = std::make_shared<Object>();
    for (const std::shared_ptr<Object>& object : objects)
    {
        const std::shared_ptr<Object> copy = copyTree(*object);
        copy->setTransform(object->worldTransform());
        root->addChild(copy);
    }
    return root;
}

/// Where in a history a scene was taken from it.
struct HistoryPlace
{
    explicit HistoryPlace(const HistoryStore& store)
        : position(store.position())
        , last(position > 0 ? store.actions()[position - 1] : nullptr)
    {
    }

    friend bool operator==(const HistoryPlace&, const HistoryPlace&) = default;

    std::size_t position;
    std::shared_ptr<HistoryAction> last;
};

} // namespace

/// A file that is being written.
struct SceneFiles::Job
{
    std::filesystem::path path;
    std::shared_ptr<const Object> root;
    AtomicFile::Existing existing = AtomicFile::Existing::Replace;
    bool byDialog = false;
    std::optional<HistoryPlace> place; ///< of what counts as the saved scene; nothing: a part or a lossy copy of it
    OutcomeHandler done;               ///< empty: messages tell the user
    tl::expected<void, std::string> result;
};

SceneFiles::SceneFiles(Viewer& viewer, FileDialog& dialog)
    : viewer_(viewer)
    , dialog_(dialog)
{
}

bool hasUnsavedChanges(const Viewer& viewer)
{
    return !viewer.scene().children().empty() && !viewer.getGlobalHistoryStore()->isSaved();
}

void SceneFiles::save()
{
    save_(false);
}

void SceneFiles::saveAs()
{
    saveAs_(false);
}

bool SceneFiles::saveAsks() const
{
    return !isSceneFile(viewer_.sceneFile());
}

void SceneFiles::save_(bool thenClose)
{
    if (saveAsks() || viewer_.scene().children().empty())
        saveAs_(thenClose);
    else
        saveScene_(viewer_.sceneFile(), false, thenClose);
}

void SceneFiles::saveAs_(bool thenClose)
{
    if (viewer_.scene().children().empty())
    {
        viewer_.getMenuPlugin()->showModalMessage(tr("There is nothing to save. Open a file first."),
                                                  NotificationType::Info);
        return;
    }
    ask_(tr("Save Scene As"), utf8string(pathFromUtf8(viewer_.sceneName()).stem()),
         [this, thenClose](const std::filesystem::path& path) { saveScene_(path, true, thenClose); });
}

void SceneFiles::saveSelected()
{
    const std::vector<std::shared_ptr<Object>> selected = topmostSelectedObjects(viewer_.scene());
    if (selected.empty())
    {
        viewer_.getMenuPlugin()->showModalMessage(tr("Nothing is selected. Select what is to be saved first."),
                                                  NotificationType::Info);
        return;
    }
    const std::shared_ptr<Object> root = copyInScene(selected);
    ask_(tr("Save Selected"), root->children().size() == 1 ? root->children().front()->name() : std::string(),
         [this, root](const std::filesystem::path& path)
         {
             auto job = std::make_shared<Job>();
             job->path = path;
             job->root = root;
             job->byDialog = true;
             write_(job);
         });
}

void SceneFiles::ask_(const std::string& title, const std::string& fileName,
                      std::function<void(std::filesystem::path)> chosen)
{
    FileDialogRequest request;
    request.mode = FileDialogRequest::Mode::SaveFile;
    request.title = title;
    request.filters = saveFilters();
    request.fileName = fileName;
    dialog_.show(std::move(request), [chosen = std::move(chosen)](const auto& paths) { chosen(paths.front()); });
}

std::shared_ptr<SceneFiles::Job> SceneFiles::jobOfScene_(const std::filesystem::path& path) const
{
    auto job = std::make_shared<Job>();
    job->path = path;
    job->root = copyTree(viewer_.scene());
    job->place.emplace(*viewer_.getGlobalHistoryStore());
    return job;
}

void SceneFiles::saveScene_(const std::filesystem::path& path, bool byDialog, bool thenClose)
{
    closing_ = closing_ || thenClose;
    const std::shared_ptr<Job> job = jobOfScene_(path);
    job->byDialog = byDialog;
    write_(job);
}

std::uint64_t SceneFiles::saveTo(const std::filesystem::path& path, AtomicFile::Existing existing, OutcomeHandler done)
{
    const std::shared_ptr<Job> job = jobOfScene_(path);
    // The user did not choose to make do with less than all of the scene.
    if (!isSceneFile(path))
        job->place.reset();
    job->existing = existing;
    job->done = std::move(done);
    return write_(job);
}

std::uint64_t SceneFiles::saveTo(std::shared_ptr<const Object> part, const std::filesystem::path& path,
                                 AtomicFile::Existing existing, OutcomeHandler done)
{
    auto job = std::make_shared<Job>();
    job->path = path;
    job->root = std::move(part);
    job->existing = existing;
    job->done = std::move(done);
    return write_(job);
}

std::uint64_t SceneFiles::write_(const std::shared_ptr<Job>& job)
{
    ++saving_;
    return ProgressBar::orderWriting(
        trf("Saving {}", utf8string(job->path.filename())),
        [this, job](const ProgressCallback& progress) -> ProgressBar::Finish
        {
            job->result = saveSafely(*job->root, job->path, job->existing, progress);
            return [this, job] { finish_(*job); };
        },
        [this, job]
        {
            --saving_;
            closing_ = false;
            if (job->done)
                job->done(operationCanceledText());
        });
}

void SceneFiles::finish_(const Job& job)
{
    --saving_;
    if (!job.result)
    {
        fail_(job, job.result.error());
        return;
    }
    if (job.place)
    {
        viewer_.setSceneFile(job.path);
        viewer_.setSceneName(utf8string(job.path.filename()));
        // What the user did meanwhile is not in the file.
        HistoryStore& history = *viewer_.getGlobalHistoryStore();
        if (*job.place == HistoryPlace(history))
            history.markSaved();
    }
    viewer_.recentFiles().add(job.path);
    if (job.byDialog)
        FileDialogSignals::instance().onSave({job.path});
    if (job.done)
        job.done({});
    if (closing_ && !isSaving())
        closeSaved_();
}

void SceneFiles::fail_(const Job& job, const std::string& error)
{
    const bool wasClosing = std::exchange(closing_, false);
    if (job.done)
        job.done(error);
    // What an agent could not save is told to the user only where he waits for it.
    if ((job.done && !wasClosing) || error == operationCanceledText())
        return;
    const std::string advice =
        wasClosing ? "\n\n" + tr("The program stays open, so that nothing is lost. Save the scene to another place.")
                   : std::string();
    viewer_.getMenuPlugin()->showModalMessage(error + advice, NotificationType::Error);
}

bool SceneFiles::mayClose()
{
    if (isSaving())
    {
        closing_ = true;
        return false;
    }
    if (!hasUnsavedChanges(viewer_))
        return true;
    asking_ = true;
    viewer_.incrementForceRedrawFrames(2);
    return false;
}

void SceneFiles::closeSaved_()
{
    closing_ = false;
    // Something may have changed while the file was written.
    if (mayClose())
        viewer_.requestClose();
}

void SceneFiles::drawQuestion()
{
    if (!asking_)
        return;
    if (!ImGui::IsPopupOpen(questionName))
        ImGui::OpenPopup(questionName);
    if (!UI::beginModal(questionName, tr("Save the changes?"), UI::px(questionWidth)))
        return;
    const std::string& name = viewer_.sceneName();
    UI::wrappedText(name.empty() ? tr("The scene has unsaved changes. They are lost unless you save them.")
                                 : trf("\"{}\" has unsaved changes. They are lost unless you save them.", name));
    ImGui::Dummy({0, UI::px(8)});
    drawAnswers_();
    if (!asking_)
        ImGui::CloseCurrentPopup();
    UI::endModal();
}

void SceneFiles::drawAnswers_()
{
    const std::string cancelText = tr("Cancel");
    const std::string saveText = tr("Save");
    const float right = ImGui::GetContentRegionMax().x;
    const float saveWidth = std::max(UI::px(88), UI::buttonWidth(saveText));

    const bool discard = UI::button(tr("Don't Save"));
    bool otherFocused = ImGui::IsItemFocused();
    ImGui::SameLine(right - saveWidth - ImGui::GetStyle().ItemSpacing.x - UI::buttonWidth(cancelText));
    const bool cancel = UI::button(cancelText) || ImGui::IsKeyPressed(ImGuiKey_Escape, false);
    otherFocused |= ImGui::IsItemFocused();
    ImGui::SameLine(right - saveWidth);
    const bool save = UI::primaryButton(saveText, {saveWidth, 0});
    // The key goes to what was chosen with it.
    ImGui::SetItemDefaultFocus();
    const bool enter = !otherFocused &&
                       (ImGui::IsKeyPressed(ImGuiKey_Enter, false) || ImGui::IsKeyPressed(ImGuiKey_KeypadEnter, false));

    asking_ = !(discard || cancel || save || enter);
    if (discard)
        viewer_.requestClose();
    else if ((save || enter) && !cancel)
        save_(true);
}

} // namespace VX

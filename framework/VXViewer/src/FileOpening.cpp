#include "files/FileFailure.h"
#include "history/OpenFilesAction.h"
#include "menu/Translate.h"

#include <VXMesh/FileError.h>
#include <VXMesh/StringConvert.h>
#include <VXViewer/FileOpening.h>
#include <VXViewer/HistoryStore.h>
#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/ProgressBar.h>
#include <VXViewer/RecentFiles.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/UiSession.h>
#include <VXViewer/Viewer.h>

#include <spdlog/spdlog.h>

#include <algorithm>
#include <exception>
#include <utility>

namespace VX
{

namespace
{

std::string extensionOf(const std::filesystem::path& path)
{
    return toLower(utf8string(path.extension()));
}

/// What libraries throw becomes a message.
tl::expected<LoadedObjects, std::string> openSafely(const FileOpening::Opener& opener,
                                                    const std::filesystem::path& path, const ProgressCallback& progress)
{
    try
    {
        return opener(path, progress);
    }
    catch (const std::exception& e)
    {
        return tl::make_unexpected(fileFailureText("open", path, e));
    }
}

} // namespace

FileOpening::FileOpening(Viewer& viewer)
    : viewer_(viewer)
{
}

void FileOpening::setOpener(const std::string& extension, Opener opener)
{
    openers_[extension] = std::move(opener);
}

void FileOpening::setMessageHandler(MessageHandler handler)
{
    messageHandler_ = std::move(handler);
}

void FileOpening::open(const std::vector<std::filesystem::path>& paths)
{
    const auto batch = std::make_shared<Batch>();
    for (const std::filesystem::path& path : paths)
        openOne_(path, ++lastOrder_, batch);
}

std::uint64_t FileOpening::openFor(const std::filesystem::path& path, OutcomeHandler done)
{
    const auto batch = std::make_shared<Batch>();
    batch->done = std::move(done);
    return openOne_(path, ++lastOrder_, batch);
}

std::uint64_t FileOpening::openOne_(const std::filesystem::path& path, std::uint64_t order,
                                    const std::shared_ptr<Batch>& batch)
{
    Opener opener = openerFor_(path);
    ++pending_;
    return ProgressBar::order(
        trf("Opening {}", utf8string(path.filename())),
        [this, path, order, batch, opener = std::move(opener)](const ProgressCallback& progress) -> ProgressBar::Finish
        {
            auto result = std::make_shared<Result>(openSafely(opener, path, progress));
            return [this, path, order, batch, result] { finish_(path, order, *batch, std::move(*result)); };
        },
        [this, batch]
        {
            --pending_;
            if (batch->done)
                batch->done({.error = operationCanceledText()});
        });
}

FileOpening::Opener FileOpening::openerFor_(const std::filesystem::path& path) const
{
    const std::string extension = extensionOf(path);
    if (const auto found = openers_.find(extension); found != openers_.end())
        return found->second;
    std::vector<std::string> known = readableExtensions();
    if (std::ranges::find(known, extension) != known.end())
        return loadObjectFromFile;
    return [known = std::move(known)](const std::filesystem::path& unknown, const ProgressCallback&)
    { return tl::unexpected(unknownFormatText("open", unknown, known)); };
}

void FileOpening::finish_(const std::filesystem::path& path, std::uint64_t order, Batch& batch, Result result)
{
    --pending_;
    Outcome outcome;
    if (!result)
    {
        outcome.error = std::move(result.error());
    }
    else
    {
        outcome.objects = result->objects;
        outcome.warnings = std::move(result->warnings);
        std::vector<std::shared_ptr<Object>> childrenBefore = viewer_.scene().children();
        const bool wasEmpty = childrenBefore.empty();
        std::optional<SceneOrigin> originBefore;
        addInOrder_(std::move(result->objects), order);
        if (wasEmpty)
            originBefore = nameScene_(path);
        addStep_(batch, std::move(childrenBefore), std::move(originBefore));
        viewer_.recentFiles().add(path);
        showContent_(wasEmpty);
    }
    if (isIdle())
        orderOfObject_.clear();
    if (batch.done)
        batch.done(outcome);
    else
        report_(outcome);
}

SceneOrigin FileOpening::nameScene_(const std::filesystem::path& path) const
{
    SceneOrigin before{viewer_.sceneName(), viewer_.sceneFile()};
    viewer_.setSceneName(utf8string(path.filename()));
    viewer_.setSceneFile(path);
    return before;
}

void FileOpening::addStep_(Batch& batch, std::vector<std::shared_ptr<Object>> childrenBefore,
                           std::optional<SceneOrigin> originBefore) const
{
    if (viewer_.scene().children() == childrenBefore)
        return;
    HistoryStore& history = *viewer_.getGlobalHistoryStore();
    const bool wasSaved = history.isSaved();
    const std::shared_ptr<OpenFilesAction> action = batch.action.lock();
    const bool extends = action && history.position() > 0 && history.actions()[history.position() - 1] == action;
    // Files of the same call, and files that are only looked at together, can be opened again. What comes into a scene
    // file is a change of it.
    const bool changesFile = !extends && !childrenBefore.empty() && extensionOf(viewer_.sceneFile()) == ".vxu";
    if (extends)
    {
        action->extend();
    }
    else
    {
        const auto added =
            std::make_shared<OpenFilesAction>(viewer_, std::move(childrenBefore), std::move(originBefore));
        batch.action = added;
        history.append(added);
    }
    if (wasSaved && !changesFile)
        history.markSaved();
}

void FileOpening::addInOrder_(std::vector<std::shared_ptr<Object>> objects, std::uint64_t order)
{
    Object& scene = viewer_.scene();
    std::vector<std::shared_ptr<Object>> later;
    for (const std::shared_ptr<Object>& child : scene.children())
    {
        const auto known = orderOfObject_.find(child->id());
        if (known != orderOfObject_.end() && known->second > order)
            later.push_back(child);
    }
    for (const std::shared_ptr<Object>& object : later)
        scene.removeChild(*object);
    for (std::shared_ptr<Object>& object : objects)
    {
        orderOfObject_[object->id()] = order;
        scene.addChild(std::move(object));
    }
    for (std::shared_ptr<Object>& object : later)
        scene.addChild(std::move(object));
}

void FileOpening::showContent_(bool first)
{
    SceneView& view = viewer_.view();
    const bool untouched = cameraShowingAll_ && *cameraShowingAll_ == view.camera();
    if (!first && !untouched)
        return;
    view.fitAll(false);
    cameraShowingAll_ = view.camera();
}

void FileOpening::report_(const Outcome& outcome) const
{
    if (!outcome.error.empty() && outcome.error != operationCanceledText())
        report_(NotificationType::Error, outcome.error);
    for (const std::string& warning : outcome.warnings)
        report_(NotificationType::Warning, warning);
}

void FileOpening::report_(NotificationType type, const std::string& text) const
{
    if (messageHandler_)
        messageHandler_(type, text);
    else if (viewer_.getMenuPlugin() && viewer_.ui())
        viewer_.getMenuPlugin()->showModalMessage(text, type);
    else
        spdlog::warn("A file could not be opened as a whole.");
}

std::vector<std::string> FileOpening::readableExtensions() const
{
    std::vector<std::string> extensions;
    extensions.reserve(openers_.size());
    for (const auto& [extension, opener] : openers_)
        extensions.push_back(extension);
    for (const FileFormat& format : fileFormats())
    {
        if (format.load)
            extensions.insert(extensions.end(), format.extensions.begin(), format.extensions.end());
    }
    std::sort(extensions.begin(), extensions.end());
    extensions.erase(std::unique(extensions.begin(), extensions.end()), extensions.end());
    return extensions;
}

std::vector<FileFilter> FileOpening::dialogFilters() const
{
    std::vector<FileFilter> filters{{tr("All that can be opened"), readableExtensions()}};
    filters.reserve(openers_.size() + fileFormats().size() + 2);
    for (const auto& [extension, opener] : openers_)
        filters.push_back({extension.substr(1), {extension}});
    for (const FileFormat& format : fileFormats())
    {
        if (format.load)
            filters.push_back({format.name, format.extensions});
    }
    filters.push_back({tr("Any file"), {}});
    return filters;
}

} // namespace VX

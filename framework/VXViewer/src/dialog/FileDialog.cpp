#include "NativeDialog.h"
#include "PathDialog.h"

#include <VXMesh/Config.h>
#include <VXMesh/StringConvert.h>
#include <VXViewer/FileDialog.h>
#include <VXViewer/Viewer.h>

#include <optional>
#include <system_error>
#include <utility>

namespace VX
{

namespace
{

constexpr const char* folderKey = "fileDialogFolder";

/// Where the user was last, or the current folder.
std::filesystem::path startFolder()
{
    std::error_code error;
    const Json::Value stored = Config::instance().getJson(folderKey, "");
    if (stored.isString() && !stored.asString().empty())
    {
        std::filesystem::path folder = pathFromUtf8(stored.asString());
        if (std::filesystem::is_directory(folder, error))
            return folder;
    }
    return std::filesystem::current_path(error);
}

} // namespace

struct FileDialog::State
{
    FileDialogRequest request;
    Callback chosen;
    std::filesystem::path folder;
    std::unique_ptr<NativeDialog> native;
    std::optional<PathDialog> own;
};

FileDialog::FileDialog(Viewer& viewer)
    : viewer_(viewer)
{
}

FileDialog::~FileDialog() = default;

void FileDialog::show(FileDialogRequest request, Callback chosen)
{
    if (isOpen())
        return;
    state_ = std::make_unique<State>();
    state_->request = std::move(request);
    state_->chosen = std::move(chosen);
    state_->folder = startFolder();
    startNative_();
    if (!state_->native)
        showOwn_();
}

bool FileDialog::isOpen() const
{
    return state_ != nullptr;
}

void FileDialog::startNative_()
{
    if (!viewer_.glfwWindow())
        return;
    state_->native = NativeDialog::start(state_->request, state_->folder, viewer_.window()->systemId(),
                                         [this](const NativeDialog::Result& result)
                                         {
                                             if (result.shown)
                                                 finish_(result.paths);
                                             else
                                                 showOwn_();
                                         });
}

void FileDialog::showOwn_()
{
    state_->native.reset();
    state_->own.emplace(state_->request, state_->folder);
    viewer_.incrementForceRedrawFrames();
}

void FileDialog::draw()
{
    if (!state_)
        return;
    std::optional<PathDialog>& own = state_->own;
    if (!own)
        return;
    if (const std::optional<std::vector<std::filesystem::path>> paths = own->draw())
        finish_(*paths);
}

void FileDialog::finish_(const std::vector<std::filesystem::path>& paths)
{
    // Before the callback, which may show the next dialog.
    const std::unique_ptr<State> finished = std::exchange(state_, nullptr);
    if (paths.empty())
        return;
    Config::instance().setJson(folderKey, utf8string(paths.front().parent_path()));
    finished->chosen(paths);
}

void FileDialog::cancel()
{
    state_.reset();
}

} // namespace VX

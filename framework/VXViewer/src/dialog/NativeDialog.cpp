#include "NativeDialog.h"

#include "ChildProcess.h"
#include "HelperProgram.h"

#include <VXMesh/StringConvert.h>
#include <VXViewer/CommandLoop.h>

#include <spdlog/spdlog.h>

#include <utility>

namespace VX
{

namespace
{

constexpr int exitChosen = 0;
constexpr int exitCanceled = 1;

std::vector<std::string> helperArguments(const FileDialogRequest& request, const std::filesystem::path& folder,
                                         unsigned long parentWindow)
{
    std::vector<std::string> arguments{request.mode == FileDialogRequest::Mode::SaveFile ? "save" : "open",
                                       "--title=" + request.title, "--folder=" + utf8string(folder)};
    if (!request.fileName.empty())
        arguments.push_back("--name=" + request.fileName);
    if (parentWindow != 0)
        arguments.push_back("--parent=" + std::to_string(parentWindow));
    for (const FileFilter& filter : request.filters)
    {
        std::string text = "--filter=" + filter.name;
        for (const std::string& extension : filter.extensions)
            text += "|" + extension;
        arguments.push_back(std::move(text));
    }
    return arguments;
}

std::vector<std::filesystem::path> splitPaths(const std::string& output)
{
    std::vector<std::filesystem::path> paths;
    std::size_t begin = 0;
    for (std::size_t end = output.find('\0'); end != std::string::npos; end = output.find('\0', begin))
    {
        paths.push_back(pathFromUtf8(std::string_view(output).substr(begin, end - begin)));
        begin = end + 1;
    }
    return paths;
}

} // namespace

std::unique_ptr<NativeDialog> NativeDialog::start(const FileDialogRequest& request, const std::filesystem::path& folder,
                                                  unsigned long parentWindow,
                                                  std::function<void(const Result&)> finished)
{
    const std::filesystem::path helper = helperProgram();
    if (helper.empty())
        return nullptr;
    auto process = ChildProcess::start(helper, helperArguments(request, folder, parentWindow));
    if (!process)
    {
        spdlog::warn("The system's file dialog cannot be started: {}", process.error());
        return nullptr;
    }
    return std::unique_ptr<NativeDialog>(new NativeDialog(std::move(*process), std::move(finished)));
}

NativeDialog::NativeDialog(std::unique_ptr<ChildProcess> process, std::function<void(const Result&)> finished)
    : process_(std::move(process))
{
    waiter_ = std::thread(
        [child = process_.get(), alive = alive_, finished = std::move(finished)]
        {
            const ChildProcess::Result end = child->wait();
            Result result;
            result.shown = end.exitCode == exitChosen || end.exitCode == exitCanceled;
            if (end.exitCode == exitChosen)
                result.paths = splitPaths(end.output);
            CommandLoop::appendCommand(
                [alive, finished, result]
                {
                    if (*alive)
                        finished(result);
                });
        });
}

NativeDialog::~NativeDialog()
{
    *alive_ = false;
    process_->terminate();
    waiter_.join();
}

} // namespace VX

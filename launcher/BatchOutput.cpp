#include "launcher/BatchOutput.h"

#include "launcher/SceneInfo.h"

#include <VXMesh/AtomicFile.h>
#include <VXMesh/StringConvert.h>
#include <VXViewer/ImageFile.h>
#include <VXViewer/MainLoop.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/Viewer.h>

#include <fmt/format.h>

#include <cstdio>

namespace VX
{

namespace
{

tl::expected<void, std::string> writeInfo(const std::string& target, const std::string& text)
{
    if (target != "-")
        return writeFileAtomically(pathFromUtf8(target), text, documentFileMode);
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0)
        return tl::unexpected(std::string("Cannot write the scene tree to standard output."));
    return {};
}

void note(Viewer& viewer, const tl::expected<void, std::string>& written)
{
    if (written)
        return;
    fmt::print(stderr, "{}\n", written.error());
    noteFailure(viewer);
}

} // namespace

void noteFailure(Viewer& viewer)
{
    viewer.setExitCode(1);
}

void writeBatchOutput(Viewer& viewer, const CommandLine& line)
{
    if (line.screenshot)
        note(viewer, writePng(*line.screenshot, viewer.view().capture(viewer.framebufferSize())));
    if (line.windowShot)
        note(viewer, writePng(*line.windowShot, viewer.loop().captureWindow()));
    if (line.sceneInfo)
        note(viewer, writeInfo(*line.sceneInfo, sceneInfo(viewer.scene())));
    viewer.requestClose();
}

} // namespace VX

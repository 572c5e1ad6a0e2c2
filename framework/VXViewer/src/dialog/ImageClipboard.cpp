#include "ImageClipboard.h"

#include "ChildProcess.h"
#include "HelperProgram.h"
#include "menu/Translate.h"

#include <VXMesh/AtomicFile.h>
#include <VXMesh/StringConvert.h>
#include <VXMesh/UserFolders.h>
#include <VXViewer/ImageFile.h>
#include <VXViewer/Window.h>

#include <fmt/format.h>

#include <random>
#include <system_error>

namespace VX
{

std::string whyNoImageClipboard(const Window* window)
{
    if (!window || window->systemId() == 0)
        return tr("This window is not on a screen with a clipboard.");
    return helperProgram().empty() ? tr("The program that holds pictures on the clipboard is not installed.")
                                   : std::string();
}

tl::expected<void, std::string> copyToClipboard(const Image& image)
{
    const std::filesystem::path folder = getUserRuntimeDir();
    if (auto made = createUserFolder(folder); !made)
        return made;
    const auto bytes = encodePng(image);
    if (!bytes)
        return tl::unexpected(bytes.error());
    // The helper reads it and takes it away, perhaps after the next picture has come.
    std::random_device random;
    const std::filesystem::path file = folder / fmt::format("clipboard-{:08x}{:08x}.png", random(), random());
    if (auto written = writeFileAtomically(file, *bytes); !written)
        return written;
    auto started = startDetached(helperProgram().string(), {"clipboard", utf8string(file)});
    std::error_code ignored;
    if (!started)
        std::filesystem::remove(file, ignored);
    return started;
}

} // namespace VX

#include "ImageClipboard.h"

#include "ChildProcess.h"
#include "HelperProgram.h"
#include "menu/Translate.h"

#include <VXMesh/StringConvert.h>
#include <VXMesh/UserFolders.h>
#include <VXViewer/ImageFile.h>
#include <VXViewer/Window.h>

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
    // The helper reads it and takes it away.
    const std::filesystem::path file = folder / "clipboard.png";
    if (auto written = writePng(file, image); !written)
        return written;
    return startDetached(helperProgram().string(), {"clipboard", utf8string(file)});
}

} // namespace VX

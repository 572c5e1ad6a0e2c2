#include "launcher/StepOpener.h"

#include "launcher/ConversionErrors.h"
#include "launcher/ConversionLock.h"
#include <quorvix/converter/ConverterService.h>
#include <quorvix/converter/ServiceFolder.h>

#include <VXMesh/ObjectFile.h>
#include <VXViewer/Viewer.h>

namespace VX
{

namespace
{

tl::expected<LoadedObjects, std::string> convert(const std::filesystem::path& path, const ProgressCallback& progress)
{
    // Held until the result is loaded: the files in between are named after the stem alone.
    const auto lock = ConversionLock::acquire(path, progress);
    if (!lock)
        return tl::unexpected(lock.error());
    return ConverterService::fromStep(path, progress);
}

} // namespace

void installStepOpener(Viewer& viewer, std::function<void()> startServices)
{
    const auto open =
        [startServices = std::move(startServices)](const std::filesystem::path& path, const ProgressCallback& progress)
    {
        if (startServices)
            startServices();
        return convert(path, progress)
            .map_error([](const std::string& error)
                       { return explainConversionError(error, ConverterService::serviceOutputDirectory()); });
    };
    for (const char* extension : {".step", ".stp"})
        viewer.setFileOpener(extension, open);
}

} // namespace VX

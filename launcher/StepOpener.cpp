#include "launcher/StepOpener.h"

#include "launcher/ConversionErrors.h"
#include "launcher/ConversionFiles.h"
#include "launcher/ConversionLock.h"
#include "launcher/LocalServices.h"
#include <quorvix/converter/ConverterService.h>
#include <quorvix/converter/ServiceFolder.h>

#include <VXMesh/MappedFile.h>
#include <VXMesh/ObjectFile.h>
#include <VXViewer/Locale.h>
#include <VXViewer/ProgressBar.h>
#include <VXViewer/Viewer.h>

namespace VX
{

namespace
{

using Opened = tl::expected<LoadedObjects, std::string>;

Opened convert(const std::filesystem::path& path, const ProgressCallback& progress)
{
    // Held until the result is loaded: the files in between are named after the stem alone.
    const auto lock = ConversionLock::acquire(
        path,
        [&](float fraction)
        {
            ProgressBar::forceSetTaskName(Locale::translate("Waiting for another conversion of this file name"));
            return reportProgress(progress, fraction);
        });
    if (!lock)
        return tl::unexpected(lock.error());
    auto opened = ConverterService::fromStep(path, progress);
    removeConversionFiles(ConverterService::serviceOutputDirectory(), path);
    return opened;
}

Opened open(const std::filesystem::path& path, const ProgressCallback& progress, LocalServices* services)
{
    // No service is needed to find that the file cannot be read, and the sentence is better.
    if (const auto readable = MappedFile::open(path); !readable)
        return tl::unexpected(readable.error());
    if (services)
        services->start();
    return convert(path, progress)
        .map_error(
            [&](const std::string& error)
            {
                return explainConversionError({.error = error,
                                               .input = path,
                                               .outputDirectory = ConverterService::serviceOutputDirectory(),
                                               .serviceFailure = services ? services->failure() : std::string()});
            });
}

} // namespace

void installStepOpener(Viewer& viewer, LocalServices* services)
{
    for (const char* extension : {".step", ".stp"})
        viewer.setFileOpener(extension, [services](const std::filesystem::path& path, const ProgressCallback& progress)
                             { return open(path, progress, services); });
}

} // namespace VX

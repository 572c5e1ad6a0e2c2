#pragma once

#include <quorvix/Export.h>

#include <VXMesh/ObjectFile.h>
#include <VXMesh/Progress.h>

#include <tl/expected.hpp>

#include <filesystem>
#include <functional>
#include <string>

/// Opens STEP files by way of the conversion service: the file is uploaded, converted into the viewer's own scene
/// format, downloaded and loaded. The files in between lie under `serviceOutputDirectory` and are named after the
/// input's stem, so that conversions of inputs with one stem must not overlap.
///
/// Both forms go through the same stages and report the same fractions: 0 before the upload, 0.25 before the conversion
/// and after each status that is not the end, 0.5 before the download, 0.75 to 1 while the result is loaded. A progress
/// callback that returns false ends the run with "Operation was canceled". The other errors are "Input and output
/// formats are equal", "errno N" for a file operation that failed, those of ConverterServiceV2.h and S3.h, and those of
/// `compressZip` and `loadObjectFromFile`. Neither form throws. There is no limit to the time that a conversion takes.
namespace VX::ConverterService
{

/// Loads `path` and returns when it is done; the progress bar names the stages. The upload fills the fractions 0 to
/// 0.25, the download 0.5 to 0.75.
/// @param progress  called on this thread and, during the transfers, on the one that moves the bytes of all requests:
///                  there it must be quick
/// @threads any but those that deliver web answers
[[nodiscard]] QUORVIX_API tl::expected<LoadedObjects, std::string> fromStep(const std::filesystem::path& path,
                                                                            const std::function<bool(float)>& progress);

/// Loads `path` in the background and returns once the first request is on its way.
/// @param callback  called exactly once, on the thread that delivered the last answer; on the calling thread before
///                  this returns where no request could be made. It must not throw.
/// @param progress  called on the threads that deliver answers, one call at a time
/// @threads any
QUORVIX_API void fromStep(const std::filesystem::path& path,
                          std::function<void(tl::expected<LoadedObjects, std::string>)> callback,
                          const std::function<bool(float)>& progress);

} // namespace VX::ConverterService

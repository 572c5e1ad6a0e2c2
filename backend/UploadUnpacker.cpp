#include "UploadUnpacker.h"

#include "ZipDirectoryEnd.h"

#include <VXMesh/Zip.h>

#include <system_error>
#include <utility>

namespace VX
{

tl::expected<std::filesystem::path, std::string> unpackUpload(const std::filesystem::path& archive,
                                                              const std::filesystem::path& folder,
                                                              std::uint64_t maxBytes, ProgressCallback progress)
{
    const tl::unexpected<std::string> notOneFile(
        "The uploaded archive must hold one file named \"input\" and nothing else.");
    if (!declaresOneEntry(archive))
        return notOneFile;
    DecompressZipSettings settings;
    settings.maxBytes = maxBytes;
    settings.maxEntries = 1;
    settings.progress = std::move(progress);
    if (auto unpacked = decompressZip(archive, folder, settings); !unpacked)
        return tl::unexpected(std::move(unpacked.error()));

    std::filesystem::path input = folder / "input";
    std::error_code error;
    if (!std::filesystem::is_regular_file(std::filesystem::symlink_status(input, error)))
        return notOneFile;
    return input;
}

} // namespace VX

#include "ZipClose.h"
#include "ZipHandle.h"

#include <VXMesh/AtomicFile.h>
#include <VXMesh/FileError.h>
#include <VXMesh/MappedFile.h>
#include <VXMesh/StringConvert.h>
#include <VXMesh/Zip.h>

#include <algorithm>
#include <vector>

namespace VX
{

namespace
{

struct Input
{
    std::filesystem::path path;
    std::string name; ///< in the archive
    bool isFolder = false;
};

std::string compressError(const std::filesystem::path& path, const std::string& reason)
{
    return fileErrorText("compress", path, reason);
}

tl::expected<std::vector<Input>, std::string> listFolder(const std::filesystem::path& folder)
{
    std::vector<Input> inputs;
    std::error_code error;
    std::filesystem::recursive_directory_iterator it(folder, error);
    for (; !error && it != std::filesystem::recursive_directory_iterator(); it.increment(error))
    {
        Input input{it->path(), utf8string(it->path().lexically_relative(folder)), false};
        const auto status = it->symlink_status(error);
        input.isFolder = std::filesystem::is_directory(status);
        if (!input.isFolder && !it->is_regular_file(error))
            return tl::unexpected(compressError(input.path, "it is neither a file nor a folder."));
        inputs.push_back(std::move(input));
    }
    if (error)
        return tl::unexpected(fileErrorText("compress", folder, error));
    if (inputs.empty())
        return tl::unexpected(compressError(folder, "the folder is empty."));
    // Folders list their entries in any order; the archive is to depend on their content alone.
    std::sort(inputs.begin(), inputs.end(), [](const Input& a, const Input& b) { return a.name < b.name; });
    return inputs;
}

tl::expected<void, std::string> addInput(zip_t* zip, const Input& input, int level)
{
    if (input.isFolder)
    {
        if (zip_dir_add(zip, input.name.c_str(), ZIP_FL_ENC_GUESS) < 0)
            return tl::unexpected(compressError(input.path, zipErrorText(zip)));
        return {};
    }
    // libzip opens the file when it writes the archive, and could not tell then which one it was that failed.
    if (const auto readable = MappedFile::open(input.path); !readable)
        return tl::unexpected(readable.error());
    zip_source_t* data = zip_source_file(zip, input.path.c_str(), 0, -1);
    const zip_int64_t index = data ? zip_file_add(zip, input.name.c_str(), data, ZIP_FL_ENC_GUESS) : -1;
    if (data && index < 0)
        zip_source_free(data);
    if (index < 0 || zip_set_file_compression(zip, static_cast<zip_uint64_t>(index), ZIP_CM_DEFLATE,
                                              static_cast<zip_uint32_t>(level)) < 0)
        return tl::unexpected(compressError(input.path, zipErrorText(zip)));
    return {};
}

tl::expected<void, std::string> writeArchive(const std::filesystem::path& path, const std::filesystem::path& zipFile,
                                             const std::vector<Input>& inputs, const CompressZipSettings& settings)
{
    int code = 0;
    ZipHandle zip(zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &code));
    if (!zip)
        return tl::unexpected(fileErrorText("write", zipFile, zipErrorText(code)));
    for (const Input& input : inputs)
        if (auto added = addInput(zip.get(), input, settings.compressionLevel); !added)
            return added;
    return closeZip(std::move(zip), zipFile, settings.progress);
}

} // namespace

tl::expected<void, std::string> compressZip(const std::filesystem::path& zipFile,
                                            const std::filesystem::path& sourceFolder,
                                            const CompressZipSettings& settings)
{
    const auto inputs = listFolder(sourceFolder);
    if (!inputs)
        return tl::unexpected(inputs.error());
    auto file = AtomicFile::create(zipFile, privateFileMode);
    if (!file)
        return tl::unexpected(file.error());
    if (auto written = writeArchive(file->temporaryPath(), zipFile, *inputs, settings); !written)
        return written;
    if (!reportProgress(settings.progress, 1.0F))
        return tl::unexpected(operationCanceledText());
    return file->commit(AtomicFile::Flush::No);
}

} // namespace VX

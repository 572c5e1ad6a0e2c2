#include "DownloadSink.h"

#include <VXMesh/FileError.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace VX
{

namespace
{

constexpr std::size_t textLimit = 256U << 20U;
constexpr std::size_t failureTextLimit = 64U << 10U;

tl::unexpected<std::string> writeError(const std::filesystem::path& path)
{
    const int code = errno == 0 ? EIO : errno;
    return tl::unexpected(fileErrorText("write", path, std::error_code(code, std::generic_category())));
}

} // namespace

tl::expected<DownloadSink, std::string> DownloadSink::create(const std::filesystem::path& file)
{
    auto created = AtomicFile::create(file, privateFileMode);
    if (!created)
        return tl::unexpected(created.error());
    DownloadSink sink;
    sink.path_ = file;
    sink.file_ = std::move(*created);
    sink.stream_.rdbuf()->pubsetbuf(nullptr, 0); // the pieces are large
    // Not truncated, which it needs not be: ext4 writes a truncated file to the disk before it closes it.
    sink.stream_.open(sink.file_->temporaryPath(), std::ios::in | std::ios::out | std::ios::binary);
    if (!sink.stream_.is_open())
        return writeError(file);
    return sink;
}

tl::expected<void, std::string> DownloadSink::write(std::string_view bytes, bool isFailure)
{
    if (file_ && !isFailure)
    {
        errno = 0;
        stream_.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        if (!stream_)
            return writeError(path_);
        return {};
    }
    if (file_)
        bytes = bytes.substr(0, failureTextLimit - text_.size());
    if (bytes.size() > textLimit - text_.size())
        return tl::unexpected(std::string());
    text_ += bytes;
    return {};
}

tl::expected<void, std::string> DownloadSink::commit()
{
    if (!file_)
        return {};
    errno = 0;
    stream_.close(); // a network file system reports a full disk only now
    if (!stream_)
        return writeError(path_);
    return file_->commit(AtomicFile::Flush::No);
}

} // namespace VX

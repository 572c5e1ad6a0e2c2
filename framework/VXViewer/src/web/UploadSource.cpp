#include "UploadSource.h"

#include <VXMesh/FileError.h>
#include <VXMesh/Secret.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

namespace VX
{

UploadSource::UploadSource(std::string text)
    : text_(std::move(text))
    , size_(text_.size())
{
}

UploadSource::~UploadSource()
{
    wipe(text_);
}

tl::expected<UploadSource, std::string> UploadSource::open(const std::filesystem::path& file)
{
    std::error_code error;
    const auto status = std::filesystem::status(file, error);
    if (error)
        return tl::unexpected(fileErrorText("open", file, error));
    if (!std::filesystem::is_regular_file(status))
        return tl::unexpected(fileErrorText("open", file, "it is not a regular file."));

    UploadSource source;
    source.path_ = file;
    source.size_ = std::filesystem::file_size(file, error);
    if (error)
        return tl::unexpected(fileErrorText("open", file, error));
    source.file_.emplace();
    source.file_->rdbuf()->pubsetbuf(nullptr, 0); // whole pieces are read, a buffer would only copy them
    source.file_->open(file, std::ios::binary);
    if (!source.file_->is_open())
        return tl::unexpected(fileErrorText("open", file, std::error_code(errno, std::generic_category())));
    return source;
}

tl::expected<std::size_t, std::string> UploadSource::read(std::span<char> out)
{
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(out.size(), size_ - position_));
    if (!file_)
    {
        std::memcpy(out.data(), text_.data() + position_, wanted);
        position_ += wanted;
        return wanted;
    }
    errno = 0;
    file_->read(out.data(), static_cast<std::streamsize>(wanted));
    const auto got = static_cast<std::size_t>(file_->gcount());
    if (got == 0 && wanted > 0)
        return tl::unexpected(errno == 0
                                  ? fileErrorText("read", path_, "it has become shorter while it was sent.")
                                  : fileErrorText("read", path_, std::error_code(errno, std::generic_category())));
    position_ += got;
    return got;
}

bool UploadSource::seek(std::uint64_t position)
{
    if (position > size_)
        return false;
    position_ = position;
    if (!file_)
        return true;
    file_->clear();
    file_->seekg(static_cast<std::streamoff>(position));
    return file_->good();
}

} // namespace VX

#include "formats/Source.h"

#include <VXMesh/FileError.h>
#include <VXMesh/MappedFile.h>
#include <VXMesh/StringConvert.h>

#include <fmt/format.h>

#include <utility>

namespace VX
{

Source::Source(std::span<const std::byte> bytes, std::filesystem::path path, const MappedFile* file)
    : bytes_(bytes)
    , path_(std::move(path))
    , file_(file)
{
}

std::string_view Source::text() const
{
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    std::string_view text(reinterpret_cast<const char*>(bytes_.data()), bytes_.size());
    if (text.starts_with(kByteOrderMark))
        text.remove_prefix(kByteOrderMark.size());
    return text;
}

std::string Source::stem() const
{
    return utf8string(path_.stem());
}

tl::unexpected<std::string> Source::error(std::string_view reason) const
{
    return tl::unexpected(fileErrorText("open", path_, reason));
}

tl::unexpected<std::string> Source::newerVersionError(int format) const
{
    return tl::unexpected(
        fmt::format("\"{}\" was written by a newer version of Quorvix (format {}); update to open it.",
                    utf8string(path_.filename()), format));
}

std::string Source::warning(std::string_view remark) const
{
    return fmt::format("\"{}\": {}", utf8string(path_.filename()), remark);
}

void Source::release(std::size_t offset, std::size_t size) const
{
    if (file_)
        file_->release(offset, size);
}

void Source::release(std::string_view part) const
{
    if (!part.empty())
        release(static_cast<std::size_t>(std::as_bytes(std::span(part)).data() - bytes_.data()), part.size());
}

tl::expected<LoadedObjects, std::string> readMapped(const std::filesystem::path& path, const ProgressCallback& progress,
                                                    const SourceReader& reader)
{
    if (!reportProgress(progress, 0.0F))
        return tl::unexpected(operationCanceledText());
    const auto file = MappedFile::open(path);
    if (!file)
        return tl::unexpected(file.error());
    const Source source(file->bytes(), path, &*file);
    if (source.size() == 0)
        return source.error("the file is empty.");
    auto loaded = reader(source, progress);
    if (loaded && !reportProgress(progress, 1.0F))
        return tl::unexpected(operationCanceledText());
    return loaded;
}

} // namespace VX

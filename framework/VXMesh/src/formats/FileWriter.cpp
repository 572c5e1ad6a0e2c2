#include "formats/FileWriter.h"

#include <VXMesh/FileError.h>

#include <tbb/parallel_for.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

/// How many blocks are in memory at once.
constexpr std::size_t kBatch = 16;

template <typename Value>
void append(std::string& text, Value value)
{
    std::array<char, 32> digits;
    const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    text.append(digits.data(), end);
}

} // namespace

tl::expected<FileWriter, std::string> FileWriter::create(const std::filesystem::path& path,
                                                         AtomicFile::Existing existing)
{
    auto file = AtomicFile::create(path, documentFileMode, existing);
    if (!file)
        return tl::unexpected(file.error());
    Stream stream(std::fopen(file->temporaryPath().string().c_str(), "wb"), &std::fclose);
    const int code = errno;
    if (!stream)
        return tl::unexpected(fileErrorText("write", path, std::error_code(code, std::generic_category())));
    return FileWriter(path, std::move(*file), std::move(stream));
}

FileWriter::FileWriter(std::filesystem::path path, AtomicFile file, Stream stream)
    : path_(std::move(path))
    , file_(std::move(file))
    , stream_(std::move(stream))
{
}

tl::expected<void, std::string> FileWriter::write(std::string_view bytes)
{
    if (std::fwrite(bytes.data(), 1, bytes.size(), stream_.get()) != bytes.size())
        return systemError_();
    return {};
}

tl::expected<void, std::string>
FileWriter::writeBlocks(std::size_t count, const std::function<void(std::size_t block, std::string& bytes)>& fill,
                        const ProgressCallback& progress)
{
    std::vector<std::string> filled(std::min(count, kBatch));
    for (std::size_t begin = 0; begin < count; begin += kBatch)
    {
        const std::size_t batch = std::min(kBatch, count - begin);
        tbb::parallel_for(std::size_t{0}, batch,
                          [&](std::size_t i)
                          {
                              filled[i].clear();
                              fill(begin + i, filled[i]);
                          });
        for (std::size_t i = 0; i < batch; ++i)
        {
            if (auto written = write(filled[i]); !written)
                return written;
        }
        if (!reportProgress(progress, static_cast<float>(begin + batch) / static_cast<float>(count)))
            return tl::unexpected(operationCanceledText());
    }
    return {};
}

tl::expected<void, std::string> FileWriter::commit(const ProgressCallback& progress)
{
    // Closing writes the rest, and so can fail too.
    if (std::fclose(stream_.release()) != 0)
        return systemError_();
    if (!reportProgress(progress, 1))
        return tl::unexpected(operationCanceledText());
    return file_.commit();
}

tl::unexpected<std::string> FileWriter::systemError_() const
{
    const std::error_code error(errno, std::generic_category());
    return tl::unexpected(fileErrorText("write", path_, error));
}

void appendNumber(std::string& text, float value)
{
    append(text, value);
}

void appendNumber(std::string& text, double value)
{
    append(text, value);
}

void appendNumber(std::string& text, std::size_t value)
{
    append(text, value);
}

} // namespace VX

#pragma once

#include <VXMesh/AtomicFile.h>
#include <VXMesh/Progress.h>

#include <tl/expected.hpp>

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace VX
{

/// Writes a file from its begin to its end; it takes its name at `commit`, and without that nothing remains.
class FileWriter
{
public:
    /// @return `Cannot write "NAME": REASON.`
    [[nodiscard]] static tl::expected<FileWriter, std::string> create(const std::filesystem::path& path,
                                                                      AtomicFile::Existing existing);

    [[nodiscard]] tl::expected<void, std::string> write(std::string_view bytes);

    /// Fills blocks in parallel and writes them in their order.
    /// @param fill  appends the bytes of a block, the first of `count`, to the string
    /// @return `Cannot write "NAME": REASON.` or "Operation was canceled"
    [[nodiscard]] tl::expected<void, std::string>
    writeBlocks(std::size_t count, const std::function<void(std::size_t block, std::string& bytes)>& fill,
                const ProgressCallback& progress);

    /// Gives the file its name, unless `progress`, told that all is written, asks to stop.
    /// @return `Cannot write "NAME": REASON.` or "Operation was canceled"
    [[nodiscard]] tl::expected<void, std::string> commit(const ProgressCallback& progress);

private:
    using Stream = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

    FileWriter(std::filesystem::path path, AtomicFile file, Stream stream);
    [[nodiscard]] tl::unexpected<std::string> systemError_() const;

    std::filesystem::path path_;
    AtomicFile file_;
    Stream stream_;
};

/// Appends the bytes of a value without padding, in the machine's order.
template <typename Value>
void appendBytes(std::string& bytes, const Value& value)
{
    bytes.append(reinterpret_cast<const char*>(&value), sizeof(Value));
}

/// Appends the shortest text that reads back as the same number.
void appendNumber(std::string& text, float value);
void appendNumber(std::string& text, double value);
void appendNumber(std::string& text, std::size_t value);

} // namespace VX

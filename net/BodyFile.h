#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <system_error>

namespace VX
{

/// A file that is written under a temporary name beside its final one and takes that one when it is complete.
/// What is not committed is removed.
/// @threads one at a time
class BodyFileWriter
{
public:
    BodyFileWriter() = default;
    ~BodyFileWriter();

    BodyFileWriter(const BodyFileWriter&) = delete;
    BodyFileWriter& operator=(const BodyFileWriter&) = delete;

    /// Creates the temporary file with mode 0600. Called once, before the other operations.
    [[nodiscard]] std::error_code open(const std::filesystem::path& file);

    [[nodiscard]] bool isOpen() const { return fd_ >= 0; }

    [[nodiscard]] std::error_code write(std::span<const char> bytes);

    /// Replaces what stood under the final name.
    [[nodiscard]] std::error_code commit();

private:
    int fd_ = -1;
    std::filesystem::path file_;
    std::string temporary_;
};

/// Reads a regular file from its start to the size it had when it was opened.
/// @threads one at a time
class BodyFileReader
{
public:
    BodyFileReader() = default;
    ~BodyFileReader();

    BodyFileReader(const BodyFileReader&) = delete;
    BodyFileReader& operator=(const BodyFileReader&) = delete;

    /// @return an error too for what is not a regular file
    [[nodiscard]] std::error_code open(const std::filesystem::path& file);

    /// Bytes of the file, as it was opened.
    [[nodiscard]] std::uint64_t size() const { return size_; }

    /// @return the bytes put into the front of `out`; 0 at the end and after an error
    [[nodiscard]] std::size_t read(std::span<char> out);

private:
    int fd_ = -1;
    std::uint64_t size_ = 0;
};

} // namespace VX

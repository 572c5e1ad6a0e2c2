#pragma once

#include <VXMesh/AtomicFile.h>

#include <tl/expected.hpp>

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

namespace VX
{

/// Takes the body of an answer: into memory, up to a limit, or into a file that appears when it is complete. A sink
/// that is let go without `commit` leaves no file.
/// @threads one at a time
class DownloadSink
{
public:
    /// In memory.
    DownloadSink() = default;

    /// @return `Cannot write "NAME": REASON.`
    [[nodiscard]] static tl::expected<DownloadSink, std::string> create(const std::filesystem::path& file);

    /// Takes the next bytes of an answer of this status. Those of a failure never go to the file: the first 64 KiB of
    /// them are kept as the text.
    /// @return `Cannot write "NAME": REASON.`; an empty error for a body in memory that grows beyond 256 MiB
    [[nodiscard]] tl::expected<void, std::string> write(std::string_view bytes, bool isFailure);

    /// Gives the file, if there is one, its final name.
    [[nodiscard]] tl::expected<void, std::string> commit();

    /// What is kept in memory.
    [[nodiscard]] const std::string& text() const { return text_; }

private:
    std::filesystem::path path_;
    std::optional<AtomicFile> file_;
    std::ofstream stream_;
    std::string text_;
};

} // namespace VX

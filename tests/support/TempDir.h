#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace VX::Test
{

/// A new, empty folder of its own (mode 0700), removed with all that is in it at the end of the scope.
class TempDir
{
public:
    TempDir();
    ~TempDir();

    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

    /// Writes a file of this content, and the folders that it needs.
    /// @param name  relative to the folder
    /// @return its full path
    std::filesystem::path write(const std::filesystem::path& name, std::string_view content) const;

private:
    std::filesystem::path path_;
};

/// The permission bits of a file, or of a link itself: 0600.
[[nodiscard]] unsigned modeOf(const std::filesystem::path& path);

/// The content of a file; empty where it cannot be read.
[[nodiscard]] std::string readFile(const std::filesystem::path& path);

} // namespace VX::Test

#pragma once

#include <VXViewer/Export.h>

#include <tl/expected.hpp>

#include <filesystem>
#include <string>
#include <vector>

namespace VX
{

/// The folders below which agents may read and write files. Hidden files and folders (their names begin with a dot)
/// below them are left out. What counts is where a path leads to once ".." and symbolic links are followed.
/// @threads any
class VXVIEWER_API AllowedFolders
{
public:
    /// Those that do not exist count for nothing.
    explicit AllowedFolders(const std::vector<std::filesystem::path>& folders);

    /// The user's choice; the home folder where there is none.
    [[nodiscard]] static AllowedFolders ofSettings();

    /// What the user chose; empty: the home folder.
    [[nodiscard]] static std::vector<std::filesystem::path> settings();
    static void setSettings(const std::vector<std::filesystem::path>& folders);

    [[nodiscard]] const std::vector<std::filesystem::path>& folders() const { return folders_; }

    /// The file or folder that `text` names: absolute, or "~/…", or "~" for the home folder.
    /// @return its path without links; or what is wrong and what to do: the path is not absolute or has control
    /// characters, there is no such file, it is in no allowed folder, it is hidden
    [[nodiscard]] tl::expected<std::filesystem::path, std::string> forReading(const std::string& text) const;

    /// The same of a file to write, which need not exist, in a folder that does.
    [[nodiscard]] tl::expected<std::filesystem::path, std::string> forWriting(const std::string& text) const;

private:
    [[nodiscard]] tl::expected<std::filesystem::path, std::string> checked_(const std::filesystem::path& path,
                                                                            const std::string& text) const;

    std::vector<std::filesystem::path> folders_;
};

} // namespace VX

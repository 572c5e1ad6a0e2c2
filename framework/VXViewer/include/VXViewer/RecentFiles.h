#pragma once

#include <VXViewer/Export.h>

#include <filesystem>
#include <vector>

namespace VX
{

/// The files that the user opened or saved lately, kept in the configuration.
/// @threads the UI thread
class VXVIEWER_API RecentFiles
{
public:
    static constexpr std::size_t maxCount = 10;

    /// The last one first, as absolute paths. Asks the file system for each: those that are gone are left out, and come
    /// back with their file.
    [[nodiscard]] std::vector<std::filesystem::path> list() const;

    /// Puts `path` in front.
    void add(const std::filesystem::path& path);

    void clear();

    /// Whether `add` has an effect: a run that the user does not see leaves no trace.
    void setRecording(bool recording) { recording_ = recording; }

private:
    bool recording_ = true;
};

} // namespace VX

#pragma once

#include <VXMesh/AtomicFile.h>
#include <VXMesh/Object.h>
#include <VXMesh/Progress.h>

#include <tl/expected.hpp>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace VX
{

/// What a file held: the top-level objects in file order, and what of the file could not be used.
struct LoadedObjects
{
    std::vector<std::shared_ptr<Object>> objects;
    /// A sentence each, for the user; they name no folder.
    std::vector<std::string> warnings;
};

/// Reads and writes one file format. Any member function may be empty where the format cannot do it.
struct FileFormat
{
    /// Shown in file dialogs: "Stereolithography (STL)".
    std::string name;
    /// Lower case with the dot: ".stl".
    std::vector<std::string> extensions;
    std::function<tl::expected<LoadedObjects, std::string>(const std::filesystem::path&, const ProgressCallback&)> load;
    /// Writes `root` and all below it.
    std::function<tl::expected<void, std::string>(const Object& root, const std::filesystem::path&,
                                                  const ProgressCallback&, AtomicFile::Existing)>
        save;
};

/// The formats that this library reads and writes, in the order in which dialogs list them.
/// @threads any
VXMESH_API const std::vector<FileFormat>& fileFormats();

/// One sentence on a file whose extension tells no format, and which would.
/// @param action  "open" or "write"
/// @param known  extensions with their dots
[[nodiscard]] VXMESH_API std::string unknownFormatText(std::string_view action, const std::filesystem::path& path,
                                                       const std::vector<std::string>& known);

/// Loads `path` with the format of its extension (any letter case).
/// @return the objects; or one sentence that names the file and what is wrong with it; or "Operation was canceled"
/// @threads any; uses the TBB pool
[[nodiscard]] VXMESH_API tl::expected<LoadedObjects, std::string> loadObjectFromFile(const std::filesystem::path& path,
                                                                                     const ProgressCallback& progress);

/// Saves `root` and all below it in the format of the extension of `path`, through a temporary file that takes the
/// name only when it is complete.
/// @param existing  what becomes of a file that has the name already
/// @return one sentence that names the file and what went wrong; or "Operation was canceled"
/// @threads any, while nobody changes the tree; uses the TBB pool
[[nodiscard]] VXMESH_API tl::expected<void, std::string>
saveObjectToFile(const Object& root, const std::filesystem::path& path, const ProgressCallback& progress,
                 AtomicFile::Existing existing = AtomicFile::Existing::Replace);

} // namespace VX

#include "formats/ObjFormat.h"
#include "formats/OffFormat.h"
#include "formats/PlyFormat.h"
#include "formats/StlFormat.h"
#include "formats/VxuFormat.h"
#include "formats/XyzFormat.h"

#include <VXMesh/FileError.h>
#include <VXMesh/ObjectFile.h>
#include <VXMesh/ObjectMesh.h>
#include <VXMesh/StringConvert.h>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <new>
#include <utility>

namespace VX
{

namespace
{

std::vector<std::string> knownExtensions(bool forSaving)
{
    std::vector<std::string> known;
    for (const FileFormat& format : fileFormats())
    {
        if (forSaving ? format.save != nullptr : format.load != nullptr)
            known.insert(known.end(), format.extensions.begin(), format.extensions.end());
    }
    return known;
}

const FileFormat* findFormat(const std::filesystem::path& path)
{
    const std::string extension = toLower(utf8string(path.extension()));
    const auto found =
        std::ranges::find_if(fileFormats(), [&](const FileFormat& format)
                             { return std::ranges::find(format.extensions, extension) != format.extensions.end(); });
    return found == fileFormats().end() ? nullptr : &*found;
}

/// Corners are numbered with 31 bits.
bool hasTooManyTriangles(const std::shared_ptr<Object>& object)
{
    constexpr std::size_t most = std::numeric_limits<std::int32_t>::max() / 3;
    bool found = false;
    visitObjects(std::as_const(*object),
                 [&](const Object& each)
                 {
                     const auto* mesh = dynamic_cast<const ObjectMesh*>(&each);
                     found |= mesh && mesh->mesh() && mesh->mesh()->triangles.size() > most;
                 });
    return found;
}

} // namespace

const std::vector<FileFormat>& fileFormats()
{
    static const std::vector<FileFormat> formats = {vxuFormat(), stlFormat(), plyFormat(),
                                                    objFormat(), offFormat(), xyzFormat()};
    return formats;
}

std::string unknownFormatText(std::string_view action, const std::filesystem::path& path,
                              const std::vector<std::string>& known)
{
    const std::string ending = path.extension().empty()
                                   ? "a name without an ending tells no file format"
                                   : "the format \"" + utf8string(path.extension()) + "\" is unknown";
    return fileErrorText(action, path, fmt::format("{}. Known are {}.", ending, fmt::join(known, ", ")));
}

tl::expected<LoadedObjects, std::string> loadObjectFromFile(const std::filesystem::path& path,
                                                            const ProgressCallback& progress)
{
    const FileFormat* format = findFormat(path);
    if (!format || !format->load)
        return tl::unexpected(unknownFormatText("open", path, knownExtensions(false)));
    try
    {
        auto loaded = format->load(path, progress);
        if (loaded && std::ranges::any_of(loaded->objects, hasTooManyTriangles))
            return tl::unexpected(fileErrorText("open", path, "it has a mesh of more than 715,827,882 triangles."));
        return loaded;
    }
    catch (const std::bad_alloc&)
    {
        return tl::unexpected(fileErrorText("open", path, "there is not enough memory for it."));
    }
}

tl::expected<void, std::string> saveObjectToFile(const Object& root, const std::filesystem::path& path,
                                                 const ProgressCallback& progress, AtomicFile::Existing existing)
{
    const FileFormat* format = findFormat(path);
    if (!format || !format->save)
        return tl::unexpected(unknownFormatText("write", path, knownExtensions(true)));
    try
    {
        return format->save(root, path, progress, existing);
    }
    catch (const std::bad_alloc&)
    {
        return tl::unexpected(fileErrorText("write", path, "there is not enough memory for it."));
    }
}

} // namespace VX

#include "formats/ObjFormat.h"
#include "formats/OffFormat.h"
#include "formats/PlyFormat.h"
#include "formats/StlFormat.h"
#include "formats/VxuFormat.h"
#include "formats/XyzFormat.h"

#include <VXMesh/FileError.h>
#include <VXMesh/ObjectFile.h>
#include <VXMesh/StringConvert.h>

#include <algorithm>
#include <new>

namespace VX
{

namespace
{

std::string knownExtensions(bool forSaving)
{
    std::string result;
    for (const FileFormat& format : fileFormats())
    {
        if (forSaving ? !format.save : !format.load)
            continue;
        for (const std::string& extension : format.extensions)
            result += (result.empty() ? "" : ", ") + extension;
    }
    return result;
}

const FileFormat* findFormat(const std::filesystem::path& path)
{
    const std::string extension = toLower(utf8string(path.extension()));
    const auto found =
        std::ranges::find_if(fileFormats(), [&](const FileFormat& format)
                             { return std::ranges::find(format.extensions, extension) != format.extensions.end(); });
    return found == fileFormats().end() ? nullptr : &*found;
}

std::string unknownFormatText(const std::filesystem::path& path, bool forSaving)
{
    const std::string_view action = forSaving ? "write" : "open";
    const std::string ending = path.extension().empty()
                                   ? "a name without an ending tells no file format"
                                   : "the format \"" + utf8string(path.extension()) + "\" is unknown";
    return fileErrorText(action, path, ending + ". Known are " + knownExtensions(forSaving) + ".");
}

} // namespace

const std::vector<FileFormat>& fileFormats()
{
    static const std::vector<FileFormat> formats = {vxuFormat(), stlFormat(), plyFormat(),
                                                    objFormat(), offFormat(), xyzFormat()};
    return formats;
}

tl::expected<LoadedObjects, std::string> loadObjectFromFile(const std::filesystem::path& path,
                                                            const ProgressCallback& progress)
{
    const FileFormat* format = findFormat(path);
    if (!format || !format->load)
        return tl::unexpected(unknownFormatText(path, false));
    try
    {
        return format->load(path, progress);
    }
    catch (const std::bad_alloc&)
    {
        return tl::unexpected(fileErrorText("open", path, "there is not enough memory for it."));
    }
}

tl::expected<void, std::string> saveObjectToFile(const Object& root, const std::filesystem::path& path,
                                                 const ProgressCallback& progress)
{
    const FileFormat* format = findFormat(path);
    if (!format || !format->save)
        return tl::unexpected(unknownFormatText(path, true));
    try
    {
        return format->save(root, path, progress);
    }
    catch (const std::bad_alloc&)
    {
        return tl::unexpected(fileErrorText("write", path, "there is not enough memory for it."));
    }
}

} // namespace VX

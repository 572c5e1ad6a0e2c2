#include "formats/VxuFormat.h"

#include "ZipClose.h"
#include "ZipHandle.h"
#include "formats/GeometryCodec.h"
#include "formats/ParallelProgress.h"
#include "formats/Source.h"
#include "formats/VxuScene.h"

#include <VXMesh/AtomicFile.h>
#include <VXMesh/FileError.h>
#include <VXMesh/Json.h>

#include <fmt/format.h>
#include <json/writer.h>

#include <tbb/enumerable_thread_specific.h>
#include <tbb/parallel_for.h>

#include <algorithm>
#include <utility>

namespace VX
{

namespace
{

constexpr const char* kSceneEntry = "scene.json";

/// Opens an archive in memory; null where it is none.
ZipHandle openArchive(std::span<const std::byte> bytes)
{
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* data = zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error);
    ZipHandle zip(data ? zip_open_from_source(data, ZIP_RDONLY, &error) : nullptr);
    if (data && !zip)
        zip_source_free(data);
    zip_error_fini(&error);
    return zip;
}

/// The number of bytes of a stored entry.
std::optional<std::uint64_t> storedSize(zip_t* zip, const char* name, std::size_t archiveSize)
{
    zip_stat_t info;
    zip_stat_init(&info);
    constexpr zip_uint64_t kNeeded = ZIP_STAT_SIZE | ZIP_STAT_COMP_METHOD | ZIP_STAT_COMP_SIZE;
    if (zip_stat(zip, name, 0, &info) != 0 || (info.valid & kNeeded) != kNeeded || info.comp_method != ZIP_CM_STORE ||
        info.size != info.comp_size || info.size > archiveSize)
        return {};
    return info.size;
}

/// The bytes of a stored entry, checked against its checksum.
std::optional<std::string> readEntry(zip_t* zip, const char* name, std::size_t archiveSize)
{
    const auto size = storedSize(zip, name, archiveSize);
    if (!size)
        return {};
    const std::unique_ptr<zip_file_t, int (*)(zip_file_t*)> file(zip_fopen(zip, name, 0), &zip_fclose);
    if (!file)
        return {};
    std::string bytes(static_cast<std::size_t>(*size), '\0');
    std::size_t done = 0;
    while (done < bytes.size())
    {
        const zip_int64_t count = zip_fread(file.get(), bytes.data() + done, bytes.size() - done);
        if (count <= 0)
            return {};
        done += static_cast<std::size_t>(count);
    }
    // The checksum is compared when the end is reached.
    char beyond = 0;
    if (zip_fread(file.get(), &beyond, 1) != 0)
        return {};
    return bytes;
}

tl::expected<Json::Value, std::string> readScene(const Source& source, zip_t* zip)
{
    const auto text = readEntry(zip, kSceneEntry, source.size());
    if (!text)
        return source.error("it has no scene description, or a damaged one.");
    auto scene = deserializeJsonValue(*text);
    const Json::Value& major = scene ? memberOf(memberOf(*scene, "format"), "major") : Json::Value::nullSingleton();
    if (!major.isInt() || major.asInt() < 1)
        return source.error("its scene description is damaged.");
    if (major.asInt() > kVxuMajorVersion)
        return source.newerVersionError(major.asInt());
    if (memberOf(*scene, "unit") != "mm")
        return source.error("its unit of length is unknown.");
    return scene;
}

/// Entries that share bytes could stand for more memory than the file justifies.
bool fitTogether(zip_t* zip, const GeometryByName& geometries, std::size_t archiveSize)
{
    std::uint64_t total = 0;
    for (const auto& [name, geometry] : geometries)
        total += storedSize(zip, name.c_str(), archiveSize).value_or(0);
    return total <= archiveSize;
}

/// Reads and decodes the named entries; those that are damaged stay without a value.
/// @return false when canceled
bool readGeometries(const Source& source, GeometryByName& geometries, const ProgressCallback& progress)
{
    std::vector<GeometryByName::value_type*> entries;
    for (auto& entry : geometries)
        entries.push_back(&entry);
    tbb::enumerable_thread_specific<ZipHandle> archives([&] { return openArchive(source.bytes()); });
    ParallelProgress counter(progress, std::max<std::size_t>(entries.size(), 1));
    tbb::parallel_for(std::size_t{0}, entries.size(),
                      [&](std::size_t i)
                      {
                          if (counter.isCanceled())
                              return;
                          auto& [name, geometry] = *entries[i];
                          if (const auto bytes = readEntry(archives.local().get(), name.c_str(), source.size()))
                              geometry = decodeGeometry(std::as_bytes(std::span(*bytes)));
                          counter.advance();
                      });
    return !counter.isCanceled();
}

/// Encodes all geometries.
/// @return false when canceled
bool encodeGeometries(const std::vector<AnyGeometry>& geometries, std::vector<std::string>& entries,
                      const ProgressCallback& progress)
{
    entries.resize(geometries.size());
    ParallelProgress counter(progress, std::max<std::size_t>(geometries.size(), 1));
    tbb::parallel_for(std::size_t{0}, geometries.size(),
                      [&](std::size_t i)
                      {
                          if (counter.isCanceled())
                              return;
                          entries[i] = encodeGeometry(geometries[i]);
                          counter.advance();
                      });
    return !counter.isCanceled();
}

/// Adds a stored entry; `bytes` must live until the archive is closed.
bool addEntry(zip_t* zip, const char* name, const std::string& bytes)
{
    zip_source_t* data = zip_source_buffer(zip, bytes.data(), bytes.size(), 0);
    const zip_int64_t index = data ? zip_file_add(zip, name, data, ZIP_FL_ENC_UTF_8) : -1;
    if (data && index < 0)
        zip_source_free(data);
    return index >= 0 && zip_set_file_compression(zip, static_cast<zip_uint64_t>(index), ZIP_CM_STORE, 0) == 0;
}

tl::expected<void, std::string> writeArchive(const VxuDocument& document, const std::vector<std::string>& entries,
                                             const std::filesystem::path& path, const ProgressCallback& progress,
                                             AtomicFile::Existing existing)
{
    auto file = AtomicFile::create(path, documentFileMode, existing);
    if (!file)
        return tl::unexpected(file.error());
    Json::StreamWriterBuilder builder;
    builder["indentation"] = " ";
    const std::string scene = Json::writeString(builder, document.scene);
    int code = 0;
    ZipHandle zip(zip_open(file->temporaryPath().string().c_str(), ZIP_CREATE | ZIP_TRUNCATE, &code));
    if (!zip)
        return tl::unexpected(fileErrorText("write", path, zipErrorText(code)));
    bool good = addEntry(zip.get(), kSceneEntry, scene);
    for (std::size_t i = 0; good && i < entries.size(); ++i)
        good = addEntry(zip.get(), document.names[i].c_str(), entries[i]);
    if (!good)
        return tl::unexpected(fileErrorText("write", path, zipErrorText(zip.get())));
    if (const auto closed = closeZip(std::move(zip), path, progress); !closed)
        return closed;
    if (!reportProgress(progress, 1))
        return tl::unexpected(operationCanceledText());
    return file->commit();
}

tl::expected<void, std::string> writeVxu(const Object& root, const std::filesystem::path& path,
                                         const ProgressCallback& progress, AtomicFile::Existing existing)
{
    const auto document = describeScene(root);
    if (!document)
        return tl::unexpected(fileErrorText("write", path, document.error()));
    std::vector<std::string> entries;
    if (!encodeGeometries(document->geometries, entries, subprogress(progress, 0.0F, 0.7F)))
        return tl::unexpected(operationCanceledText());
    return writeArchive(*document, entries, path, subprogress(progress, 0.7F, 1.0F), existing);
}

} // namespace

tl::expected<LoadedObjects, std::string> readVxu(const Source& source, const ProgressCallback& progress)
{
    const ZipHandle zip = openArchive(source.bytes());
    if (!zip)
        return source.error(source.text().starts_with("PK") ? "it is damaged or cut off." : "it is not a vxu file.");
    const auto scene = readScene(source, zip.get());
    if (!scene)
        return tl::unexpected(scene.error());
    GeometryByName geometries = geometryNames(*scene);
    if (!fitTogether(zip.get(), geometries, source.size()))
        return source.error("it is damaged: its entries are larger than the file.");
    if (!readGeometries(source, geometries, subprogress(progress, 0.1F, 1.0F)))
        return tl::unexpected(operationCanceledText());

    std::vector<std::string> remarks;
    auto objects = buildObjects(*scene, geometries, remarks);
    if (!objects)
        return source.error("its scene description is damaged.");
    if (objects->empty())
        return source.error("it holds no objects.");
    const bool lostAll = !geometries.empty() &&
                         std::ranges::none_of(geometries, [](const auto& entry) { return entry.second.has_value(); });
    if (lostAll)
        return source.error("its geometry is damaged.");
    LoadedObjects loaded{std::move(*objects), {}};
    for (const std::string& remark : remarks)
        loaded.warnings.push_back(source.warning(remark));
    return loaded;
}

FileFormat vxuFormat()
{
    return {"Quorvix scene (vxu)",
            {".vxu"},
            [](const std::filesystem::path& path, const ProgressCallback& progress)
            { return readMapped(path, progress, readVxu); },
            writeVxu};
}

} // namespace VX

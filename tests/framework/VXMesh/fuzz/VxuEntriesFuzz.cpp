// The entries of a vxu file behind checksums that are right, which chance would hardly ever find.

#include "ReaderOracle.h"
#include "formats/VxuFormat.h"

#include <zip.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace
{

void require(bool good)
{
    if (!good)
        std::abort();
}

void addEntry(zip_t* zip, const char* name, std::string_view bytes)
{
    zip_source_t* const data = zip_source_buffer(zip, bytes.data(), bytes.size(), 0);
    const zip_int64_t index = zip_file_add(zip, name, data, ZIP_FL_ENC_UTF_8);
    require(index >= 0 && zip_set_file_compression(zip, static_cast<zip_uint64_t>(index), ZIP_CM_STORE, 0) == 0);
}

std::string makeArchive(std::string_view scene, std::string_view geometry)
{
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* const target = zip_source_buffer_create(nullptr, 0, 0, &error);
    zip_source_keep(target);
    zip_t* const zip = zip_open_from_source(target, ZIP_TRUNCATE, &error);
    require(zip != nullptr);
    addEntry(zip, "scene.json", scene);
    addEntry(zip, "geometry/0.vxg", geometry);
    require(zip_close(zip) == 0 && zip_source_open(target) == 0);
    zip_stat_t info;
    require(zip_source_stat(target, &info) == 0);
    std::string bytes(info.size, '\0');
    require(zip_source_read(target, bytes.data(), bytes.size()) == static_cast<zip_int64_t>(bytes.size()));
    zip_source_free(target);
    return bytes;
}

} // namespace

/// The input is a scene description and, behind a byte 0, the one geometry that it may refer to.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t end = std::min(input.find('\0'), size);
    const std::string archive = makeArchive(input.substr(0, end), input.substr(std::min(end + 1, size)));
    VX::Test::checkReader(VX::readVxu, "fuzz.vxu", std::as_bytes(std::span(archive)));
    return 0;
}

#include <VXMesh/AtomicFile.h>
#include <VXMesh/FileError.h>
#include <VXMesh/MappedFile.h>
#include <VXViewer/ImageFile.h>

#include <png.h>

#include <algorithm>
#include <memory>
#include <string_view>

namespace VX
{

namespace
{

/// A picture larger than this is refused before its pixels are reserved.
constexpr std::uint64_t maxPixels = std::uint64_t{1} << 28U;

void appendBytes(png_structp png, png_bytep data, std::size_t size)
{
    auto& bytes = *static_cast<std::string*>(png_get_io_ptr(png));
    bytes.append(reinterpret_cast<const char*>(data), size);
}

void flushNothing(png_structp) {}

/// libpng leaves a failed call by a long jump, so nothing in here may need a destructor.
bool encode(const Image& image, const std::vector<std::uint8_t>& rows, int channels, std::string& bytes)
{
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (!info || setjmp(png_jmpbuf(png))) // NOLINT: the library's way to report errors
    {
        png_destroy_write_struct(&png, &info);
        return false;
    }
    png_set_write_fn(png, &bytes, appendBytes, flushNothing);
    png_set_IHDR(png, info, static_cast<png_uint_32>(image.size.width), static_cast<png_uint_32>(image.size.height), 8,
                 channels == 4 ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_compression_level(png, 1);
    png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_SUB);
    png_write_info(png, info);
    const std::size_t stride = static_cast<std::size_t>(image.size.width) * static_cast<std::size_t>(channels);
    for (std::size_t offset = 0; offset < rows.size(); offset += stride)
        png_write_row(png, rows.data() + offset);
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return true;
}

} // namespace

tl::expected<Image, std::string> readPng(const std::filesystem::path& path)
{
    const auto file = MappedFile::open(path);
    if (!file)
        return tl::make_unexpected(file.error());

    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    const std::unique_ptr<png_image, void (*)(png_imagep)> guard(&png, png_image_free);
    if (!png_image_begin_read_from_memory(&png, file->bytes().data(), file->bytes().size()))
        return tl::make_unexpected(fileErrorText("read", path, std::string_view("it is not a PNG picture.")));
    if (std::uint64_t{png.width} * png.height > maxPixels)
        return tl::make_unexpected(fileErrorText("read", path, std::string_view("the picture is too large.")));

    png.format = PNG_FORMAT_RGBA;
    Image image{{static_cast<int>(png.width), static_cast<int>(png.height)}, {}};
    image.pixels.resize(static_cast<std::size_t>(png.width) * png.height);
    static_assert(sizeof(Color) == 4, "pixels are handed to the library as bytes");
    if (!png_image_finish_read(&png, nullptr, image.pixels.data(), 0, nullptr))
        return tl::make_unexpected(fileErrorText("read", path, std::string_view("the picture is damaged.")));
    return image;
}

tl::expected<std::string, std::string> encodePng(const Image& image)
{
    const bool opaque = std::all_of(image.pixels.begin(), image.pixels.end(), [](Color c) { return c.a == 255; });
    std::vector<std::uint8_t> rows;
    rows.reserve(image.pixels.size() * 4);
    for (const Color& pixel : image.pixels)
    {
        rows.push_back(pixel.r);
        rows.push_back(pixel.g);
        rows.push_back(pixel.b);
        if (!opaque)
            rows.push_back(pixel.a);
    }
    std::string bytes;
    if (image.isEmpty() || !encode(image, rows, opaque ? 3 : 4, bytes))
        return tl::make_unexpected(std::string("The picture cannot be encoded."));
    return bytes;
}

tl::expected<void, std::string> writePng(const std::filesystem::path& path, const Image& image)
{
    if (image.isEmpty())
        return tl::make_unexpected(fileErrorText("write", path, std::string_view("there is no picture.")));
    const auto bytes = encodePng(image);
    if (!bytes)
        return tl::make_unexpected(fileErrorText("write", path, std::string_view("the picture cannot be encoded.")));
    return writeFileAtomically(path, *bytes, documentFileMode);
}

} // namespace VX

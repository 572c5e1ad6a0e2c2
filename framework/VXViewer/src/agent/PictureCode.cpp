#include "PictureCode.h"

#include "PictureScale.h"

#include <VXViewer/ImageFile.h>

#include <jpeglib.h>

#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

constexpr int quality = 88;
constexpr double shrinkPerTry = 0.85;

struct JumpingErrors
{
    jpeg_error_mgr base;
    std::jmp_buf jump;
};

[[noreturn]] void jumpBack(j_common_ptr info)
{
    std::longjmp(reinterpret_cast<JumpingErrors*>(info->err)->jump, 1); // NOLINT: the library's way to report errors
}

/// libjpeg leaves a failed call by a long jump, so nothing in here may need a destructor.
bool encode(const std::uint8_t* rows, PixelSize size, int wantedQuality, unsigned char*& bytes, unsigned long& length)
{
    jpeg_compress_struct info{};
    JumpingErrors errors{};
    info.err = jpeg_std_error(&errors.base);
    errors.base.error_exit = jumpBack;
    if (setjmp(errors.jump)) // NOLINT: the library's way to report errors
    {
        jpeg_destroy_compress(&info);
        return false;
    }
    jpeg_create_compress(&info);
    jpeg_mem_dest(&info, &bytes, &length);
    info.image_width = static_cast<JDIMENSION>(size.width);
    info.image_height = static_cast<JDIMENSION>(size.height);
    info.input_components = 3;
    info.in_color_space = JCS_RGB;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, wantedQuality, TRUE);
    jpeg_start_compress(&info, TRUE);
    while (info.next_scanline < info.image_height)
    {
        const std::size_t offset = std::size_t{info.next_scanline} * info.image_width * 3;
        JSAMPROW row = const_cast<JSAMPROW>(rows + offset);
        jpeg_write_scanlines(&info, &row, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    return true;
}

tl::expected<std::string, std::string> encodeAs(const Image& image, PictureFormat format)
{
    return format == PictureFormat::Jpeg ? encodeJpeg(image, quality) : encodePng(image);
}

} // namespace

tl::expected<std::string, std::string> encodeJpeg(const Image& image, int wantedQuality)
{
    std::vector<std::uint8_t> rows;
    rows.reserve(image.pixels.size() * 3);
    for (const Color& pixel : image.pixels)
        rows.insert(rows.end(), {pixel.r, pixel.g, pixel.b});
    unsigned char* bytes = nullptr;
    unsigned long length = 0;
    const bool encoded = !image.isEmpty() && encode(rows.data(), image.size, wantedQuality, bytes, length);
    std::string result;
    if (encoded)
        result.assign(reinterpret_cast<const char*>(bytes), length);
    std::free(bytes); // NOLINT: the library allocates so
    if (!encoded)
        return tl::unexpected(std::string("The picture cannot be encoded."));
    return result;
}

tl::expected<CodedPicture, std::string> codePicture(Image image, PictureFormat format, std::size_t mostBytes)
{
    while (true)
    {
        auto bytes = encodeAs(image, format);
        if (!bytes)
            return tl::unexpected(std::move(bytes.error()));
        const int longest = std::max(image.size.width, image.size.height);
        if (bytes->size() <= mostBytes || longest <= 1)
            return CodedPicture{std::move(*bytes), format == PictureFormat::Jpeg ? "image/jpeg" : "image/png",
                                image.size};
        image = scaledDown(image, fittedSize(image.size, std::max(1, static_cast<int>(longest * shrinkPerTry))));
    }
}

} // namespace VX

#include "render/CubeLabels.h"

#include <spdlog/spdlog.h>

#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

/// The second one has the signs that the first lacks.
constexpr std::array fontFiles{"/usr/share/fonts/truetype/open-sans/OpenSans-Semibold.ttf",
                               "/usr/share/fonts/truetype/droid/DroidSansFallbackFull.ttf"};

/// The height of the letters, and the width that they may take, as parts of the layer's side.
constexpr double textHeight = 0.27;
constexpr double textWidth = 0.7;

/// The fonts, opened when a letter asks for them.
class Faces
{
public:
    Faces()
    {
        if (FT_Init_FreeType(&library_) != 0)
            library_ = nullptr;
    }

    ~Faces()
    {
        for (FT_Face face : faces_)
            FT_Done_Face(face);
        if (library_)
            FT_Done_FreeType(library_);
    }

    Faces(const Faces&) = delete;
    Faces& operator=(const Faces&) = delete;

    [[nodiscard]] bool areMissing() { return !at_(0); }

    void setHeight(unsigned height) { height_ = height; }

    /// Loads `letter` at the height that is set. @return null where no font has it
    FT_GlyphSlot load(char32_t letter, FT_Int32 flags)
    {
        for (std::size_t i = 0; i < fontFiles.size(); ++i)
        {
            FT_Face face = at_(i);
            if (face && FT_Get_Char_Index(face, letter) != 0)
            {
                FT_Set_Pixel_Sizes(face, 0, height_);
                return FT_Load_Char(face, letter, flags) == 0 ? face->glyph : nullptr;
            }
        }
        return nullptr;
    }

private:
    FT_Face at_(std::size_t index)
    {
        while (library_ && faces_.size() <= index)
        {
            FT_Face face = nullptr;
            if (FT_New_Face(library_, fontFiles.at(faces_.size()), 0, &face) != 0)
                face = nullptr;
            faces_.push_back(face);
        }
        return library_ ? faces_[index] : nullptr;
    }

    FT_Library library_ = nullptr;
    std::vector<FT_Face> faces_;
    unsigned height_ = 0;
};

std::u32string decodeUtf8(const std::string& text)
{
    std::u32string result;
    for (const char c : text)
    {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte & 0xC0U) != 0x80U)
            result.push_back(byte < 0x80U   ? byte
                             : byte < 0xE0U ? byte & 0x1FU
                             : byte < 0xF0U ? byte & 0x0FU
                                            : byte & 7U);
        else if (!result.empty())
            result.back() = (result.back() << 6U) | (byte & 0x3FU);
    }
    return result;
}

int widthOf(Faces& faces, const std::u32string& text)
{
    FT_Pos width = 0;
    for (const char32_t letter : text)
        if (const FT_GlyphSlot glyph = faces.load(letter, FT_LOAD_DEFAULT))
            width += glyph->advance.x;
    return static_cast<int>(width >> 6);
}

void drawText(Faces& faces, const std::u32string& text, int side, std::span<std::uint8_t> layer)
{
    auto height = static_cast<unsigned>(side * textHeight);
    faces.setHeight(height);
    if (const int width = widthOf(faces, text); width > side * textWidth)
    {
        height = static_cast<unsigned>(height * side * textWidth / width);
        faces.setHeight(height);
    }
    int left = (side - widthOf(faces, text)) / 2;
    // Capitals are about 0.7 of the letters' size.
    const int baseline = side / 2 + static_cast<int>(height * 0.36);
    for (const char32_t letter : text)
    {
        const FT_GlyphSlot glyph = faces.load(letter, FT_LOAD_RENDER);
        if (!glyph)
            continue;
        for (int y = 0; y < static_cast<int>(glyph->bitmap.rows); ++y)
        {
            for (int x = 0; x < static_cast<int>(glyph->bitmap.width); ++x)
            {
                const int column = left + glyph->bitmap_left + x;
                const int row = baseline - glyph->bitmap_top + y;
                if (column < 0 || row < 0 || column >= side || row >= side)
                    continue;
                std::uint8_t& ink = layer[static_cast<std::size_t>(row) * static_cast<std::size_t>(side) +
                                          static_cast<std::size_t>(column)];
                ink = std::max(ink, glyph->bitmap.buffer[y * glyph->bitmap.pitch + x]);
            }
        }
        left += static_cast<int>(glyph->advance.x >> 6);
    }
}

/// Square images, one behind the other, each at half its size: the mean of two by two pixels.
std::vector<std::uint8_t> halved(const std::vector<std::uint8_t>& layers, int side)
{
    const auto wide = static_cast<std::size_t>(side);
    const std::size_t half = wide / 2;
    std::vector<std::uint8_t> result;
    result.reserve(layers.size() / 4);
    for (std::size_t layer = 0; layer < layers.size(); layer += wide * wide)
    {
        for (std::size_t y = 0; y < half; ++y)
        {
            const std::uint8_t* upper = &layers[layer + 2 * y * wide];
            const std::uint8_t* lower = upper + wide;
            for (std::size_t x = 0; x < 2 * half; x += 2)
                result.push_back(
                    static_cast<std::uint8_t>((upper[x] + upper[x + 1] + lower[x] + lower[x + 1] + 2) / 4));
        }
    }
    return result;
}

/// Fills all levels of the bound texture. Made here, because the software renderer would first compile a program for
/// it, which takes a quarter of the time until the first picture.
void uploadLevels(std::vector<std::uint8_t> layers, int side, GLsizei count)
{
    for (GLint level = 0; side > 0; ++level, side /= 2)
    {
        glTexImage3D(GL_TEXTURE_2D_ARRAY, level, GL_R8, side, side, count, 0, GL_RED, GL_UNSIGNED_BYTE, layers.data());
        layers = halved(layers, side);
    }
}

} // namespace

Gl::Texture makeCubeLabels(const std::array<std::string, 6>& labels, int side)
{
    const auto layerSize = static_cast<std::size_t>(side) * static_cast<std::size_t>(side);
    std::vector<std::uint8_t> layers(layerSize * labels.size());
    Faces faces;
    if (faces.areMissing())
        spdlog::warn("The font of the view cube is missing; its faces have no labels");
    for (std::size_t i = 0; !faces.areMissing() && i < labels.size(); ++i)
        drawText(faces, decodeUtf8(labels.at(i)), side, std::span(layers).subspan(i * layerSize, layerSize));

    Gl::Texture texture = Gl::Texture::create();
    glBindTexture(GL_TEXTURE_2D_ARRAY, texture.name());
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    uploadLevels(std::move(layers), side, static_cast<GLsizei>(labels.size()));
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    glTexParameteri(GL_TEXTURE_2D_ARRAY, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
    glTexParameteri(GL_TEXTURE_2D_ARRAY, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D_ARRAY, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D_ARRAY, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    glBindTexture(GL_TEXTURE_2D_ARRAY, 0);
    return texture;
}

} // namespace VX

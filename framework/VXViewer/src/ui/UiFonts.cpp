#include "UiFonts.h"

#include <VXMesh/StringConvert.h>

#include <imgui.h>
#include <spdlog/spdlog.h>

#include <cmath>
#include <filesystem>
#include <system_error>

namespace VX
{

namespace
{

/// What the interface and the names in most files need: Latin with its extensions, Greek, Cyrillic, punctuation,
/// arrows and a few signs. Each glyph costs time at every start.
constexpr std::array<ImWchar, 17> glyphRanges{0x0020, 0x017F, 0x0391, 0x03C9, 0x0400, 0x045F, 0x2010, 0x2026, 0x2030,
                                              0x2030, 0x20AC, 0x20AC, 0x2122, 0x2122, 0x2212, 0x2212, 0};

/// Open Sans's line is 1.36 times as high as the size that designers name.
constexpr float lineHeight = 1.36F;

constexpr float textSize = 13;
constexpr float headlineSize = 18;

ImFont* loadFont(const char* fileName, float size)
{
    const std::filesystem::path path = std::filesystem::path("/usr/share/fonts/truetype/open-sans") / fileName;
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        return nullptr;
    ImFontConfig config;
    config.PixelSnapH = true;
    return ImGui::GetIO().Fonts->AddFontFromFileTTF(utf8string(path).c_str(), std::round(size * lineHeight), &config,
                                                    glyphRanges.data());
}

ImFont* fallbackFont(float size)
{
    ImFontConfig config;
    config.SizePixels = std::round(size);
    return ImGui::GetIO().Fonts->AddFontDefault(&config);
}

} // namespace

void UiFonts::load(float scale)
{
    struct Face
    {
        const char* file;
        float size;
    };

    constexpr std::array faces{Face{"OpenSans-Regular.ttf", textSize}, Face{"OpenSans-Semibold.ttf", textSize},
                               Face{"OpenSans-Semibold.ttf", headlineSize}};
    ImGui::GetIO().Fonts->Clear();
    bool missing = false;
    for (std::size_t i = 0; i < faces.size(); ++i)
    {
        fonts_.at(i) = loadFont(faces.at(i).file, faces.at(i).size * scale);
        if (!fonts_.at(i))
        {
            missing = true;
            fonts_.at(i) = fallbackFont(faces.at(i).size * scale);
        }
    }
    if (missing)
        spdlog::warn("The font Open Sans is not installed (package fonts-open-sans): a plain one stands in.");
}

} // namespace VX

#include "UiFonts.h"

#include "CatalogTexts.h"
#include "FontFile.h"

#include <VXMesh/StringConvert.h>

#include <imgui.h>
#include <imgui_internal.h>
#include <spdlog/spdlog.h>

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

namespace VX
{

namespace
{

using Slot = RibbonFontManager::Slot;

/// A part of Unicode, both ends included.
struct SignRange
{
    ImWchar first;
    ImWchar last;
};

/// What most texts are made of: Latin of western Europe, dashes and quotation marks, a few signs. Each glyph costs time
/// at every start.
constexpr std::array usualSigns{SignRange{0x0020, 0x007E}, SignRange{0x00A0, 0x00FF}, SignRange{0x2010, 0x2026},
                                SignRange{0x20AC, 0x20AC}, SignRange{0x2122, 0x2122}, SignRange{0x2212, 0x2212}};

/// Names in files can ask for any sign: this many fit into a texture at every scale.
constexpr std::size_t mostExtraSigns = 4000;

/// The height of a line of Open Sans over the size that designers name.
constexpr float lineHeight = 1.36F;

/// The same of Noto Mono and of the fallback font.
constexpr float plainLineHeight = 1.2F;

struct Face
{
    Slot slot;
    float size;
    float lineHeight;
};

/// In the order of `UI::Font`.
constexpr std::array faces{Face{Slot::Regular, RibbonFontManager::normalSize, lineHeight},
                           Face{Slot::SemiBold, RibbonFontManager::normalSize, lineHeight},
                           Face{Slot::SemiBold, RibbonFontManager::headlineSize, lineHeight},
                           Face{Slot::Regular, RibbonFontManager::smallSize, lineHeight},
                           Face{Slot::Monospace, RibbonFontManager::normalSize, plainLineHeight}};

bool isUsual(ImWchar sign)
{
    return std::any_of(usualSigns.begin(), usualSigns.end(),
                       [&](const SignRange& range) { return sign >= range.first && sign <= range.last; });
}

void add(ImFontGlyphRangesBuilder& builder, const SignRange& range)
{
    for (ImWchar sign = range.first; sign <= range.last; ++sign)
        builder.AddChar(sign);
}

/// The file to use for `slot`; empty where there is none.
std::filesystem::path usableFile(const RibbonFontManager::Paths& paths, Slot slot)
{
    const auto index = static_cast<std::size_t>(slot);
    const std::filesystem::path& installed = UiFonts::installedPaths().at(index);
    const std::filesystem::path& wanted = paths.at(index);
    if (!wanted.empty() && wanted != installed)
    {
        if (isFontFile(wanted))
            return wanted;
        spdlog::warn("A font that was set cannot be used: the one of the program stands in.");
        spdlog::debug("The font that cannot be used is \"{}\".", utf8string(wanted));
    }
    std::error_code error;
    return std::filesystem::is_regular_file(installed, error) ? installed : std::filesystem::path();
}

/// Calls `use` with each sign of `text` that is not ASCII.
template <typename Use>
void visitSigns(std::string_view text, const Use& use)
{
    const auto isPlain = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
    const char* at = std::find_if_not(text.data(), text.data() + text.size(), isPlain);
    const char* const end = text.data() + text.size();
    while (at < end)
    {
        unsigned codepoint = 0;
        at += std::max(1, ImTextCharFromUtf8(&codepoint, at, end));
        if (codepoint >= 0x80)
            use(static_cast<ImWchar>(codepoint));
    }
}

ImFont* addFont(const std::filesystem::path& path, float size, const ImWchar* ranges, bool merge)
{
    ImFontConfig config;
    config.PixelSnapH = true;
    config.MergeMode = merge;
    return ImGui::GetIO().Fonts->AddFontFromFileTTF(utf8string(path).c_str(), std::round(size), &config, ranges);
}

ImFont* addFallback(float size)
{
    ImFontConfig config;
    config.SizePixels = std::round(size);
    return ImGui::GetIO().Fonts->AddFontDefault(&config);
}

} // namespace

const RibbonFontManager::Paths& UiFonts::installedPaths()
{
    static const RibbonFontManager::Paths paths{"/usr/share/fonts/truetype/open-sans/OpenSans-Regular.ttf",
                                                "/usr/share/fonts/truetype/droid/DroidSansFallbackFull.ttf",
                                                "/usr/share/fonts/truetype/open-sans/OpenSans-Semibold.ttf",
                                                "/usr/share/fonts/truetype/noto/NotoMono-Regular.ttf",
                                                {}};
    return paths;
}

void UiFonts::load(float scale, const RibbonFontManager::Paths& paths)
{
    outdated_ = false;
    takeCatalogs_();
    ImGui::GetIO().Fonts->Clear();
    ImFontGlyphRangesBuilder all;
    ImFontGlyphRangesBuilder extra;
    for (const SignRange& range : usualSigns)
        add(all, range);
    for (const std::set<ImWchar>* signs : {&catalogSigns_, &extraSigns_})
    {
        for (const ImWchar sign : *signs)
        {
            all.AddChar(sign);
            extra.AddChar(sign);
        }
    }
    ranges_.clear();
    extraRanges_.clear();
    all.BuildRanges(&ranges_);
    extra.BuildRanges(&extraRanges_);

    std::array<std::filesystem::path, std::tuple_size_v<RibbonFontManager::Paths>> files;
    for (const Slot slot : {Slot::Regular, Slot::SemiBold, Slot::Monospace})
        files.at(static_cast<std::size_t>(slot)) = usableFile(paths, slot);
    const bool needsFallback = !catalogSigns_.empty() || !extraSigns_.empty();
    const std::filesystem::path fallback = needsFallback ? usableFile(paths, Slot::CJK) : std::filesystem::path();
    bool missing = false;
    for (std::size_t i = 0; i < faces.size(); ++i)
    {
        const Face& face = faces.at(i);
        const std::filesystem::path& file = files.at(static_cast<std::size_t>(face.slot));
        const float size = face.size * scale;
        fonts_.at(i) = file.empty() ? nullptr : addFont(file, size * face.lineHeight, ranges_.Data, false);
        missing = missing || !fonts_.at(i);
        if (!fonts_.at(i))
            fonts_.at(i) = addFallback(size);
        if (!fallback.empty())
            addFont(fallback, size * plainLineHeight, extraRanges_.Data, true);
    }
    if (missing)
    {
        spdlog::warn("A font of the interface is not installed (packages fonts-open-sans, fonts-noto-mono): a plain "
                     "one stands in.");
    }
}

bool UiFonts::isLoaded_(ImWchar sign) const
{
    return isUsual(sign) || (fonts_.front() && fonts_.front()->FindGlyphNoFallback(sign));
}

void UiFonts::takeCatalogs_()
{
    if (catalogs_ == catalogsRevision())
        return;
    catalogs_ = catalogsRevision();
    catalogSigns_.clear();
    for (const std::filesystem::path& catalog : catalogsInUse())
    {
        visitSigns(translationsIn(catalog),
                   [this](ImWchar sign)
                   {
                       if (!isUsual(sign))
                           catalogSigns_.insert(sign);
                   });
    }
}

void UiFonts::need(std::string_view text)
{
    visitSigns(text,
               [this](ImWchar sign)
               {
                   if (!isLoaded_(sign) && extraSigns_.size() < mostExtraSigns)
                       outdated_ = extraSigns_.insert(sign).second || outdated_;
               });
}

} // namespace VX

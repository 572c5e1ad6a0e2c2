#include "IconStore.h"

#include <VXMesh/SystemPath.h>
#include <VXViewer/ImageFile.h>

#include <spdlog/spdlog.h>

#include <epoxy/gl.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <sstream>
#include <utility>

namespace VX
{

namespace
{

constexpr int columns = 16;

std::filesystem::path sheetFolder()
{
    const auto executable = SystemPath::getExecutablePath();
    return executable ? executable->parent_path().parent_path() / "share" / "VXViewer" / "icons"
                      : std::filesystem::path();
}

/// The square of `sheet` that holds the icon at `place`.
Image cut(const Image& sheet, int place, int size)
{
    Image icon{{size, size}, {}};
    icon.pixels.reserve(static_cast<std::size_t>(size) * static_cast<std::size_t>(size));
    for (int y = 0; y < size; ++y)
    {
        const auto row = sheet.pixels.begin() + std::ptrdiff_t{place / columns * size + y} * sheet.size.width +
                         std::ptrdiff_t{place % columns} * size;
        icon.pixels.insert(icon.pixels.end(), row, row + size);
    }
    return icon;
}

/// White everywhere, in the transparent parts too: no dark rim comes up where the icon is scaled.
void whiten(Image& icon)
{
    for (Color& pixel : icon.pixels)
        pixel.r = pixel.g = pixel.b = 255;
}

ImTextureID makeTexture(const Image& icon)
{
    unsigned texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, icon.size.width, icon.size.height, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                 icon.pixels.data());
    glBindTexture(GL_TEXTURE_2D, 0);
    // That is how Dear ImGui's renderer takes a texture's name.
    return reinterpret_cast<ImTextureID>(static_cast<std::uintptr_t>(texture));
}

} // namespace

IconStore& IconStore::instance()
{
    static IconStore store;
    return store;
}

const RibbonIcons::Icon* IconStore::find(std::string_view name, float pixels, RibbonIcons::ColorType colors,
                                         RibbonIcons::IconType type)
{
    if (!std::exchange(indexRead_, true))
        readIndex_();
    Family* family = familyOf_(name, pixels, type);
    if (!family)
        return nullptr;
    const auto fitting = std::find_if(family->sizes.begin(), family->sizes.end(),
                                      [&](int size) { return static_cast<float>(size) >= pixels - 0.5F; });
    const int size = fitting != family->sizes.end() ? *fitting : family->sizes.back();
    const bool white = colors == RibbonIcons::ColorType::White;
    const Key key(name, size, white);
    const auto known = icons_.find(key);
    if (known != icons_.end())
        return &known->second;
    const Image* sheet = sheet_(*family, size);
    const int place = family->places.find(name)->second;
    if (!sheet || sheet->size.width < columns * size || sheet->size.height < (place / columns + 1) * size)
        return nullptr;
    Image icon = cut(*sheet, place, size);
    if (white)
        whiten(icon);
    return &icons_.emplace(key, RibbonIcons::Icon{makeTexture(icon), static_cast<float>(size)}).first->second;
}

void IconStore::clear()
{
    for (const auto& [key, icon] : icons_)
    {
        const auto texture = static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(icon.texture));
        glDeleteTextures(1, &texture);
    }
    icons_.clear();
}

/// Each line is "family NAME SIZES", or the name of the next icon on the sheets of the family before it.
void IconStore::readIndex_()
{
    std::ifstream file(sheetFolder() / "index.txt");
    for (std::string line; std::getline(file, line);)
    {
        std::istringstream words(line);
        std::string first;
        words >> first;
        if (first == "family")
        {
            Family& family = families_.emplace_back();
            words >> family.name;
            for (int size = 0; words >> size;)
                family.sizes.push_back(size);
        }
        else if (!families_.empty())
        {
            Family& family = families_.back();
            family.places.emplace(line, static_cast<int>(family.places.size()));
        }
    }
    const auto isEmpty = [](const Family& family) { return family.sizes.empty(); };
    families_.erase(std::remove_if(families_.begin(), families_.end(), isEmpty), families_.end());
    if (families_.empty())
        spdlog::warn("The icons of the interface are missing: it is shown without them.");
}

/// Of those that have the icon, the first that is large enough, else the last.
IconStore::Family* IconStore::familyOf_(std::string_view name, float pixels, RibbonIcons::IconType type)
{
    Family* found = nullptr;
    for (Family& family : families_)
    {
        const bool isLogo = family.name == "logo";
        if (isLogo != (type == RibbonIcons::IconType::Logo) || !family.places.contains(name))
            continue;
        if (!found || static_cast<float>(found->sizes.back()) < pixels)
            found = &family;
    }
    return found;
}

const Image* IconStore::sheet_(Family& family, int size)
{
    const auto known = family.sheets.find(size);
    if (known != family.sheets.end())
    {
        const std::optional<Image>& sheet = known->second;
        return sheet ? &*sheet : nullptr;
    }
    auto read = readPng(sheetFolder() / (family.name + "-" + std::to_string(size) + ".png"));
    if (!read)
        spdlog::warn("Some icons of the interface are missing.");
    std::optional<Image>& sheet = family.sheets[size];
    if (read)
        sheet = std::move(*read);
    return sheet ? &*sheet : nullptr;
}

} // namespace VX

#pragma once

#include <VXViewer/Image.h>
#include <VXViewer/RibbonIcons.h>

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace VX
{

/// The sheets of icons that the build draws (resources/icons), and the textures made of them so far. A sheet is read
/// when an icon of it is first needed.
/// @threads the UI thread, with the window's OpenGL context current
class IconStore
{
public:
    static IconStore& instance();

    /// As `RibbonIcons::find`.
    [[nodiscard]] const RibbonIcons::Icon* find(std::string_view name, float pixels, RibbonIcons::ColorType colors,
                                                RibbonIcons::IconType type);

    /// Deletes the textures: the context is about to go.
    void clear();

private:
    /// Icons of the same sizes.
    struct Family
    {
        std::string name;
        std::vector<int> sizes; ///< of their sheets, ascending
        std::map<std::string, int, std::less<>> places;
        std::map<int, std::optional<Image>> sheets; ///< by size; nothing where the file cannot be read
    };

    using Key = std::tuple<std::string, int, bool>; ///< name, size, white

    IconStore() = default;

    void readIndex_();
    [[nodiscard]] Family* familyOf_(std::string_view name, float pixels, RibbonIcons::IconType type);
    [[nodiscard]] static const Image* sheet_(Family& family, int size);

    bool indexRead_ = false;
    std::vector<Family> families_;
    std::map<Key, RibbonIcons::Icon> icons_;
};

} // namespace VX

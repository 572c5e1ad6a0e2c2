#pragma once

#include "Palette.h"

#include <VXViewer/ColorTheme.h>

#include <tl/expected.hpp>

#include <filesystem>
#include <string>
#include <vector>

namespace VX
{

/// A theme of the user's, as docs/user/themes.md describes its file.
struct ThemeFile
{
    ColorTheme::Preset base = ColorTheme::Preset::Dark;
    Palette palette = Palette::dark();

    /// `themes` in the user's configuration.
    [[nodiscard]] static std::filesystem::path folder();

    /// The names of the themes in the folder, in alphabetical order.
    [[nodiscard]] static std::vector<std::string> findAll();

    /// @return `Cannot use the theme "NAME": ` and what is wrong with its file
    [[nodiscard]] static tl::expected<ThemeFile, std::string> read(const std::string& name);
};

} // namespace VX

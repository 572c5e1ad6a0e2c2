#pragma once

#include <quorvix/Export.h>
#include <quorvix/menu/QuorvixMenuUIConfig.h>

#include <VXViewer/RibbonConfig.h>

#include <json/value.h>

#include <array>
#include <filesystem>
#include <optional>

namespace VX
{

/// What a deployment's document makes of the interface. docs/user/ui-document.md describes the document.
struct QuorvixConfig
{
    RibbonConfig ribbonConfig;                        ///< from the ribbon's keys of the document
    std::optional<bool> scaleIndicator;               ///< "ViewportDecoration" / "scaleIndicator"
    std::optional<bool> viewportController;           ///< "ViewportDecoration" / "viewportController"
    std::optional<QuorvixMenuUIConfig> menuUIConfig;  ///< "MenuLayout"
    std::optional<Json::Value> config;                ///< "Config": an object, all settings of the user
    std::array<std::filesystem::path, 5> fontPaths{}; ///< "Fonts": regular, CJK, semibold, monospace, none; empty: kept
};

/// Reads the document, whatever its type and that of its values: what cannot be used is as if it were not there. Looks
/// at the files of the fonts and at the switches of the running menu, which hold where the document is silent; changes
/// nothing.
/// @threads the UI thread
[[nodiscard]] QUORVIX_API QuorvixConfig createQuorvixConfigFromJson(const Json::Value& root);

/// Lets the running interface take on `config`. Without the application's menu nothing of it is applied, and the log
/// says "Cannot apply layout config" (level warning).
/// @threads the UI thread
QUORVIX_API void applyQuorvixConfig(const QuorvixConfig& config);

} // namespace VX

#pragma once

#include <json/value.h>
#include <tl/expected.hpp>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace VX
{

/// The files that may hold the document which reshapes the interface; the first of them that is there decides.
struct UiDocumentSources
{
    std::optional<std::filesystem::path> argument; ///< must exist
    std::filesystem::path user;                    ///< may be missing
    std::filesystem::path system;                  ///< may be missing
};

/// A larger document is refused: reading it must not hold up the start.
inline constexpr std::uintmax_t largestUiDocument = std::uintmax_t{1} << 20; // bytes

/// @param argument  the file named by "-uiConfig"
/// @return the sources, with ui.json in the user's configuration folder and /etc/quorvix/ui.json
[[nodiscard]] UiDocumentSources uiDocumentSources(std::optional<std::filesystem::path> argument);

/// Reads the document.
/// @return the JSON object; nothing where there is no file; or one sentence that names the file and what is wrong
/// @threads any
[[nodiscard]] tl::expected<std::optional<Json::Value>, std::string> readUiDocument(const UiDocumentSources& sources);

/// Lets the running interface take on the document of `sources` once its menu is there. What cannot be read changes
/// nothing; the sentence goes to a message in the window, or to standard error where there is none. The program then
/// ends with 1 where the command line had named the file.
/// @threads UI thread
void applyUiDocumentWhenReady(UiDocumentSources sources);

} // namespace VX

#pragma once

#include <VXViewer/Image.h>

#include <tl/expected.hpp>

#include <string>

namespace VX
{

class Window;

/// Why a picture cannot be put on the clipboard of `window`'s screen, translated; empty where it can. Null has none.
/// @threads the UI thread
[[nodiscard]] std::string whyNoImageClipboard(const Window* window);

/// Puts `image` on the clipboard. A process of its own keeps it there, also after the end of this one, until another
/// program puts something in its place.
/// @return why it cannot be put there
/// @threads any; takes a second for a large picture
[[nodiscard]] tl::expected<void, std::string> copyToClipboard(const Image& image);

} // namespace VX

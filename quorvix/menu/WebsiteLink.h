#pragma once

#include <string>

namespace VX
{

/// Opens the page `path`, which begins with "/", of the product's web site in the user's browser.
/// @threads any
void openWebsitePage(const std::string& path);

/// Opens the page from which the program is downloaded.
/// @threads any
void openDownloadPage();

} // namespace VX

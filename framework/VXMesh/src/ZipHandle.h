#pragma once

#include "StartLower.h"

#include <zip.h>

#include <memory>
#include <string>

namespace VX
{

/// Closes an archive without writing it.
struct ZipDiscard
{
    void operator()(zip_t* zip) const { zip_discard(zip); }
};

using ZipHandle = std::unique_ptr<zip_t, ZipDiscard>;

/// libzip's words for an error code of `zip_open`, with a full stop.
[[nodiscard]] inline std::string zipErrorText(int code)
{
    zip_error_t error;
    zip_error_init_with_code(&error, code);
    std::string text = startLower(zip_error_strerror(&error));
    zip_error_fini(&error);
    return text + '.';
}

/// libzip's words for the last error of an archive, with a full stop.
[[nodiscard]] inline std::string zipErrorText(zip_t* zip)
{
    return startLower(zip_strerror(zip)) + '.';
}

} // namespace VX

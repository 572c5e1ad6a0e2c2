#pragma once

#include "StartLower.h"

#include <zip.h>

#include <memory>
#include <string>
#include <system_error>

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

/// What the system says of the last error of an archive where it was the system's ("no space left on device."), else
/// libzip's words for it, with a full stop.
[[nodiscard]] inline std::string zipErrorText(zip_t* zip)
{
    zip_error_t* error = zip_get_error(zip);
    const std::string text = zip_error_system_type(error) == ZIP_ET_SYS
                                 ? std::generic_category().message(zip_error_code_system(error))
                                 : std::string(zip_strerror(zip));
    return startLower(text) + '.';
}

} // namespace VX

#pragma once

#include <quorvix/Export.h>

#include <filesystem>
#include <system_error>

/// The files that the conversion pipeline puts down. Everybody on the machine shares one folder; what lies in it is
/// its owner's alone.
namespace VX::ConverterService
{

/// "/.service_output_files/"
/// @threads any
[[nodiscard]] QUORVIX_API const std::filesystem::path& serviceOutputDirectory();

/// Creates that folder where it is missing, for every user (mode 1777).
/// @threads any
[[nodiscard]] QUORVIX_API std::error_code createServiceOutputDirectory();

/// Creates `folder`, whose parent exists, with mode 0700. One that is there already is an error.
/// @threads any
[[nodiscard]] QUORVIX_API std::error_code createPrivateFolder(const std::filesystem::path& folder);

/// Copies the bytes of the regular file `source` to `target`, which gets mode 0600. An old `target` is overwritten; a
/// symbolic link there is an error. After an error there is no `target`.
/// @threads any
[[nodiscard]] QUORVIX_API std::error_code copyPrivately(const std::filesystem::path& source,
                                                        const std::filesystem::path& target);

} // namespace VX::ConverterService

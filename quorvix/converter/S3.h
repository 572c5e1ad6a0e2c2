#pragma once

#include <quorvix/Export.h>

#include <VXViewer/WebRequest.h>

#include <json/value.h>
#include <tl/expected.hpp>

#include <filesystem>
#include <functional>
#include <string>

/// Moves files through presigned storage URLs. The builders return a request that is ready to be sent; a transfer may
/// take ten minutes.
namespace VX::S3
{

/// A PUT of `file` to `url`.
/// @param progress  of the upload; false cancels it; may be empty
[[nodiscard]] QUORVIX_API WebRequest uploadWithPresignedUrl(const std::string& url, const std::filesystem::path& file,
                                                            std::function<bool(float)> progress);

/// A GET of `url` into `file`.
/// @param progress  of the download; false cancels it; may be empty
[[nodiscard]] QUORVIX_API WebRequest downloadWithPresignedUrl(const std::string& url, const std::filesystem::path& file,
                                                              std::function<bool(float)> progress);

/// The outcome of either transfer. @param answer  of the request; any JSON is accepted
/// @return "Connection error" where no answer arrived; the answer's "error" text for a status of 400 and above
/// @threads any
[[nodiscard]] QUORVIX_API tl::expected<void, std::string> parseResponse(const Json::Value& answer);

} // namespace VX::S3

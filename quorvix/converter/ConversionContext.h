#pragma once

#include <VXMesh/ObjectFile.h>
#include <VXMesh/Progress.h>

#include <tl/expected.hpp>

#include <chrono>
#include <filesystem>
#include <string>
#include <system_error>

namespace VX::ConverterService
{

/// Between an unfinished status and the next request for it.
inline constexpr std::chrono::seconds statusPause{1};

/// One conversion: its names, and what is done on this machine between two requests. Each operation logs what it does;
/// a file operation that fails gives "errno N".
struct ConversionContext
{
    ConversionContext(const std::filesystem::path& path, ProgressCallback progressCallback);

    std::string requestId;             ///< empty until the service has given one
    std::string inputFormat;           ///< extension of the input without its dot, in the letter case it is written in
    std::string outputFormat;          ///< "vxu"
    std::filesystem::path inputPath;   ///< the file to load
    std::filesystem::path payloadPath; ///< the archive that is uploaded
    std::filesystem::path outputPath;  ///< the converted file
    ProgressCallback progress;         ///< may be empty
    std::string url;                   ///< presigned, for the upload

    /// Creates the output directory and removes what an earlier run left of the converted file.
    /// @return also "Input and output formats are equal"
    [[nodiscard]] tl::expected<void, std::string> prepare() const;

    /// Packs the input into the payload, by way of a copy in the working directory.
    [[nodiscard]] tl::expected<void, std::string> packInput() const;

    [[nodiscard]] tl::expected<void, std::string> removePayload() const;

    /// Loads the converted file, which is gone afterwards.
    [[nodiscard]] tl::expected<LoadedObjects, std::string> loadOutput() const;

    /// @return "Operation was canceled" when the caller wants no more
    [[nodiscard]] tl::expected<void, std::string> report(float fraction) const;
};

/// "errno N"
[[nodiscard]] std::string errnoText(const std::error_code& error);

/// The error text for the exception that is being handled: "errno N" where it stands for an error of the system.
[[nodiscard]] std::string currentExceptionText();

} // namespace VX::ConverterService

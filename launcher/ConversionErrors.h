#pragma once

#include <filesystem>
#include <string>

namespace VX
{

/// A conversion that failed.
struct ConversionFailure
{
    std::string error; ///< as the conversion returned it
    std::filesystem::path input;
    std::filesystem::path outputDirectory; ///< where the conversion keeps its files
    std::string serviceFailure; ///< why the services of this computer could not be started; empty where they could
};

/// The error of a conversion as it is shown: the file's name, the error itself and, where that alone tells a user
/// little (the bare number of a system error, "errno 28", or a connection that broke), below it what it means and what
/// to do next. Where the output directory is missing, the text holds the command that creates it. A cancel is no error:
/// its text stays as it is.
/// @threads any
[[nodiscard]] std::string explainConversionError(const ConversionFailure& failure);

} // namespace VX

#include "launcher/ConversionErrors.h"

#include <VXMesh/Progress.h>
#include <VXMesh/StringConvert.h>
#include <VXViewer/Locale.h>

#include <fmt/format.h>

#include <array>
#include <charconv>
#include <optional>
#include <system_error>

namespace VX
{

namespace
{

/// The beginning of an error, and what to do about it.
struct Advice
{
    std::string_view error;
    const char* text;
};

constexpr std::string_view connectionErrorText = "Connection error";

constexpr std::array serviceAdvice{
    Advice{"HTTP 403",
           translatable("The link of the conversion service is not valid or has expired. Open the file again.")},
    Advice{"HTTP 404", translatable("The conversion service does not have the file any more. Open the file again.")},
    Advice{"HTTP 413", translatable("The file is too large for the conversion service. Split it into smaller ones.")},
    Advice{"HTTP 507",
           translatable("The disk of the conversion service is full. Free some space and open the file again.")},
    Advice{"HTTP ", translatable("The conversion service did not accept the file. Open it again later.")},
    Advice{connectionErrorText,
           translatable("The conversion service could not be reached, or the connection to it broke off. Open "
                        "the file again; where that does not help, start the program again.")},
};

std::optional<int> systemErrorOf(const std::string& error)
{
    constexpr std::string_view prefix = "errno ";
    int code = 0;
    if (!error.starts_with(prefix))
        return {};
    const auto* const end = error.data() + error.size();
    const auto [rest, failure] = std::from_chars(error.data() + prefix.size(), end, code);
    if (failure != std::errc() || rest != end)
        return {};
    return code;
}

/// Without the slash at its end.
std::string folderName(const std::filesystem::path& folder)
{
    auto name = utf8string(folder);
    if (name.size() > 1 && name.ends_with('/'))
        name.pop_back();
    return name;
}

std::string adviceFor(std::errc code, const std::string& folder)
{
    switch (code)
    {
    case std::errc::no_space_on_device:
        return fmt::format(fmt::runtime(Locale::translate("The disk that holds {} is full. Free some space and open "
                                                          "the file again.")),
                           folder);
    case std::errc::permission_denied:
    case std::errc::operation_not_permitted:
        return fmt::format(fmt::runtime(Locale::translate("Quorvix may not read the file or may not write to {}. "
                                                          "Check the permissions of both.")),
                           folder);
    case std::errc::no_such_file_or_directory:
        return Locale::translate("The file is not there any more. Choose it again.");
    case std::errc::read_only_file_system:
        return fmt::format(fmt::runtime(Locale::translate("{} lies on a disk that cannot be written to.")), folder);
    default:
        return std::make_error_code(code).message() + ".";
    }
}

std::string adviceFor(int systemError, const std::filesystem::path& outputDirectory)
{
    const auto folder = folderName(outputDirectory);
    std::error_code ignored;
    if (std::filesystem::is_directory(outputDirectory, ignored))
        return adviceFor(static_cast<std::errc>(systemError), folder);
    return fmt::format(fmt::runtime(Locale::translate("The folder {} for conversions cannot be created: {}. An "
                                                      "administrator creates it once with this command:\n\n"
                                                      "sudo install -d -m 1777 {}")),
                       folder, std::generic_category().message(systemError), folder);
}

/// @return empty where the error speaks for itself
std::string adviceFor(const ConversionFailure& failure)
{
    if (failure.error == connectionErrorText && !failure.serviceFailure.empty())
        return failure.serviceFailure;
    if (const auto code = systemErrorOf(failure.error))
        return adviceFor(*code, failure.outputDirectory);
    for (const Advice& advice : serviceAdvice)
    {
        if (failure.error.starts_with(advice.error))
            return Locale::translate(advice.text);
    }
    return {};
}

} // namespace

std::string explainConversionError(const ConversionFailure& failure)
{
    if (failure.error == operationCanceledText())
        return failure.error;
    const auto heading =
        fmt::format(fmt::runtime(Locale::translate("Cannot open \"{}\".")), utf8string(failure.input.filename()));
    const auto error = failure.error.empty()
                           ? Locale::translate("The conversion service gave no reason. Open the file again.")
                           : failure.error;
    const auto advice = adviceFor(failure);
    return heading + "\n" + error + (advice.empty() ? "" : "\n\n" + advice);
}

} // namespace VX

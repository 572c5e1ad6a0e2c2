#include "launcher/ConversionErrors.h"

#include <VXMesh/StringConvert.h>
#include <VXViewer/Locale.h>

#include <fmt/format.h>

#include <charconv>
#include <optional>
#include <system_error>

namespace VX
{

namespace
{

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

} // namespace

std::string explainConversionError(const std::string& error, const std::filesystem::path& outputDirectory)
{
    const auto code = systemErrorOf(error);
    if (!code)
        return error;
    auto folder = utf8string(outputDirectory);
    if (folder.ends_with('/'))
        folder.pop_back();
    std::error_code ignored;
    if (!std::filesystem::is_directory(outputDirectory, ignored))
        return fmt::format(
            fmt::runtime(Locale::translate("{}\n\nThe folder {} for conversions cannot be created: {}. An "
                                           "administrator creates it once with this command:\n\n"
                                           "sudo install -d -m 1777 {}")),
            error, folder, std::generic_category().message(*code), folder);
    return error + "\n\n" + adviceFor(static_cast<std::errc>(*code), folder);
}

} // namespace VX

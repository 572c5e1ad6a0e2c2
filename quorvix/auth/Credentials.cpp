#include <quorvix/auth/Credentials.h>
#include <quorvix/auth/Secret.h>
#include <quorvix/converter/WebAnswer.h>

#include <VXMesh/Json.h>
#include <VXMesh/StringConvert.h>
#include <VXViewer/Viewer.h>

#include <spdlog/spdlog.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace VX
{

namespace
{

bool isWordCharacter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

/// Not empty, and without what separates the parts of addresses and paths.
bool isAddressPart(std::string_view text)
{
    return !text.empty() && text.find_first_of(" @\\/") == std::string_view::npos;
}

std::optional<std::filesystem::path> credentialsFile()
{
    const auto& arguments = getViewerInstance().commandLineArguments();
    std::optional<std::filesystem::path> file;
    for (std::size_t i = 0; i + 1 < arguments.size(); ++i)
    {
        if (arguments[i] == "-creds")
            file = pathFromUtf8(arguments[i + 1]);
    }
    return file;
}

bool othersMayRead(const std::filesystem::path& file)
{
    using std::filesystem::perms;
    std::error_code error;
    const auto mode = std::filesystem::status(file, error).permissions();
    return !error && (mode & (perms::group_read | perms::others_read)) != perms::none;
}

} // namespace

// By hand: the standard library's regular expressions overflow the stack over long texts.
bool isValidEmail(std::string_view text)
{
    const auto at = text.find('@');
    const auto dot = text.rfind('.');
    if (at == std::string_view::npos || dot == std::string_view::npos || dot < at)
        return false;
    const std::string_view ending = text.substr(dot + 1);
    return isAddressPart(text.substr(0, at)) && isAddressPart(text.substr(at + 1, dot - at - 1)) && !ending.empty() &&
           std::ranges::all_of(ending, isWordCharacter);
}

std::optional<Credentials> readCredentials()
{
    const auto file = credentialsFile();
    if (!file)
        return {};
    auto record = deserializeJsonValue(*file);
    if (!record)
    {
        spdlog::warn("Cannot read credentials file: {}", record.error());
        return {};
    }
    Credentials credentials{WebAnswer::text(*record, "email").value_or(""),
                            WebAnswer::text(*record, "password").value_or("")};
    wipe(*record);
    if (credentials.email.empty() || credentials.password.empty())
    {
        spdlog::warn("Credentials file is invalid");
        return {};
    }
    if (!isValidEmail(credentials.email))
    {
        spdlog::warn("Credentials file: email is invalid");
        return {};
    }
    if (othersMayRead(*file))
        spdlog::warn("The credentials file can be read by other users of this computer; \"chmod 600\" keeps them out");
    return credentials;
}

} // namespace VX

#include <quorvix/auth/AuthToken.h>
#include <quorvix/converter/WebAnswer.h>

#include <VXMesh/AtomicFile.h>
#include <VXMesh/Json.h>
#include <VXMesh/UserFolders.h>

#include <json/writer.h>
#include <spdlog/spdlog.h>

#include <filesystem>
#include <sstream>
#include <system_error>
#include <utility>

namespace VX
{

namespace
{

std::filesystem::path tokenFolder()
{
    return getUserConfigDir() / "Token";
}

std::filesystem::path tokenFile(const std::filesystem::path& folder)
{
    return folder / ".token";
}

/// Makes the folder and keeps others out of it, also out of one that an older version has left open.
bool preparePrivateFolder(const std::filesystem::path& folder)
{
    std::error_code error;
    if (std::filesystem::is_symlink(folder, error) || !createUserFolder(folder))
        return false;
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all, error);
    return true;
}

} // namespace

AuthToken loadAuthToken()
{
    const auto record = deserializeJsonValue(tokenFile(tokenFolder()));
    if (!record)
        return {};
    auto token = WebAnswer::text(*record, "token");
    auto endpoint = WebAnswer::text(*record, "endpoint");
    if (!token || !endpoint)
        return {};
    return {WebAnswer::text(*record, "login").value_or(""), std::move(*token), std::move(*endpoint)};
}

void saveAuthToken(const AuthToken& token)
{
    const std::filesystem::path folder = tokenFolder();
    if (!preparePrivateFolder(folder))
    {
        spdlog::error("Cannot create folder...");
        return;
    }
    Json::Value record(Json::objectValue);
    record["login"] = token.login;
    record["token"] = token.token;
    record["endpoint"] = token.endpoint;
    std::ostringstream text;
    text << record;
    // Not remembered, the user signs in with the password next time: no reason to say anything now.
    [[maybe_unused]] const auto written = writeFileAtomically(tokenFile(folder), text.str(), privateFileMode);
}

} // namespace VX

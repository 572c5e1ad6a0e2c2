#include "UserCommand.h"

#include "AccountRules.h"
#include "AccountStore.h"
#include "PasswordHash.h"
#include "backend/DataFolder.h"
#include "backend/RandomUuid.h"
#include "backend/SigningSecret.h"

#include <fmt/format.h>

#include <memory>
#include <utility>

namespace VX
{

namespace
{

using Output = tl::expected<std::string, std::string>;

constexpr const char* noAccountText = "There is no account with this address.";

tl::expected<std::unique_ptr<AccountStore>, std::string> openStore(const std::filesystem::path& dataFolder)
{
    const auto folder = DataFolder::open(dataFolder);
    if (!folder)
        return tl::unexpected(folder.error());
    const auto secret = loadOrCreateSecret(folder->secret());
    if (!secret)
        return tl::unexpected(secret.error());
    return AccountStore::open(folder->accounts(), AccountSecrets(*secret));
}

Output hashNewPassword(const std::string& password)
{
    if (const auto broken = brokenPasswordRule(password))
        return tl::unexpected(fmt::format("The password cannot be used: {}.", *broken));
    return hashPassword(password);
}

Output add(AccountStore& store, const std::string& address, const std::string& password)
{
    if (!isAccountAddress(address))
        return tl::unexpected(std::string("This is not an e-mail address."));
    auto hash = hashNewPassword(password);
    if (!hash)
        return hash;
    const auto added =
        store.add({.id = randomUuid(), .address = address, .passwordHash = std::move(*hash), .isConfirmed = true});
    if (!added)
        return tl::unexpected(added.error());
    if (!*added)
        return tl::unexpected(std::string("There is an account with this address already."));
    return {};
}

Output list(AccountStore& store)
{
    const auto accounts = store.list();
    if (!accounts)
        return tl::unexpected(accounts.error());
    std::string text;
    for (const Account& account : *accounts)
        text += account.address + (account.isConfirmed ? "\n" : " (not confirmed)\n");
    return text;
}

Output found(const tl::expected<bool, std::string>& done)
{
    if (!done)
        return tl::unexpected(done.error());
    return *done ? Output() : tl::unexpected(std::string(noAccountText));
}

Output reset(AccountStore& store, const std::string& address, const std::string& password)
{
    auto hash = hashNewPassword(password);
    if (!hash)
        return hash;
    return found(store.setPassword(address, *hash));
}

} // namespace

Output runUserCommand(const CommandArguments& arguments, const std::function<std::string()>& readPassword)
{
    const auto store = openStore(arguments.dataFolder);
    if (!store)
        return tl::unexpected(store.error());
    switch (arguments.command)
    {
    case CommandArguments::Command::UserAdd:
        return add(**store, arguments.address, readPassword());
    case CommandArguments::Command::UserRemove:
        return found((*store)->remove(arguments.address));
    case CommandArguments::Command::UserReset:
        return reset(**store, arguments.address, readPassword());
    default:
        return list(**store);
    }
}

} // namespace VX

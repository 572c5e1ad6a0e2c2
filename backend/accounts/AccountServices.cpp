#include "AccountServices.h"

#include "IdentityPassThrough.h"
#include "LocalIdentity.h"

#include <spdlog/spdlog.h>

#include <utility>

namespace VX
{

namespace
{

std::unique_ptr<IdentityProvider> makeProvider(const ServerConfig& config, AccountStore& store, TryLimits& limits,
                                               const Outbox& outbox, const AccountSecrets& secrets)
{
    if (!config.identityEndpoint.empty())
        return std::make_unique<IdentityPassThrough>(
            IdentityPassThrough::Settings{.endpoint = config.identityEndpoint, .clientId = config.identityClientId});
    return std::make_unique<LocalIdentity>(store, limits, outbox, secrets,
                                           LocalIdentity::Settings{.blockedDomains = config.blockedDomains});
}

} // namespace

tl::expected<std::unique_ptr<AccountServices>, std::string> AccountServices::open(const ServerConfig& config,
                                                                                  const DataFolder& folder,
                                                                                  const SigningSecret& secret,
                                                                                  const AccountClock& now)
{
    const AccountSecrets secrets(secret);
    auto outbox = Outbox::open(folder.outbox());
    if (!outbox)
        return tl::unexpected(std::move(outbox.error()));
    auto store = AccountStore::open(folder.accounts(), secrets, now);
    if (!store)
        return tl::unexpected(std::move(store.error()));
    auto limits = TryLimits::open(folder.accounts(), now);
    if (!limits)
        return tl::unexpected(std::move(limits.error()));
    return std::unique_ptr<AccountServices>(
        new AccountServices(config, std::move(*outbox), std::move(*store), std::move(*limits), secrets));
}

AccountServices::AccountServices(const ServerConfig& config, Outbox outbox, std::unique_ptr<AccountStore> store,
                                 std::unique_ptr<TryLimits> limits, const AccountSecrets& secrets)
    : outbox_(std::move(outbox))
    , store_(std::move(store))
    , limits_(std::move(limits))
    , provider_(makeProvider(config, *store_, *limits_, outbox_, secrets))
    , isElsewhere_(!config.identityEndpoint.empty())
    , auth_(*provider_, config.trustForwardedFor)
    , pages_(*provider_, secrets,
             {.isSecure = config.publicUrl.starts_with("https://"), .trustForwardedFor = config.trustForwardedFor})
{
}

void AccountServices::addRoutes(Router& router)
{
    const auto auth = [this](const auto& request, const auto& respond) { auth_.handle(request, respond); };
    router.add("POST", "/auth", auth);
    // Clients of the provider's own kit put a slash behind the path of their endpoint.
    router.add("POST", "/auth/", auth);
    pages_.addRoutes(router);
}

std::optional<std::string> AccountServices::userOf(const std::string& accessToken)
{
    // Another provider's tokens can be told from no tokens only.
    if (isElsewhere_)
        return accessToken.empty() ? std::nullopt : std::optional<std::string>(std::in_place);
    auto owner = store_->ownerOf(accessToken);
    if (!owner)
        spdlog::error("An access token cannot be looked up: {}", owner.error());
    return std::move(owner).value_or(std::nullopt);
}

void AccountServices::forgetExpired()
{
    if (const auto forgotten = store_->forgetExpired(); !forgotten)
        spdlog::warn("Old codes and tokens cannot be removed: {}", forgotten.error());
    if (const auto forgotten = limits_->forgetOld(); !forgotten)
        spdlog::warn("Old counts cannot be removed: {}", forgotten.error());
    outbox_.forgetOlderThan(std::chrono::file_clock::now() - AccountStore::codeLifetime);
}

} // namespace VX

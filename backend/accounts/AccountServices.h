#pragma once

#include "AccountSecrets.h"
#include "AccountStore.h"
#include "AuthApi.h"
#include "IdentityProvider.h"
#include "Outbox.h"
#include "TryLimits.h"
#include "backend/DataFolder.h"
#include "backend/Router.h"
#include "backend/ServerConfig.h"
#include "backend/SigningSecret.h"
#include "backend/pages/AccountPages.h"

#include <tl/expected.hpp>

#include <memory>
#include <optional>
#include <string>

namespace VX
{

/// Everything of accounts that one service answers.
class AccountServices
{
public:
    /// @return what `AccountStore::open` or `Outbox::open` says
    [[nodiscard]] static tl::expected<std::unique_ptr<AccountServices>, std::string>
    open(const ServerConfig& config, const DataFolder& folder, const SigningSecret& secret,
         const AccountClock& now = std::chrono::system_clock::now);

    void addRoutes(Router& router);

    /// The address of the user who signed in and got this access token. Where another provider has the accounts it is
    /// empty, for any token.
    /// @return nothing where nobody has got it
    /// @threads any
    [[nodiscard]] std::optional<std::string> userOf(const std::string& accessToken);

    /// Whether there is such a user. @threads any
    [[nodiscard]] bool isSignedIn(const std::string& accessToken) { return userOf(accessToken).has_value(); }

    /// Removes codes, tokens and mail whose time is over. @threads any
    void forgetExpired();

private:
    AccountServices(const ServerConfig& config, Outbox outbox, std::unique_ptr<AccountStore> store,
                    std::unique_ptr<TryLimits> limits, const AccountSecrets& secrets);

    const Outbox outbox_;
    const std::unique_ptr<AccountStore> store_;
    const std::unique_ptr<TryLimits> limits_;
    const std::unique_ptr<IdentityProvider> provider_;
    const bool isElsewhere_; ///< whether another provider has the accounts
    AuthApi auth_;
    AccountPages pages_;
};

} // namespace VX

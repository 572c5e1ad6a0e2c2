#pragma once

#include "AccountSecrets.h"
#include "AccountStore.h"
#include "IdentityProvider.h"
#include "IdentityRequest.h"
#include "Outbox.h"
#include "TryLimits.h"
#include "WorkerPool.h"

#include <json/value.h>
#include <tl/expected.hpp>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace VX
{

/// The identity operations over the accounts of the data folder. It answers as the identity provider does, and costs
/// the same and says the same for an address without an account as for one that has one, but where the protocol itself
/// tells them apart (signing up, and an account that waits for its confirmation).
/// @threads any
class LocalIdentity final : public IdentityProvider
{
public:
    struct Settings
    {
        std::vector<std::string> blockedDomains; ///< no account can be made for an address of these, nor below them
    };

    /// All of what it refers to must outlive it.
    LocalIdentity(AccountStore& store, TryLimits& limits, const Outbox& outbox, AccountSecrets secrets,
                  Settings settings);

    void call(const IdentityCall& call, Respond respond) override;

private:
    using Answer = tl::expected<Json::Value, IdentityError>;

    [[nodiscard]] Answer answer_(const IdentityRequest& request, const std::string& peer);
    [[nodiscard]] Answer signIn_(const IdentityRequest& request, const std::string& peer);
    [[nodiscard]] Answer refresh_(const IdentityRequest& request);
    [[nodiscard]] Answer signUp_(const IdentityRequest& request);
    [[nodiscard]] Answer confirmSignUp_(const IdentityRequest& request, const std::string& peer);
    [[nodiscard]] Answer giveCode_(const IdentityRequest& request, CodePurpose purpose);
    [[nodiscard]] Answer resend_(const IdentityRequest& request);
    [[nodiscard]] Answer confirmForgot_(const IdentityRequest& request, const std::string& peer);
    [[nodiscard]] Answer tryCode_(const std::string& peer,
                                  const std::function<tl::expected<CodeCheck, std::string>()>& spend);
    [[nodiscard]] Json::Value delivery_(const std::string& address) const;
    [[nodiscard]] std::string key_(std::string_view kind, const std::string& value) const;

    AccountStore& store_;
    TryLimits& limits_;
    const Outbox& outbox_;
    const AccountSecrets secrets_;
    const Settings settings_;
    WorkerPool hashing_; ///< last, because its threads use the others
};

} // namespace VX

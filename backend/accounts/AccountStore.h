#pragma once

#include "AccountSecrets.h"
#include "AccountTables.h"

#include <VXMesh/ThreadAnnotations.h>

#include <tl/expected.hpp>

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace VX
{

struct Account
{
    std::string id;      ///< a UUID
    std::string address; ///< the e-mail address as it was given first
    std::string passwordHash;
    bool isConfirmed = false;
};

enum class CodePurpose
{
    Confirmation,
    PasswordReset
};

/// What a code was found to be.
enum class CodeCheck
{
    Right,
    Wrong,
    Expired, ///< or used, replaced or never given out
    Locked   ///< after too many wrong ones
};

/// What a refresh token was found to be.
enum class TokenCheck
{
    Valid,
    Expired,
    Revoked,
    Unknown
};

/// The accounts of one data folder with their codes and tokens. Addresses compare without letter case. Each operation
/// is one transaction, on the disk once it returns. Tokens and codes are stored as hashes only.
///
/// Errors are those of `SqliteDatabase`, of `openAccountTables` for `open`, and of what a `Deliver` returns.
/// @threads any; several processes at once
class AccountStore
{
public:
    static constexpr std::chrono::hours codeLifetime{24};
    static constexpr std::chrono::hours accessTokenLifetime{24 * 30};
    static constexpr std::chrono::hours refreshTokenLifetime{24 * 365};
    static constexpr int wrongCodesAllowed = 5;

    /// Sends a code; where it fails, nothing is stored.
    /// @param account  whose code it is; null where the address has none
    using Deliver = std::function<tl::expected<void, std::string>(const Account* account)>;

    [[nodiscard]] static tl::expected<std::unique_ptr<AccountStore>, std::string>
    open(const std::filesystem::path& file, AccountSecrets secrets, AccountClock now = std::chrono::system_clock::now);

    /// @return nothing where the address has no account
    [[nodiscard]] tl::expected<std::optional<Account>, std::string> find(std::string_view address);

    /// Ordered by address.
    [[nodiscard]] tl::expected<std::vector<Account>, std::string> list();

    /// @return false where the address has an account already
    [[nodiscard]] tl::expected<bool, std::string> add(const Account& account);

    /// The same with a first code for confirmation.
    [[nodiscard]] tl::expected<bool, std::string> signUp(const Account& account, const std::string& code,
                                                         const Deliver& deliver);

    /// Gives out a code in place of an earlier one. One for an address without an account behaves like any other.
    [[nodiscard]] tl::expected<void, std::string> giveCode(std::string_view address, CodePurpose purpose,
                                                           const std::string& code, const Deliver& deliver);

    /// Confirms the account if the code is right. Each code works once.
    [[nodiscard]] tl::expected<CodeCheck, std::string> confirm(std::string_view address, const std::string& code);

    /// Sets the password if the code is right, which confirms the address too, and revokes all tokens of the account.
    [[nodiscard]] tl::expected<CodeCheck, std::string> resetPassword(std::string_view address, const std::string& code,
                                                                     const std::string& passwordHash);

    /// Sets the password and revokes all tokens of the account. @return false where there is no account
    [[nodiscard]] tl::expected<bool, std::string> setPassword(std::string_view address,
                                                              const std::string& passwordHash);

    /// Removes the account and everything of it. @return false where there is none
    [[nodiscard]] tl::expected<bool, std::string> remove(std::string_view address);

    /// Starts the lifetimes of two new tokens of the account. @return false where it has been removed meanwhile
    [[nodiscard]] tl::expected<bool, std::string> addTokens(const Account& account, const std::string& refreshToken,
                                                            const std::string& accessToken);

    /// Starts the lifetime of a new access token for the account of a refresh token, if that one is valid. It stays so.
    [[nodiscard]] tl::expected<TokenCheck, std::string> refresh(const std::string& refreshToken,
                                                                const std::string& accessToken);

    /// The address of the account that an access token belongs to. @return nothing where it is not valid
    [[nodiscard]] tl::expected<std::optional<std::string>, std::string> ownerOf(const std::string& accessToken);

    /// Removes what ran out; a refresh token is told apart from an unknown one for another lifetime.
    [[nodiscard]] tl::expected<void, std::string> forgetExpired();

private:
    using Result = tl::expected<void, std::string>;

    AccountStore(SqliteDatabase database, AccountSecrets secrets, AccountClock now);
    [[nodiscard]] std::string owner_(std::string_view address) const;
    [[nodiscard]] tl::expected<std::optional<Account>, std::string> find_(std::string_view address) VX_REQUIRES(mutex_);
    [[nodiscard]] tl::expected<bool, std::string> add_(const Account& account) VX_REQUIRES(mutex_);
    [[nodiscard]] Result putCode_(std::string_view address, CodePurpose purpose, const std::string& code)
        VX_REQUIRES(mutex_);
    [[nodiscard]] tl::expected<CodeCheck, std::string> takeCode_(std::string_view address, CodePurpose purpose,
                                                                 const std::string& code) VX_REQUIRES(mutex_);
    [[nodiscard]] tl::expected<CodeCheck, std::string> spendCode_(std::string_view address, CodePurpose purpose,
                                                                  const std::string& code,
                                                                  const std::function<Result()>& then);
    [[nodiscard]] tl::expected<bool, std::string> setPassword_(std::string_view address,
                                                               const std::string& passwordHash) VX_REQUIRES(mutex_);
    [[nodiscard]] Result revokeTokens_(std::string_view address) VX_REQUIRES(mutex_);
    [[nodiscard]] Result addToken_(int kind, const std::string& token, const std::string& account,
                                   std::chrono::hours lifetime) VX_REQUIRES(mutex_);

    const AccountSecrets secrets_;
    const AccountClock now_;
    Mutex mutex_;
    SqliteDatabase database_ VX_GUARDED_BY(mutex_);
};

} // namespace VX

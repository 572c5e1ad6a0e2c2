#include "AccountStore.h"

#include <VXMesh/StringConvert.h>

#include <utility>

namespace VX
{

namespace
{

enum class TokenKind
{
    Refresh,
    Access
};

constexpr std::int64_t number(TokenKind kind)
{
    return static_cast<std::int64_t>(kind);
}

constexpr std::int64_t number(CodePurpose purpose)
{
    return static_cast<std::int64_t>(purpose);
}

std::string nameOf(std::string_view address)
{
    return toLower(std::string(address));
}

Account accountOf(const SqliteStatement& statement)
{
    return {.id = statement.text(0),
            .address = statement.text(1),
            .passwordHash = statement.text(2),
            .isConfirmed = statement.integer(3) != 0};
}

} // namespace

tl::expected<std::unique_ptr<AccountStore>, std::string> AccountStore::open(const std::filesystem::path& file,
                                                                            AccountSecrets secrets, AccountClock now)
{
    auto database = openAccountTables(file, SqliteDurability::PowerFailure);
    if (!database)
        return tl::unexpected(std::move(database.error()));
    return std::unique_ptr<AccountStore>(new AccountStore(std::move(*database), secrets, std::move(now)));
}

AccountStore::AccountStore(SqliteDatabase database, AccountSecrets secrets, AccountClock now)
    : secrets_(secrets)
    , now_(std::move(now))
    , database_(std::move(database))
{
}

/// What a code is kept by: the address of somebody who has no account is nobody's business.
std::string AccountStore::owner_(std::string_view address) const
{
    return secrets_.hash("code owner", nameOf(address));
}

tl::expected<std::optional<Account>, std::string> AccountStore::find(std::string_view address)
{
    const MutexLock lock(mutex_);
    return find_(address);
}

tl::expected<std::optional<Account>, std::string> AccountStore::find_(std::string_view address)
{
    auto statement = database_.prepare("SELECT id, address, passwordHash, confirmed FROM accounts WHERE name = ?1");
    const auto row = statement.bind(nameOf(address)).step();
    if (!row)
        return tl::unexpected(row.error());
    if (!*row)
        return std::nullopt;
    return accountOf(statement);
}

tl::expected<std::vector<Account>, std::string> AccountStore::list()
{
    const MutexLock lock(mutex_);
    std::vector<Account> accounts;
    auto statement = database_.prepare("SELECT id, address, passwordHash, confirmed FROM accounts ORDER BY name");
    for (;;)
    {
        const auto row = statement.step();
        if (!row)
            return tl::unexpected(row.error());
        if (!*row)
            return accounts;
        accounts.push_back(accountOf(statement));
    }
}

tl::expected<bool, std::string> AccountStore::add(const Account& account)
{
    const MutexLock lock(mutex_);
    return add_(account);
}

tl::expected<bool, std::string> AccountStore::add_(const Account& account)
{
    auto done = database_
                    .prepare("INSERT INTO accounts(id, name, address, passwordHash, confirmed, created) "
                             "VALUES (?1, ?2, ?3, ?4, ?5, ?6) ON CONFLICT(name) DO NOTHING")
                    .bind(account.id, nameOf(account.address), account.address, account.passwordHash,
                          std::int64_t{account.isConfirmed}, storedTime(now_()))
                    .run();
    if (!done)
        return tl::unexpected(std::move(done.error()));
    return database_.changes() > 0;
}

tl::expected<bool, std::string> AccountStore::signUp(const Account& account, const std::string& code,
                                                     const Deliver& deliver)
{
    const MutexLock lock(mutex_);
    auto transaction = SqliteTransaction::begin(database_);
    if (!transaction)
        return tl::unexpected(transaction.error());
    auto added = add_(account);
    if (!added || !*added)
        return added;
    if (auto stored = putCode_(account.address, CodePurpose::Confirmation, code); !stored)
        return tl::unexpected(std::move(stored.error()));
    if (auto sent = deliver(&account); !sent)
        return tl::unexpected(std::move(sent.error()));
    if (auto done = transaction->commit(); !done)
        return tl::unexpected(std::move(done.error()));
    return true;
}

AccountStore::Result AccountStore::putCode_(std::string_view address, CodePurpose purpose, const std::string& code)
{
    const std::string owner = owner_(address);
    return database_.prepare("REPLACE INTO codes(owner, purpose, hash, expiry) VALUES (?1, ?2, ?3, ?4)")
        .bind(owner, number(purpose), secrets_.hash("code", owner + code), storedTime(now_() + codeLifetime))
        .run();
}

AccountStore::Result AccountStore::giveCode(std::string_view address, CodePurpose purpose, const std::string& code,
                                            const Deliver& deliver)
{
    const MutexLock lock(mutex_);
    auto transaction = SqliteTransaction::begin(database_);
    if (!transaction)
        return tl::unexpected(transaction.error());
    const auto found = find_(address);
    if (!found)
        return tl::unexpected(found.error());
    const std::optional<Account>& account = *found;
    if (auto stored = putCode_(address, purpose, code); !stored)
        return stored;
    if (auto sent = deliver(account ? &*account : nullptr); !sent)
        return sent;
    return transaction->commit();
}

tl::expected<CodeCheck, std::string> AccountStore::takeCode_(std::string_view address, CodePurpose purpose,
                                                             const std::string& code)
{
    const std::string owner = owner_(address);
    std::string hash;
    {
        auto statement =
            database_.prepare("SELECT hash, expiry, failures, used FROM codes WHERE owner = ?1 AND purpose = ?2");
        const auto row = statement.bind(owner, number(purpose)).step();
        if (!row)
            return tl::unexpected(row.error());
        if (!*row || statement.integer(3) != 0 || statement.integer(1) <= storedTime(now_()))
            return CodeCheck::Expired;
        if (statement.integer(2) >= wrongCodesAllowed)
            return CodeCheck::Locked;
        hash = statement.text(0);
    }
    const bool isRight = AccountSecrets::equal(hash, secrets_.hash("code", owner + code));
    auto noted = database_
                     .prepare(isRight ? "UPDATE codes SET used = 1 WHERE owner = ?1 AND purpose = ?2"
                                      : "UPDATE codes SET failures = failures + 1 WHERE owner = ?1 AND purpose = ?2")
                     .bind(owner, number(purpose))
                     .run();
    if (!noted)
        return tl::unexpected(std::move(noted.error()));
    return isRight ? CodeCheck::Right : CodeCheck::Wrong;
}

/// Uses a code up and, if it is right, does what it is for, all or nothing.
tl::expected<CodeCheck, std::string> AccountStore::spendCode_(std::string_view address, CodePurpose purpose,
                                                              const std::string& code,
                                                              const std::function<Result()>& then)
{
    const MutexLock lock(mutex_);
    auto transaction = SqliteTransaction::begin(database_);
    if (!transaction)
        return tl::unexpected(transaction.error());
    auto check = takeCode_(address, purpose, code);
    if (!check)
        return check;
    if (*check == CodeCheck::Right)
        if (auto done = then(); !done)
            return tl::unexpected(std::move(done.error()));
    if (auto done = transaction->commit(); !done)
        return tl::unexpected(std::move(done.error()));
    return check;
}

tl::expected<CodeCheck, std::string> AccountStore::confirm(std::string_view address, const std::string& code)
{
    return spendCode_(
        address, CodePurpose::Confirmation, code, [&]() VX_REQUIRES(mutex_)
        { return database_.prepare("UPDATE accounts SET confirmed = 1 WHERE name = ?1").bind(nameOf(address)).run(); });
}

tl::expected<CodeCheck, std::string> AccountStore::resetPassword(std::string_view address, const std::string& code,
                                                                 const std::string& passwordHash)
{
    return spendCode_(address, CodePurpose::PasswordReset, code,
                      [&]() VX_REQUIRES(mutex_) -> Result
                      {
                          auto set = setPassword_(address, passwordHash);
                          return set ? Result() : tl::unexpected(set.error());
                      });
}

tl::expected<bool, std::string> AccountStore::setPassword_(std::string_view address, const std::string& passwordHash)
{
    if (auto revoked = revokeTokens_(address); !revoked)
        return tl::unexpected(std::move(revoked.error()));
    auto done = database_.prepare("UPDATE accounts SET passwordHash = ?2, confirmed = 1 WHERE name = ?1")
                    .bind(nameOf(address), passwordHash)
                    .run();
    if (!done)
        return tl::unexpected(std::move(done.error()));
    return database_.changes() > 0;
}

AccountStore::Result AccountStore::revokeTokens_(std::string_view address)
{
    return database_.prepare("UPDATE tokens SET revoked = 1 WHERE account = (SELECT id FROM accounts WHERE name = ?1)")
        .bind(nameOf(address))
        .run();
}

tl::expected<bool, std::string> AccountStore::setPassword(std::string_view address, const std::string& passwordHash)
{
    const MutexLock lock(mutex_);
    auto transaction = SqliteTransaction::begin(database_);
    if (!transaction)
        return tl::unexpected(transaction.error());
    auto set = setPassword_(address, passwordHash);
    if (!set)
        return set;
    if (auto done = transaction->commit(); !done)
        return tl::unexpected(std::move(done.error()));
    return set;
}

tl::expected<bool, std::string> AccountStore::remove(std::string_view address)
{
    const MutexLock lock(mutex_);
    auto transaction = SqliteTransaction::begin(database_);
    if (!transaction)
        return tl::unexpected(transaction.error());
    auto done = database_.prepare("DELETE FROM codes WHERE owner = ?1").bind(owner_(address)).run();
    if (done)
        done = database_.prepare("DELETE FROM tokens WHERE account = (SELECT id FROM accounts WHERE name = ?1)")
                   .bind(nameOf(address))
                   .run();
    if (done)
        done = database_.prepare("DELETE FROM accounts WHERE name = ?1").bind(nameOf(address)).run();
    const bool existed = done && database_.changes() > 0;
    if (done)
        done = transaction->commit();
    if (!done)
        return tl::unexpected(std::move(done.error()));
    return existed;
}

AccountStore::Result AccountStore::addToken_(int kind, const std::string& token, const std::string& account,
                                             std::chrono::hours lifetime)
{
    return database_
        .prepare("INSERT INTO tokens(hash, account, kind, expiry) "
                 "SELECT ?1, id, ?3, ?4 FROM accounts WHERE id = ?2")
        .bind(secrets_.hash("token", token), account, std::int64_t{kind}, storedTime(now_() + lifetime))
        .run();
}

tl::expected<bool, std::string> AccountStore::addTokens(const Account& account, const std::string& refreshToken,
                                                        const std::string& accessToken)
{
    const MutexLock lock(mutex_);
    auto transaction = SqliteTransaction::begin(database_);
    if (!transaction)
        return tl::unexpected(transaction.error());
    auto done = addToken_(static_cast<int>(TokenKind::Refresh), refreshToken, account.id, refreshTokenLifetime);
    if (done)
        done = addToken_(static_cast<int>(TokenKind::Access), accessToken, account.id, accessTokenLifetime);
    const bool exists = done && database_.changes() > 0;
    if (done)
        done = transaction->commit();
    if (!done)
        return tl::unexpected(std::move(done.error()));
    return exists;
}

tl::expected<TokenCheck, std::string> AccountStore::refresh(const std::string& refreshToken,
                                                            const std::string& accessToken)
{
    const MutexLock lock(mutex_);
    auto transaction = SqliteTransaction::begin(database_);
    if (!transaction)
        return tl::unexpected(transaction.error());
    std::string account;
    {
        auto statement = database_.prepare("SELECT account, expiry, revoked FROM tokens WHERE hash = ?1 AND kind = ?2");
        const auto row = statement.bind(secrets_.hash("token", refreshToken), number(TokenKind::Refresh)).step();
        if (!row)
            return tl::unexpected(row.error());
        if (!*row)
            return TokenCheck::Unknown;
        if (statement.integer(2) != 0)
            return TokenCheck::Revoked;
        if (statement.integer(1) <= storedTime(now_()))
            return TokenCheck::Expired;
        account = statement.text(0);
    }
    auto done = addToken_(static_cast<int>(TokenKind::Access), accessToken, account, accessTokenLifetime);
    if (done)
        done = transaction->commit();
    if (!done)
        return tl::unexpected(std::move(done.error()));
    return TokenCheck::Valid;
}

tl::expected<std::optional<std::string>, std::string> AccountStore::ownerOf(const std::string& accessToken)
{
    const MutexLock lock(mutex_);
    auto statement = database_.prepare("SELECT address FROM tokens JOIN accounts ON accounts.id = tokens.account "
                                       "WHERE hash = ?1 AND kind = ?2 AND revoked = 0 AND expiry > ?3");
    const auto row =
        statement.bind(secrets_.hash("token", accessToken), number(TokenKind::Access), storedTime(now_())).step();
    if (!row)
        return tl::unexpected(row.error());
    return *row ? std::optional(statement.text(0)) : std::nullopt;
}

AccountStore::Result AccountStore::forgetExpired()
{
    const MutexLock lock(mutex_);
    const auto now = now_();
    auto done = database_.prepare("DELETE FROM codes WHERE expiry <= ?1").bind(storedTime(now)).run();
    if (done)
        done = database_.prepare("DELETE FROM tokens WHERE expiry <= ?1 AND (kind = ?2 OR expiry <= ?3)")
                   .bind(storedTime(now), number(TokenKind::Access), storedTime(now - refreshTokenLifetime))
                   .run();
    return done;
}

} // namespace VX

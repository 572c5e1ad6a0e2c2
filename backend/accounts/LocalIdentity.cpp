#include "LocalIdentity.h"

#include "AccountRules.h"
#include "PasswordHash.h"
#include "backend/RandomUuid.h"

#include <VXMesh/StringConvert.h>

#include <fmt/format.h>
#include <spdlog/spdlog.h>

#include <algorithm>
#include <exception>
#include <utility>

namespace VX
{

namespace
{

// A password costs 64 MiB and a core while it is looked at.
constexpr unsigned hashingThreads = 2;
constexpr std::size_t hashingQueue = 256;

constexpr TryPolicy accountPolicy{.free = 5};
/// Many people may share one address.
constexpr TryPolicy peerPolicy{.free = 50};
constexpr TryPolicy codePolicy{.free = 5, .firstPause = std::chrono::minutes(1), .longestPause = std::chrono::hours(1)};

const IdentityError wrongPassword{.type = "NotAuthorizedException", .message = "Incorrect username or password."};
const IdentityError tooManyPasswords{.type = "NotAuthorizedException", .message = "Password attempts exceeded"};
const IdentityError tooManyCodes{.type = "LimitExceededException",
                                 .message = "Attempt limit exceeded, please try after some time."};
const IdentityError tooBusy{.type = "TooManyRequestsException", .message = "Too many requests"};

/// The reason is for the log: it says nothing to whoever asked.
IdentityError internalError(const std::string& reason)
{
    spdlog::error("An account operation failed: {}", reason);
    return {.type = "InternalErrorException", .message = "The account service failed: try again.", .status = 500};
}

bool needsHashing(IdentityOperation operation)
{
    return operation == IdentityOperation::SignIn || operation == IdentityOperation::SignUp ||
           operation == IdentityOperation::ConfirmForgotPassword;
}

bool isOfDomain(const std::string& address, const std::string& domain)
{
    const std::string host = toLower(address.substr(address.find('@') + 1));
    return host == domain || host.ends_with('.' + domain);
}

std::optional<IdentityError> passwordError(const std::string& password)
{
    const auto broken = brokenPasswordRule(password);
    if (!broken)
        return std::nullopt;
    return IdentityError{.type = "InvalidPasswordException",
                         .message = "Password did not conform with policy: " + *broken};
}

Json::Value authentication(const std::string& accessToken)
{
    Json::Value result;
    result["AccessToken"] = accessToken;
    result["ExpiresIn"] = Json::Int64{std::chrono::seconds(AccountStore::accessTokenLifetime).count()};
    // Nothing is to be read in it: who the user is, the client knows.
    result["IdToken"] = AccountSecrets::randomToken();
    result["TokenType"] = "Bearer";
    Json::Value document;
    document["AuthenticationResult"] = std::move(result);
    document["ChallengeParameters"] = Json::Value(Json::objectValue);
    return document;
}

} // namespace

LocalIdentity::LocalIdentity(AccountStore& store, TryLimits& limits, const Outbox& outbox, AccountSecrets secrets,
                             Settings settings)
    : store_(store)
    , limits_(limits)
    , outbox_(outbox)
    , secrets_(secrets)
    , settings_(std::move(settings))
    , hashing_(hashingThreads, hashingQueue)
{
}

void LocalIdentity::call(const IdentityCall& call, Respond respond)
{
    auto request = IdentityRequest::parse(call);
    if (!request)
        return respond(identityAnswer(request.error()));
    const IdentityOperation operation = request->operation;
    const auto work = [this, request = std::move(*request), peer = call.peer, respond]
    {
        try
        {
            const Answer answer = answer_(request, peer);
            respond(answer ? identityAnswer(*answer) : identityAnswer(answer.error()));
        }
        catch (const std::exception& error)
        {
            respond(identityAnswer(internalError(error.what())));
        }
    };
    if (!needsHashing(operation))
        work();
    else if (!hashing_.run(work))
        respond(identityAnswer(tooBusy));
}

LocalIdentity::Answer LocalIdentity::answer_(const IdentityRequest& request, const std::string& peer)
{
    switch (request.operation)
    {
    case IdentityOperation::SignIn:
        return signIn_(request, peer);
    case IdentityOperation::Refresh:
        return refresh_(request);
    case IdentityOperation::SignUp:
        return signUp_(request);
    case IdentityOperation::ConfirmSignUp:
        return confirmSignUp_(request, peer);
    case IdentityOperation::ForgotPassword:
        return giveCode_(request, CodePurpose::PasswordReset);
    case IdentityOperation::ConfirmForgotPassword:
        return confirmForgot_(request, peer);
    case IdentityOperation::ResendConfirmationCode:
        return resend_(request);
    }
    return tl::unexpected(internalError("no such operation"));
}

/// What tries are counted by. Names that were typed, perhaps a password in the wrong field, are kept as hashes.
std::string LocalIdentity::key_(std::string_view kind, const std::string& value) const
{
    return secrets_.hash(kind, toLower(value));
}

LocalIdentity::Answer LocalIdentity::signIn_(const IdentityRequest& request, const std::string& peer)
{
    const std::string accountKey = key_("password tries", request.address);
    const std::string peerKey = key_("tries of a peer", peer);
    for (const auto& blocked : {limits_.isBlocked(accountKey, accountPolicy), limits_.isBlocked(peerKey, peerPolicy)})
    {
        if (!blocked)
            return tl::unexpected(internalError(blocked.error()));
        if (*blocked)
            return tl::unexpected(tooManyPasswords);
    }
    const auto found = store_.find(request.address);
    if (!found)
        return tl::unexpected(internalError(found.error()));
    const std::optional<Account>& account = *found;
    if (account && !account->isConfirmed)
        return tl::unexpected(IdentityError{.type = "UserNotConfirmedException", .message = "User is not confirmed."});

    const bool isRight = isPasswordOf(account ? account->passwordHash : hashOfNobody(), request.password);
    if (!account || !isRight)
    {
        for (const auto& counted : {limits_.count(accountKey), limits_.count(peerKey)})
            if (!counted)
                return tl::unexpected(internalError(counted.error()));
        return tl::unexpected(wrongPassword);
    }
    if (const auto cleared = limits_.clear(accountKey); !cleared)
        return tl::unexpected(internalError(cleared.error()));
    const std::string refreshToken = AccountSecrets::randomToken();
    const std::string accessToken = AccountSecrets::randomToken();
    const auto stored = store_.addTokens(*account, refreshToken, accessToken);
    if (!stored)
        return tl::unexpected(internalError(stored.error()));
    if (!*stored)
        return tl::unexpected(wrongPassword);
    Json::Value document = authentication(accessToken);
    document["AuthenticationResult"]["RefreshToken"] = refreshToken;
    return document;
}

LocalIdentity::Answer LocalIdentity::refresh_(const IdentityRequest& request)
{
    const std::string accessToken = AccountSecrets::randomToken();
    const auto check = store_.refresh(request.token, accessToken);
    if (!check)
        return tl::unexpected(internalError(check.error()));
    IdentityError error{.type = "NotAuthorizedException", .message = "Invalid Refresh Token."};
    switch (*check)
    {
    case TokenCheck::Valid:
        return authentication(accessToken);
    case TokenCheck::Expired:
        error.message = "Refresh Token has expired";
        break;
    case TokenCheck::Revoked:
        error.message = "Refresh Token has been revoked";
        break;
    case TokenCheck::Unknown:
        break;
    }
    return tl::unexpected(error);
}

LocalIdentity::Answer LocalIdentity::signUp_(const IdentityRequest& request)
{
    if (!isAccountAddress(request.address))
        return tl::unexpected(
            IdentityError{.type = "InvalidParameterException", .message = "Username should be an email."});
    if (auto error = passwordError(request.password))
        return tl::unexpected(std::move(*error));
    for (const std::string& domain : settings_.blockedDomains)
        if (isOfDomain(request.address, domain))
            return tl::unexpected(
                IdentityError{.type = "UserLambdaValidationException",
                              .message = fmt::format("PreSignUp failed with error Addresses of {} cannot be used here: "
                                                     "choose another one.",
                                                     domain)});
    auto hash = hashPassword(request.password);
    if (!hash)
        return tl::unexpected(internalError(hash.error()));
    const Account account{.id = randomUuid(), .address = request.address, .passwordHash = std::move(*hash)};
    const std::string code = AccountSecrets::randomCode();
    const auto added = store_.signUp(account, code, [&](const Account*)
                                     { return outbox_.send(Outbox::Occasion::Confirmation, request.address, code); });
    if (!added)
        return tl::unexpected(internalError(added.error()));
    if (!*added)
        return tl::unexpected(IdentityError{.type = "UsernameExistsException", .message = "User already exists"});
    Json::Value document = delivery_(request.address);
    document["UserConfirmed"] = false;
    document["UserSub"] = account.id;
    return document;
}

LocalIdentity::Answer LocalIdentity::giveCode_(const IdentityRequest& request, CodePurpose purpose)
{
    const bool isReset = purpose == CodePurpose::PasswordReset;
    const auto allowed =
        limits_.take(key_(isReset ? "reset codes" : "confirmation codes", request.address), codePolicy);
    if (!allowed)
        return tl::unexpected(internalError(allowed.error()));
    if (!*allowed)
        return tl::unexpected(tooManyCodes);
    const auto occasion = isReset ? Outbox::Occasion::PasswordReset : Outbox::Occasion::Confirmation;
    const std::string code = AccountSecrets::randomCode();
    const auto given = store_.giveCode(request.address, purpose, code,
                                       [&](const Account* account)
                                       {
                                           return account ? outbox_.send(occasion, account->address, code)
                                                          : outbox_.sendNothing(occasion, request.address, code);
                                       });
    if (!given)
        return tl::unexpected(internalError(given.error()));
    return delivery_(request.address);
}

LocalIdentity::Answer LocalIdentity::resend_(const IdentityRequest& request)
{
    const auto found = store_.find(request.address);
    if (!found)
        return tl::unexpected(internalError(found.error()));
    if (const std::optional<Account>& account = *found; account && account->isConfirmed)
        return tl::unexpected(
            IdentityError{.type = "InvalidParameterException", .message = "User is already confirmed."});
    return giveCode_(request, CodePurpose::Confirmation);
}

LocalIdentity::Answer LocalIdentity::confirmSignUp_(const IdentityRequest& request, const std::string& peer)
{
    const auto found = store_.find(request.address);
    if (!found)
        return tl::unexpected(internalError(found.error()));
    if (const std::optional<Account>& account = *found; account && account->isConfirmed)
        return tl::unexpected(IdentityError{.type = "NotAuthorizedException",
                                            .message = "User cannot be confirmed. Current status is CONFIRMED"});
    return tryCode_(peer, [&] { return store_.confirm(request.address, request.code); });
}

LocalIdentity::Answer LocalIdentity::confirmForgot_(const IdentityRequest& request, const std::string& peer)
{
    if (auto error = passwordError(request.password))
        return tl::unexpected(std::move(*error));
    return tryCode_(peer,
                    [&]() -> tl::expected<CodeCheck, std::string>
                    {
                        // Before the code is looked at, so that it is spent and the password set at one stroke.
                        const auto hash = hashPassword(request.password);
                        if (!hash)
                            return tl::unexpected(hash.error());
                        auto check = store_.resetPassword(request.address, request.code, *hash);
                        // Who has forgotten a password has tried some.
                        if (check && *check == CodeCheck::Right)
                            if (auto cleared = limits_.clear(key_("password tries", request.address)); !cleared)
                                return tl::unexpected(std::move(cleared.error()));
                        return check;
                    });
}

/// Tries a code unless the peer has tried too many wrong ones.
LocalIdentity::Answer LocalIdentity::tryCode_(const std::string& peer,
                                              const std::function<tl::expected<CodeCheck, std::string>()>& spend)
{
    const std::string peerKey = key_("tries of a peer", peer);
    const auto blocked = limits_.isBlocked(peerKey, peerPolicy);
    if (!blocked)
        return tl::unexpected(internalError(blocked.error()));
    if (*blocked)
        return tl::unexpected(tooManyCodes);
    const auto check = spend();
    if (!check)
        return tl::unexpected(internalError(check.error()));
    switch (*check)
    {
    case CodeCheck::Right:
        return Json::Value(Json::objectValue);
    case CodeCheck::Wrong:
        break;
    case CodeCheck::Expired:
        return tl::unexpected(IdentityError{.type = "ExpiredCodeException",
                                            .message = "Invalid code provided, please request a code again."});
    case CodeCheck::Locked:
        return tl::unexpected(tooManyCodes);
    }
    if (const auto counted = limits_.count(peerKey); !counted)
        return tl::unexpected(internalError(counted.error()));
    return tl::unexpected(IdentityError{.type = "CodeMismatchException",
                                        .message = "Invalid verification code provided, please try again."});
}

Json::Value LocalIdentity::delivery_(const std::string& address) const
{
    Json::Value document;
    Json::Value& details = document["CodeDeliveryDetails"];
    details["AttributeName"] = "email";
    details["DeliveryMedium"] = "EMAIL";
    // Nobody sends the mail on yet, so this says where it is.
    details["Destination"] = fmt::format("{} ({})", maskedAddress(address), utf8string(outbox_.folder()));
    return document;
}

} // namespace VX

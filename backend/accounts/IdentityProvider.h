#pragma once

#include <functional>
#include <string>

namespace VX
{

/// One call of an identity operation, in the JSON protocol of the identity provider.
struct IdentityCall
{
    std::string operation; ///< "InitiateAuth"
    std::string body;      ///< JSON
    std::string peer;      ///< the network address of who asks
};

/// What is answered: status 200 with the result, or another one with {"__type":NAME,"message":TEXT}.
struct IdentityAnswer
{
    int status = 200;
    std::string body; ///< JSON
};

/// Whoever knows the accounts.
class IdentityProvider
{
public:
    using Respond = std::function<void(IdentityAnswer)>;

    virtual ~IdentityProvider() = default;

    /// Answers by calling `respond` once, now or later, on any thread; what is dropped when the object is destroyed is
    /// not answered.
    /// @threads any
    virtual void call(const IdentityCall& call, Respond respond) = 0;
};

} // namespace VX

#pragma once

#include "IdentityProvider.h"
#include "WorkerPool.h"

#include <atomic>
#include <string>

namespace VX
{

/// The identity operations of a provider elsewhere. The client identifier of the application is put into each body;
/// status and body of the answers come back as they are. Where the provider cannot be reached, the answer is status 503
/// with "ServiceUnavailableException".
/// @threads any
class IdentityPassThrough final : public IdentityProvider
{
public:
    struct Settings
    {
        std::string endpoint; ///< its URL
        std::string clientId;
    };

    explicit IdentityPassThrough(Settings settings);

    /// Gives up what is under way.
    ~IdentityPassThrough() override;

    IdentityPassThrough(const IdentityPassThrough&) = delete;
    IdentityPassThrough& operator=(const IdentityPassThrough&) = delete;

    /// An operation that is none of ours, and a body that is not a JSON object, are refused here.
    void call(const IdentityCall& call, Respond respond) override;

private:
    [[nodiscard]] IdentityAnswer send_(const std::string& operation, const std::string& body) const;

    const Settings settings_;
    std::atomic<bool> stopping_ = false;
    WorkerPool senders_; ///< last, because its threads use the others
};

} // namespace VX

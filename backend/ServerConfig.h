#pragma once

#include <tl/expected.hpp>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace VX
{

/// What one conversion may use.
struct ConversionLimits
{
    std::chrono::seconds time{600};                ///< from start to end
    std::uint64_t memory = 0;                      ///< bytes that the worker may allocate; 0: no limit
    std::uint64_t input = std::uint64_t{4} << 30U; ///< bytes of the unpacked input file
};

/// The choices of one service; what its configuration file leaves out keeps the value here.
struct ServerConfig
{
    std::string publicUrl;           ///< what presigned links begin with; empty: "http://127.0.0.1:PORT"
    bool requireToken = false;       ///< whether only signed-in users may convert
    std::filesystem::path converter; ///< the worker program; empty: quorvix-convert beside the service's own program
    unsigned workers = 2;            ///< conversions at one time
    ConversionLimits limits;
    std::uint64_t uploadLimit = std::uint64_t{1} << 30U; ///< bytes of an uploaded archive
    std::chrono::seconds lease{10};                      ///< of a claimed job; see JobQueueSettings
    std::chrono::seconds linkLifetime{3600};             ///< of a presigned link
    std::chrono::seconds keep{24 * 3600};                ///< of jobs, uploads and results
    std::chrono::hours keepLogs{24 * 30};                ///< of applications' log lines
    std::chrono::milliseconds statusHold{5000};          ///< how long a status answer waits for a change
    std::vector<std::string> blockedDomains;             ///< in lower case; of addresses that cannot have an account
    std::string identityEndpoint;   ///< URL of an identity provider that has the accounts; empty: this service has them
    std::string identityClientId;   ///< of the application at that provider
    bool trustForwardedFor = false; ///< whether a proxy in front of the service says who asks (X-Forwarded-For)
};

/// The values for a service without a configuration file: the ones above, with half of the machine's memory, and at
/// least 1 GiB, for each conversion.
[[nodiscard]] ServerConfig defaultServerConfig();

/// Reads a configuration: a JSON object with the members that docs/developer/backend.md and accounts.md list, all
/// optional, over `defaultServerConfig`.
/// @return the configuration; what `deserializeJsonValue` says of text that is not JSON; or one sentence that names
///         the member that is unknown, of the wrong type or out of its range
[[nodiscard]] tl::expected<ServerConfig, std::string> parseServerConfig(const std::string& text);

/// The same of a file. Every error begins with `The configuration file "NAME" cannot be used: `.
[[nodiscard]] tl::expected<ServerConfig, std::string> loadServerConfig(const std::filesystem::path& file);

} // namespace VX

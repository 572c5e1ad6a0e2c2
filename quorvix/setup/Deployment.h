#pragma once

#include <quorvix/Export.h>

#include <tl/expected.hpp>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace VX
{

/// Where the services are that the application talks to, and how it does so. A file of this record is one JSON object
/// whose members bear the names below; those it leaves out keep their defaults.
struct Deployment
{
    enum class SignIn
    {
        InApp,
        Browser
    };

    enum class Services
    {
        Embedded, ///< the launcher runs them for this user, at those URLs that the record leaves empty
        None      ///< every URL is given
    };

    /// Base URLs without a "/" at the end: https, or http to a loopback address.
    std::string account;
    std::string converter;
    std::string telemetry;
    std::string logs;
    std::string version;
    std::string webApp;
    std::string website;
    SignIn signIn = SignIn::InApp;          ///< "inApp" or "browser"
    Services services = Services::Embedded; ///< "embedded" or "none"
    /// PEM file of the authorities whose certificates count; empty: those of the system. A relative name is taken from
    /// the folder of the record's file.
    std::filesystem::path caFile;

    friend bool operator==(const Deployment&, const Deployment&) = default;
};

/// The files that may hold the record; the first of them that is there decides.
struct DeploymentSources
{
    std::optional<std::filesystem::path> argument;    ///< must exist
    std::optional<std::filesystem::path> environment; ///< must exist
    std::filesystem::path system;                     ///< may be missing
};

/// @param argument  the file named by "-deployment"
/// @return the sources, with QUORVIX_DEPLOYMENT (where set and not empty) and /etc/quorvix/deployment.json
[[nodiscard]] QUORVIX_API DeploymentSources deploymentSources(std::optional<std::filesystem::path> argument);

/// Reads the record; without any file it is the embedded default.
/// @return the record; or one sentence that names the file and what is wrong with it
/// @threads any
[[nodiscard]] QUORVIX_API tl::expected<Deployment, std::string> loadDeployment(const DeploymentSources& sources);

/// `deployment` with every URL that it leaves empty at the embedded services, http://127.0.0.1:PORT.
[[nodiscard]] QUORVIX_API Deployment withEmbeddedServices(Deployment deployment, std::uint16_t port);

/// Fixes the record for this process, once the port of the embedded services is known.
/// @return false when it has been fixed already, by an earlier call or by its first use; nothing changes then
/// @threads any
[[nodiscard]] QUORVIX_API bool setDeployment(Deployment deployment);

/// The record of this process, which never changes. Where nobody has set it, the first use reads it from the
/// environment or the system's file; one that cannot be used counts as a record without URLs, and the log says so.
/// @threads any
[[nodiscard]] QUORVIX_API const Deployment& deployment();

/// Forgets the record, so that a test can set another one. Nothing may be using it.
QUORVIX_API void resetDeployment();

} // namespace VX

#pragma once

#include "launcher/SupervisedProcess.h"

#include <VXMesh/ThreadAnnotations.h>

#include <tl/expected.hpp>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>

namespace VX
{

/// The services of this installation, run for one user on a loopback port that is bound at once, so that its address is
/// known and requests wait in the socket's queue while the service starts or restarts. Where it cannot start, they are
/// turned away instead: their connection closes.
class LocalServices
{
public:
    /// @return the bound but not yet started services, or one sentence
    [[nodiscard]] static tl::expected<std::unique_ptr<LocalServices>, std::string> bind();

    /// The program that serves, beside this one.
    [[nodiscard]] static std::filesystem::path program();

    /// Where the services keep what is this user's.
    [[nodiscard]] static std::filesystem::path dataFolder();

    /// Stops the service.
    ~LocalServices();

    LocalServices(const LocalServices&) = delete;
    LocalServices& operator=(const LocalServices&) = delete;

    [[nodiscard]] std::uint16_t port() const { return port_; }

    /// Starts the service; later calls do nothing.
    /// @threads any
    void start();

    /// Why the service could not be started when it was tried last, in a sentence or two; empty where it could.
    /// @threads any
    [[nodiscard]] std::string failure() const;

private:
    LocalServices(int socket, std::uint16_t port);

    void noteEnd_(const std::string& reason);
    void turnAway_() const;

    int socket_;
    std::uint16_t port_;
    std::once_flag started_;
    mutable Mutex mutex_;
    std::string failure_ VX_GUARDED_BY(mutex_);
    std::unique_ptr<SupervisedProcess> process_; ///< last, because its thread uses the others
};

} // namespace VX

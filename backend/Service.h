#pragma once

#include "ServerConfig.h"

#include <tl/expected.hpp>

#include <net/HttpServer.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

namespace VX
{

/// The whole service over one data folder: the conversion protocol, the storage behind presigned links, the
/// conversions themselves, the accounts, and what applications
/// report about their use.
class Service
{
public:
    /// Creates `dataFolder` where it is missing and serves from then on.
    /// @return the running service; or why the folder, the database or the port cannot be used
    [[nodiscard]] static tl::expected<std::unique_ptr<Service>, std::string>
    start(ServerConfig config, const std::filesystem::path& dataFolder, const HttpServer::Settings& http);

    /// Stops serving, kills the conversions and gives their jobs back.
    ~Service();

    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;

    [[nodiscard]] std::uint16_t port() const;

private:
    class Impl;
    explicit Service(std::unique_ptr<Impl> impl);

    std::unique_ptr<Impl> impl_;
};

} // namespace VX

#pragma once

#include <tl/expected.hpp>

#include <filesystem>
#include <string>

namespace VX
{

/// The folder that holds everything a service keeps; several processes may share it.
class DataFolder
{
public:
    /// Creates `folder` (mode 0700) where it is missing.
    /// @return `The data folder cannot be created: REASON.`
    [[nodiscard]] static tl::expected<DataFolder, std::string> open(const std::filesystem::path& folder);

    [[nodiscard]] std::filesystem::path database() const { return folder_ / "service.sqlite"; }

    [[nodiscard]] std::filesystem::path accounts() const { return folder_ / "accounts.sqlite"; }

    /// What applications report about their use, and their log lines.
    [[nodiscard]] std::filesystem::path telemetry() const { return folder_ / "telemetry.sqlite"; }

    /// The mail that the service sends.
    [[nodiscard]] std::filesystem::path outbox() const { return folder_ / "outbox"; }

    [[nodiscard]] std::filesystem::path secret() const { return folder_ / "link-key"; }

    [[nodiscard]] std::filesystem::path blobs() const { return folder_ / "blobs"; }

    /// One folder for each conversion that is running, named by its lease token.
    [[nodiscard]] std::filesystem::path work() const { return folder_ / "work"; }

private:
    explicit DataFolder(std::filesystem::path folder);

    std::filesystem::path folder_;
};

} // namespace VX

#pragma once

#include <tl/expected.hpp>

#include <chrono>
#include <filesystem>
#include <string>

namespace VX
{

/// The mail that the service sends: a folder of plain-text messages (.eml), from which they are read or sent on. The
/// code is the only number of six digits that the service itself puts into one.
/// @threads any; several processes at once
class Outbox
{
public:
    /// Why somebody gets a code.
    enum class Occasion
    {
        Confirmation,
        PasswordReset
    };

    /// Creates `folder` (mode 0700) where it is missing.
    /// @return `The outbox cannot be created: REASON.`
    [[nodiscard]] static tl::expected<Outbox, std::string> open(const std::filesystem::path& folder);

    [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }

    /// Writes the message, mode 0600, under a name that sorts by time.
    /// @return `The mail cannot be written: REASON.`
    [[nodiscard]] tl::expected<void, std::string> send(Occasion occasion, const std::string& address,
                                                       const std::string& code) const;

    /// Does the same work, and leaves nothing: for an address that has no account, which no measurement is to reveal.
    [[nodiscard]] tl::expected<void, std::string> sendNothing(Occasion occasion, const std::string& address,
                                                              const std::string& code) const;

    /// Removes the messages written before `time`.
    void forgetOlderThan(std::chrono::file_clock::time_point time) const;

private:
    explicit Outbox(std::filesystem::path folder);

    std::filesystem::path folder_;
};

} // namespace VX

#include "Outbox.h"

#include "backend/DiskFull.h"
#include "backend/RandomUuid.h"

#include <VXMesh/AtomicFile.h>

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <string_view>
#include <system_error>
#include <utility>

namespace VX
{

namespace
{

std::string_view subject(Outbox::Occasion occasion)
{
    return occasion == Outbox::Occasion::Confirmation ? "Confirm your Quorvix account" : "Reset your Quorvix password";
}

std::string_view reason(Outbox::Occasion occasion)
{
    return occasion == Outbox::Occasion::Confirmation ? "Enter this code to confirm your account:"
                                                      : "Enter this code to choose a new password:";
}

/// A name for the message without digits, of which six in a row would look like a code.
std::string messageName()
{
    std::string name = randomUuid();
    for (char& c : name)
        if (c >= '0' && c <= '9')
            c = static_cast<char>('g' + (c - '0'));
    return name;
}

/// The message in the format of RFC 5322.
std::string message(Outbox::Occasion occasion, const std::string& address, const std::string& code)
{
    const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    return fmt::format("Date: {:%a, %d %b %Y %H:%M:%S} +0000\r\n"
                       "From: Quorvix <no-reply@quorvix.localhost>\r\n"
                       "To: <{}>\r\n"
                       "Message-ID: <{}@quorvix.localhost>\r\n"
                       "Subject: {}\r\n"
                       "MIME-Version: 1.0\r\n"
                       "Content-Type: text/plain; charset=utf-8\r\n"
                       "\r\n"
                       "{}\r\n"
                       "\r\n"
                       "    {}\r\n"
                       "\r\n"
                       "It holds for 24 hours and works once. If you did not ask for it, you need not do anything.\r\n",
                       fmt::gmtime(std::chrono::system_clock::to_time_t(now)), address, messageName(),
                       subject(occasion), reason(occasion), code);
}

/// What goes wrong for want of room is told like everywhere in the service.
tl::expected<void, std::string> writeMail(const std::filesystem::path& file, const std::string& text)
{
    auto written = writeFileAtomically(file, text);
    if (written)
        return {};
    std::error_code error;
    const auto space = std::filesystem::space(file.parent_path(), error);
    if (!error && space.available < text.size())
        return tl::unexpected(diskFullText());
    return tl::unexpected(fmt::format("The mail cannot be written: {}", written.error()));
}

} // namespace

tl::expected<Outbox, std::string> Outbox::open(const std::filesystem::path& folder)
{
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (!error)
        std::filesystem::permissions(folder, std::filesystem::perms::owner_all, error);
    if (error)
        return tl::unexpected(fmt::format("The outbox cannot be created: {}.", error.message()));
    return Outbox(folder);
}

Outbox::Outbox(std::filesystem::path folder)
    : folder_(std::move(folder))
{
}

tl::expected<void, std::string> Outbox::send(Occasion occasion, const std::string& address,
                                             const std::string& code) const
{
    const auto now = std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now().time_since_epoch());
    const auto file = folder_ / fmt::format("{:013}-{}.eml", now.count(), messageName());
    return writeMail(file, message(occasion, address, code));
}

tl::expected<void, std::string> Outbox::sendNothing(Occasion occasion, const std::string& address,
                                                    const std::string& code) const
{
    const auto file = folder_ / fmt::format(".{}", messageName());
    auto written = writeMail(file, message(occasion, address, code));
    std::error_code ignored;
    std::filesystem::remove(file, ignored);
    return written;
}

void Outbox::forgetOlderThan(std::chrono::file_clock::time_point time) const
{
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder_, error), end; !error && entry != end; entry.increment(error))
    {
        std::error_code ignored;
        const auto written = entry->last_write_time(ignored);
        if (!ignored && written < time)
            std::filesystem::remove(entry->path(), ignored);
    }
}

} // namespace VX

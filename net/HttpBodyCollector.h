#pragma once

#include <net/BodyFile.h>
#include <net/HttpServer.h>

#include <cstdint>
#include <span>

namespace VX
{

/// Puts the body of one request where its sink says, as the bytes come in. Each operation returns 0, or the status that
/// refuses the request: 413 for a body over the limit, 507 for a full disk, 500 for another failure of the file.
/// @threads one at a time
class HttpBodyCollector
{
public:
    [[nodiscard]] int begin(const HttpBodySink& sink);
    [[nodiscard]] int append(std::span<const char> bytes);

    /// Gives the complete body to `request`.
    [[nodiscard]] int finish(HttpRequest& request);

private:
    HttpBodySink sink_;
    std::uint64_t size_ = 0;
    std::string memory_;
    BodyFileWriter file_;
};

} // namespace VX

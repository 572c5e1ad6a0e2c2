#include "tests/support/RawSocket.h"
#include "tests/support/TempDir.h"

#include <net/HttpServer.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

namespace
{

/// Answers with the body; those of paths that end with ".bin" go to a file.
class Echo : public VX::HttpHandler
{
public:
    tl::expected<VX::HttpBodySink, VX::HttpResponse> acceptBody(const VX::HttpRequest& head) override
    {
        if (head.method.empty() || (head.path != "*" && !head.path.starts_with('/')))
            std::abort();
        if (head.path == "/refused")
            return tl::unexpected(VX::HttpResponse{.status = 403});
        return VX::HttpBodySink{.limit = 256, .file = head.path.ends_with(".bin") ? folder_.path() / "body" : ""};
    }

    void handle(VX::HttpRequest request, Respond respond) override
    {
        VX::HttpResponse answer{.body = std::move(request.body)};
        if (!request.bodyFile.empty())
            answer.file = std::move(request.bodyFile);
        respond(std::move(answer));
    }

private:
    VX::Test::TempDir folder_;
};

} // namespace

// Whatever a client sends and then says no more, the server has done with it: it answers in its own way or not at all,
// and closes the connection.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static Echo echo;
    static const auto server = VX::HttpServer::start({.threads = 1, .headLimit = 1024}, echo).value();
    auto socket = VX::Test::RawSocket::connect(server->port());
    socket.send({reinterpret_cast<const char*>(data), size});
    socket.finishSending();
    const std::string answer = socket.receiveAll();
    if (!answer.empty() && !answer.starts_with("HTTP/1.1 "))
        std::abort();
    return 0;
}

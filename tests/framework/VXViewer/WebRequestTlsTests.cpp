#include "WebRequestFixture.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace VX::Test
{

namespace
{

/// Requests to an https server with a certificate of its own for 127.0.0.1, which openssl's command-line tool plays. It
/// answers a path with the file of that name.
class WebRequestTlsTests : public WebRequestFixture
{
public:
    void SetUp() override
    {
        if (run_("openssl version > /dev/null 2>&1") != 0)
            GTEST_SKIP() << "openssl is not here";
        ASSERT_EQ(run_("openssl req -x509 -newkey rsa:2048 -nodes -keyout key.pem -out cert.pem -days 2"
                       " -subj /CN=127.0.0.1 -addext subjectAltName=IP:127.0.0.1 2> /dev/null"),
                  0);
        folder.write("ok", "HTTP/1.1 200 OK\r\nContent-Length: 6\r\n\r\nsecret");
    }

    void TearDown() override
    {
        WebRequestFixture::TearDown();
        if (server_)
            ::pclose(server_);
    }

    /// Serves one connection; the tool ends after it, or after 20 seconds.
    void serve()
    {
        const auto command = inFolder_("exec timeout 20 openssl s_server -accept 127.0.0.1:0 -naccept 1 -HTTP"
                                       " -key key.pem -cert cert.pem 2> /dev/null < /dev/null");
        server_ = ::popen(command.c_str(), "r");
        ASSERT_TRUE(server_);
        std::array<char, 256> line{};
        const std::string_view start = "ACCEPT 127.0.0.1:";
        while (port_ == 0 && std::fgets(line.data(), line.size(), server_))
            if (std::string_view(line.data()).starts_with(start))
                port_ = std::atoi(line.data() + start.size());
        ASSERT_NE(port_, 0);
    }

    [[nodiscard]] Json::Value getSecurely(const std::string& host, const std::string& path) const
    {
        WebRequest request("https://" + host + ":" + std::to_string(port_) + path);
        request.setTimeout(10'000);
        return answerTo(request);
    }

    [[nodiscard]] std::filesystem::path certificate() const { return folder.path() / "cert.pem"; }

private:
    [[nodiscard]] std::string inFolder_(const std::string& command) const
    {
        return "cd '" + folder.path().string() + "' && " + command;
    }

    [[nodiscard]] int run_(const std::string& command) const
    {
        std::FILE* const process = ::popen(inFolder_(command).c_str(), "r");
        return process ? ::pclose(process) : -1;
    }

    std::FILE* server_ = nullptr;
    int port_ = 0;
};

} // namespace

TEST_F(WebRequestTlsTests, TrustsTheCertificatesThatItIsGiven)
{
    serve();
    WebRequests::setCaFile(certificate());
    const auto answer = getSecurely("127.0.0.1", "/ok");
    EXPECT_EQ(answer["code"], 200);
    EXPECT_EQ(answer["text"], "secret");
}

TEST_F(WebRequestTlsTests, TrustsNoOtherCertificate)
{
    serve();
    const auto answer = getSecurely("127.0.0.1", "/ok");
    EXPECT_EQ(answer["code"], 0);
    EXPECT_TRUE(answer["error"].asString().starts_with("127.0.0.1 cannot be trusted: ")) << answer["error"];
}

TEST_F(WebRequestTlsTests, TrustsNoCertificateOfAnotherHost)
{
    serve();
    WebRequests::setCaFile(certificate());
    const auto answer = getSecurely("localhost", "/ok");
    EXPECT_EQ(answer["code"], 0);
    EXPECT_TRUE(answer["error"].asString().starts_with("localhost cannot be trusted: ")) << answer["error"];
}

TEST_F(WebRequestTlsTests, SaysThatTheCertificatesCannotBeRead)
{
    serve();
    WebRequests::setCaFile(folder.path() / "missing.pem");
    const auto answer = getSecurely("127.0.0.1", "/ok");
    EXPECT_EQ(answer["code"], 0);
    EXPECT_TRUE(answer["error"].asString().starts_with("127.0.0.1 cannot be trusted: ")) << answer["error"];
}

TEST_F(WebRequestTlsTests, DoesNotLeaveASecureServerForAnInsecureOne)
{
    serve();
    WebRequests::setCaFile(certificate());
    folder.write("away", "HTTP/1.1 302 Found\r\nLocation: " + recorder.url() + "\r\nContent-Length: 0\r\n\r\n");
    const auto answer = getSecurely("127.0.0.1", "/away");
    EXPECT_EQ(answer["code"], 0);
    EXPECT_EQ(answer["error"], "127.0.0.1 sends the request to an address that is not allowed.");
    EXPECT_TRUE(recorder.requests().empty());
}

} // namespace VX::Test

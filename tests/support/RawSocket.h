#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace VX::Test
{

/// One end of a TCP connection on loopback, for tests that send and expect bytes rather than messages. What takes
/// longer than half a minute fails.
/// @threads one at a time
class RawSocket
{
public:
    /// Connects to `port`; `isOpen` tells whether it worked.
    static RawSocket connect(std::uint16_t port);

    /// Takes over a connected socket.
    explicit RawSocket(int socket)
        : socket_(socket)
    {
    }

    ~RawSocket();
    RawSocket(RawSocket&& other) noexcept;
    RawSocket& operator=(RawSocket&& other) noexcept;

    [[nodiscard]] bool isOpen() const { return socket_ >= 0; }

    /// @return false where the other side has closed
    bool send(std::string_view bytes);

    /// Reads until what came in holds `text`, and gives back all of it up to there; what follows stays for later.
    /// @return everything there was, without `text`, where the other side closes first
    std::string receiveUntil(std::string_view text);

    /// Reads until the other side closes.
    std::string receiveAll();

    /// Reads one HTTP answer: its head and as many bytes as its Content-Length says.
    std::string receiveAnswer();

    /// Closes the sending half.
    void finishSending();

    /// Closes the connection with a reset, as a killed process does.
    void reset();

private:
    bool receiveMore_();

    int socket_ = -1;
    std::string received_;
};

/// A listening socket on loopback.
class RawListener
{
public:
    RawListener();
    ~RawListener();

    RawListener(const RawListener&) = delete;
    RawListener& operator=(const RawListener&) = delete;

    [[nodiscard]] std::uint16_t port() const { return port_; }

    /// The bound socket, listening.
    [[nodiscard]] int socket() const { return socket_; }

    /// Hands the socket to somebody else, who closes it.
    int release();

    /// Waits for a client.
    RawSocket accept();

private:
    int socket_ = -1;
    std::uint16_t port_ = 0;
};

} // namespace VX::Test

#include "tests/support/RawSocket.h"

#include <gtest/gtest.h>

#include <net/PeerEnd.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace VX::Test
{

namespace
{

/// Both ends of a connection.
class PeerEndTests : public testing::Test
{
protected:
    PeerEndTests()
        : peer(RawSocket::connect(listener_.port()))
        , socket(::accept4(listener_.socket(), nullptr, nullptr, SOCK_CLOEXEC))
    {
    }

    ~PeerEndTests() override { ::close(socket); }

    /// Waits until the system tells that there is something to read, which an end is too.
    void expectNews() const
    {
        pollfd entry{.fd = socket, .events = POLLIN, .revents = 0};
        EXPECT_EQ(::poll(&entry, 1, 30'000), 1);
    }

private:
    RawListener listener_;

protected:
    RawSocket peer;
    int socket;
};

} // namespace

TEST_F(PeerEndTests, APeerThatSaysNothingIsStillThere)
{
    EXPECT_FALSE(hasPeerEnded(socket));
}

TEST_F(PeerEndTests, APeerThatSendsNoMoreHasEnded)
{
    peer.finishSending();
    expectNews();
    EXPECT_TRUE(hasPeerEnded(socket));
}

TEST_F(PeerEndTests, APeerThatResetsHasEnded)
{
    peer.reset();
    expectNews();
    EXPECT_TRUE(hasPeerEnded(socket));
}

TEST_F(PeerEndTests, BytesThatWaitHideTheEndAndStay)
{
    peer.send("x");
    peer.finishSending();
    expectNews();
    EXPECT_FALSE(hasPeerEnded(socket));
    char byte = 0;
    EXPECT_EQ(::recv(socket, &byte, 1, 0), 1);
    EXPECT_TRUE(hasPeerEnded(socket));
}

} // namespace VX::Test

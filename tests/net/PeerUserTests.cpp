#include "ServerFixture.h"

#include <sys/wait.h>
#include <unistd.h>

namespace VX::Test
{

namespace
{

using PeerUserTests = ServerFixture;

constexpr std::string_view get = "GET / HTTP/1.1\r\nHost: x\r\n\r\n";
constexpr uid_t nobody = 65'534;

} // namespace

TEST_F(PeerUserTests, ProgramsOfThisUserAreServed)
{
    serve({.sameUserOnly = true});
    for (int i = 0; i < 20; ++i)
        EXPECT_TRUE(answerTo(get).ends_with("GET / "));
}

TEST_F(PeerUserTests, ThoseOfAnotherUserAreNot)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can act as another user";
    serve({.sameUserOnly = true});
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(::setgid(nobody) == 0 && ::setuid(nobody) == 0 && answerTo(get).empty() ? 7 : 1);
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(WIFEXITED(status) ? WEXITSTATUS(status) : -1, 7);
}

} // namespace VX::Test

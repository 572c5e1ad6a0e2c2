// A server with what the protocol's conformance suite expects. Says its port in one line, and ends with its input.
#include "Fixtures.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>

int main()
{
    VX::Mcp::Server server;
    server.setInfo("conformance-server", "1.0.0", "Tools, resources and prompts for the conformance suite.");
    VX::Test::addPlainTools(server);
    VX::Test::addAskingTools(server);
    VX::Test::addResources(server);
    VX::Test::addPrompts(server);
    const auto started = server.start({.port = 0});
    if (!started)
    {
        std::fprintf(stderr, "%s\n", started.error().c_str());
        return EXIT_FAILURE;
    }
    std::printf("%d\n", server.port());
    std::fflush(stdout);
    while (std::cin.get() != std::char_traits<char>::eof())
    {
    }
    return EXIT_SUCCESS;
}

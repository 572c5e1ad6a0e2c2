#include "launcher/CommandLine.h"
#include "launcher/DeepLink.h"
#include "launcher/Launcher.h"
#include "launcher/McpStdio.h"

#include <VXMesh/Version.h>
#include <VXViewer/GraphicsCache.h>

#include <fmt/format.h>

#include <cstdio>
#include <utility>

int main(int argc, char** argv)
{
    VX::avoidGraphicsCacheOnFullDisk();
    auto arguments = VX::normalizeArguments(argc, argv);
    VX::wipeDeepLinks(argc, argv);
    const auto link = VX::handOverDeepLink(arguments);
    if (!link)
    {
        fmt::print(stderr, "{}\n", link.error());
        return 2;
    }
    if (*link == VX::DeepLink::Taken)
        return 0;
    const auto line = VX::parseCommandLine(arguments);
    if (!line)
    {
        fmt::print(stderr, "{}\n", line.error());
        return 2;
    }
    if (line->help || line->version)
    {
        fmt::print("{}", line->help ? VX::commandLineHelp() : fmt::format("Quorvix {}\n", VX::GetVXVersionString()));
        return 0;
    }
    if (line->mcpStdio)
        return VX::runMcpStdio(*line);
    return VX::runLauncher(*line, std::move(arguments), *link);
}

#include "launcher/CommandLine.h"
#include "launcher/Launcher.h"

#include <VXMesh/Version.h>

#include <fmt/format.h>

#include <cstdio>

int main(int argc, char** argv)
{
    const auto arguments = VX::normalizeArguments(argc, argv);
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
    return VX::runLauncher(*line, arguments);
}

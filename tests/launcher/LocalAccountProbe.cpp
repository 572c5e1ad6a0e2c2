// usage: localAccountProbe BACKEND DATA: a process that sees to the local account, as a starting program does, and
// prints its credentials file. For several at once.

#include "launcher/LocalAccount.h"

#include <VXMesh/Config.h>

#include <fmt/format.h>

int main(int argc, char** argv)
{
    if (argc != 3)
        return 2;
    VX::Config::instance().reset("Quorvix");
    const auto file = VX::LocalAccount::provide(argv[1], argv[2]);
    if (!file)
        return 1;
    fmt::print("{}", file->string());
    return 0;
}

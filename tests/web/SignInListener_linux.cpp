// A running instance without its windows: prints "listening", and for each notification the stored sign-in as JSON on a
// line. A line on the standard input has it tell the others that the user has signed out; it ends with the input.
#include <quorvix/auth/AuthToken.h>
#include <quorvix/auth/WebAuth.h>

#include <VXMesh/Config.h>

#include <fmt/format.h>
#include <json/writer.h>

#include <unistd.h>

#include <cstdio>
#include <iostream>
#include <string>

namespace
{

void printLine(const std::string& line)
{
    fmt::print("{}\n", line);
    std::fflush(stdout);
}

void printStoredSignIn()
{
    const VX::AuthToken stored = VX::loadAuthToken();
    Json::Value document;
    document["login"] = stored.login;
    document["token"] = stored.token;
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";
    printLine(Json::writeString(builder, document));
}

} // namespace

int main()
{
    VX::Config::instance().reset("Quorvix");
    VX::setDefaultSharedMemoryNamePrefix(fmt::format("Quorvix-{}", ::geteuid()));
    const auto auth = VX::makeDefaultWebAuth(printStoredSignIn);
    printLine("listening");
    for (std::string line; std::getline(std::cin, line);)
        auth->notifyAboutSignOut();
}

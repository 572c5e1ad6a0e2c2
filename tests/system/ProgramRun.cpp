#include "tests/system/ProgramRun.h"

#include <cstdlib>

namespace VX::Test
{

namespace
{

std::string quoted(const std::string& text)
{
    std::string result = "'";
    for (const char c : text)
        result += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return result + "'";
}

} // namespace

ProgramResult ProgramRun::run(const std::vector<std::string>& arguments) const
{
    const auto output = folder_.path() / "stdout";
    const auto errors = folder_.path() / "stderr";
    std::string command = quoted(QX_BIN_DIR "/Quorvix");
    for (const auto& argument : arguments)
        command += " " + quoted(argument);
    command += " >" + quoted(output.string()) + " 2>" + quoted(errors.string());
    ProgramResult result;
    const int status = std::system(command.c_str()); // NOLINT(concurrency-mt-unsafe): one thread
    result.status = (status & 0x7F) != 0 ? 128 + (status & 0x7F) : (status >> 8) & 0xFF;
    result.output = readFile(output);
    result.errors = readFile(errors);
    return result;
}

} // namespace VX::Test

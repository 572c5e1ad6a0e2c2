#include "tests/system/ProgramRun.h"

#include <utility>

namespace VX::Test
{

ProgramRun::ProgramRun(std::filesystem::path program)
    : program_(std::move(program))
{
}

ProgramResult ProgramRun::run(const std::vector<std::string>& arguments) const
{
    return start(arguments).wait();
}

RunningProgram ProgramRun::start(const std::vector<std::string>& arguments) const
{
    return {program_, arguments, folder_.path()};
}

} // namespace VX::Test

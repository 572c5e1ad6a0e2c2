#include "EnvironmentVariable.h"

#include <cstdlib>
#include <utility>

// NOLINTBEGIN(concurrency-mt-unsafe): the class says when it may be used
namespace VX::Test
{

namespace
{

void assign(const std::string& name, const std::optional<std::string>& value)
{
    if (value)
        ::setenv(name.c_str(), value->c_str(), 1);
    else
        ::unsetenv(name.c_str());
}

} // namespace

EnvironmentVariable::EnvironmentVariable(std::string name, const std::optional<std::string>& value)
    : name_(std::move(name))
{
    if (const char* before = std::getenv(name_.c_str()))
        before_ = before;
    assign(name_, value);
}

EnvironmentVariable::~EnvironmentVariable()
{
    assign(name_, before_);
}

} // namespace VX::Test

// NOLINTEND(concurrency-mt-unsafe)

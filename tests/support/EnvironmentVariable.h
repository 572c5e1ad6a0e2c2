#pragma once

#include <optional>
#include <string>

namespace VX::Test
{

/// Sets an environment variable, or unsets it, until the end of the scope. While no other thread reads any.
class EnvironmentVariable
{
public:
    EnvironmentVariable(std::string name, const std::optional<std::string>& value);
    ~EnvironmentVariable();

    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

private:
    std::string name_;
    std::optional<std::string> before_;
};

} // namespace VX::Test

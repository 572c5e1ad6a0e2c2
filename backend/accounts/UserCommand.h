#pragma once

#include "backend/CommandArguments.h"

#include <tl/expected.hpp>

#include <functional>
#include <string>

namespace VX
{

/// Does "user add", "user list", "user remove" or "user reset", also while a service runs over the same folder.
/// @param readPassword  asked for the password that the command sets
/// @return what is to be printed; or one sentence that says what is wrong
[[nodiscard]] tl::expected<std::string, std::string> runUserCommand(const CommandArguments& arguments,
                                                                    const std::function<std::string()>& readPassword);

} // namespace VX

#pragma once

#include <tl/expected.hpp>

#include <string>
#include <vector>

namespace VX
{

/// What became of the sign-in link that a browser has the system start the program with.
enum class DeepLink
{
    None,   ///< there is none
    Taken,  ///< a running instance has been woken for it
    Stored, ///< nobody runs; the sign-in is stored for this process
};

/// Hands the link of the argument after "-url" over and takes it out of `arguments`. From here on the process uses the
/// channel by which the instances of this user meet, and the settings of "Quorvix".
/// @param arguments  normalised, without the program's name
/// @return one sentence where the link cannot be read; it holds nothing of the link
[[nodiscard]] tl::expected<DeepLink, std::string> handOverDeepLink(std::vector<std::string>& arguments);

/// Overwrites the values of "-url" in the process's own arguments, which every user of the computer can list.
void wipeDeepLinks(int argc, char** argv);

} // namespace VX

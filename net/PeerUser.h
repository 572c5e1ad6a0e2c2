#pragma once

namespace VX
{

/// Whether the other end of a connection over loopback belongs to a program of the user of this process. False too
/// where the system does not tell.
/// @param socket  connected, IPv4
/// @threads any
[[nodiscard]] bool isPeerOfThisUser(int socket);

} // namespace VX

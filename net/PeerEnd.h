#pragma once

namespace VX
{

/// Whether the other end of a connection sends no more: it has closed its half, or has reset the connection. Bytes that
/// were not read yet hide it.
/// @param socket  connected
/// @threads any
[[nodiscard]] bool hasPeerEnded(int socket);

} // namespace VX

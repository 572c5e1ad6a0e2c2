#pragma once

namespace VX
{

/// Keeps processes started from this one from inheriting the socket, which would hold the connection open.
/// @threads any
void setCloseOnExec(int socket);

} // namespace VX

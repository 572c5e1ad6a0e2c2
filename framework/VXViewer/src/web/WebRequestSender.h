#pragma once

#include <VXViewer/WebTransport.h>

namespace VX
{

/// Hands a request to the transport in use, with the time-out that the state of the application allows.
/// @threads any
void sendWebRequest(WebRequestData request, WebCallback callback);

} // namespace VX

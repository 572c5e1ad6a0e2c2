#pragma once

#include <VXViewer/Export.h>

#include <filesystem>
#include <memory>

namespace VX
{

class WebTransport;

/// What all requests of the process share.
namespace WebRequests
{

/// Carries the requests sent from now on; null: libcurl does.
/// @threads any
VXVIEWER_API void setTransport(std::shared_ptr<WebTransport> transport);

/// The certificates (PEM) that https servers are checked against from now on, in place of the system's; empty: the
/// system's.
/// @threads any
VXVIEWER_API void setCaFile(std::filesystem::path file);

/// From now on no request takes longer than 1.5 s. Those under way are cancelled and answer code 0.
/// @threads any
VXVIEWER_API void beginShutdown();

/// Waits for the requests under way and their callbacks and ends the threads; from then on every request answers code 0
/// ("The application is closing."), on the thread that sends it. Begins the shutdown where that has not happened.
/// To be called before `main` returns.
/// @threads the UI thread; never from a callback of a request
VXVIEWER_API void finish();

/// Finishes, and forgets the transport, the certificates and the shutdown: the state of a process that has just
/// started. For tests.
/// @threads as `finish`
VXVIEWER_API void reset();

} // namespace WebRequests

} // namespace VX

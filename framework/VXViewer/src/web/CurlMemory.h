#pragma once

#include <curl/curl.h>

namespace VX
{

/// Initialises libcurl such that it overwrites all memory that it gives back: a request's password was in its buffers.
/// @threads the first use of libcurl in the process, or by another thread none meanwhile
CURLcode initialiseCurl();

} // namespace VX

#pragma once

#include <quorvix/Export.h>

#include <chrono>
#include <functional>
#include <string>

/// Usage telemetry: the names of what the user does, gathered and sent in batches under a session that the telemetry
/// service opens for the signed-in user. TELEMETRY.md lists what can be sent. Nothing here blocks, and what fails is
/// said in the log only: `Failed to parse response from "SessionLogsImpl::OPERATION": ERROR` (level error).
/// What the framework's `TelemetrySignal` reports is taken as by `logAction(name, false)`, from the first use of any of
/// these functions on.
/// @threads any, but for the first call of what reads the command line
namespace VX::SessionLogs
{

/// Switches telemetry on or off, as the user wishes. Before it goes off the action "Forbid Telemetry" is reported, so
/// that the service learns of it.
QUORVIX_API void allow(bool allowed);

/// What `allow` said last; true at first, false once `isEnabled` has found that the command line forbids telemetry.
[[nodiscard]] QUORVIX_API bool isAllowed();

/// Whether telemetry is possible at all in this process: false with the argument "-noTelemetry". The viewer's command
/// line is read by the first call, which comes once the viewer has its arguments.
/// @threads the first call on the UI thread
[[nodiscard]] QUORVIX_API bool isEnabled();

/// Allows telemetry as far as the setting "allowSimpleTelemetry" (true where there is none) and the command line do.
/// @threads the first call on the UI thread
QUORVIX_API void followSetting();

/// Asks the service for a session of the user; its answer lets all that was gathered be sent. Does nothing without an
/// address and where telemetry is not enabled. A user who has switched telemetry off gets a session too: it carries
/// the actions that are reported in any case.
/// @threads the first call on the UI thread
QUORVIX_API void requestSessionId(const std::string& email);

/// Keeps an action with the time of now, to be sent by a later flush.
/// @param name   nothing that the user typed
/// @param force  keep it even where telemetry is not allowed
QUORVIX_API void logAction(std::string name, bool force);

/// Sends what was gathered, where there is a session and something to send: at once with `force` and otherwise 60 s
/// after the last time, or later. What was sent is forgotten, whatever becomes of it.
QUORVIX_API void flushIfNeeded(bool force);

/// Ends the session and forgets what was not sent.
QUORVIX_API void clearSessionId();

/// The state of a process that has just started. For tests; no request may be under way.
/// @param clock  tells the time from now on; empty: the system's
QUORVIX_API void reset(std::function<std::chrono::system_clock::time_point()> clock = {});

} // namespace VX::SessionLogs

#pragma once

#include <VXMesh/Export.h>

#include <boost/signals2/signal.hpp>

#include <string>

namespace VX
{

/// The signal by which any part of the program reports the name of a user's action, one in the process:
/// `TelemetrySignal::instance()("Open Settings")`. Names hold nothing that the user typed.
/// @threads any; slots run on the thread of the report
class TelemetrySignal : public boost::signals2::signal<void(const std::string&)>
{
public:
    [[nodiscard]] VXMESH_API static TelemetrySignal& instance();

private:
    TelemetrySignal() = default;
};

} // namespace VX

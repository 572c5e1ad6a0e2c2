#include <VXMesh/TelemetrySignal.h>

namespace VX
{

TelemetrySignal& TelemetrySignal::instance()
{
    static TelemetrySignal signal;
    return signal;
}

} // namespace VX

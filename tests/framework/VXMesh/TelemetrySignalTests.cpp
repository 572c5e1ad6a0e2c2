#include <VXMesh/TelemetrySignal.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace VX
{

TEST(TelemetrySignal, ReachesItsSlotsUntilTheyDisconnect)
{
    std::vector<std::string> names;
    boost::signals2::connection connection =
        TelemetrySignal::instance().connect([&names](const std::string& name) { names.push_back(name); });
    TelemetrySignal::instance()("Open Settings");
    connection.disconnect();
    TelemetrySignal::instance()("Close Settings");
    EXPECT_THAT(names, testing::ElementsAre("Open Settings"));
}

} // namespace VX

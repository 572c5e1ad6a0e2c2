#pragma once

#include "tests/support/PrivateRoot.h"

namespace VX::Test
{

/// Until the end of the scope the instances that this thread starts, or is, meet no others of this user: shared memory
/// is their own where the system grants that. To be created before other threads are started. Tests that use it hold
/// the resource lock "instances" where the system does not.
class InstanceChannel
{
private:
    static constexpr std::size_t size = 16U << 20U;

    bool private_ = enterPrivateRoot("none", QX_TEST_OUTPUT_DIR "/private-root");
    MountScope memory_ = MountScope::makeSmall("/dev/shm", size);
};

} // namespace VX::Test

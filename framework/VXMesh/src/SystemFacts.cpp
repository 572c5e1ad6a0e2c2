#include <VXMesh/SystemFacts.h>
#include <VXMesh/ThreadAnnotations.h>

namespace VX
{

namespace
{

struct Overrides
{
    Mutex mutex;
    SystemFacts facts VX_GUARDED_BY(mutex);
};

Overrides& overrides()
{
    static Overrides instance;
    return instance;
}

} // namespace

void overrideSystemFacts(const SystemFacts& facts)
{
    Overrides& instance = overrides();
    const MutexLock lock(instance.mutex);
    instance.facts = facts;
}

SystemFacts overriddenSystemFacts()
{
    Overrides& instance = overrides();
    const MutexLock lock(instance.mutex);
    return instance.facts;
}

} // namespace VX

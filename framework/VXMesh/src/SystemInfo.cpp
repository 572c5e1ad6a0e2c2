#include "Machine.h"

#include <VXMesh/SystemFacts.h>
#include <VXMesh/SystemInfo.h>
#include <VXMesh/ThreadAnnotations.h>

#include <thread>
#include <utility>

namespace VX
{

namespace
{

struct Contributor
{
    Mutex mutex;
    std::function<void(Json::Value&)> function VX_GUARDED_BY(mutex);
};

Contributor& contributor()
{
    static Contributor instance;
    return instance;
}

Json::Value ownSystemInfo()
{
    Json::Value info(Json::objectValue);
    info["OS Version"] = GetDetailedOSName();
    info["CPU Info"]["CPU"] = GetCpuId();
    info["CPU Info"]["Concurrent threads"] = std::thread::hardware_concurrency();
    info["Memory Info"]["Physical memory total MB"] = std::to_string(Machine::memoryBytes() >> 20U);
    return info;
}

} // namespace

std::string getOSNoSpaces()
{
    const auto facts = overriddenSystemFacts();
    return facts.osNoSpaces ? *facts.osNoSpaces : Machine::osNoSpaces();
}

std::string GetDetailedOSName()
{
    const auto facts = overriddenSystemFacts();
    return facts.detailedOsName ? *facts.detailedOsName : Machine::detailedOsName();
}

std::string GetCpuId()
{
    const auto facts = overriddenSystemFacts();
    return facts.cpuId ? *facts.cpuId : Machine::cpuName();
}

Json::Value GetSystemInfoJson()
{
    const auto facts = overriddenSystemFacts();
    Json::Value info = facts.systemInfo ? *facts.systemInfo : ownSystemInfo();
    std::function<void(Json::Value&)> contribute;
    {
        Contributor& registered = contributor();
        const MutexLock lock(registered.mutex);
        contribute = registered.function;
    }
    if (contribute)
        contribute(info);
    return info;
}

void setSystemInfoContributor(std::function<void(Json::Value&)> function)
{
    Contributor& registered = contributor();
    const MutexLock lock(registered.mutex);
    registered.function.swap(function);
}

} // namespace VX

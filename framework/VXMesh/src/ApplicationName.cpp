#include "ApplicationName.h"

#include <VXMesh/ThreadAnnotations.h>

#include <utility>

namespace VX
{

namespace
{

struct Name
{
    Mutex mutex;
    std::string text VX_GUARDED_BY(mutex) = "Quorvix";
};

Name& name()
{
    static Name instance;
    return instance;
}

} // namespace

std::string applicationName()
{
    Name& instance = name();
    const MutexLock lock(instance.mutex);
    return instance.text;
}

void setApplicationName(std::string text)
{
    Name& instance = name();
    const MutexLock lock(instance.mutex);
    instance.text = std::move(text);
}

} // namespace VX

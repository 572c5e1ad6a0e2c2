#include "ExtendedLibraries.h"

#include <VXMesh/StringConvert.h>
#include <VXMesh/SystemPath.h>

#include <spdlog/spdlog.h>

#include <dlfcn.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace VX
{

namespace
{

std::vector<std::filesystem::path> libraryFiles()
{
    std::vector<std::filesystem::path> files;
    const auto executable = SystemPath::getExecutablePath();
    if (!executable)
        return files;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(executable->parent_path() / "extensions", error))
    {
        if (entry.path().extension() == ".so")
            files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

/// Calls the function `name` of a library. @return false where it has none
bool call(void* handle, const char* name)
{
    void* const symbol = dlsym(handle, name);
    if (!symbol)
        return false;
    reinterpret_cast<void (*)()>(symbol)();
    return true;
}

} // namespace

ExtendedLibraries& ExtendedLibraries::instance()
{
    static ExtendedLibraries libraries;
    return libraries;
}

void ExtendedLibraries::load()
{
    for (const std::filesystem::path& file : libraryFiles())
    {
        void* const handle = dlopen(utf8string(file).c_str(), RTLD_NOW | RTLD_LOCAL);
        if (!handle)
        {
            spdlog::warn("An extension cannot be loaded.");
            spdlog::debug("Extension \"{}\": {}", utf8string(file), dlerror()); // NOLINT(concurrency-mt-unsafe)
        }
        else if (!call(handle, "vxExtensionEntry"))
        {
            spdlog::warn("An extension has no entry function vxExtensionEntry.");
            dlclose(handle);
        }
        else
        {
            handles_.push_back(handle);
        }
    }
}

void ExtendedLibraries::unload()
{
    for (; !handles_.empty(); handles_.pop_back())
    {
        call(handles_.back(), "vxExtensionExit");
        dlclose(handles_.back());
    }
}

} // namespace VX

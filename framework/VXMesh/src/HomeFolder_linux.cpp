#include "HomeFolder.h"

#include <VXMesh/Logger.h>
#include <VXMesh/ThreadAnnotations.h>

#include <spdlog/logger.h>

#include <unistd.h>

#include <cstdlib>

namespace VX
{

namespace
{

// Stands in for the home folder of a user who has none; removed at the end of the process that made it.
class TemporaryHome
{
public:
    static TemporaryHome& instance()
    {
        static TemporaryHome home;
        return home;
    }

    ~TemporaryHome()
    {
        std::error_code ignored;
        // A child of fork() ends with a copy of this object.
        if (!path_.empty() && ::getpid() == owner_)
            std::filesystem::remove_all(path_, ignored);
    }

    std::filesystem::path path()
    {
        bool isNew = false;
        std::filesystem::path result;
        {
            const MutexLock lock(mutex_);
            isNew = path_.empty();
            if (isNew)
                create_();
            result = path_;
        }
        if (isNew)
            Logger::instance().getSpdLogger()->warn(
                "No home folder is known: settings and data are kept in a temporary folder and lost at the end");
        return result;
    }

private:
    void create_() VX_REQUIRES(mutex_)
    {
        std::error_code ignored;
        std::string name = (std::filesystem::temp_directory_path(ignored) / "quorvix-XXXXXX").string();
        // Where that fails the name stays that of a missing folder, and what is written into it fails with its reason.
        static_cast<void>(::mkdtemp(name.data()));
        path_ = name;
        owner_ = ::getpid();
    }

    Mutex mutex_;
    std::filesystem::path path_ VX_GUARDED_BY(mutex_);
    pid_t owner_ VX_GUARDED_BY(mutex_) = 0;
};

} // namespace

std::filesystem::path homeFolder(std::initializer_list<HomeCandidate> candidates)
{
    std::error_code error;
    for (const HomeCandidate candidate : candidates)
        if (auto path = candidate(); path.is_absolute() && std::filesystem::is_directory(path, error))
            return path;
    return TemporaryHome::instance().path();
}

} // namespace VX

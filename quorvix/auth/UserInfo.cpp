#include <quorvix/auth/UserInfo.h>
#include <quorvix/setup/QuorvixWindowTitle.h>
#include <quorvix/telemetry/SessionLogs.h>

#include <VXMesh/ThreadAnnotations.h>
#include <VXViewer/Viewer.h>

#include <memory>
#include <set>
#include <utility>

namespace VX
{

namespace
{

/// A text that changes while references to it are handed out: every value there ever was is kept. A program sees few.
/// Not even a token that is no longer valid may be overwritten: a reader has its reference and copies it later, without
/// the lock.
class KeptText
{
public:
    void set(std::string text) { current_ = &*texts_.insert(std::move(text)).first; }

    [[nodiscard]] const std::string& get() const { return *current_; }

private:
    std::set<std::string> texts_ = {std::string()};
    const std::string* current_ = &*texts_.begin();
};

struct UserRecord
{
    Mutex mutex;
    KeptText email VX_GUARDED_BY(mutex);
    KeptText accessToken VX_GUARDED_BY(mutex);
};

UserRecord& userRecord()
{
    // Never destroyed: request threads may build a request during the exit.
    static auto* const record = new UserRecord;
    return *record;
}

void beginTelemetry(const std::string& email)
{
    SessionLogs::followSetting();
    SessionLogs::requestSessionId(email);
    SessionLogs::logAction("Sign In", false);
}

void endTelemetry()
{
    SessionLogs::logAction("Sign Out", true);
    SessionLogs::flushIfNeeded(true);
    SessionLogs::clearSessionId();
}

} // namespace

const std::string& UserInfo::getEmail()
{
    UserRecord& user = userRecord();
    const MutexLock lock(user.mutex);
    return user.email.get();
}

void UserInfo::setEmail(std::string email)
{
    if (email.empty())
        endTelemetry();
    else
        beginTelemetry(email);
    if (const auto title = std::dynamic_pointer_cast<QuorvixWindowTitle>(getViewerInstance().windowTitle()))
        title->setEmail(email);
    UserRecord& user = userRecord();
    const MutexLock lock(user.mutex);
    user.email.set(std::move(email));
}

const std::string& UserInfo::getAccessToken()
{
    UserRecord& user = userRecord();
    const MutexLock lock(user.mutex);
    return user.accessToken.get();
}

void UserInfo::setAccessToken(std::string token)
{
    UserRecord& user = userRecord();
    const MutexLock lock(user.mutex);
    user.accessToken.set(std::move(token));
}

bool UserInfo::isUserSet()
{
    UserRecord& user = userRecord();
    const MutexLock lock(user.mutex);
    return !user.email.get().empty() && !user.accessToken.get().empty();
}

} // namespace VX

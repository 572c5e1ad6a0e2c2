#include <quorvix/auth/UserInfo.h>

#include <VXMesh/ThreadAnnotations.h>

#include <set>
#include <utility>

namespace VX
{

namespace
{

struct UserRecord
{
    Mutex mutex;
    /// Every token that there ever was: references to them are handed out. A program sees few.
    std::set<std::string> accessTokens VX_GUARDED_BY(mutex) = {std::string()};
    const std::string* accessToken VX_GUARDED_BY(mutex) = &*accessTokens.begin();
};

UserRecord& userRecord()
{
    // Never destroyed: request threads may build a request during the exit.
    static auto* const record = new UserRecord;
    return *record;
}

} // namespace

const std::string& UserInfo::getAccessToken()
{
    UserRecord& user = userRecord();
    const MutexLock lock(user.mutex);
    return *user.accessToken;
}

void UserInfo::setAccessToken(std::string token)
{
    UserRecord& user = userRecord();
    const MutexLock lock(user.mutex);
    user.accessToken = &*user.accessTokens.insert(std::move(token)).first;
}

} // namespace VX

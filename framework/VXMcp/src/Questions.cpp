#include "Questions.h"

#include "Secrets.h"

#include <utility>

namespace VX::Mcp
{

std::string Questions::add(std::string sessionId, Answer answer)
{
    // Not to be guessed: clients without a session have nothing else that tells them apart.
    std::string id = randomName();
    const MutexLock lock(mutex_);
    questions_[id] = {.sessionId = std::move(sessionId), .answer = std::move(answer)};
    return id;
}

void Questions::remove(const std::string& id)
{
    // What the answer keeps alive may well ask for the lock when it goes.
    Entry removed;
    const MutexLock lock(mutex_);
    if (const auto found = questions_.find(id); found != questions_.end())
    {
        removed = std::move(found->second);
        questions_.erase(found);
    }
}

void Questions::removeAll()
{
    std::map<std::string, Entry> removed;
    const MutexLock lock(mutex_);
    removed.swap(questions_);
}

void Questions::answer(const std::string& sessionId, const RpcMessage& message)
{
    Answer answer;
    {
        const MutexLock lock(mutex_);
        const auto found = message.id.isString() ? questions_.find(message.id.asString()) : questions_.end();
        if (found == questions_.end() || found->second.sessionId != sessionId)
            return;
        answer = std::move(found->second.answer);
        questions_.erase(found);
    }
    answer(message);
}

} // namespace VX::Mcp

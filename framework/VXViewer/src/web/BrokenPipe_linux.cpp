#include "BrokenPipe.h"

#include <pthread.h>
#include <signal.h>

namespace VX
{

void ignoreBrokenPipes()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

} // namespace VX

#include <tbb/global_control.h>

namespace
{

// The thread sanitizer sees no synchronisation inside a TBB that was built without it, and would take every hand-over
// between its workers for a race. With the calling thread alone there is none; all other threads are watched as ever.
const tbb::global_control callerAlone(tbb::global_control::max_allowed_parallelism, 1);

} // namespace

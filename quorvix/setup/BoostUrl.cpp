// The sources of Boost.URL, of which no binary is needed then. The analyzer has nothing to say that could be heeded.
#if !defined(__clang_analyzer__)
#include <boost/url/src.hpp>
#endif

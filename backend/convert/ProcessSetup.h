#pragma once

namespace VX
{

/// Ends the process with exit code 1 and one sentence on standard error where it would crash: a damaged file can lead
/// the geometry library into memory that is not there, or into a recursion without end.
/// For the main thread of a program of its own, before any other thread starts.
void reportCrashesInOneSentence();

/// Sends what is printed to standard output and to the C++ error stream nowhere, since the geometry library prints
/// there. Standard error itself stays.
void silenceLibraryOutput();

} // namespace VX

#include "ProcessSetup.h"
#include "StepConversion.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>
#include <string_view>

namespace
{

void printTimes(const VX::StageTimes& times)
{
    for (const auto& [stage, duration] : times)
        std::fprintf(stderr, "%-10s %8.1f ms\n", stage.c_str(), duration.count());
}

int convert(const char* input, const char* output, bool withTimes)
{
    VX::StageTimes times;
    const auto done = VX::convertStepFile(input, output, &times);
    if (!done)
    {
        std::fprintf(stderr, "%s\n", done.error().c_str());
        return EXIT_FAILURE;
    }
    if (withTimes)
        printTimes(times);
    return EXIT_SUCCESS;
}

int convertSafely(const char* input, const char* output, bool withTimes)
{
    try
    {
        return convert(input, output, withTimes);
    }
    catch (const std::bad_alloc&)
    {
        std::fputs("The STEP file needs more memory for its conversion than there is.\n", stderr);
    }
    catch (const std::exception&)
    {
        std::fputs("The STEP file is damaged: it cannot be converted.\n", stderr);
    }
    return EXIT_FAILURE;
}

} // namespace

int main(int argc, char** argv)
{
    const bool withTimes = argc == 4 && std::string_view(argv[3]) == "--timings";
    if (argc != 3 && !withTimes)
    {
        std::fputs("Usage: quorvix-convert IN OUT [--timings]\n", stderr);
        return EXIT_FAILURE;
    }
    VX::reportCrashesInOneSentence();
    VX::silenceLibraryOutput();
    const int code = convertSafely(argv[1], argv[2], withTimes);
    // The system takes the memory back faster than the destructors of the library's many small objects.
    std::quick_exit(code);
}

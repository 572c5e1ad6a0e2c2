// Behaves like the converter, but does what its input file says, a command and perhaps an argument:
//   succeed TEXT     writes "converted TEXT" to the output file
//   fail SENTENCE    fails with the sentence, after some noise
//   silent           fails without a sentence
//   exit CODE        ends with that code
//   nothing          ends well without writing the output
//   crash            ends by a signal
//   crash-once TEXT  the same at the first run, then as succeed
//   wait FILE        waits until the file is there, then as succeed
//   allocate         takes memory until there is none
//   spin             uses the processor for ever
//   environment      writes its standard input, output, descriptors and limits to the output file
// Each run adds its input to the file named by the environment variable FAKE_CONVERTER_LOG, as one line.

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace
{

std::string readFile(const char* path)
{
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// @return whether the same line was there before
bool log(const std::string& line)
{
    const char* path = std::getenv("FAKE_CONVERTER_LOG"); // NOLINT(concurrency-mt-unsafe): there is one thread
    if (!path)
        return false;
    const bool again = readFile(path).find(line + "\n") != std::string::npos;
    // One write at the end of the file, so that several processes do not mix.
    const std::string text = line + "\n";
    const int file = open(path, O_WRONLY | O_CREAT | O_APPEND, 0600);
    if (write(file, text.data(), text.size()) < 0)
        std::abort();
    close(file);
    return again;
}

int succeed(const char* output, std::string_view text)
{
    std::ofstream(output) << "converted " << text;
    return 0;
}

int allocate()
{
    std::vector<std::vector<char>> blocks;
    for (;;)
        blocks.emplace_back(std::size_t{16} << 20U, 'x');
}

void waitFor(const std::string& file)
{
    while (!std::filesystem::exists(file))
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
}

rlim_t limit(__rlimit_resource resource)
{
    rlimit value{};
    getrlimit(resource, &value);
    return value.rlim_cur;
}

int describe(const char* output)
{
    std::size_t descriptors = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
        ++descriptors;
    sigset_t blocked;
    pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
    std::ofstream stream(output);
    stream << "input " << std::filesystem::read_symlink("/proc/self/fd/0").string() << "\noutput "
           << std::filesystem::read_symlink("/proc/self/fd/1").string() << "\ndescriptors " << descriptors
           << "\nmemory " << limit(RLIMIT_DATA) << "\ncore " << limit(RLIMIT_CORE) << "\ncpu " << limit(RLIMIT_CPU)
           << "\nterm blocked " << sigismember(&blocked, SIGTERM) << "\nown group " << (getpgrp() == getpid()) << "\n";
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3)
        return 2;
    const std::string input = readFile(argv[1]);
    const std::size_t blank = input.find(' ');
    const std::string command = input.substr(0, blank);
    const std::string argument = blank == std::string::npos ? std::string() : input.substr(blank + 1);
    const bool again = log(input);

    if (command == "succeed")
        return succeed(argv[2], argument);
    if (command == "fail")
    {
        std::fprintf(stderr, "reading\n*** noise ***\n%s\n", argument.c_str());
        return 1;
    }
    if (command == "silent")
        return 1;
    if (command == "exit")
        return std::atoi(argument.c_str());
    if (command == "nothing")
        return 0;
    if (command == "crash" || (command == "crash-once" && !again))
        std::raise(SIGSEGV);
    if (command == "crash-once")
        return succeed(argv[2], argument);
    if (command == "wait")
    {
        waitFor(argument);
        return succeed(argv[2], argument);
    }
    if (command == "allocate")
        return allocate();
    if (command == "spin")
        for (volatile bool forever = true; forever;)
            continue;
    if (command == "environment")
        return describe(argv[2]);
    return 3;
}

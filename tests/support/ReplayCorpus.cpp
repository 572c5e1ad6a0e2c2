// Runs a fuzz target over every file of the folders and files named on the command line, where there is no libFuzzer.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int* argc, char*** argv);

namespace
{

std::vector<std::filesystem::path> inputsBelow(const std::filesystem::path& path)
{
    if (!std::filesystem::is_directory(path))
        return {path};
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path))
        if (entry.is_regular_file())
            files.push_back(entry.path());
    return files;
}

} // namespace

int main(int argc, char** argv)
{
    if (LLVMFuzzerInitialize)
        LLVMFuzzerInitialize(&argc, &argv);
    std::size_t count = 0;
    for (int i = 1; i < argc; ++i)
        for (const auto& path : inputsBelow(argv[i]))
        {
            std::ifstream stream(path, std::ios::binary);
            // A copy of exactly that size, so that the address sanitizer sees a read beyond its end.
            const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(stream), {}};
            LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
            ++count;
        }
    std::printf("%zu inputs\n", count);
    return count == 0 ? 1 : 0;
}

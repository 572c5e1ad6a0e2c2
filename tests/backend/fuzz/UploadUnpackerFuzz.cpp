#include <backend/UploadUnpacker.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace
{

constexpr std::uint64_t maxBytes = 1U << 20U;

/// One for the whole run, on the fastest file system there is.
class Folder
{
public:
    Folder()
    {
        const std::filesystem::path memory = "/dev/shm";
        std::error_code error;
        const bool hasMemory = std::filesystem::is_directory(memory, error);
        path_ = (hasMemory ? memory : std::filesystem::temp_directory_path()) /
                ("UploadUnpackerFuzz-" + std::to_string(getpid()));
        std::filesystem::create_directory(path_);
    }

    ~Folder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

const std::filesystem::path& folder()
{
    static const Folder own;
    return own.path();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto archive = folder() / "upload.zip";
    const auto target = folder() / "target";
    std::ofstream(archive, std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    const auto input = VX::unpackUpload(archive, target, maxBytes, {});
    if (input && (*input != target / "input" || std::filesystem::file_size(*input) > maxBytes))
        std::abort();
    if (!input && input.error().empty())
        std::abort();
    std::filesystem::remove_all(target);
    // Nothing else may have been written.
    for (const auto& entry : std::filesystem::directory_iterator(folder()))
        if (entry.path() != archive)
            std::abort();
    return 0;
}

#include "TempDir.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <system_error>

namespace VX::Test
{

TempDir::TempDir()
{
    std::string name = (std::filesystem::temp_directory_path() / "quorvix-test-XXXXXX").string();
    if (!::mkdtemp(name.data()))
        throw std::system_error(errno, std::generic_category(), name);
    path_ = name;
}

TempDir::~TempDir()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::filesystem::path TempDir::write(const std::filesystem::path& name, std::string_view content) const
{
    const std::filesystem::path file = path_ / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
    stream.close();
    if (!stream)
        throw std::system_error(std::make_error_code(std::errc::io_error), file.string());
    return file;
}

unsigned modeOf(const std::filesystem::path& path)
{
    return static_cast<unsigned>(std::filesystem::symlink_status(path).permissions());
}

std::string readFile(const std::filesystem::path& path)
{
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace VX::Test

#pragma once

#include "tools/BumpyTorus.h"

#include <VXMesh/ObjectFile.h>
#include <VXMesh/ObjectMesh.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <random>
#include <string>

namespace VX
{

/// A million triangles over half a million points.
inline const std::shared_ptr<const Mesh>& largeMesh()
{
    static const std::shared_ptr<const Mesh> mesh = makeBumpyTorus(1'000'000);
    return mesh;
}

/// The large mesh in a file of some format, which goes with this object.
class LargeMeshFile
{
public:
    /// @param extension  names the format: ".stl"
    explicit LargeMeshFile(const std::string& extension)
        : path_(std::filesystem::temp_directory_path() /
                ("quorvix-bench-" + std::to_string(std::random_device()()) + extension))
    {
    }

    ~LargeMeshFile()
    {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }

    LargeMeshFile(const LargeMeshFile&) = delete;
    LargeMeshFile& operator=(const LargeMeshFile&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

    [[nodiscard]] tl::expected<void, std::string> save() const
    {
        return saveObjectToFile(ObjectMesh(largeMesh()), path_, {});
    }

private:
    std::filesystem::path path_;
};

/// Speed in bytes of the file or of the memory that was worked through, so that it stands beside a copy of memory.
inline void countBytes(benchmark::State& state, std::uintmax_t size)
{
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(size));
    state.counters["MB"] = static_cast<double>(size) / 1e6;
}

} // namespace VX

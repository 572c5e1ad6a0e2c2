#pragma once

#include <VXMesh/Export.h>

#include <chrono>
#include <string>

namespace VX
{

/// Measures how long a scope takes and writes it to the log, level debug: `Timer "VX::Viewer::init": 12.345 ms`.
/// One thread at a time.
class VXMESH_API Timer
{
public:
    /// Starts. @param name  the qualified name of the function that is measured
    explicit Timer(std::string name);

    /// Finishes.
    ~Timer();

    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

    /// Since the start.
    [[nodiscard]] std::chrono::nanoseconds elapsed() const;

    /// Writes the time now instead of at the end of the scope; the first call counts.
    void finish();

private:
    std::string name_;
    std::chrono::steady_clock::time_point start_;
    bool finished_ = false;
};

} // namespace VX

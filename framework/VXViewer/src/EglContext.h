#pragma once

#include <tl/expected.hpp>

#include <memory>
#include <string>

namespace VX
{

/// An OpenGL 3.3 core context without a surface.
/// @threads the one that created it
class EglContext
{
public:
    /// Creates the context and makes it current.
    /// @return the context, or what EGL lacks here
    [[nodiscard]] static tl::expected<std::unique_ptr<EglContext>, std::string> create();
    ~EglContext();

    EglContext(const EglContext&) = delete;
    EglContext& operator=(const EglContext&) = delete;

    void makeCurrent();

private:
    EglContext(void* display, void* context);

    void* display_;
    void* context_;
};

} // namespace VX

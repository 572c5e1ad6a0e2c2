#pragma once

#include <epoxy/gl.h>

#include <utility>

namespace VX::Gl
{

/// Owns one OpenGL object; destroyed with the context current.
template <class Kind>
class Owned
{
public:
    /// Holds nothing.
    Owned() = default;

    [[nodiscard]] static Owned create() { return Owned(Kind::create()); }

    ~Owned() { reset(); }

    Owned(Owned&& other) noexcept
        : name_(std::exchange(other.name_, 0))
    {
    }

    Owned& operator=(Owned&& other) noexcept
    {
        if (this != &other)
        {
            reset();
            name_ = std::exchange(other.name_, 0);
        }
        return *this;
    }

    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;

    void reset()
    {
        if (name_ != 0)
            Kind::destroy(std::exchange(name_, 0));
    }

    [[nodiscard]] GLuint name() const { return name_; }

    explicit operator bool() const { return name_ != 0; }

private:
    explicit Owned(GLuint name)
        : name_(name)
    {
    }

    GLuint name_ = 0;
};

struct BufferKind
{
    static GLuint create()
    {
        GLuint name = 0;
        glGenBuffers(1, &name);
        return name;
    }

    static void destroy(GLuint name) { glDeleteBuffers(1, &name); }
};

struct VertexArrayKind
{
    static GLuint create()
    {
        GLuint name = 0;
        glGenVertexArrays(1, &name);
        return name;
    }

    static void destroy(GLuint name) { glDeleteVertexArrays(1, &name); }
};

struct TextureKind
{
    static GLuint create()
    {
        GLuint name = 0;
        glGenTextures(1, &name);
        return name;
    }

    static void destroy(GLuint name) { glDeleteTextures(1, &name); }
};

struct RenderbufferKind
{
    static GLuint create()
    {
        GLuint name = 0;
        glGenRenderbuffers(1, &name);
        return name;
    }

    static void destroy(GLuint name) { glDeleteRenderbuffers(1, &name); }
};

struct FramebufferKind
{
    static GLuint create()
    {
        GLuint name = 0;
        glGenFramebuffers(1, &name);
        return name;
    }

    static void destroy(GLuint name) { glDeleteFramebuffers(1, &name); }
};

struct ProgramKind
{
    static GLuint create() { return glCreateProgram(); }

    static void destroy(GLuint name) { glDeleteProgram(name); }
};

using Buffer = Owned<BufferKind>;
using VertexArray = Owned<VertexArrayKind>;
using Texture = Owned<TextureKind>;
using Renderbuffer = Owned<RenderbufferKind>;
using Framebuffer = Owned<FramebufferKind>;
using Program = Owned<ProgramKind>;

} // namespace VX::Gl

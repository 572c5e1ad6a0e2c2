#pragma once

#include "render/GlObjects.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

#include <cstddef>
#include <vector>

namespace VX
{

/// A new buffer of `count` elements that is filled in place, without a copy in between: `fill(elements)` writes all of
/// them and may do so on several threads. An empty one is made where the graphics memory does not suffice.
template <class T, class Fill>
Gl::Buffer makeBuffer(GLenum target, std::size_t count, const Fill& fill)
{
    Gl::Buffer buffer = Gl::Buffer::create();
    glBindBuffer(target, buffer.name());
    if (count == 0)
        return buffer;
    const auto bytes = static_cast<GLsizeiptr>(count * sizeof(T));
    glBufferData(target, bytes, nullptr, GL_STATIC_DRAW);
    void* mapped = glMapBufferRange(target, 0, bytes, GL_MAP_WRITE_BIT | GL_MAP_INVALIDATE_BUFFER_BIT);
    if (mapped == nullptr)
    {
        glBufferData(target, 0, nullptr, GL_STATIC_DRAW);
        return buffer;
    }
    fill(static_cast<T*>(mapped));
    glUnmapBuffer(target);
    return buffer;
}

/// A new buffer with a copy of `elements`.
template <class T>
Gl::Buffer makeBuffer(GLenum target, const std::vector<T>& elements)
{
    Gl::Buffer buffer = Gl::Buffer::create();
    glBindBuffer(target, buffer.name());
    glBufferData(target, static_cast<GLsizeiptr>(elements.size() * sizeof(T)), elements.data(), GL_STATIC_DRAW);
    return buffer;
}

/// A texture through which shaders read `buffer`.
inline Gl::Texture makeBufferTexture(const Gl::Buffer& buffer, GLenum format)
{
    Gl::Texture texture = Gl::Texture::create();
    glBindTexture(GL_TEXTURE_BUFFER, texture.name());
    glTexBuffer(GL_TEXTURE_BUFFER, format, buffer.name());
    return texture;
}

/// Calls `body(i)` for 0 to `count` on several threads.
template <class Body>
void forEachIndex(std::size_t count, const Body& body)
{
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, count, 1 << 15),
                      [&](const tbb::blocked_range<std::size_t>& range)
                      {
                          for (std::size_t i = range.begin(); i != range.end(); ++i)
                              body(i);
                      });
}

} // namespace VX

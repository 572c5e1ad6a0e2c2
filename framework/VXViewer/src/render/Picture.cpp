#include "render/Picture.h"

#include <algorithm>

namespace VX
{

void Picture::Target::allocate(PixelSize size, int samples)
{
    if (!framebuffer)
    {
        framebuffer = Gl::Framebuffer::create();
        color = Gl::Renderbuffer::create();
        depth = Gl::Renderbuffer::create();
    }
    const GLsizei count = samples > 1 ? samples : 0;
    glBindRenderbuffer(GL_RENDERBUFFER, color.name());
    glRenderbufferStorageMultisample(GL_RENDERBUFFER, count, GL_RGBA8, size.width, size.height);
    glBindRenderbuffer(GL_RENDERBUFFER, depth.name());
    glRenderbufferStorageMultisample(GL_RENDERBUFFER, count, GL_DEPTH_COMPONENT24, size.width, size.height);
    glBindRenderbuffer(GL_RENDERBUFFER, 0);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer.name());
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, color.name());
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, depth.name());
}

void Picture::begin(PixelSize size, int samples)
{
    if (samples > 1)
    {
        GLint most = 1;
        glGetIntegerv(GL_MAX_SAMPLES, &most);
        samples = std::min(samples, most);
    }
    if (size != size_ || samples != samples_)
    {
        size_ = size;
        samples_ = samples;
        drawn_.allocate(size, samples);
        if (samples > 1)
            resolved_.allocate(size, 1);
    }
    glBindFramebuffer(GL_FRAMEBUFFER, drawn_.framebuffer.name());
    glViewport(0, 0, size.width, size.height);
}

void Picture::end()
{
    if (samples_ <= 1)
        return;
    glBindFramebuffer(GL_READ_FRAMEBUFFER, drawn_.framebuffer.name());
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, resolved_.framebuffer.name());
    glBlitFramebuffer(0, 0, size_.width, size_.height, 0, 0, size_.width, size_.height,
                      GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT, GL_NEAREST);
}

void Picture::blit(unsigned framebuffer, int x, int y) const
{
    glBindFramebuffer(GL_READ_FRAMEBUFFER, readable_().framebuffer.name());
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, framebuffer);
    glBlitFramebuffer(0, 0, size_.width, size_.height, x, y, x + size_.width, y + size_.height, GL_COLOR_BUFFER_BIT,
                      GL_NEAREST);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    glViewport(x, y, size_.width, size_.height);
}

Image Picture::read() const
{
    Image image;
    if (size_.isEmpty())
        return image;
    image.size = size_;
    const auto width = static_cast<std::size_t>(size_.width);
    image.pixels.resize(width * static_cast<std::size_t>(size_.height));
    glBindFramebuffer(GL_READ_FRAMEBUFFER, readable_().framebuffer.name());
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(0, 0, size_.width, size_.height, GL_RGBA, GL_UNSIGNED_BYTE, image.pixels.data());
    // OpenGL's first row is the lowest one.
    auto lower = image.pixels.end();
    for (auto upper = image.pixels.begin(); upper < (lower -= static_cast<std::ptrdiff_t>(width));
         upper += static_cast<std::ptrdiff_t>(width))
        std::swap_ranges(upper, upper + static_cast<std::ptrdiff_t>(width), lower);
    return image;
}

Eigen::ArrayXXf Picture::readDepth(int x, int y, PixelSize size) const
{
    Eigen::ArrayXXf depths(size.width, size.height);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, readable_().framebuffer.name());
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(x, y, size.width, size.height, GL_DEPTH_COMPONENT, GL_FLOAT, depths.data());
    return depths;
}

} // namespace VX

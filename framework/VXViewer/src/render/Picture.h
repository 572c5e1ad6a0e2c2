#pragma once

#include "render/GlObjects.h"

#include <VXViewer/Image.h>

#include <Eigen/Core>

namespace VX
{

/// A framebuffer with colour and depth to draw into, multisampled or not, and to read from.
class Picture
{
public:
    /// Drawing goes to it after this. @param samples  1 or more, clamped to what the graphics offer
    void begin(PixelSize size, int samples);

    /// Ends drawing: averages the samples.
    void end();

    [[nodiscard]] PixelSize size() const { return size_; }

    /// Copies the colours into `framebuffer`, with the lower left corner at `x`, `y`; leaves it bound.
    void blit(unsigned framebuffer, int x, int y) const;

    [[nodiscard]] Image read() const;

    /// The depths, 0 to 1, of `size` pixels from `x`, `y` (lower left corner), row by row upwards.
    [[nodiscard]] Eigen::ArrayXXf readDepth(int x, int y, PixelSize size) const;

private:
    struct Target
    {
        Gl::Framebuffer framebuffer;
        Gl::Renderbuffer color;
        Gl::Renderbuffer depth;

        void allocate(PixelSize size, int samples);
    };

    [[nodiscard]] const Target& readable_() const { return samples_ > 1 ? resolved_ : drawn_; }

    PixelSize size_;
    int samples_ = 0;
    Target drawn_;
    Target resolved_;
};

} // namespace VX

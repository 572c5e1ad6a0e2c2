#pragma once

#include <VXViewer/ViewerPlugin.h>

namespace VX
{

struct PixelRect;

/// A window over a corner of the scene that lets the mouse through, shown and hidden with a key.
class Overlay : public ViewerPlugin
{
public:
    void init(Viewer* viewer) override;
    void shutdown() override;
    void draw() override;

protected:
    enum class Corner
    {
        LowerLeft,
        LowerRight
    };

    /// @param name  of the window and of the shortcut, in English
    /// @param key  GLFW's number
    Overlay(const char* name, int key, Corner corner);

    virtual void drawContent_(const Viewer& viewer) = 0;

private:
    void placeWindow_(const PixelRect& area) const;

    const char* name_;
    int key_;
    Corner corner_;
    Viewer* viewer_ = nullptr;
    bool shown_ = false;
};

/// Frames drawn, how long the last one took, and triangles in it; F3.
class FrameStatisticsOverlay final : public Overlay
{
public:
    FrameStatisticsOverlay();

private:
    void drawContent_(const Viewer& viewer) override;
};

/// What the mouse does in the scene; F1.
class MouseControlsOverlay final : public Overlay
{
public:
    MouseControlsOverlay();

private:
    void drawContent_(const Viewer& viewer) override;
};

} // namespace VX

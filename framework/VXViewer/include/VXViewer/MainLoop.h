#pragma once

#include <VXViewer/Export.h>
#include <VXViewer/Image.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace VX
{

class InputRouter;
class Viewer;

/// The loop of the viewer. It sleeps until there is input, a command, a wake-up, or the time of the next frame of
/// something that moves, and draws nothing while nothing changes.
/// @threads the UI thread
class VXVIEWER_API MainLoop
{
public:
    explicit MainLoop(Viewer& viewer);
    ~MainLoop();

    MainLoop(const MainLoop&) = delete;
    MainLoop& operator=(const MainLoop&) = delete;

    /// Runs until the window is asked to close. The window is shown with its first frame.
    void run();

    /// One turn: waits, runs commands, hands on the input, draws where that is due.
    /// @param mayWait  false: does only what is due now
    /// @return true when anything was done
    bool turn(bool mayWait);

    /// Turns without waiting until there is nothing to do.
    /// @return false when there still was after `maxTurns`
    bool runUntilIdle(int maxTurns = 1000);

    /// Draws at least `count` more frames. @param showLastOnly  only the last of them reaches the window
    void requestFrames(int count, bool showLastOnly = false);

    /// Draws a frame in `seconds`, unless one comes before: it can ask again.
    void requestFrameAfter(double seconds);

    /// Frames drawn since the beginning.
    [[nodiscard]] std::uint64_t framesDrawn() const { return framesDrawn_; }

    /// How long the last frame took, in seconds.
    [[nodiscard]] double lastFrameSeconds() const { return lastFrameSeconds_; }

    /// Calls `callback` every `seconds`, without drawing a frame for it, as long as what is returned lives.
    [[nodiscard]] std::shared_ptr<void> callEvery(double seconds, std::function<void()> callback);

    /// Called once, when everything that was to be opened is open (or failed) and drawn.
    void whenLoaded(std::function<void()> callback);

    /// Finds out which part of the window the scene takes up, before there is a first frame to be seen.
    void layOut();

    /// Draws a frame now, due or not, without showing it, and reads it: the window as one would see it.
    [[nodiscard]] Image captureWindow();

private:
    struct Timer;

    [[nodiscard]] std::optional<double> waitTime_() const;
    [[nodiscard]] bool isFrameDue_() const;
    void drawFrame_(bool show);
    void start_();
    void answerCloseRequest_();
    bool runTimers_();
    void runLoadedCallback_();

    Viewer& viewer_;
    std::unique_ptr<InputRouter> router_;
    std::function<void()> loadedCallback_;
    std::vector<std::weak_ptr<Timer>> timers_;
    int framesToDraw_ = 1;
    bool showLastOnly_ = false;
    bool started_ = false;
    std::optional<double> nextFrameTime_;
    std::uint64_t framesDrawn_ = 0;
    double lastFrameSeconds_ = 0;
};

} // namespace VX

#pragma once

#include <VXViewer/Clock.h>
#include <VXViewer/Export.h>
#include <VXViewer/RibbonNotification.h>
#include <VXViewer/Window.h>

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>

namespace VX
{

class Viewer;

/// The notifications: those on the screen, each for its lifetime, and a list of the earlier ones.
/// @threads the UI thread
class VXVIEWER_API RibbonNotifier
{
public:
    /// More at a time send the oldest into the history.
    static constexpr std::size_t maxShown = 5;

    /// The history forgets the oldest beyond these.
    static constexpr std::size_t maxHistory = 200;

    struct Entry
    {
        RibbonNotification notification;
        std::uint64_t id = 0;
        int count = 1;                              ///< how many equal ones it stands for
        std::chrono::system_clock::time_point time; ///< of the last of them
        double secondsLeft = 0;
        bool seen = false; ///< was on the screen in the last frame
    };

    /// @param now  in seconds, only moving forward
    explicit RibbonNotifier(Viewer& viewer, std::function<double()> now = monotonicSeconds);

    /// Shows `notification`. One that is equal in all that the user sees counts up the one that is shown and gives it
    /// its whole lifetime again. One without a tag that `shownTags` has goes into the history at once.
    void push(const RibbonNotification& notification);

    /// Draws what is shown into the lower right corner of `area`, the newest at the bottom. No lifetime passes while
    /// the mouse rests on one of them, nor for those that find no room.
    void draw(const PixelRect& area);

    /// Draws the button that opens the history, with a mark while something is in it that was not seen.
    /// @param side  in pixels
    void drawHistoryButton(float side);

    /// Which tags are put on the screen; all at first.
    void setShownTags(unsigned tags) { shownTags_ = tags; }

    [[nodiscard]] unsigned shownTags() const { return shownTags_; }

    /// What is on the screen, the oldest first.
    [[nodiscard]] const std::deque<Entry>& shown() const { return shown_; }

    /// What was, the newest first.
    [[nodiscard]] const std::deque<Entry>& history() const { return history_; }

private:
    void age_();
    void archive_(std::size_t index);
    void drawHistory_(float right, float top, float bottom);
    RibbonNotification drawHistoryList_();

    Viewer& viewer_;
    std::function<double()> now_;
    std::deque<Entry> shown_;
    std::deque<Entry> history_;
    double lastAged_ = 0;
    std::uint64_t lastId_ = 0;
    unsigned shownTags_ = allNotificationTags;
    bool hovered_ = false;
    bool unseen_ = false;
};

} // namespace VX

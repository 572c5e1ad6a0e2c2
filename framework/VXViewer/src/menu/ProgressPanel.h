#pragma once

namespace VX
{

class Viewer;

/// The modal panel of the tasks that the progress bar runs. It appears when one takes longer than a moment.
/// @threads the UI thread
class ProgressPanel
{
public:
    explicit ProgressPanel(Viewer& viewer)
        : viewer_(viewer)
    {
    }

    void draw();

    [[nodiscard]] static const char* windowName() { return "Progress"; }

private:
    Viewer& viewer_;
};

} // namespace VX

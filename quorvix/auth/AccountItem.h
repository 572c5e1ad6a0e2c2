#pragma once

#include <quorvix/Export.h>

namespace VX
{

class AuthWindow;

/// Who is signed in, in the header of the ribbon: the address, cut where it is long, and a pop-up with all of it and
/// the way out. A narrow window shows an icon alone.
/// @threads the UI thread, within a frame
class QUORVIX_API AccountItem
{
public:
    /// @param window  lives longer
    explicit AccountItem(AuthWindow& window)
        : window_(window)
    {
    }

    /// In pixels; 0 while nobody is signed in.
    [[nodiscard]] float width() const;

    /// Draws into the current window from the cursor on, 28 units high.
    void draw();

private:
    void drawPopup_();

    AuthWindow& window_;
};

} // namespace VX

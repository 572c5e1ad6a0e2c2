#pragma once

#include <VXViewer/NotificationType.h>

#include <deque>
#include <string>
#include <vector>

namespace VX
{

/// The messages that the user has to confirm, one window for all of one kind. Their text can be marked and copied.
/// @threads the UI thread
class ModalMessages
{
public:
    void add(const std::string& text, NotificationType type);

    [[nodiscard]] bool isEmpty() const { return groups_.empty(); }

    void draw();

private:
    struct Group
    {
        NotificationType type;
        std::vector<std::string> texts;
    };

    void drawTexts_(const Group& group);
    [[nodiscard]] static bool drawButtons_(const Group& group);

    std::deque<Group> groups_;
    std::string shown_; ///< what the field holds: the texts, broken into lines
};

} // namespace VX

#pragma once

#include <VXViewer/NotificationType.h>

#include <deque>
#include <string>
#include <vector>

namespace VX
{

/// The messages that the user has to confirm, one window for all of one kind.
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

    std::deque<Group> groups_;
};

} // namespace VX

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace VX
{

/// Walks over the "items" of {"items":[…]} one at a time, so that a large batch needs no memory of its own size. It
/// only looks for the ends of the items; members beside "items" are passed over.
/// @threads one at a time
class LogItemsReader
{
public:
    /// @param text  must outlive it
    explicit LogItemsReader(std::string_view text);

    /// @return the text of the next item, of which the caller finds out whether it is JSON; nothing behind the last
    ///         one, and where something is wrong
    [[nodiscard]] std::optional<std::string_view> next();

    /// One sentence about what is wrong; empty where nothing is so far.
    [[nodiscard]] const std::string& error() const { return error_; }

    /// How many bytes of the text are read.
    [[nodiscard]] std::size_t position() const { return position_; }

private:
    [[nodiscard]] bool findItems_();
    [[nodiscard]] bool finish_();

    /// Reads what is next. @return its text, empty where it is not complete
    [[nodiscard]] std::string_view value_();
    [[nodiscard]] std::string_view string_();

    /// Passes over blanks, and over `c` where that is next. @return whether it was
    [[nodiscard]] bool take_(char c);
    bool fail_(const char* sentence);

    const std::string_view text_;
    std::size_t position_ = 0;
    std::string error_;
    bool isBegun_ = false;
    bool isOver_ = false;
};

} // namespace VX

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace VX
{

/// Walks over the words of one text, line by line. A line ends at '\n'; '\r' counts as a blank.
class TextCursor
{
public:
    explicit TextCursor(std::string_view text)
        : position_(text.data())
        , end_(text.data() + text.size())
    {
    }

    [[nodiscard]] bool atEnd() const { return position_ == end_; }

    [[nodiscard]] const char* position() const { return position_; }

    /// Skips blanks and tells whether the line, or a comment that begins with '#', leaves nothing more.
    bool atLineEnd()
    {
        while (position_ != end_ && isBlank(*position_))
            ++position_;
        return position_ == end_ || *position_ == '\n' || *position_ == '#';
    }

    /// To the begin of the next line, or to the end.
    void nextLine();

    /// The next word of the line; empty at its end.
    std::string_view word();

    /// The rest of the line without blanks around it.
    std::string_view restOfLine();

    /// Reads the next word of the line as a number; a word that is none gives NaN.
    /// @return false at the end of the line
    bool number(double& value);

    /// Reads the next word of the line as an integer.
    /// @return false at the end of the line or where the word is none
    bool integer(std::int64_t& value);

    /// Reads an integer right here, with its sign, and stops behind its last digit.
    /// @return false where no digit stands or the value is out of range
    bool digits(std::int64_t& value);

    /// To the end of the word that the cursor is in.
    /// @return true if it was there already
    bool finishWord();

    /// Steps over `character` if it stands right here.
    bool skip(char character)
    {
        if (position_ == end_ || *position_ != character)
            return false;
        ++position_;
        return true;
    }

    static bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f'; }

private:
    void skipWord_();

    const char* position_;
    const char* end_;
};

/// Cuts `text` into pieces of about `pieceSize` bytes that each begin at the begin of a line for which `mayStart`
/// holds.
/// @param mayStart  takes the whole text and the position of the line; empty: any line
std::vector<std::string_view> splitAtLines(std::string_view text, std::size_t pieceSize,
                                           const std::function<bool(std::string_view, std::size_t)>& mayStart = {});

/// True for bytes that look like text: no control characters but white space.
bool looksLikeText(std::string_view bytes);

/// True if `word` is `lower`, which has lower case letters only, in any letter case.
bool equalsIgnoringCase(std::string_view word, std::string_view lower);

} // namespace VX

#include "PrintableText.h"

#include <algorithm>

namespace VX
{

std::string printableText(std::string text)
{
    // The second set of control characters, U+0080 to U+009F, has two bytes.
    for (auto i = text.find('\xC2'); i != std::string::npos; i = text.find('\xC2', i + 1))
        if (i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) >= 0x80 &&
            static_cast<unsigned char>(text[i + 1]) < 0xA0)
            text.replace(i, 2, "?");
    std::ranges::replace_if(text, [](unsigned char c) { return c < ' ' || c == 0x7F; }, '?');
    return text;
}

} // namespace VX

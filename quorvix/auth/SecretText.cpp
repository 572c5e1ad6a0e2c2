#include <quorvix/auth/SecretText.h>

#include <json/writer.h>

#include <string_view>

namespace VX
{

namespace
{

/// Of a character in JSON: two escapes of UTF-16.
constexpr std::size_t longestEscape = 12;

/// The number of bytes of the UTF-8 character that `text` begins with.
std::size_t firstCharacter(std::string_view text)
{
    constexpr unsigned char kind = 0xC0;
    constexpr unsigned char continuation = 0x80;
    std::size_t bytes = 1;
    while (bytes < text.size() && (static_cast<unsigned char>(text[bytes]) & kind) == continuation)
        ++bytes;
    return bytes;
}

/// Appends `secret` as it stands between the quotes of JSON, a character at a time: so short a text needs no memory
/// that it would stay in.
void appendEscaped(std::string& text, std::string_view secret)
{
    while (!secret.empty())
    {
        const std::size_t bytes = firstCharacter(secret);
        const std::string quoted = Json::valueToQuotedString(std::string(secret.substr(0, bytes)).c_str());
        text.append(quoted, 1, quoted.size() - 2);
        secret.remove_prefix(bytes);
    }
}

} // namespace

std::string textWithSecret(const Json::Value& body, const std::string& secret)
{
    std::string styled = body.toStyledString();
    const std::string quotedMark = Json::valueToQuotedString(secretMark);
    const std::string_view mark = std::string_view(quotedMark).substr(1, quotedMark.size() - 2);
    const std::size_t place = styled.find(mark);
    if (place == std::string::npos)
        return styled;
    std::string text;
    // All that it can need: growing, it would leave a copy behind.
    text.reserve(styled.size() + longestEscape * secret.size());
    text.append(styled, 0, place);
    appendEscaped(text, secret);
    text.append(styled, place + mark.size());
    return text;
}

} // namespace VX

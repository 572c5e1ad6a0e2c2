#pragma once

#include <VXMcp/Export.h>

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace VX::Mcp
{

/// A name of 32 random letters and digits that nobody can guess.
/// @threads any
[[nodiscard]] std::string randomName();

/// Compares in a time that does not tell where the texts differ.
/// @threads any
[[nodiscard]] bool isSameSecret(std::string_view a, std::string_view b);

[[nodiscard]] std::string toBase64(std::string_view bytes);

/// @return empty for what is no base64
[[nodiscard]] std::optional<std::string> fromBase64(std::string_view text);

/// Puts a seal on texts that clients keep for the server, so that they come back as they were (HMAC-SHA-512/256, RFC
/// 2104). What another process has sealed is not accepted.
/// @threads any
class VXMCP_API StateSeal
{
public:
    StateSeal();

    /// @param purpose  must be the same for `open`
    [[nodiscard]] std::string close(std::string_view purpose, std::string_view text) const;

    /// @return the text; empty where the seal is broken
    [[nodiscard]] std::optional<std::string> open(std::string_view purpose, std::string_view sealed) const;

private:
    [[nodiscard]] std::string seal_(std::string_view purpose, std::string_view text) const;

    std::array<unsigned char, 32> key_{};
};

} // namespace VX::Mcp

#include "Secrets.h"

#include <sodium.h>

namespace VX::Mcp
{

namespace
{

static_assert(crypto_auth_KEYBYTES == 32);

const unsigned char* bytesOf(std::string_view text)
{
    return reinterpret_cast<const unsigned char*>(text.data());
}

/// Safe on any thread, and free of cost from the second time on.
void initialize()
{
    static const int done = sodium_init();
    static_cast<void>(done);
}

} // namespace

std::string randomName()
{
    initialize();
    std::array<unsigned char, 16> bytes{};
    randombytes_buf(bytes.data(), bytes.size());
    std::array<char, 2 * bytes.size() + 1> text{};
    return sodium_bin2hex(text.data(), text.size(), bytes.data(), bytes.size());
}

bool isSameSecret(std::string_view a, std::string_view b)
{
    return a.size() == b.size() && sodium_memcmp(a.data(), b.data(), a.size()) == 0;
}

std::string toBase64(std::string_view bytes)
{
    std::string out(sodium_base64_encoded_len(bytes.size(), sodium_base64_VARIANT_ORIGINAL), '\0');
    sodium_bin2base64(out.data(), out.size(), bytesOf(bytes), bytes.size(), sodium_base64_VARIANT_ORIGINAL);
    out.pop_back(); // the terminating zero
    return out;
}

std::optional<std::string> fromBase64(std::string_view text)
{
    std::string out(text.size() / 4 * 3 + 3, '\0');
    std::size_t size = 0;
    const char* end = nullptr;
    const int status = sodium_base642bin(reinterpret_cast<unsigned char*>(out.data()), out.size(), text.data(),
                                         text.size(), nullptr, &size, &end, sodium_base64_VARIANT_ORIGINAL);
    if (status != 0 || end != text.data() + text.size())
        return std::nullopt;
    out.resize(size);
    return out;
}

StateSeal::StateSeal()
{
    initialize();
    crypto_auth_keygen(key_.data());
}

std::string StateSeal::seal_(std::string_view purpose, std::string_view text) const
{
    std::string message(purpose);
    message += '\0';
    message += text;
    std::array<unsigned char, crypto_auth_BYTES> seal{};
    crypto_auth(seal.data(), bytesOf(message), message.size(), key_.data());
    return {reinterpret_cast<const char*>(seal.data()), seal.size()};
}

std::string StateSeal::close(std::string_view purpose, std::string_view text) const
{
    return toBase64(seal_(purpose, text) + std::string(text));
}

std::optional<std::string> StateSeal::open(std::string_view purpose, std::string_view sealed) const
{
    const auto bytes = fromBase64(sealed);
    if (!bytes || bytes->size() < crypto_auth_BYTES)
        return std::nullopt;
    auto text = bytes->substr(crypto_auth_BYTES);
    if (!isSameSecret(seal_(purpose, text), std::string_view(*bytes).substr(0, crypto_auth_BYTES)))
        return std::nullopt;
    return text;
}

} // namespace VX::Mcp

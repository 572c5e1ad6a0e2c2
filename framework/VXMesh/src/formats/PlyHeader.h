#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace VX
{

enum class PlyEncoding
{
    Text,
    LittleEndian,
    BigEndian
};

enum class PlyType
{
    Int8,
    UInt8,
    Int16,
    UInt16,
    Int32,
    UInt32,
    Float,
    Double
};

/// The number of bytes of a value.
[[nodiscard]] constexpr std::size_t sizeOf(PlyType type)
{
    switch (type)
    {
    case PlyType::Int8:
    case PlyType::UInt8:
        return 1;
    case PlyType::Int16:
    case PlyType::UInt16:
        return 2;
    case PlyType::Int32:
    case PlyType::UInt32:
    case PlyType::Float:
        return 4;
    case PlyType::Double:
        break;
    }
    return 8;
}

[[nodiscard]] constexpr bool isInteger(PlyType type)
{
    return type != PlyType::Float && type != PlyType::Double;
}

struct PlyProperty
{
    std::string name;
    PlyType type = PlyType::Float;
    std::optional<PlyType> countType; ///< of a list
};

struct PlyElement
{
    std::string name;
    std::size_t count = 0; ///< as the file states it; not to be believed
    std::vector<PlyProperty> properties;
};

struct PlyHeader
{
    PlyEncoding encoding = PlyEncoding::Text;
    std::vector<PlyElement> elements;
    std::size_t size = 0; ///< bytes up to the first element
};

/// Reads the header at the begin of a PLY file.
/// @return nothing where there is none or it makes no sense
[[nodiscard]] std::optional<PlyHeader> readPlyHeader(std::string_view text);

} // namespace VX

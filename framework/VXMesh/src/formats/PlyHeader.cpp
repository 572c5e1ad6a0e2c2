#include "formats/PlyHeader.h"

#include "formats/TextScan.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace VX
{

namespace
{

std::optional<PlyType> typeOf(std::string_view word)
{
    constexpr std::array<std::pair<std::string_view, PlyType>, 16> kTypes = {{{"char", PlyType::Int8},
                                                                              {"int8", PlyType::Int8},
                                                                              {"uchar", PlyType::UInt8},
                                                                              {"uint8", PlyType::UInt8},
                                                                              {"short", PlyType::Int16},
                                                                              {"int16", PlyType::Int16},
                                                                              {"ushort", PlyType::UInt16},
                                                                              {"uint16", PlyType::UInt16},
                                                                              {"int", PlyType::Int32},
                                                                              {"int32", PlyType::Int32},
                                                                              {"uint", PlyType::UInt32},
                                                                              {"uint32", PlyType::UInt32},
                                                                              {"float", PlyType::Float},
                                                                              {"float32", PlyType::Float},
                                                                              {"double", PlyType::Double},
                                                                              {"float64", PlyType::Double}}};
    const auto* const found = std::ranges::find(kTypes, word, &std::pair<std::string_view, PlyType>::first);
    return found == kTypes.end() ? std::nullopt : std::optional(found->second);
}

std::optional<PlyEncoding> encodingOf(std::string_view word)
{
    if (word == "ascii")
        return PlyEncoding::Text;
    if (word == "binary_little_endian")
        return PlyEncoding::LittleEndian;
    if (word == "binary_big_endian")
        return PlyEncoding::BigEndian;
    return {};
}

bool readElement(TextCursor& line, PlyHeader& header)
{
    PlyElement& element = header.elements.emplace_back();
    element.name = line.word();
    const std::string_view count = line.word();
    const auto [end, error] = std::from_chars(count.data(), count.data() + count.size(), element.count);
    return !element.name.empty() && !count.empty() && error == std::errc() && end == count.data() + count.size();
}

bool readProperty(TextCursor& line, PlyHeader& header)
{
    if (header.elements.empty())
        return false;
    PlyProperty& property = header.elements.back().properties.emplace_back();
    std::string_view word = line.word();
    if (word == "list")
    {
        property.countType = typeOf(line.word());
        if (!property.countType || !isInteger(*property.countType))
            return false;
        word = line.word();
    }
    const auto type = typeOf(word);
    property.type = type.value_or(PlyType::Float);
    property.name = line.word();
    return type && !property.name.empty();
}

} // namespace

std::optional<PlyHeader> readPlyHeader(std::string_view text)
{
    PlyHeader header;
    bool hasEncoding = false;
    TextCursor cursor(text);
    if (cursor.word() != "ply")
        return {};
    for (cursor.nextLine(); !cursor.atEnd(); cursor.nextLine())
    {
        const std::string_view word = cursor.word();
        bool good = true;
        if (word == "format")
        {
            const auto encoding = encodingOf(cursor.word());
            good = encoding.has_value();
            hasEncoding = good;
            header.encoding = encoding.value_or(PlyEncoding::Text);
        }
        else if (word == "element")
            good = readElement(cursor, header);
        else if (word == "property")
            good = readProperty(cursor, header);
        else if (word == "end_header")
        {
            cursor.nextLine();
            header.size = static_cast<std::size_t>(cursor.position() - text.data());
            return hasEncoding ? std::optional(std::move(header)) : std::nullopt;
        }
        else
            good = word.empty() || word == "comment" || word == "obj_info";
        if (!good)
            return {};
    }
    return {};
}

} // namespace VX

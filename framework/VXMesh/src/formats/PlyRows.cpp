#include "formats/PlyRows.h"

#include "formats/MeshAssembly.h"
#include "formats/PlyCommonRows.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <optional>
#include <utility>

namespace VX
{

namespace
{

constexpr std::size_t kBlockRows = 65536;

PlyRole roleOf(const PlyElement& element, const PlyProperty& property)
{
    const std::string& name = property.name;
    if (property.countType)
        return name == "vertex_indices" || name == "vertex_index" ? PlyRole::Corners : PlyRole::Unused;
    constexpr std::array<std::pair<std::string_view, PlyRole>, 18> kRoles = {{{"x", PlyRole::X},
                                                                              {"y", PlyRole::Y},
                                                                              {"z", PlyRole::Z},
                                                                              {"nx", PlyRole::NormalX},
                                                                              {"ny", PlyRole::NormalY},
                                                                              {"nz", PlyRole::NormalZ},
                                                                              {"red", PlyRole::Red},
                                                                              {"green", PlyRole::Green},
                                                                              {"blue", PlyRole::Blue},
                                                                              {"alpha", PlyRole::Alpha},
                                                                              {"r", PlyRole::Red},
                                                                              {"g", PlyRole::Green},
                                                                              {"b", PlyRole::Blue},
                                                                              {"a", PlyRole::Alpha},
                                                                              {"diffuse_red", PlyRole::Red},
                                                                              {"diffuse_green", PlyRole::Green},
                                                                              {"diffuse_blue", PlyRole::Blue},
                                                                              {"diffuse_alpha", PlyRole::Alpha}}};
    const auto* const found = std::ranges::find(kRoles, name, &std::pair<std::string_view, PlyRole>::first);
    if (found == kRoles.end() || (element.name != "vertex" && element.name != "face"))
        return PlyRole::Unused;
    return found->second;
}

std::vector<PlyColumn> columnsOf(const PlyElement& element)
{
    std::vector<PlyColumn> columns;
    columns.reserve(element.properties.size());
    for (const PlyProperty& property : element.properties)
        columns.push_back({property.type, property.countType, roleOf(element, property)});
    return columns;
}

template <typename Value>
Value load(const char* position, bool isSwapped)
{
    std::array<char, sizeof(Value)> bytes;
    std::memcpy(bytes.data(), position, sizeof(Value));
    if (isSwapped)
        std::ranges::reverse(bytes);
    return std::bit_cast<Value>(bytes);
}

std::int64_t loadInteger(PlyType type, const char* position, bool isSwapped)
{
    switch (type)
    {
    case PlyType::Int8:
        return load<std::int8_t>(position, isSwapped);
    case PlyType::UInt8:
        return load<std::uint8_t>(position, isSwapped);
    case PlyType::Int16:
        return load<std::int16_t>(position, isSwapped);
    case PlyType::UInt16:
        return load<std::uint16_t>(position, isSwapped);
    case PlyType::Int32:
        return load<std::int32_t>(position, isSwapped);
    case PlyType::UInt32:
        return load<std::uint32_t>(position, isSwapped);
    default:
        // An index that is no integer is none.
        return -1;
    }
}

double loadNumber(PlyType type, const char* position, bool isSwapped)
{
    if (type == PlyType::Float)
        return static_cast<double>(load<float>(position, isSwapped));
    if (type == PlyType::Double)
        return load<double>(position, isSwapped);
    return static_cast<double>(loadInteger(type, position, isSwapped));
}

std::uint32_t toIndex(std::int64_t value)
{
    return value < 0 || value >= kNoPoint ? kNoPoint : static_cast<std::uint32_t>(value);
}

/// Steps over the rows of an element with lists, which have to be walked one by one.
class RowScanner
{
public:
    RowScanner(const std::vector<PlyColumn>& columns, bool isSwapped)
        : isSwapped_(isSwapped)
    {
        for (const PlyColumn& column : columns)
        {
            if (!column.countType)
            {
                fixed_ += sizeOf(column.type);
                continue;
            }
            lists_.push_back({fixed_, *column.countType, sizeOf(*column.countType), sizeOf(column.type)});
            fixed_ = 0;
        }
    }

    /// @return false where the row is not complete
    bool skip(std::string_view bytes, std::size_t& position) const
    {
        std::size_t at = position;
        for (const List& list : lists_)
        {
            if (bytes.size() - at < list.fixedBefore + list.countSize)
                return false;
            at += list.fixedBefore;
            const std::int64_t count = loadInteger(list.countType, bytes.data() + at, isSwapped_);
            at += list.countSize;
            if (count < 0 || static_cast<std::uint64_t>(count) > (bytes.size() - at) / list.itemSize)
                return false;
            at += static_cast<std::size_t>(count) * list.itemSize;
        }
        if (bytes.size() - at < fixed_)
            return false;
        position = at + fixed_;
        return true;
    }

private:
    struct List
    {
        std::size_t fixedBefore;
        PlyType countType;
        std::size_t countSize;
        std::size_t itemSize;
    };

    bool isSwapped_;
    std::vector<List> lists_;
    std::size_t fixed_ = 0; ///< bytes behind the last list
};

/// Finds the rows of one element of a binary file at the begin of `bytes`, which move behind them.
PlyRows locateBinary(const PlyElement& element, bool isSwapped, std::string_view& bytes)
{
    PlyRows rows;
    rows.columns = columnsOf(element);
    if (rows.columns.empty())
        return rows;
    const bool hasLists =
        std::ranges::any_of(rows.columns, [](const PlyColumn& column) { return column.countType.has_value(); });
    const RowScanner scanner(rows.columns, isSwapped);
    std::size_t stride = 0;
    for (const PlyColumn& column : rows.columns)
        stride += sizeOf(column.type);
    const std::size_t available = hasLists ? element.count : std::min(element.count, bytes.size() / stride);
    bool complete = available == element.count;
    while (rows.count < available)
    {
        std::size_t position = 0;
        std::size_t inBlock = 0;
        const std::size_t wanted = std::min(kBlockRows, available - rows.count);
        if (const std::size_t triangle = PlyCommonRows::triangleStride(rows.columns, bytes, wanted); triangle > 0)
        {
            inBlock = wanted;
            position = wanted * triangle;
        }
        else if (hasLists)
        {
            while (inBlock < wanted && scanner.skip(bytes, position))
                ++inBlock;
        }
        else
        {
            inBlock = wanted;
            position = wanted * stride;
        }
        if (inBlock > 0)
            rows.blocks.push_back({bytes.substr(0, position), 0, rows.count, inBlock});
        rows.count += inBlock;
        bytes.remove_prefix(position);
        if (inBlock < wanted)
        {
            complete = false;
            break;
        }
    }
    // What follows an element that is cut off cannot be told apart from it.
    if (!complete)
        bytes = {};
    return rows;
}

std::vector<PlyRows> locateText(const PlyHeader& header, std::string_view text)
{
    TextLines lines(text);
    std::vector<PlyRows> result;
    for (const PlyElement& element : header.elements)
    {
        PlyRows& rows = result.emplace_back();
        rows.columns = columnsOf(element);
        rows.blocks = lines.take(element.count);
        rows.count = countRows(rows.blocks);
    }
    return result;
}

} // namespace

const PlyColumn* PlyRows::find(PlyRole role) const
{
    const auto found = std::ranges::find(columns, role, &PlyColumn::role);
    return found == columns.end() ? nullptr : &*found;
}

std::vector<PlyRows> locatePlyRows(const PlyHeader& header, std::string_view text)
{
    std::string_view rest = text.substr(header.size);
    if (header.encoding == PlyEncoding::Text)
        return locateText(header, rest);
    std::vector<PlyRows> result;
    result.reserve(header.elements.size());
    for (const PlyElement& element : header.elements)
        result.push_back(locateBinary(element, header.encoding == PlyEncoding::BigEndian, rest));
    return result;
}

PlyRowReader::PlyRowReader(const PlyHeader& header, const PlyRows& rows, const RowBlock& block)
    : rows_(rows)
    , isText_(header.encoding == PlyEncoding::Text)
    , isSwapped_(header.encoding == PlyEncoding::BigEndian)
    , cursor_(block.bytes)
    , position_(block.bytes.data())
{
    values_.fill(std::numeric_limits<double>::quiet_NaN());
    if (isText_)
        skipToFirstRow(cursor_, block);
}

void PlyRowReader::next()
{
    if (isText_)
        nextText_();
    else
        nextBinary_();
}

void PlyRowReader::nextText_()
{
    skipEmptyLines(cursor_);
    corners_.clear();
    for (const PlyColumn& column : rows_.columns)
    {
        if (column.countType)
        {
            readTextList_(column);
            continue;
        }
        double number = std::numeric_limits<double>::quiet_NaN();
        cursor_.number(number);
        values_[std::min(static_cast<std::size_t>(column.role), kPlyValues)] = number;
    }
    cursor_.nextLine();
}

void PlyRowReader::readTextList_(const PlyColumn& column)
{
    std::int64_t count = 0;
    if (!cursor_.integer(count))
        return;
    for (std::int64_t i = 0; i < count; ++i)
    {
        std::int64_t index = -1;
        if (cursor_.atLineEnd())
        {
            // A face of which corners are missing cannot be used.
            corners_.clear();
            return;
        }
        if (!cursor_.integer(index))
            index = -1;
        if (column.role == PlyRole::Corners)
            corners_.push_back(toIndex(index));
    }
}

void PlyRowReader::nextBinary_()
{
    corners_.clear();
    for (const PlyColumn& column : rows_.columns)
    {
        if (column.countType)
        {
            readBinaryList_(column, *column.countType);
            continue;
        }
        if (column.role != PlyRole::Unused)
            values_[static_cast<std::size_t>(column.role)] = loadNumber(column.type, position_, isSwapped_);
        position_ += sizeOf(column.type);
    }
}

void PlyRowReader::readBinaryList_(const PlyColumn& column, PlyType countType)
{
    const auto count = static_cast<std::size_t>(loadInteger(countType, position_, isSwapped_));
    position_ += sizeOf(countType);
    const std::size_t itemSize = sizeOf(column.type);
    if (column.role == PlyRole::Corners)
    {
        corners_.resize(count);
        const bool isPlain = !isSwapped_ && (column.type == PlyType::Int32 || column.type == PlyType::UInt32);
        // A negative index becomes one that is larger than any.
        if (isPlain && count > 0)
            std::memcpy(corners_.data(), position_, count * itemSize);
        for (std::size_t i = 0; i < count && !isPlain; ++i)
            corners_[i] = toIndex(loadInteger(column.type, position_ + i * itemSize, isSwapped_));
    }
    position_ += count * itemSize;
}

} // namespace VX

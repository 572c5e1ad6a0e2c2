#include "formats/ObjPieces.h"

#include "formats/TextScan.h"

#include <array>
#include <limits>

namespace VX
{

namespace
{

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

/// Puts blanks in the place of the line ends behind a backslash.
std::string joinLines(std::string_view text)
{
    std::string joined(text);
    for (std::size_t at = joined.find('\\'); at != std::string::npos; at = joined.find('\\', at + 1))
    {
        std::size_t end = at + 1;
        if (end < joined.size() && joined[end] == '\r')
            ++end;
        if (end < joined.size() && joined[end] == '\n')
            joined.replace(at, end + 1 - at, end + 1 - at, ' ');
    }
    return joined;
}

class PieceReader
{
public:
    ObjPiece read(std::string_view text)
    {
        for (TextCursor cursor(text); !cursor.atEnd(); cursor.nextLine())
            readLine_(cursor);
        return std::move(piece_);
    }

private:
    void readLine_(TextCursor& cursor)
    {
        const std::string_view word = cursor.word();
        if (word.size() == 1)
        {
            switch (word.front())
            {
            case 'v':
                return readPoint_(cursor);
            case 'f':
                return readFace_(cursor);
            case 'l':
                return readLines_(cursor);
            case 'p':
                return readDots_(cursor);
            case 'o':
            case 'g':
                return startSection_(word.front() == 'g', cursor);
            default:
                return;
            }
        }
        if (word == "vn")
            readNormal_(cursor);
    }

    void readPoint_(TextCursor& cursor)
    {
        constexpr std::size_t kMost = 7; // x y z w r g b
        constexpr std::size_t kLeastWithColor = 6;
        std::array<double, kMost> numbers;
        std::size_t count = 0;
        while (count < kMost && cursor.number(numbers[count]))
            ++count;
        Vector3d& point = piece_.points.emplace_back();
        for (std::size_t i = 0; i < 3; ++i)
            point[static_cast<int>(i)] = i < count ? numbers[i] : std::numeric_limits<double>::quiet_NaN();
        if (count >= kLeastWithColor && piece_.colors.empty())
            piece_.colors.assign(piece_.points.size() - 1, Vector3f(kNan, kNan, kNan));
        if (count >= kLeastWithColor)
            piece_.colors.push_back(Vector3d(numbers[count - 3], numbers[count - 2], numbers[count - 1]).cast<float>());
        else if (!piece_.colors.empty())
            piece_.colors.emplace_back(kNan, kNan, kNan);
    }

    void readNormal_(TextCursor& cursor)
    {
        Vector3f& normal = piece_.normals.emplace_back();
        for (int axis = 0; axis < 3; ++axis)
        {
            double number = 0.0;
            cursor.number(number);
            normal[axis] = static_cast<float>(number);
        }
    }

    void readFace_(TextCursor& cursor)
    {
        corners_.clear();
        const std::size_t first = piece_.faces.corners.size();
        while (!cursor.atLineEnd())
        {
            corners_.push_back(
                readIndex_(cursor, piece_.points.size(), first + corners_.size(), piece_.relativeCorners));
            if (cursor.skip('/'))
                readFaceNormal_(cursor, first + corners_.size() - 1);
            else if (!piece_.faceNormals.empty())
                piece_.faceNormals.resize(first + corners_.size(), kNoPoint);
            if (!cursor.finishWord())
                dropCorner_(first + corners_.size() - 1);
        }
        piece_.faces.add(corners_);
    }

    /// Something is wrong with the last corner.
    void dropCorner_(std::size_t corner)
    {
        corners_.back() = kNoPoint;
        if (!piece_.relativeCorners.empty() && piece_.relativeCorners.back() == corner)
            piece_.relativeCorners.pop_back();
    }

    /// The cursor stands behind the first "/" of "v/vt", "v//vn" or "v/vt/vn".
    void readFaceNormal_(TextCursor& cursor, std::size_t corner)
    {
        std::int64_t texture = 0;
        cursor.digits(texture);
        if (!cursor.skip('/'))
        {
            if (!piece_.faceNormals.empty())
                piece_.faceNormals.resize(corner + 1, kNoPoint);
            return;
        }
        const std::uint32_t normal = readIndex_(cursor, piece_.normals.size(), corner, piece_.relativeNormals);
        piece_.faceNormals.resize(corner, kNoPoint);
        piece_.faceNormals.push_back(normal);
    }

    void readLines_(TextCursor& cursor)
    {
        corners_.clear();
        const std::size_t first = piece_.lines.corners.size();
        while (!cursor.atLineEnd())
        {
            corners_.push_back(
                readIndex_(cursor, piece_.points.size(), first + corners_.size(), piece_.relativeLineCorners));
            cursor.finishWord();
        }
        piece_.lines.add(corners_);
    }

    void readDots_(TextCursor& cursor)
    {
        while (!cursor.atLineEnd())
        {
            piece_.dots.push_back(readIndex_(cursor, piece_.points.size(), piece_.dots.size(), piece_.relativeDots));
            cursor.finishWord();
        }
    }

    void startSection_(bool isGroup, TextCursor& cursor)
    {
        piece_.sections.push_back({isGroup, std::string(cursor.restOfLine()), piece_.faces.count(),
                                   piece_.faces.corners.size(), piece_.lines.count(), piece_.lines.corners.size(),
                                   piece_.dots.size()});
    }

    /// An index counts from 1, or back from the last element, which is -1.
    /// @param count  the elements of the piece so far
    /// @param at  where the index will stand, to be noted in `relative` if it counts back
    static std::uint32_t readIndex_(TextCursor& cursor, std::size_t count, std::size_t at,
                                    std::vector<std::size_t>& relative)
    {
        std::int64_t number = 0;
        constexpr std::int64_t kMost = kNoPoint;
        constexpr std::int64_t kFurthestBack = std::numeric_limits<std::int32_t>::min();
        if (!cursor.digits(number) || number == 0 || number > kMost || number < kFurthestBack)
            return kNoPoint;
        if (number > 0)
            return static_cast<std::uint32_t>(number - 1);
        relative.push_back(at);
        // May be negative, before the begin of the piece.
        return static_cast<std::uint32_t>(static_cast<std::int64_t>(count) + number);
    }

    ObjPiece piece_;
    std::vector<std::uint32_t> corners_;
};

void addTo(std::vector<std::uint32_t>& indices, const std::vector<std::size_t>& at, std::size_t first)
{
    for (const std::size_t i : at)
    {
        const auto local = static_cast<std::int32_t>(indices[i]);
        const std::int64_t index = static_cast<std::int64_t>(first) + local;
        indices[i] = index < 0 ? kNoPoint : static_cast<std::uint32_t>(index);
    }
}

} // namespace

bool mayObjPieceStart(std::string_view text, std::size_t position)
{
    const std::string_view before = text.substr(0, position);
    return !before.ends_with("\\\n") && !before.ends_with("\\\r\n");
}

ObjPiece readObjPiece(std::string_view text)
{
    if (text.find('\\') == std::string_view::npos)
        return PieceReader().read(text);
    return PieceReader().read(joinLines(text));
}

void resolveObjIndices(ObjPiece& piece, std::size_t firstPoint, std::size_t firstNormal)
{
    addTo(piece.faces.corners, piece.relativeCorners, firstPoint);
    addTo(piece.lines.corners, piece.relativeLineCorners, firstPoint);
    addTo(piece.dots, piece.relativeDots, firstPoint);
    addTo(piece.faceNormals, piece.relativeNormals, firstNormal);
    piece.relativeCorners = {};
    piece.relativeLineCorners = {};
    piece.relativeDots = {};
    piece.relativeNormals = {};
}

} // namespace VX

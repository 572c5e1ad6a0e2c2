#include "formats/ObjFormat.h"
#include "formats/PointOffset.h"
#include "formats/SaveItems.h"
#include "formats/TextWrite.h"

#include <VXMesh/FileError.h>

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <utility>

namespace VX
{

namespace
{

constexpr std::size_t kBlockSize = 16384;
constexpr std::string_view kNameless = "object";

/// A name that stands on one line and that no object before has: objects of one name would become one.
std::string uniqueName(const std::string& name, std::set<std::string>& known)
{
    std::string base = name;
    std::ranges::replace_if(base, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\\'; }, '_');
    if (base.find_first_not_of(' ') == std::string::npos)
        base = kNameless;
    std::string result = base;
    for (int i = 2; !known.insert(result).second; ++i)
        result = fmt::format("{} {}", base, i);
    return result;
}

/// Lines of the file that are made together; the first ones of an object begin with its name.
struct Block
{
    enum class Kind
    {
        Points,
        Normals,
        Triangles,
        Segments,
        Dots
    };

    Kind kind = Kind::Points;
    std::size_t object = 0;
    std::size_t begin = 0;
    std::size_t end = 0;
};

/// One "o" of the file: the points, and what is made of them, of which the others are empty.
struct ObjObject
{
    std::string name;
    PointsPart part;
    const MeshItem* mesh = nullptr;
    const LinesItem* lines = nullptr;
    std::size_t firstPoint = 1;
    std::size_t firstNormal = 1;
};

class ObjWriter
{
public:
    explicit ObjWriter(const Object& root)
        : items_(collectSaveItems(root))
        , isPrecise_(!chooseOffset(root.worldBox()).isZero(0.0))
    {
        const auto parts = pointsParts(items_);
        for (std::size_t i = 0; i < parts.size(); ++i)
        {
            const bool isMesh = i < items_.meshes.size();
            const std::string& name = isMesh ? items_.meshes[i].name : items_.clouds[i - items_.meshes.size()].name;
            addObject_({name, parts[i], isMesh ? &items_.meshes[i] : nullptr, nullptr});
        }
        for (const LinesItem& item : items_.lines)
            addObject_({item.name, {item.geometry->points, {}, {}, item.toScene, item.color}, nullptr, &item});
        // A single object without a name goes without; it will be called after the file.
        if (objects_.size() == 1 && names_.contains(std::string(kNameless)))
            objects_.front().name.clear();
    }

    [[nodiscard]] tl::expected<void, std::string>
    write(const std::filesystem::path& path, const ProgressCallback& progress, AtomicFile::Existing existing) const
    {
        if (objects_.empty())
            return tl::unexpected(fileErrorText("write", path, "nothing with points is visible."));
        auto file = FileWriter::create(path, existing);
        if (!file)
            return tl::unexpected(file.error());
        const auto fill = [&](std::size_t i, std::string& text) { appendBlock_(blocks_[i], text); };
        return file->write("# unit mm\n")
            .and_then([&] { return file->writeBlocks(blocks_.size(), fill, progress); })
            .and_then([&] { return file->commit(progress); });
    }

private:
    void addObject_(ObjObject object)
    {
        if (!objects_.empty())
        {
            const ObjObject& before = objects_.back();
            object.firstPoint = before.firstPoint + before.part.points.size();
            object.firstNormal = before.firstNormal + before.part.normals.size();
        }
        object.name = uniqueName(object.name, names_);
        addBlocks_(Block::Kind::Points, object.part.points.size());
        addBlocks_(Block::Kind::Normals, object.part.normals.size());
        if (object.mesh)
            addBlocks_(Block::Kind::Triangles, object.mesh->geometry->triangles.size());
        else if (object.lines)
            addBlocks_(Block::Kind::Segments, object.lines->geometry->segments.size());
        else
            addBlocks_(Block::Kind::Dots, object.part.points.size());
        objects_.push_back(std::move(object));
    }

    void addBlocks_(Block::Kind kind, std::size_t count)
    {
        for (std::size_t begin = 0; begin < count; begin += kBlockSize)
            blocks_.push_back({kind, objects_.size(), begin, std::min(count, begin + kBlockSize)});
    }

    void appendBlock_(const Block& block, std::string& text) const
    {
        const ObjObject& object = objects_[block.object];
        switch (block.kind)
        {
        case Block::Kind::Points:
            if (block.begin == 0 && !object.name.empty())
                text += "o " + object.name + "\n";
            return appendPoints_(object.part, block, text);
        case Block::Kind::Normals:
            return appendNormals_(object.part, block, text);
        case Block::Kind::Triangles:
            return appendTriangles_(object, block, text);
        case Block::Kind::Segments:
            return appendSegments_(object, block, text);
        case Block::Kind::Dots:
            for (std::size_t i = block.begin; i < block.end; ++i)
                appendStatement_("p", object.firstPoint + i, text);
        }
    }

    static void appendStatement_(std::string_view keyword, std::size_t index, std::string& text)
    {
        text += keyword;
        text += ' ';
        appendNumber(text, index);
        text += '\n';
    }

    void appendPoints_(const PointsPart& part, const Block& block, std::string& text) const
    {
        constexpr float kMaxByte = 255.0F;
        for (std::size_t i = block.begin; i < block.end; ++i)
        {
            text += 'v';
            appendPoint(text, part.point(i), isPrecise_);
            if (!part.colors.empty())
            {
                const Color color = part.colors[i];
                appendVector(text, Vector3f(Vector3f(color.r, color.g, color.b) / kMaxByte));
            }
            text += '\n';
        }
    }

    static void appendNormals_(const PointsPart& part, const Block& block, std::string& text)
    {
        const Eigen::Matrix3d toSceneNormal = normalMatrix(part.toScene);
        for (std::size_t i = block.begin; i < block.end; ++i)
        {
            text += "vn";
            appendVector(text, sceneNormal(toSceneNormal, part.normals[i]));
            text += '\n';
        }
    }

    static void appendTriangles_(const ObjObject& object, const Block& block, std::string& text)
    {
        for (std::size_t i = block.begin; i < block.end; ++i)
        {
            text += 'f';
            const Triangle triangle = sceneTriangle(*object.mesh, i);
            for (const std::uint32_t corner : {triangle[0], triangle[1], triangle[2]})
            {
                text += ' ';
                appendNumber(text, object.firstPoint + corner);
                if (object.part.normals.empty())
                    continue;
                text += "//";
                appendNumber(text, object.firstNormal + corner);
            }
            text += '\n';
        }
    }

    static void appendSegments_(const ObjObject& object, const Block& block, std::string& text)
    {
        for (std::size_t i = block.begin; i < block.end; ++i)
        {
            const Segment& segment = object.lines->geometry->segments[i];
            text += "l ";
            appendNumber(text, object.firstPoint + segment[0]);
            appendStatement_("", object.firstPoint + segment[1], text);
        }
    }

    SaveItems items_;
    bool isPrecise_;
    std::set<std::string> names_;
    std::vector<ObjObject> objects_;
    std::vector<Block> blocks_;
};

} // namespace

tl::expected<void, std::string> writeObj(const Object& root, const std::filesystem::path& path,
                                         const ProgressCallback& progress, AtomicFile::Existing existing)
{
    return ObjWriter(root).write(path, progress, existing);
}

} // namespace VX

#include "formats/ObjFormat.h"

#include "formats/ColorByte.h"
#include "formats/ObjSections.h"
#include "formats/ParallelProgress.h"
#include "formats/PointOffset.h"
#include "formats/Source.h"
#include "formats/TextScan.h"

#include <VXMesh/ObjectLines.h>
#include <VXMesh/ObjectPoints.h>

#include <tbb/parallel_for.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace VX
{

namespace
{

constexpr std::size_t kPieceSize = std::size_t{1} << 20U;

/// @return nothing when canceled
std::optional<std::vector<ObjPiece>> readPieces(const Source& source, const ProgressCallback& progress)
{
    const auto texts = splitAtLines(source.text(), kPieceSize, mayObjPieceStart);
    std::vector<ObjPiece> pieces(texts.size());
    ParallelProgress counter(progress, texts.size());
    tbb::parallel_for(std::size_t{0}, texts.size(),
                      [&](std::size_t i)
                      {
                          if (counter.isCanceled())
                              return;
                          pieces[i] = readObjPiece(texts[i]);
                          source.release(texts[i]);
                          counter.advance();
                      });
    return counter.isCanceled() ? std::nullopt : std::optional(std::move(pieces));
}

/// How many elements are in the pieces before each piece and, at the end, in all.
template <typename Count>
std::vector<std::size_t> runningTotals(const std::vector<ObjPiece>& pieces, const Count& count)
{
    std::vector<std::size_t> totals(1, 0);
    for (const ObjPiece& piece : pieces)
        totals.push_back(totals.back() + count(piece));
    return totals;
}

Box3d finiteBox(const std::vector<ObjPiece>& pieces)
{
    std::vector<Box3d> boxes(pieces.size());
    tbb::parallel_for(std::size_t{0}, pieces.size(),
                      [&](std::size_t i)
                      {
                          for (const Vector3d& point : pieces[i].points)
                          {
                              if (point.allFinite())
                                  boxes[i].extend(point);
                          }
                      });
    Box3d box;
    for (const Box3d& part : boxes)
        box.extend(part);
    return box;
}

/// Colours are numbers up to 1, but some programs write them up to 255.
double colorScale(const std::vector<ObjPiece>& pieces)
{
    constexpr double kMaxByte = 255.0;
    for (const ObjPiece& piece : pieces)
    {
        for (const Vector3f& color : piece.colors)
        {
            if (color.maxCoeff() > 1.0F)
                return 1.0;
        }
    }
    return kMaxByte;
}

Color toColor(const Vector3f& color, double scale)
{
    if (std::isnan(color.sum()))
        return VisualObject::defaultColor();
    return {toColorByte(color.x() * scale), toColorByte(color.y() * scale), toColorByte(color.z() * scale), 255};
}

/// Moves the points of all pieces into one array, relative to an offset.
ObjPoints joinPoints(std::vector<ObjPiece>& pieces, const Vector3d& offset)
{
    const auto firstPoint = runningTotals(pieces, [](const ObjPiece& piece) { return piece.points.size(); });
    const auto firstNormal = runningTotals(pieces, [](const ObjPiece& piece) { return piece.normals.size(); });
    const bool hasColors = std::ranges::any_of(pieces, [](const ObjPiece& piece) { return !piece.colors.empty(); });
    const double scale = colorScale(pieces);
    ObjPoints all;
    all.points.resize(firstPoint.back());
    all.normals.resize(firstNormal.back());
    all.colors.resize(hasColors ? firstPoint.back() : 0, VisualObject::defaultColor());
    tbb::parallel_for(std::size_t{0}, pieces.size(),
                      [&](std::size_t i)
                      {
                          ObjPiece& piece = pieces[i];
                          std::ranges::transform(piece.points, all.points.data() + firstPoint[i],
                                                 [&](const Vector3d& point) -> Vector3f
                                                 { return (point - offset).cast<float>(); });
                          std::ranges::copy(piece.normals, all.normals.data() + firstNormal[i]);
                          if (hasColors)
                              std::ranges::transform(piece.colors, all.colors.data() + firstPoint[i],
                                                     [&](const Vector3f& color) { return toColor(color, scale); });
                          resolveObjIndices(piece, firstPoint[i], firstNormal[i]);
                          piece.points = {};
                          piece.colors = {};
                          piece.normals = {};
                      });
    return all;
}

/// All faces over all points, or all points where there are no faces.
RawMesh takeAll(std::vector<ObjPiece>& pieces, ObjPoints all)
{
    RawMesh raw;
    std::vector<std::vector<std::uint32_t>> cornerNormals;
    for (ObjPiece& piece : pieces)
    {
        raw.polygons.push_back(std::move(piece.faces));
        cornerNormals.push_back(std::move(piece.faceNormals));
    }
    raw.normals = resolveNormals(raw.polygons, cornerNormals, all.normals, all.points.size());
    const bool hasFaces = std::ranges::any_of(raw.polygons, [](const Polygons& piece) { return piece.count() > 0; });
    if (!hasFaces && all.normals.size() == all.points.size())
        raw.normals = std::move(all.normals);
    raw.points = std::move(all.points);
    raw.vertexColors = std::move(all.colors);
    return raw;
}

/// Puts objects into the tree that objects and groups of the file make.
class ObjTree
{
public:
    explicit ObjTree(std::string fileName)
        : root_(std::make_shared<Object>())
    {
        root_->setName(std::move(fileName));
    }

    void add(const ObjSection& section, const std::shared_ptr<Object>& object, bool isOnlyGroup)
    {
        const std::string& name = isOnlyGroup && !section.object.empty() ? section.object : section.group;
        object->setName(!name.empty() ? name : !section.object.empty() ? section.object : root_->name());
        parentFor_(section, isOnlyGroup)->addChild(object);
    }

    /// The only object by itself, or all of them below one named after the file.
    std::shared_ptr<Object> take(const Vector3d& offset)
    {
        std::shared_ptr<Object> top = root_;
        if (root_->children().size() == 1)
        {
            top = root_->children().front();
            root_->removeChild(*top);
        }
        top->setTransform(Transform(Eigen::Translation3d(offset)) * top->transform());
        return top;
    }

private:
    std::shared_ptr<Object> parentFor_(const ObjSection& section, bool isOnlyGroup)
    {
        if (isOnlyGroup || section.object.empty())
            return root_;
        std::shared_ptr<Object>& parent = objects_[section.object];
        if (!parent)
        {
            parent = std::make_shared<Object>();
            parent->setName(section.object);
            root_->addChild(parent);
        }
        return parent;
    }

    std::shared_ptr<Object> root_;
    std::map<std::string, std::shared_ptr<Object>> objects_;
};

struct SectionObjects
{
    std::vector<std::shared_ptr<VisualObject>> objects;
    std::vector<std::string> warnings;
    std::string error; ///< why there is no mesh
};

SectionObjects makeSection(const Source& source, const ObjSection& section, const ObjPoints& all)
{
    SectionObjects result;
    if (section.hasFaces())
    {
        RawMesh raw = takeFaces(section, all);
        raw.offset = Vector3d::Zero();
        auto object = assembleObject(source, std::move(raw), result.warnings);
        if (object)
            result.objects.push_back(std::move(*object));
        else
            result.error = object.error();
    }
    if (section.hasLines())
    {
        Lines lines = takeLines(section, all);
        if (!lines.segments.empty())
            result.objects.push_back(std::make_shared<ObjectLines>(std::make_shared<Lines>(std::move(lines))));
    }
    if (section.hasDots())
    {
        PointCloud dots = takeDots(section, all);
        if (!dots.points.empty())
            result.objects.push_back(std::make_shared<ObjectPoints>(std::make_shared<PointCloud>(std::move(dots))));
    }
    return result;
}

/// @return nothing when canceled
std::optional<std::vector<SectionObjects>> makeSections(const Source& source, const std::vector<ObjSection>& sections,
                                                        const ObjPoints& all, const ProgressCallback& progress)
{
    std::vector<SectionObjects> made(sections.size());
    ParallelProgress counter(progress, sections.size());
    tbb::parallel_for(std::size_t{0}, sections.size(),
                      [&](std::size_t i)
                      {
                          if (counter.isCanceled())
                              return;
                          made[i] = makeSection(source, sections[i], all);
                          counter.advance();
                      });
    return counter.isCanceled() ? std::nullopt : std::optional(std::move(made));
}

/// Several sections, or one with polylines or dots.
tl::expected<LoadedObjects, std::string> assembleTree(const Source& source, const std::vector<ObjSection>& sections,
                                                      const ObjPoints& all, const Vector3d& offset,
                                                      const ProgressCallback& progress)
{
    auto made = makeSections(source, sections, all, progress);
    if (!made)
        return tl::unexpected(operationCanceledText());
    std::map<std::string, std::size_t> groupsOf;
    for (const ObjSection& section : sections)
        ++groupsOf[section.object];
    LoadedObjects loaded;
    ObjTree tree(source.stem());
    bool hasAny = false;
    std::string error;
    for (std::size_t i = 0; i < sections.size(); ++i)
    {
        for (const auto& object : (*made)[i].objects)
            tree.add(sections[i], object, groupsOf[sections[i].object] == 1);
        hasAny = hasAny || !(*made)[i].objects.empty();
        if (error.empty())
            error = (*made)[i].error;
        std::ranges::move((*made)[i].warnings, std::back_inserter(loaded.warnings));
    }
    if (!hasAny)
        return error.empty() ? source.error("none of its lines and points can be used.") : tl::unexpected(error);
    if (!error.empty())
        loaded.warnings.push_back(source.warning("groups of which no face can be used were left out."));
    loaded.objects.push_back(tree.take(offset));
    return loaded;
}

} // namespace

tl::expected<LoadedObjects, std::string> readObj(const Source& source, const ProgressCallback& progress)
{
    constexpr std::size_t kTypicalStart = 1024;
    if (!looksLikeText(source.text().substr(0, kTypicalStart)))
        return source.error("it is not an OBJ file.");
    auto pieces = readPieces(source, subprogress(progress, 0.0F, 0.7F));
    if (!pieces)
        return tl::unexpected(operationCanceledText());
    const Vector3d offset = chooseOffset(finiteBox(*pieces));
    ObjPoints all = joinPoints(*pieces, offset);
    if (all.points.empty())
        return source.error("it holds no points.");
    const auto sections = collectObjSections(*pieces);
    const bool isSimple =
        sections.empty() || (sections.size() == 1 && !sections.front().hasLines() && !sections.front().hasDots());
    if (!isSimple)
        return assembleTree(source, sections, all, offset, subprogress(progress, 0.7F, 1.0F));

    LoadedObjects loaded;
    RawMesh raw = takeAll(*pieces, std::move(all));
    raw.offset = offset;
    auto object = assembleObject(source, std::move(raw), loaded.warnings);
    if (!object)
        return tl::unexpected(object.error());
    if (!sections.empty())
    {
        const std::string& name = sections.front().object.empty() ? sections.front().group : sections.front().object;
        if (!name.empty())
            (*object)->setName(name);
    }
    loaded.objects.push_back(std::move(*object));
    return loaded;
}

FileFormat objFormat()
{
    return {"Wavefront (OBJ)",
            {".obj"},
            [](const std::filesystem::path& path, const ProgressCallback& progress)
            { return readMapped(path, progress, readObj); },
            writeObj};
}

} // namespace VX

#include "formats/ObjSections.h"

#include <tbb/parallel_for.h>

#include <algorithm>
#include <atomic>
#include <map>
#include <utility>

namespace VX
{

namespace
{

ObjSectionStart endOf(const ObjPiece& piece)
{
    return {false,
            {},
            piece.faces.count(),
            piece.faces.corners.size(),
            piece.lines.count(),
            piece.lines.corners.size(),
            piece.dots.size()};
}

/// Gives the points that a section uses new indices, in the order of the old ones.
class PointSubset
{
public:
    /// @param used  old indices; those from `pointCount` on are ignored
    PointSubset(const std::vector<std::span<const std::uint32_t>>& used, std::size_t pointCount)
    {
        std::size_t total = 0;
        std::uint32_t last = 0;
        forEach_(used, pointCount,
                 [&](std::uint32_t index)
                 {
                     ++total;
                     first_ = std::min(first_, index);
                     last = std::max(last, index);
                 });
        if (total == 0)
            return;
        // A table over the range is fastest, unless few indices lie far apart.
        constexpr std::size_t kSparse = 8;
        const std::size_t range = std::size_t{last} - first_ + 1;
        if (range > kSparse * total)
        {
            forEach_(used, pointCount, [&](std::uint32_t index) { old_.push_back(index); });
            std::ranges::sort(old_);
            const auto rest = std::ranges::unique(old_);
            old_.erase(rest.begin(), rest.end());
            return;
        }
        table_.assign(range, kNoPoint);
        forEach_(used, pointCount, [&](std::uint32_t index) { table_[index - first_] = 0; });
        for (std::size_t i = 0; i < range; ++i)
        {
            if (table_[i] == kNoPoint)
                continue;
            table_[i] = static_cast<std::uint32_t>(old_.size());
            old_.push_back(static_cast<std::uint32_t>(first_ + i));
        }
    }

    /// `kNoPoint` where the old index names no point.
    [[nodiscard]] std::uint32_t newIndex(std::uint32_t old) const
    {
        if (!table_.empty())
            return old >= first_ && old - first_ < table_.size() ? table_[old - first_] : kNoPoint;
        const auto found = std::ranges::lower_bound(old_, old);
        return found != old_.end() && *found == old ? static_cast<std::uint32_t>(found - old_.begin()) : kNoPoint;
    }

    template <typename Attribute>
    [[nodiscard]] std::vector<Attribute> take(const std::vector<Attribute>& attributes) const
    {
        std::vector<Attribute> result;
        if (attributes.empty())
            return result;
        result.reserve(old_.size());
        for (const std::uint32_t index : old_)
            result.push_back(attributes[index]);
        return result;
    }

private:
    template <typename Visit>
    static void forEach_(const std::vector<std::span<const std::uint32_t>>& used, std::size_t pointCount,
                         const Visit& visit)
    {
        for (const auto& indices : used)
        {
            for (const std::uint32_t index : indices)
            {
                if (index < pointCount)
                    visit(index);
            }
        }
    }

    std::uint32_t first_ = kNoPoint;
    std::vector<std::uint32_t> table_;
    std::vector<std::uint32_t> old_;
};

std::span<const std::uint32_t> faceCorners(const ObjSection::Run& run)
{
    return std::span(run.piece->faces.corners).subspan(run.begin.corners, run.end.corners - run.begin.corners);
}

std::span<const std::uint32_t> lineCorners(const ObjSection::Run& run)
{
    return std::span(run.piece->lines.corners)
        .subspan(run.begin.lineCorners, run.end.lineCorners - run.begin.lineCorners);
}

Polygons takeRun(const ObjSection::Run& run, const PointSubset& subset)
{
    Polygons result;
    for (const std::uint32_t index : faceCorners(run))
        result.corners.push_back(subset.newIndex(index));
    const auto& sizes = run.piece->faces.sizes;
    if (!sizes.empty())
        result.sizes.assign(sizes.begin() + static_cast<std::ptrdiff_t>(run.begin.faces),
                            sizes.begin() + static_cast<std::ptrdiff_t>(run.end.faces));
    return result;
}

} // namespace

bool ObjSection::hasFaces() const
{
    return std::ranges::any_of(runs, [](const Run& run) { return run.end.faces > run.begin.faces; });
}

bool ObjSection::hasLines() const
{
    return std::ranges::any_of(runs, [](const Run& run) { return run.end.lines > run.begin.lines; });
}

bool ObjSection::hasDots() const
{
    return std::ranges::any_of(runs, [](const Run& run) { return run.end.dots > run.begin.dots; });
}

std::vector<ObjSection> collectObjSections(const std::vector<ObjPiece>& pieces)
{
    std::vector<ObjSection> sections;
    std::map<std::pair<std::string, std::string>, std::size_t> known;
    std::pair<std::string, std::string> current;
    const auto addRun = [&](ObjSection::Run run)
    {
        if (run.begin.faces == run.end.faces && run.begin.lines == run.end.lines && run.begin.dots == run.end.dots)
            return;
        const auto [found, isNew] = known.try_emplace(current, sections.size());
        if (isNew)
            sections.push_back({current.first, current.second, {}});
        sections[found->second].runs.push_back(std::move(run));
    };
    for (const ObjPiece& piece : pieces)
    {
        ObjSectionStart begin;
        for (const ObjSectionStart& start : piece.sections)
        {
            addRun({&piece, begin, start});
            begin = start;
            if (start.isGroup)
                current.second = start.name;
            else
                current = {start.name, {}};
        }
        addRun({&piece, begin, endOf(piece)});
    }
    return sections;
}

RawMesh takeFaces(const ObjSection& section, const ObjPoints& all)
{
    std::vector<std::span<const std::uint32_t>> used;
    used.reserve(section.runs.size());
    for (const ObjSection::Run& run : section.runs)
        used.push_back(faceCorners(run));
    const PointSubset subset(used, all.points.size());
    RawMesh raw;
    raw.points = subset.take(all.points);
    raw.vertexColors = subset.take(all.colors);
    // Another section of the file has colours.
    const auto isDefault = [](Color color) { return color == VisualObject::defaultColor(); };
    if (std::ranges::all_of(raw.vertexColors, isDefault))
        raw.vertexColors.clear();
    std::vector<std::vector<std::uint32_t>> cornerNormals;
    for (const ObjSection::Run& run : section.runs)
    {
        raw.polygons.push_back(takeRun(run, subset));
        auto& normals = cornerNormals.emplace_back();
        if (!run.piece->faceNormals.empty())
            normals.assign(run.piece->faceNormals.begin() + static_cast<std::ptrdiff_t>(run.begin.corners),
                           run.piece->faceNormals.begin() + static_cast<std::ptrdiff_t>(run.end.corners));
    }
    raw.normals = resolveNormals(raw.polygons, cornerNormals, all.normals, raw.points.size());
    return raw;
}

Lines takeLines(const ObjSection& section, const ObjPoints& all)
{
    std::vector<std::span<const std::uint32_t>> used;
    used.reserve(section.runs.size());
    for (const ObjSection::Run& run : section.runs)
        used.push_back(lineCorners(run));
    const PointSubset subset(used, all.points.size());
    Lines lines;
    lines.points = subset.take(all.points);
    const auto isGood = [&](std::uint32_t index) { return index != kNoPoint && lines.points[index].allFinite(); };
    for (const ObjSection::Run& run : section.runs)
    {
        const Polygons& polylines = run.piece->lines;
        std::size_t corner = run.begin.lineCorners;
        for (std::size_t line = run.begin.lines; line < run.end.lines; ++line)
        {
            const std::size_t size = polylines.sizes.empty() ? 3 : polylines.sizes[line];
            for (std::size_t i = 1; i < size; ++i)
            {
                const Segment segment(subset.newIndex(polylines.corners[corner + i - 1]),
                                      subset.newIndex(polylines.corners[corner + i]));
                if (isGood(segment[0]) && isGood(segment[1]))
                    lines.segments.push_back(segment);
            }
            corner += size;
        }
    }
    if (lines.segments.empty())
        return {};
    // No segment uses a point that is not finite any more; the place of another one leaves the box as it is.
    const Vector3f somewhere = lines.points[lines.segments.front()[0]];
    for (Vector3f& point : lines.points)
    {
        if (!point.allFinite())
            point = somewhere;
    }
    return lines;
}

PointCloud takeDots(const ObjSection& section, const ObjPoints& all)
{
    PointCloud cloud;
    for (const ObjSection::Run& run : section.runs)
    {
        for (std::size_t i = run.begin.dots; i < run.end.dots; ++i)
        {
            const std::uint32_t index = run.piece->dots[i];
            if (index >= all.points.size() || !all.points[index].allFinite())
                continue;
            cloud.points.push_back(all.points[index]);
            if (!all.colors.empty())
                cloud.colors.push_back(all.colors[index]);
        }
    }
    return cloud;
}

std::vector<Vector3f> resolveNormals(const std::vector<Polygons>& polygons,
                                     const std::vector<std::vector<std::uint32_t>>& cornerNormals,
                                     const std::vector<Vector3f>& normals, std::size_t pointCount)
{
    bool hasCorners = false;
    for (std::size_t piece = 0; piece < polygons.size(); ++piece)
    {
        if (cornerNormals[piece].size() != polygons[piece].corners.size())
            return {};
        hasCorners = hasCorners || !cornerNormals[piece].empty();
    }
    std::vector<std::uint32_t> normalOf(pointCount, kNoPoint);
    std::atomic<bool> good{hasCorners};
    tbb::parallel_for(std::size_t{0}, polygons.size(),
                      [&](std::size_t piece)
                      {
                          const auto& corners = polygons[piece].corners;
                          for (std::size_t i = 0; i < corners.size() && good; ++i)
                          {
                              const std::uint32_t normal = cornerNormals[piece][i];
                              if (corners[i] >= pointCount || normal >= normals.size())
                              {
                                  good = false;
                                  return;
                              }
                              std::uint32_t known = kNoPoint;
                              const std::atomic_ref<std::uint32_t> slot(normalOf[corners[i]]);
                              if (!slot.compare_exchange_strong(known, normal, std::memory_order_relaxed) &&
                                  known != normal && normals[known] != normals[normal])
                                  good = false;
                          }
                      });
    if (!good)
        return {};
    std::vector<Vector3f> result(pointCount, Vector3f(0.0F, 0.0F, 1.0F));
    for (std::size_t i = 0; i < pointCount; ++i)
    {
        if (normalOf[i] != kNoPoint)
            result[i] = normals[normalOf[i]];
    }
    return result;
}

} // namespace VX

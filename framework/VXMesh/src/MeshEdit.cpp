#include <VXMesh/MeshEdit.h>

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

#include <algorithm>
#include <atomic>
#include <bit>
#include <cassert>
#include <memory>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

using Word = FaceSet::Word;
constexpr std::size_t kBits = FaceSet::bitsInWord;
constexpr std::size_t kWordGrain = 256;

template <class Body>
void forEachIndex(std::size_t count, const Body& body)
{
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, count, kWordGrain),
                      [&](const tbb::blocked_range<std::size_t>& range)
                      {
                          for (std::size_t i = range.begin(); i != range.end(); ++i)
                              body(i);
                      });
}

template <class Visit>
void forEachBit(Word word, std::size_t wordIndex, const Visit& visit)
{
    for (; word != 0; word &= word - 1)
        visit(wordIndex * kBits + static_cast<std::size_t>(std::countr_zero(word)));
}

/// Which of the elements of an array are kept, and where they go.
class Kept
{
public:
    /// @param words  element i is kept where bit i % 64 of word i / 64 is set
    explicit Kept(std::vector<Word> words)
        : words_(std::move(words))
        , begins_(words_.size() + 1)
    {
        for (std::size_t i = 0; i < words_.size(); ++i)
            begins_[i + 1] = begins_[i] + onesIn_(words_[i]);
    }

    [[nodiscard]] std::size_t count() const { return begins_.back(); }

    /// The new place of an element that is kept.
    [[nodiscard]] std::uint32_t placeOf(std::uint32_t element) const
    {
        const Word before = (Word{1} << element % kBits) - 1;
        return begins_[element / kBits] + onesIn_(words_[element / kBits] & before);
    }

    /// The kept ones of `elements`, each after `map`; none of none.
    template <class T, class Map>
    [[nodiscard]] std::vector<T> select(const std::vector<T>& elements, const Map& map) const
    {
        if (elements.empty())
            return {};
        std::vector<T> result(count());
        forEachIndex(words_.size(),
                     [&](std::size_t i)
                     {
                         std::size_t place = begins_[i];
                         forEachBit(words_[i], i,
                                    [&](std::size_t element) { result[place++] = map(elements[element]); });
                     });
        return result;
    }

    template <class T>
    [[nodiscard]] std::vector<T> select(const std::vector<T>& elements) const
    {
        return select(elements, [](const T& element) { return element; });
    }

private:
    static std::uint32_t onesIn_(Word word) { return static_cast<std::uint32_t>(std::popcount(word)); }

    std::vector<Word> words_;
    /// The kept elements before each word.
    std::vector<std::uint32_t> begins_;
};

/// The points that faces use.
std::vector<Word> usedPoints(const Mesh& mesh, const FaceSet& faces)
{
    const std::size_t count = mesh.points.size();
    const auto used = std::make_unique<std::atomic<bool>[]>(count);
    forEachIndex(faces.words().size(),
                 [&](std::size_t i)
                 {
                     forEachBit(faces.words()[i], i,
                                [&](std::size_t face)
                                {
                                    for (const std::uint32_t point : mesh.triangles[face])
                                        used[point].store(true, std::memory_order_relaxed);
                                });
                 });
    std::vector<Word> words((count + kBits - 1) / kBits);
    forEachIndex(words.size(),
                 [&](std::size_t i)
                 {
                     const std::size_t end = std::min(count, (i + 1) * kBits);
                     for (std::size_t point = i * kBits; point < end; ++point)
                         words[i] |= Word{used[point].load(std::memory_order_relaxed)} << point % kBits;
                 });
    return words;
}

} // namespace

Mesh deleteFaces(const Mesh& mesh, const FaceSet& faces)
{
    assert(faces.size() == mesh.triangles.size());
    FaceSet left = faces;
    left.flip();
    const Kept points(usedPoints(mesh, left));
    const Kept triangles({left.words().begin(), left.words().end()});
    Mesh result;
    result.points = points.select(mesh.points);
    result.normals = points.select(mesh.normals);
    result.vertexColors = points.select(mesh.vertexColors);
    result.triangles =
        triangles.select(mesh.triangles, [&](const Triangle& t)
                         { return Triangle(points.placeOf(t[0]), points.placeOf(t[1]), points.placeOf(t[2])); });
    result.faceColors = triangles.select(mesh.faceColors);
    return result;
}

} // namespace VX

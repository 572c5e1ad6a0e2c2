#pragma once

#include <VXMesh/Export.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace VX
{

/// A set of the faces of one mesh: a bit for each of its M triangles. Shared as `std::shared_ptr<const FaceSet>` and
/// never changed then.
class VXMESH_API FaceSet
{
public:
    using Word = std::uint64_t;
    static constexpr std::size_t bitsInWord = 64;

    /// For a mesh without triangles.
    FaceSet() = default;

    /// Of a mesh of `size` triangles: none of them, or all.
    explicit FaceSet(std::size_t size, bool all = false);

    /// The triangles of the mesh, M.
    [[nodiscard]] std::size_t size() const { return size_; }

    /// The faces in the set.
    [[nodiscard]] std::size_t count() const;

    [[nodiscard]] bool any() const;

    /// @param face  less than `size()`
    [[nodiscard]] bool test(std::size_t face) const
    {
        return ((words_[face / bitsInWord] >> face % bitsInWord) & 1) != 0;
    }

    /// @param face  less than `size()`
    void set(std::size_t face, bool in = true)
    {
        const Word bit = Word{1} << face % bitsInWord;
        Word& word = words_[face / bitsInWord];
        word = in ? word | bit : word & ~bit;
    }

    /// Takes in what was not in the set, and takes out what was.
    void flip();

    /// Both sets are of one mesh, here and below.
    FaceSet& operator|=(const FaceSet& other);
    FaceSet& operator&=(const FaceSet& other);

    /// Takes out the faces of `other`.
    FaceSet& operator-=(const FaceSet& other);

    friend bool operator==(const FaceSet&, const FaceSet&) = default;

    /// Calls `visit(face)` for the faces in the set, in ascending order.
    template <class Visit>
    void forEach(const Visit& visit) const
    {
        for (std::size_t i = 0; i < words_.size(); ++i)
        {
            for (Word rest = words_[i]; rest != 0; rest &= rest - 1)
                visit(i * bitsInWord + static_cast<std::size_t>(std::countr_zero(rest)));
        }
    }

    /// Face i is bit i % 64 of word i / 64; the bits past the last face are 0. For walks on several threads: a thread
    /// may change words of its own.
    [[nodiscard]] std::span<const Word> words() const { return words_; }

    [[nodiscard]] std::span<Word> words() { return words_; }

    /// The memory it takes up, in bytes.
    [[nodiscard]] std::size_t heapBytes() const { return words_.capacity() * sizeof(Word); }

private:
    void clearPadding_();

    std::size_t size_ = 0;
    std::vector<Word> words_;
};

} // namespace VX

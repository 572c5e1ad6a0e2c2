#include <VXMesh/FaceSet.h>

#include <algorithm>
#include <cassert>

namespace VX
{

FaceSet::FaceSet(std::size_t size, bool all)
    : size_(size)
    , words_((size + bitsInWord - 1) / bitsInWord, all ? ~Word{0} : Word{0})
{
    clearPadding_();
}

std::size_t FaceSet::count() const
{
    std::size_t sum = 0;
    for (const Word word : words_)
        sum += static_cast<std::size_t>(std::popcount(word));
    return sum;
}

bool FaceSet::any() const
{
    return std::ranges::any_of(words_, [](Word word) { return word != 0; });
}

void FaceSet::flip()
{
    for (Word& word : words_)
        word = ~word;
    clearPadding_();
}

FaceSet& FaceSet::operator|=(const FaceSet& other)
{
    assert(size_ == other.size_);
    for (std::size_t i = 0; i < words_.size(); ++i)
        words_[i] |= other.words_[i];
    return *this;
}

FaceSet& FaceSet::operator&=(const FaceSet& other)
{
    assert(size_ == other.size_);
    for (std::size_t i = 0; i < words_.size(); ++i)
        words_[i] &= other.words_[i];
    return *this;
}

FaceSet& FaceSet::operator-=(const FaceSet& other)
{
    assert(size_ == other.size_);
    for (std::size_t i = 0; i < words_.size(); ++i)
        words_[i] &= ~other.words_[i];
    return *this;
}

void FaceSet::clearPadding_()
{
    const std::size_t used = size_ % bitsInWord;
    if (used != 0)
        words_.back() &= (Word{1} << used) - 1;
}

} // namespace VX

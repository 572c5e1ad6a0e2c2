#pragma once

#include "StepFile.h"
#include "StepStructure.h"

#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace VX
{

/// What of a file the geometry library has to read, as an ISO 10303-21 text of its own.
struct StepExcerpt
{
    /// Where to find an item in the text, by the numbers of its instances.
    struct Item
    {
        int representation = 0;
        int item = 0; ///< 0: it could not be written, because it is damaged
    };

    std::string text;
    std::vector<Item> items;                    ///< one each for the items asked for
    int size = 0;                               ///< instances have the numbers from 1 to this
    std::unordered_map<StepIndex, int> numbers; ///< of the file's instances in the text, 0 where damaged
};

/// Writes `items` and everything that they refer to, and nothing else: no product structure, no styles, no product
/// manufacturing information, all of which the library reads slowly. Each item gets a SHAPE_REPRESENTATION of its own
/// with its context. Instances get new numbers from 1 without gaps, since the library takes numbers of 31 bits; labels
/// are left empty. What is damaged is left out, with what needs it: see `StepSoundness`.
/// @return the excerpt; its text is empty when no item could be written
/// @threads any
[[nodiscard]] StepExcerpt makeStepExcerpt(const StepFile& file, std::span<const StepItem> items);

} // namespace VX

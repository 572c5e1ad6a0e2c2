#pragma once

#include "StepRecord.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace VX
{

/// The position of an instance in the file's order, from 0.
using StepIndex = std::uint32_t;

inline constexpr StepIndex noStepInstance = ~StepIndex{0};

/// An entity type: a hash of its keyword (FNV-1a), so that types compare and switch like numbers.
using StepType = std::uint64_t;

/// The type of an instance of several entities, "(A() B())".
inline constexpr StepType complexStepType = 1;

[[nodiscard]] constexpr StepType stepType(std::string_view keyword)
{
    StepType hash = 0xcbf29ce484222325;
    for (const char c : keyword)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
    return hash;
}

inline namespace StepLiterals
{
consteval StepType operator""_step(const char* keyword, std::size_t length)
{
    return stepType({keyword, length});
}
} // namespace StepLiterals

/// One instance of the data section, `#id=text`.
struct StepInstance
{
    StepId id = 0;
    StepType type = complexStepType;
    std::string_view text; ///< from the keyword, or the parenthesis of a complex instance, up to before the semicolon
};

/// The instances of an ISO 10303-21 file, to be found by number and by type. Keeps views of the file's text, which
/// must outlive it. Where two instances have one number, the first is found.
/// @threads any, never changed
class StepFile
{
public:
    StepFile() = default;

    explicit StepFile(std::vector<StepInstance> instances);

    [[nodiscard]] StepIndex size() const { return static_cast<StepIndex>(instances_.size()); }

    /// @return the index of instance #id, or `noStepInstance`
    [[nodiscard]] StepIndex find(StepId id) const;

    [[nodiscard]] const StepInstance& operator[](StepIndex index) const { return instances_[index]; }

    /// The instance that an argument refers to, or `noStepInstance`.
    [[nodiscard]] StepIndex reference(std::string_view argument) const;

    /// The instances that an argument refers to, a list or a single one; those that are not there are left out.
    [[nodiscard]] std::vector<StepIndex> references(std::string_view argument) const;

    /// The arguments of a simple instance; no arguments for a complex one and for `noStepInstance`.
    [[nodiscard]] StepRecord record(StepIndex index) const;

    /// The arguments of the entity `type` of an instance: its own, or those of that part of a complex instance.
    [[nodiscard]] std::optional<StepRecord> record(StepIndex index, StepType type) const;

    /// The type of a simple instance, `complexStepType` for others and for `noStepInstance`.
    [[nodiscard]] StepType type(StepIndex index) const
    {
        return index < size() ? instances_[index].type : complexStepType;
    }

    /// Whether the instance is a `type`, or a complex instance with such a part.
    [[nodiscard]] bool is(StepIndex index, StepType type) const;

    /// The simple instances of `type`, in file order.
    [[nodiscard]] std::vector<StepIndex> all(StepType type) const;

private:
    void indexIds_();

    std::vector<StepInstance> instances_;
    /// By number, where numbers are dense; else empty.
    std::vector<StepIndex> byId_;
    /// By number, sorted, where they are not; else empty.
    std::vector<std::pair<StepId, StepIndex>> sortedIds_;
};

} // namespace VX

#pragma once

#include "StepFile.h"

#include <cstdint>
#include <vector>

namespace VX
{

/// Decides which instances of a file the geometry library can take. It crashes on references that lead nowhere, in
/// circles or to something of another kind, and on splines with wrong counts, so what has one is unsound, and so is
/// what needs something unsound: an edge without its curve, a face without one of its edges. Sets of geometry, such as
/// shells, only lose the unsound among their members, so that the rest of a damaged part can still be shown.
/// @threads one; remembers what it found
class StepSoundness
{
public:
    explicit StepSoundness(const StepFile& file);

    /// Whether an instance and everything that it needs is there, well-formed, without circles, without wrong counts
    /// and not nested beyond all reason. A set is sound when it has a sound member, or no member at all.
    [[nodiscard]] bool isSound(StepIndex index);

    /// Whether instances of this type, whose arguments are a label and a list, are sets.
    [[nodiscard]] static bool isSet(StepType type);

private:
    enum class State : std::uint8_t
    {
        Unknown,
        Open, ///< on the path from the instance asked for
        Sound,
        Unsound
    };

    /// An instance on the path, and how far its references are looked at.
    struct Visit
    {
        StepIndex index = noStepInstance;
        std::vector<StepIndex> references;
        std::size_t next = 0;
        bool hasSound = false;
    };

    void enter_(StepIndex index);
    void step_();
    void leave_(State state);

    const StepFile& file_;
    std::vector<State> states_;
    std::vector<Visit> path_;
};

} // namespace VX

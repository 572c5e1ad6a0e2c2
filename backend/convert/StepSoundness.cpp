#include "StepSoundness.h"

#include "StepGeometryTypes.h"
#include "StepGrammar.h"
#include "StepSplines.h"

#include <algorithm>
#include <array>

namespace VX
{

namespace
{

/// From a solid down to the points of its curves it is a dozen; offsets of offsets and the like may add some. The
/// library goes down with a function call or several for each, on a stack that is limited.
constexpr std::size_t maxDepth = 100;

} // namespace

StepSoundness::StepSoundness(const StepFile& file)
    : file_(file)
    , states_(file.size(), State::Unknown)
{
}

bool StepSoundness::isSet(StepType type)
{
    static constexpr std::array sets{"CLOSED_SHELL"_step,
                                     "OPEN_SHELL"_step,
                                     "CONNECTED_FACE_SET"_step,
                                     "SHELL_BASED_SURFACE_MODEL"_step,
                                     "FACE_BASED_SURFACE_MODEL"_step,
                                     "GEOMETRIC_SET"_step};
    return std::ranges::find(sets, type) != sets.end();
}

bool StepSoundness::isSound(StepIndex index)
{
    if (index >= states_.size())
        return false;
    if (states_[index] == State::Unknown)
        enter_(index);
    while (!path_.empty())
        step_();
    return states_[index] == State::Sound;
}

void StepSoundness::enter_(StepIndex index)
{
    std::vector<StepId> ids;
    path_.push_back({index, {}, 0, false});
    states_[index] = State::Open;
    if (!isWellFormedStepInstance(file_[index].text, &ids) || !hasFittingSplineCounts(file_, index))
        return leave_(State::Unsound);
    for (const StepId id : ids)
        path_.back().references.push_back(file_.find(id));
}

/// Looks at the next reference of the last instance on the path.
void StepSoundness::step_()
{
    Visit& visit = path_.back();
    const bool isTolerant = isSet(file_.type(visit.index));
    if (visit.next == visit.references.size())
        return leave_(!isTolerant || visit.hasSound || visit.references.empty() ? State::Sound : State::Unsound);

    const StepIndex reference = visit.references[visit.next];
    const bool isUsable =
        mayReferTo(file_.type(visit.index), visit.next, visit.references.size(), file_.type(reference));
    const State state = reference == noStepInstance || !isUsable ? State::Unsound : states_[reference];
    if (state == State::Unknown && path_.size() < maxDepth)
        return enter_(reference);
    ++visit.next;
    visit.hasSound = visit.hasSound || state == State::Sound;
    if (state != State::Sound && !isTolerant)
        leave_(State::Unsound);
}

void StepSoundness::leave_(State state)
{
    states_[path_.back().index] = state;
    path_.pop_back();
}

} // namespace VX

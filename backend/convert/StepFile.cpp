#include "StepFile.h"

#include <algorithm>

namespace VX
{

namespace
{

/// Numbers are dense when a table over them is at most this much longer than the list of instances.
constexpr StepId denseFactor = 4;
constexpr StepId denseMinimum = 1024;

/// The inside of the list that `text` begins with, behind blanks; nothing where it begins with none.
std::optional<std::string_view> listInside(std::string_view text)
{
    StepTokenizer tokens(text);
    if (tokens.next().kind != StepTokenKind::Open)
        return std::nullopt;
    const std::size_t open = tokens.position() - 1;
    const std::size_t length = stepListLength(text.substr(open));
    if (length < 2)
        return std::nullopt;
    return text.substr(open + 1, length - 2);
}

/// The arguments of the part `type` of the complex instance `text`.
std::optional<StepRecord> complexPart(std::string_view text, StepType type)
{
    const std::optional<std::string_view> parts = listInside(text);
    if (!parts)
        return std::nullopt;
    std::string_view rest = *parts;
    while (true)
    {
        StepTokenizer tokens(rest);
        const StepToken keyword = tokens.next();
        if (keyword.kind != StepTokenKind::Keyword)
            return std::nullopt;
        rest.remove_prefix(tokens.position());
        const std::optional<std::string_view> inside = listInside(rest);
        if (!inside)
            return std::nullopt;
        if (stepType(keyword.text) == type)
            return StepRecord(*inside);
        rest.remove_prefix(static_cast<std::size_t>(inside->data() - rest.data()) + inside->size() + 1);
    }
}

} // namespace

StepFile::StepFile(std::vector<StepInstance> instances)
    : instances_(std::move(instances))
{
    indexIds_();
}

void StepFile::indexIds_()
{
    StepId largest = 0;
    for (const StepInstance& instance : instances_)
        largest = std::max(largest, instance.id);

    if (largest <= instances_.size() * denseFactor + denseMinimum)
    {
        byId_.assign(largest + 1, noStepInstance);
        for (StepIndex index = size(); index-- > 0;)
            byId_[instances_[index].id] = index;
        return;
    }
    sortedIds_.reserve(instances_.size());
    for (StepIndex index = 0; index < size(); ++index)
        sortedIds_.emplace_back(instances_[index].id, index);
    std::ranges::sort(sortedIds_);
}

StepIndex StepFile::find(StepId id) const
{
    if (sortedIds_.empty())
        return id < byId_.size() ? byId_[id] : noStepInstance;
    const auto found = std::ranges::lower_bound(sortedIds_, std::pair{id, StepIndex{0}});
    return found != sortedIds_.end() && found->first == id ? found->second : noStepInstance;
}

StepIndex StepFile::reference(std::string_view argument) const
{
    const std::optional<StepId> id = stepReference(argument);
    return id ? find(*id) : noStepInstance;
}

std::vector<StepIndex> StepFile::references(std::string_view argument) const
{
    std::vector<StepIndex> found;
    forEachStepReference(argument,
                         [&](StepId id)
                         {
                             if (const StepIndex index = find(id); index != noStepInstance)
                                 found.push_back(index);
                         });
    return found;
}

StepRecord StepFile::record(StepIndex index) const
{
    if (index >= size() || instances_[index].type == complexStepType)
        return {};
    StepTokenizer tokens(instances_[index].text);
    tokens.next();
    const std::optional<std::string_view> inside = listInside(instances_[index].text.substr(tokens.position()));
    return inside ? StepRecord(*inside) : StepRecord();
}

std::optional<StepRecord> StepFile::record(StepIndex index, StepType wanted) const
{
    if (index >= size())
        return std::nullopt;
    const StepInstance& instance = instances_[index];
    if (instance.type == complexStepType)
        return complexPart(instance.text, wanted);
    return instance.type == wanted ? std::optional(record(index)) : std::nullopt;
}

bool StepFile::is(StepIndex index, StepType wanted) const
{
    return type(index) == wanted || (type(index) == complexStepType && record(index, wanted).has_value());
}

std::vector<StepIndex> StepFile::all(StepType wanted) const
{
    std::vector<StepIndex> found;
    for (StepIndex index = 0; index < size(); ++index)
        if (instances_[index].type == wanted)
            found.push_back(index);
    return found;
}

} // namespace VX

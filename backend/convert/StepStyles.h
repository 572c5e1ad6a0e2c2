#pragma once

#include "StepFile.h"

#include <VXMesh/Geometry.h>

#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace VX
{

/// A colour that applies to an item only in some of its instances.
struct StepInstanceColor
{
    StepIndex item = noStepInstance;
    std::vector<StepIndex> usages; ///< usage occurrences, all of them above the item; never empty
    Color color;
};

/// The colours of a file's surfaces, solids, bodies and instances, from its styled items.
/// @threads any, never changed
class StepStyles
{
public:
    explicit StepStyles(const StepFile& file);

    /// The surface colour that the file gives to an item, a shell, a face, a representation or a mapped item.
    [[nodiscard]] std::optional<Color> colorOf(StepIndex item) const;

    /// The colour of an item, else that of the representation that holds it.
    [[nodiscard]] std::optional<Color> colorOf(StepIndex item, StepIndex representation) const;

    /// The colours of the faces of a solid, surface model or tessellated body: a face's own, else that of a shell above
    /// it. Faces without one are left out.
    [[nodiscard]] std::vector<std::pair<StepIndex, Color>> faceColorsOf(StepIndex item) const;

    /// In the order in which they apply.
    [[nodiscard]] const std::vector<StepInstanceColor>& instanceColors() const { return instanceColors_; }

    /// Whether the file hides the item.
    [[nodiscard]] bool isHidden(StepIndex item) const { return hidden_.contains(item); }

private:
    void readHidden_();
    void style_(StepIndex styledItem);
    void addUsages_(StepIndex context, std::unordered_set<StepIndex>& seen, std::vector<StepIndex>& usages,
                    int depth) const;
    [[nodiscard]] std::vector<StepIndex> styleContexts_(const StepRecord& styledItem) const;
    [[nodiscard]] std::optional<Color> styleColor_(StepIndex style);

    const StepFile& file_;
    std::unordered_map<StepIndex, Color> colors_;
    std::unordered_map<StepIndex, std::optional<Color>> styles_;
    std::unordered_map<StepIndex, StepIndex> shapeUsages_; ///< representation to the usage whose shape it is
    std::vector<StepInstanceColor> instanceColors_;
    std::unordered_set<StepIndex> hidden_;
};

} // namespace VX

#include "StatusLine.h"

#include "Translate.h"

#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#include <vector>

namespace VX
{

void StatusLine::draw()
{
    if (revision_ != viewer_.scene().revision())
    {
        revision_ = viewer_.scene().revision();
        facts_ = {};
        facts_.add(viewer_.scene());
    }
    std::vector<std::string> parts;
    if (facts_.objects == 1)
        parts.push_back(tr("1 object"));
    else if (facts_.objects > 1)
        parts.push_back(trf("{} objects", countText(facts_.objects)));
    if (facts_.triangles > 0)
        parts.push_back(trf("{} triangles", countText(facts_.triangles)));
    if (facts_.points > 0)
        parts.push_back(trf("{} points", countText(facts_.points)));
    std::string left;
    for (const std::string& part : parts)
        left += (left.empty() ? "" : "   \u00B7   ") + part;
    UI::secondaryText(left.empty() ? tr("Empty scene") : UI::elided(left, ImGui::GetContentRegionAvail().x));
}

} // namespace VX

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
    if (facts_.objects > 0)
        parts.push_back(trn("{} object", "{} objects", facts_.objects, countText(facts_.objects)));
    if (facts_.triangles > 0)
        parts.push_back(trn("{} triangle", "{} triangles", facts_.triangles, countText(facts_.triangles)));
    if (facts_.points > 0)
        parts.push_back(trn("{} point", "{} points", facts_.points, countText(facts_.points)));
    std::string left;
    for (const std::string& part : parts)
        left += (left.empty() ? "" : "   \u00B7   ") + part;
    UI::secondaryText(left.empty() ? tr("Empty scene") : UI::elided(left, ImGui::GetContentRegionAvail().x));
}

} // namespace VX

#include "CreateObjectsTool.h"
#include "ItemGroups.h"
#include "SelectPrimitivesTool.h"
#include "SelectRectangleTool.h"

namespace VX
{

RibbonItems makeToolItems(Viewer& viewer, const std::shared_ptr<SceneSummary>& scene)
{
    return {std::make_shared<SelectPrimitivesTool>(viewer, scene), std::make_shared<SelectRectangleTool>(viewer, scene),
            std::make_shared<CreateObjectsTool>(viewer)};
}

} // namespace VX

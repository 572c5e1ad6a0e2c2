#include "IconStore.h"

#include <VXViewer/RibbonIcons.h>

namespace VX
{

const RibbonIcons::Icon* RibbonIcons::find(std::string_view name, float pixels, ColorType colors, IconType type)
{
    return IconStore::instance().find(name, pixels, colors, type);
}

} // namespace VX

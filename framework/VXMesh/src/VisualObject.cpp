#include <VXMesh/VisualObject.h>

namespace VX
{

void VisualObject::setColor(Color color)
{
    if (color_ == color)
        return;
    color_ = color;
    markChanged_();
}

} // namespace VX

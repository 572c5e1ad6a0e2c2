#include <VXMesh/Progress.h>

#include <utility>

namespace VX
{

const std::string& operationCanceledText()
{
    static const std::string text = "Operation was canceled";
    return text;
}

ProgressCallback subprogress(ProgressCallback callback, float from, float to)
{
    if (!callback)
        return {};
    return [callback = std::move(callback), from, to](float fraction)
    { return callback(from + (to - from) * fraction); };
}

bool reportProgress(const ProgressCallback& callback, float fraction)
{
    return !callback || callback(fraction);
}

} // namespace VX

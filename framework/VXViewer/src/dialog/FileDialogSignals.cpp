#include <VXViewer/FileDialogSignals.h>

namespace VX
{

FileDialogSignals& FileDialogSignals::instance()
{
    static FileDialogSignals signals;
    return signals;
}

} // namespace VX

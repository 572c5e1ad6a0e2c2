#include "PrivateFiles.h"

#include <sys/stat.h>

namespace VX
{

void keepNewFilesPrivate()
{
    umask(S_IRWXG | S_IRWXO);
}

} // namespace VX

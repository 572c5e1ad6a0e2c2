#pragma once

namespace VX
{

/// Makes every file and folder that the process creates from now on accessible to its user alone.
void keepNewFilesPrivate();

} // namespace VX

#pragma once

#include "launcher/CommandLine.h"

namespace VX
{

class Viewer;

/// Lets the program end with 1, now or later.
/// @threads UI thread
void noteFailure(Viewer& viewer);

/// Writes the pictures and the scene tree that `line` asks for and closes `viewer`. What cannot be written is named on
/// standard error, and the program ends with 1.
/// @threads UI thread
void writeBatchOutput(Viewer& viewer, const CommandLine& line);

} // namespace VX

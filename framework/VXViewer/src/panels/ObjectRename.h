#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace VX
{

class Object;
class Viewer;

/// Names `object`, as a step of the viewer's history. A name of blanks alone, or the one that it has, changes nothing.
/// @threads the UI thread
void renameObject(Viewer& viewer, const std::shared_ptr<Object>& object, std::string_view name);

} // namespace VX

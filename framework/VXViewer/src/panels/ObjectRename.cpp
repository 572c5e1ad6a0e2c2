#include "ObjectRename.h"

#include <VXMesh/Object.h>
#include <VXViewer/HistoryStore.h>
#include <VXViewer/Locale.h>
#include <VXViewer/SceneEdit.h>
#include <VXViewer/Viewer.h>

namespace VX
{

namespace
{

constexpr std::string_view blanks = " \t\r\n";

} // namespace

void renameObject(Viewer& viewer, const std::shared_ptr<Object>& object, std::string_view name)
{
    const std::size_t first = name.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return;
    SceneEdit edit(*viewer.getGlobalHistoryStore(), translatable("Rename"));
    edit.touch(object);
    object->setName(std::string(name.substr(first, name.find_last_not_of(blanks) - first + 1)));
}

} // namespace VX

#include "HelperProgram.h"

#include <VXMesh/SystemPath.h>

#include <system_error>

namespace VX
{

std::filesystem::path helperProgram()
{
    const auto executable = SystemPath::getExecutablePath();
    if (!executable)
        return {};
    std::filesystem::path helper = executable->parent_path() / "quorvix-dialog";
    std::error_code error;
    return std::filesystem::is_regular_file(helper, error) ? helper : std::filesystem::path();
}

} // namespace VX

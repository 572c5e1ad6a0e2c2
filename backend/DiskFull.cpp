#include "DiskFull.h"

#include <cerrno>

namespace VX
{

const std::string& diskFullText()
{
    static const std::string text = "The disk of the conversion service is full. Free some space and try again.";
    return text;
}

bool isDiskFull(const std::error_code& error)
{
    return error == std::errc::no_space_on_device || error == std::error_code(EDQUOT, std::generic_category());
}

} // namespace VX

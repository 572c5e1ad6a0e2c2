#include "RandomUuid.h"

#include <boost/uuid/random_generator.hpp>
#include <boost/uuid/uuid_io.hpp>

namespace VX
{

std::string randomUuid()
{
    return boost::uuids::to_string(boost::uuids::random_generator()());
}

} // namespace VX

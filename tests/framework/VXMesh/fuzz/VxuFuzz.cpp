#include "ReaderOracle.h"
#include "formats/VxuFormat.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    VX::Test::checkReader(VX::readVxu, "fuzz.vxu", std::as_bytes(std::span(data, size)));
    return 0;
}

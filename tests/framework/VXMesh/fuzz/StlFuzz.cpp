#include "ReaderOracle.h"
#include "formats/StlFormat.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    VX::Test::checkReader(VX::readStl, "fuzz.stl", std::as_bytes(std::span(data, size)));
    return 0;
}

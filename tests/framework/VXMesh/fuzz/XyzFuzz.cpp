#include "ReaderOracle.h"
#include "formats/XyzFormat.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    VX::Test::checkReader(VX::readXyz, "fuzz.xyz", std::as_bytes(std::span(data, size)));
    return 0;
}

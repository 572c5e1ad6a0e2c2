#include "ReaderOracle.h"
#include "formats/OffFormat.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    VX::Test::checkReader(VX::readOff, "fuzz.off", std::as_bytes(std::span(data, size)));
    return 0;
}

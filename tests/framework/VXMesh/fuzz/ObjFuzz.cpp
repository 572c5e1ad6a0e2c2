#include "ReaderOracle.h"
#include "formats/ObjFormat.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    VX::Test::checkReader(VX::readObj, "fuzz.obj", std::as_bytes(std::span(data, size)));
    return 0;
}

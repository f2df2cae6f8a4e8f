#include "fuzz/fuzzInput.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    zint::fuzz({reinterpret_cast<const char*>(data), size});
    return 0;
}

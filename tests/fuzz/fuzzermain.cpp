/// \file
/// One target as libFuzzer calls it: FFC_FUZZ_TARGET is the function's name.

#include "tests/fuzz/fuzztargets.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, std::size_t nSize);

int LLVMFuzzerTestOneInput(const uint8_t *pData, std::size_t nSize)
{
  FFC_FUZZ_TARGET(pData, nSize);
  return 0;
}

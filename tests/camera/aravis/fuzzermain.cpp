// FuzzAravisNodeMap as libFuzzer calls it.
#include "tests/camera/aravis/fuzznodemap.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, std::size_t nSize);

int LLVMFuzzerTestOneInput(const uint8_t *pData, std::size_t nSize)
{
  FuzzAravisNodeMap(pData, nSize);
  return 0;
}

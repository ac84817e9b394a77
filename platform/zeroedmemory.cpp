#include "platform/zeroedmemory.h"

#include <cstdlib>

#include "platform/hugepages.h"

namespace ffc::platform {

void *TakeZeroedMemory(std::size_t nSize) noexcept
{
  void *const pMemory = std::calloc(nSize == 0 ? 1 : nSize, 1);
  ffc::platform::AdviseHugePages(pMemory, nSize);
  return pMemory;
}

void GiveZeroedMemory(void *pMemory) noexcept
{
  std::free(pMemory);
}

} // namespace ffc::platform

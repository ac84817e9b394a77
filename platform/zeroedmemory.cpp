#include "platform/zeroedmemory.h"

#include <cstdlib>

namespace ffc::platform {

void *TakeZeroedMemory(std::size_t nSize) noexcept
{
  return std::calloc(nSize == 0 ? 1 : nSize, 1);
}

void GiveZeroedMemory(void *pMemory) noexcept
{
  std::free(pMemory);
}

} // namespace ffc::platform

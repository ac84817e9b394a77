#include "tests/reference/failingallocations.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

thread_local int32_t s_nLeft = -1; ///< below 0: as many as one likes

} // namespace

namespace ffc::test {

CFailingAllocations::CFailingAllocations(int32_t nFailing)
{
  s_nLeft = nFailing;
}

CFailingAllocations::~CFailingAllocations()
{
  s_nLeft = -1;
}

bool CFailingAllocations::HasFailed() const
{
  return s_nLeft == 0;
}

} // namespace ffc::test

// The program's own, in place of the standard library's.
void *operator new(std::size_t nSize)
{
  if (s_nLeft > 0) {
    --s_nLeft;
  }
  void *pMemory = s_nLeft == 0 ? nullptr : std::malloc(nSize == 0 ? 1 : nSize);
  if (pMemory == nullptr) {
    throw std::bad_alloc();
  }
  return pMemory;
}

void *operator new(std::size_t nSize, const std::nothrow_t &) noexcept
{
  try {
    return operator new(nSize);
  } catch (const std::bad_alloc &) {
    return nullptr;
  }
}

void operator delete(void *pMemory) noexcept
{
  std::free(pMemory);
}

void operator delete(void *pMemory, std::size_t) noexcept
{
  std::free(pMemory);
}

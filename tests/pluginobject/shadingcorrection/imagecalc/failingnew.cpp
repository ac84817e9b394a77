#include "tests/pluginobject/shadingcorrection/imagecalc/failingnew.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr int32_t NEVER_FAILING = std::numeric_limits<int32_t>::max();

std::atomic<int32_t> s_nSuccesses{NEVER_FAILING};
std::atomic<int64_t> s_nLive{0};

void *Take(std::size_t nSize) noexcept
{
  void *const pMemory = std::malloc(nSize == 0 ? 1 : nSize);
  s_nLive += pMemory == nullptr ? 0 : 1;
  return pMemory;
}

void *TakeUnlessFailing(std::size_t nSize) noexcept
{
  if (s_nSuccesses == NEVER_FAILING) {
    return Take(nSize);
  }
  if (s_nSuccesses == 0) {
    return nullptr;
  }
  --s_nSuccesses;
  return Take(nSize);
}

void *TakeOrThrow(std::size_t nSize)
{
  void *const pMemory = Take(nSize);
  if (pMemory == nullptr) {
    throw std::bad_alloc();
  }
  return pMemory;
}

void Give(void *pMemory) noexcept
{
  s_nLive -= pMemory == nullptr ? 0 : 1;
  std::free(pMemory);
}

} // namespace

CFailingNew::CFailingNew(int32_t nSuccesses)
{
  s_nSuccesses = nSuccesses;
}

CFailingNew::~CFailingNew()
{
  s_nSuccesses = NEVER_FAILING;
}

int64_t CountLiveAllocations()
{
  return s_nLive;
}

// The program's own, in place of the standard library's: all of them, because each gives back what another
// took. Memory comes from malloc: under a sanitizer the library's new would end the program at a size that no
// machine has, instead of failing.

void *operator new(std::size_t nSize, const std::nothrow_t &) noexcept
{
  return TakeUnlessFailing(nSize);
}

void *operator new[](std::size_t nSize, const std::nothrow_t &) noexcept
{
  return TakeUnlessFailing(nSize);
}

void *operator new(std::size_t nSize)
{
  return TakeOrThrow(nSize);
}

void *operator new[](std::size_t nSize)
{
  return TakeOrThrow(nSize);
}

void operator delete(void *pMemory) noexcept
{
  Give(pMemory);
}

void operator delete[](void *pMemory) noexcept
{
  Give(pMemory);
}

void operator delete(void *pMemory, std::size_t) noexcept
{
  Give(pMemory);
}

void operator delete[](void *pMemory, std::size_t) noexcept
{
  Give(pMemory);
}

void operator delete(void *pMemory, const std::nothrow_t &) noexcept
{
  Give(pMemory);
}

void operator delete[](void *pMemory, const std::nothrow_t &) noexcept
{
  Give(pMemory);
}

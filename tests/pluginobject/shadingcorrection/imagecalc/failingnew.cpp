#include "tests/pluginobject/shadingcorrection/imagecalc/failingnew.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<bool> s_bFailing{false};

} // namespace

CFailingNew::CFailingNew()
{
  s_bFailing = true;
}

CFailingNew::~CFailingNew()
{
  s_bFailing = false;
}

// The program's own, in place of the standard library's: all of them for arrays, because each gives back
// what another took. Memory comes from malloc: under a sanitizer the library's new would end the program at a
// size that no machine has, instead of failing.

void *operator new[](std::size_t nSize, const std::nothrow_t &) noexcept
{
  return s_bFailing ? nullptr : std::malloc(nSize == 0 ? 1 : nSize);
}

void *operator new[](std::size_t nSize)
{
  void *pMemory = std::malloc(nSize == 0 ? 1 : nSize);
  if (pMemory == nullptr) {
    throw std::bad_alloc();
  }
  return pMemory;
}

void operator delete[](void *pMemory) noexcept
{
  std::free(pMemory);
}

void operator delete[](void *pMemory, std::size_t) noexcept
{
  std::free(pMemory);
}

void operator delete[](void *pMemory, const std::nothrow_t &) noexcept
{
  std::free(pMemory);
}

#include "tests/pluginobject/shadingcorrection/failingcreation.h"

#include <atomic>
#include <new>

namespace {

// Creations until the failing one; 0 or less: none fails.
std::atomic<int> s_nLeft{0};
std::atomic<bool> s_bFailed{false};

} // namespace

CFailingCreation::CFailingCreation(int nFailing)
{
  s_bFailed = false;
  s_nLeft = nFailing;
}

CFailingCreation::~CFailingCreation()
{
  s_nLeft = 0;
}

bool CFailingCreation::HasFailed() const
{
  return s_bFailed;
}

// The program's own, in place of the standard library's.
void *operator new(std::size_t nSize, const std::nothrow_t &) noexcept
{
  if (s_nLeft > 0 && --s_nLeft == 0) {
    s_bFailed = true;
    return nullptr;
  }
  try {
    return ::operator new(nSize);
  } catch (const std::bad_alloc &) {
    return nullptr;
  }
}

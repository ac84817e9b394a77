#include "platform/hugepages.h"

#include <cstdint>

#include <sys/mman.h>

namespace ffc::platform {

namespace {

constexpr std::size_t HUGE_PAGE_BYTES = std::size_t{1} << 21;

} // namespace

// A page holds nothing else: only those that lie within the memory as a whole.
void AdviseHugePages([[maybe_unused]] void *pMemory, [[maybe_unused]] std::size_t nSize) noexcept
{
#if defined(MADV_HUGEPAGE)
  const auto nStart = reinterpret_cast<uintptr_t>(pMemory);
  const std::size_t nBefore = (HUGE_PAGE_BYTES - nStart % HUGE_PAGE_BYTES) % HUGE_PAGE_BYTES;
  if (pMemory == nullptr || nSize < nBefore + HUGE_PAGE_BYTES) {
    return;
  }
  const std::size_t nWhole = (nSize - nBefore) / HUGE_PAGE_BYTES * HUGE_PAGE_BYTES;
  (void)madvise(static_cast<unsigned char *>(pMemory) + nBefore, nWhole, MADV_HUGEPAGE);
#endif
}

} // namespace ffc::platform

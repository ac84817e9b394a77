#include "tests/support/failingallocator.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>

namespace {

/// What libraries of others do not look at: the TIFF library goes on with a list of tags that is gone, the FITS library
/// writes a long text into memory that it did not get.
bool IsSpared(const void *pCaller)
{
  Dl_info stCaller = {};
  return dladdr(pCaller, &stCaller) != 0 && stCaller.dli_sname != nullptr &&
         (std::strcmp(stCaller.dli_sname, "_TIFFCheckRealloc") == 0 || std::strcmp(stCaller.dli_sname, "ffgkls") == 0);
}

/// \return whether the allocation is to fail; errno is set then
bool IsFailing(const void *pCaller)
{
  const bool bFails = ffc::test::IsAllocationToFail() && !IsSpared(pCaller);
  if (bFails) {
    errno = ENOMEM;
  }
  return bFails;
}

} // namespace

// The C library's own names, and the names by which it has its allocator besides.
extern "C" {

void *__libc_malloc(std::size_t nSize);
void *__libc_calloc(std::size_t nCount, std::size_t nSize);
void *__libc_realloc(void *pMemory, std::size_t nSize);
void *__libc_memalign(std::size_t nAlignment, std::size_t nSize);

void *malloc(std::size_t nSize)
{
  return IsFailing(__builtin_return_address(0)) ? nullptr : __libc_malloc(nSize);
}

void *calloc(std::size_t nCount, std::size_t nSize)
{
  return IsFailing(__builtin_return_address(0)) ? nullptr : __libc_calloc(nCount, nSize);
}

void *realloc(void *pMemory, std::size_t nSize)
{
  return IsFailing(__builtin_return_address(0)) ? nullptr : __libc_realloc(pMemory, nSize);
}

void *memalign(std::size_t nAlignment, std::size_t nSize)
{
  return IsFailing(__builtin_return_address(0)) ? nullptr : __libc_memalign(nAlignment, nSize);
}

void *aligned_alloc(std::size_t nAlignment, std::size_t nSize)
{
  return memalign(nAlignment, nSize);
}

int posix_memalign(void **ppMemory, std::size_t nAlignment, std::size_t nSize)
{
  void *const pMemory = memalign(nAlignment, nSize);
  if (pMemory == nullptr) {
    return ENOMEM;
  }
  *ppMemory = pMemory;
  return 0;
}

} // extern "C"

// Stands before the C library's allocator of a program (LD_PRELOAD): counts the allocations between the begin and the
// end of its main function, whoever makes them, and lets one of them fail, or all from one on.
//
//   FFC_MEMORY_FAULT          once NUMBER, or from NUMBER: the allocation that fails, counted from 1
//   FFC_MEMORY_FAULT_COUNTS   a file for the number of allocations, in decimal digits
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>

namespace {

using FnMain = int (*)(int, char **, char **);
using FnStart = int (*)(FnMain, int, char **, void (*)(), void (*)(), void (*)(), void *);

std::atomic<bool> s_bCounting{false};
std::atomic<unsigned long> s_nCount{0};
unsigned long s_nFailing = 0;
bool s_bForGood = false;
FnMain s_fnMain = nullptr;

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
  if (!s_bCounting.load(std::memory_order_relaxed)) {
    return false;
  }
  const unsigned long nNumber = ++s_nCount;
  const bool bMet = s_nFailing != 0 && (s_bForGood ? nNumber >= s_nFailing : nNumber == s_nFailing);
  const bool bFails = bMet && !IsSpared(pCaller);
  if (bFails) {
    errno = ENOMEM;
  }
  return bFails;
}

void ReadFault()
{
  const char *pFault = std::getenv("FFC_MEMORY_FAULT");
  const char *pNumber = pFault == nullptr ? nullptr : std::strchr(pFault, ' ');
  if (pNumber != nullptr) {
    s_bForGood = std::strncmp(pFault, "from ", 5) == 0;
    s_nFailing = std::strtoul(pNumber, nullptr, 10);
  }
}

void WriteCount()
{
  const char *pCounts = std::getenv("FFC_MEMORY_FAULT_COUNTS");
  std::FILE *pFile = pCounts == nullptr ? nullptr : std::fopen(pCounts, "w");
  if (pFile != nullptr) {
    std::fprintf(pFile, "%lu", s_nCount.load());
    std::fclose(pFile);
  }
}

// Before and behind it nobody is there to catch anything.
int CountedMain(int nArguments, char **pArguments, char **pEnvironment)
{
  ReadFault();
  s_bCounting = true;
  const int nExitCode = s_fnMain(nArguments, pArguments, pEnvironment);
  s_bCounting = false;
  WriteCount();
  return nExitCode;
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

int __libc_start_main(FnMain fnMain, int nArguments, char **pArguments, void (*fnBegin)(), void (*fnEnd)(),
                      void (*fnLoaderEnd)(), void *pStackEnd)
{
  s_fnMain = fnMain;
  const auto fnNext = reinterpret_cast<FnStart>(dlsym(RTLD_NEXT, "__libc_start_main"));
  return fnNext(&CountedMain, nArguments, pArguments, fnBegin, fnEnd, fnLoaderEnd, pStackEnd);
}

} // extern "C"

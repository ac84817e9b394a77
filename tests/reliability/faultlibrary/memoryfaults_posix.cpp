// Stands before the C library's allocator of a program (LD_PRELOAD): counts the allocations between the begin and the
// end of its main function, whoever makes them, and lets one of them fail, or all from one on.
//
//   FFC_MEMORY_FAULT          once NUMBER, or from NUMBER: the allocation that fails, counted from 1
//   FFC_MEMORY_FAULT_COUNTS   a file for the number of allocations, in decimal digits
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>

#include "tests/support/failingallocator.h"

namespace {

using FnMain = int (*)(int, char **, char **);
using FnStart = int (*)(FnMain, int, char **, void (*)(), void (*)(), void (*)(), void *);

std::atomic<bool> s_bCounting{false};
std::atomic<unsigned long> s_nCount{0};
unsigned long s_nFailing = 0;
bool s_bForGood = false;
FnMain s_fnMain = nullptr;

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

bool ffc::test::IsAllocationToFail()
{
  if (!s_bCounting.load(std::memory_order_relaxed)) {
    return false;
  }
  const unsigned long nNumber = ++s_nCount;
  return s_nFailing != 0 && (s_bForGood ? nNumber >= s_nFailing : nNumber == s_nFailing);
}

extern "C" int __libc_start_main(FnMain fnMain, int nArguments, char **pArguments, void (*fnBegin)(), void (*fnEnd)(),
                                 void (*fnLoaderEnd)(), void *pStackEnd)
{
  s_fnMain = fnMain;
  const auto fnNext = reinterpret_cast<FnStart>(dlsym(RTLD_NEXT, "__libc_start_main"));
  return fnNext(&CountedMain, nArguments, pArguments, fnBegin, fnEnd, fnLoaderEnd, pStackEnd);
}

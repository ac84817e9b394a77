#include "tests/reliability/moduleallocations.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include <dlfcn.h>
#include <link.h>
#include <sys/mman.h>
#include <unistd.h>
#include <unwind.h>

namespace {

struct SRange {
  uintptr_t nBegin;
  uintptr_t nEnd;
};

// Fixed before the first count.
std::vector<SRange> s_listOwn;
std::vector<SRange> s_listLibrary;
std::vector<SRange> s_listProgram;

thread_local bool t_bCounting = false;
thread_local bool t_bEverybody = false;
thread_local bool t_bFailed = false;
thread_local uint64_t t_nCount = 0;
thread_local uint64_t t_nFailing = 0;

bool IsWithin(const std::vector<SRange> &listRanges, uintptr_t nAddress)
{
  for (const SRange &stRange : listRanges) {
    if (nAddress >= stRange.nBegin && nAddress < stRange.nEnd) {
      return true;
    }
  }
  return false;
}

// Whether a mangled name begins in namespace std, or in the one that the C++ library has beside it.
bool IsLibraryName(const char *pName)
{
  if (std::strncmp(pName, "_Z", 2) != 0) {
    return false;
  }
  pName += 2;
  pName += *pName == 'N' ? 1 : 0;
  pName += *pName == 'K' ? 1 : 0;
  return (pName[0] == 'S' && pName[1] >= 'a' && pName[1] <= 'z') || std::strncmp(pName, "9__gnu_cxx", 10) == 0;
}

// The C++ library's templates are shared by all modules: where they are not inlined, the module calls the program's.
bool IsLibraryCode(uintptr_t nAddress)
{
  if (IsWithin(s_listLibrary, nAddress)) {
    return true;
  }
  Dl_info stInfo{};
  return IsWithin(s_listProgram, nAddress) && dladdr(reinterpret_cast<void *>(nAddress), &stInfo) != 0 &&
         stInfo.dli_sname != nullptr && IsLibraryName(stInfo.dli_sname);
}

struct SWalk {
  bool bInLibrary = false;
  bool bOwn = false;
};

_Unwind_Reason_Code LookAtFrame(_Unwind_Context *pContext, void *pArgument)
{
  auto &stWalk = *static_cast<SWalk *>(pArgument);
  const auto nAddress = static_cast<uintptr_t>(_Unwind_GetIP(pContext));
  if (IsLibraryCode(nAddress)) {
    stWalk.bInLibrary = true;
    return _URC_NO_REASON;
  }
  if (!stWalk.bInLibrary) {
    return _URC_NO_REASON; // still this file's own
  }
  stWalk.bOwn = IsWithin(s_listOwn, nAddress);
  return _URC_END_OF_STACK;
}

bool IsOwn(const void *pCaller)
{
  const auto nCaller = reinterpret_cast<uintptr_t>(pCaller);
  if (!IsLibraryCode(nCaller)) {
    return IsWithin(s_listOwn, nCaller);
  }
  SWalk stWalk;
  _Unwind_Backtrace(LookAtFrame, &stWalk);
  return stWalk.bOwn;
}

bool ShallFail(const void *pCaller)
{
  if (!t_bCounting) {
    return false;
  }
  t_bCounting = false; // what the walk itself takes does not count
  const bool bOwn = t_bEverybody || IsOwn(pCaller);
  t_bCounting = true;
  t_nCount += bOwn ? 1 : 0;
  const bool bFails = bOwn && t_nCount == t_nFailing;
  t_bFailed = t_bFailed || bFails;
  return bFails;
}

void *Take(std::size_t nSize, const void *pCaller)
{
  return ShallFail(pCaller) ? nullptr : std::malloc(nSize == 0 ? 1 : nSize);
}

void *TakeOrThrow(std::size_t nSize, const void *pCaller)
{
  void *const pMemory = Take(nSize, pCaller);
  if (pMemory == nullptr) {
    throw std::bad_alloc();
  }
  return pMemory;
}

void *TakeZeroed(std::size_t nCount, std::size_t nSize)
{
  return ShallFail(__builtin_return_address(0)) ? nullptr : std::calloc(nCount, nSize);
}

struct SSearch {
  const char *pPart; // of the file's name; empty: the program, whose name is empty too
  std::vector<SRange> *pListRanges;
};

int AddCode(dl_phdr_info *pInfo, std::size_t, void *pArgument)
{
  const auto &stSearch = *static_cast<SSearch *>(pArgument);
  if (*stSearch.pPart == 0 ? *pInfo->dlpi_name == 0 : std::strstr(pInfo->dlpi_name, stSearch.pPart) != nullptr) {
    for (int n = 0; n < pInfo->dlpi_phnum; ++n) {
      const auto &stPart = pInfo->dlpi_phdr[n];
      if (stPart.p_type == PT_LOAD && (stPart.p_flags & PF_X) != 0) {
        const uintptr_t nBegin = pInfo->dlpi_addr + stPart.p_vaddr;
        stSearch.pListRanges->push_back({nBegin, nBegin + stPart.p_memsz});
      }
    }
  }
  return 0;
}

bool FindCode(const char *pPart, std::vector<SRange> &listRanges)
{
  const std::size_t nBefore = listRanges.size();
  SSearch stSearch{pPart, &listRanges};
  dl_iterate_phdr(AddCode, &stSearch);
  return listRanges.size() > nBefore;
}

// The dynamic section of a loaded module, as far as imports are found by it.
struct SDynamic {
  const ElfW(Sym) *pSymbols = nullptr;
  const char *pNames = nullptr;
  const ElfW(Rela) * apTables[2] = {nullptr, nullptr};
  std::size_t anSizes[2] = {0, 0};
};

SDynamic ReadDynamic(const ElfW(Dyn) * pEntry)
{
  SDynamic stDynamic;
  for (; pEntry->d_tag != DT_NULL; ++pEntry) {
    const auto nAddress = pEntry->d_un.d_ptr;
    switch (pEntry->d_tag) {
    case DT_SYMTAB: stDynamic.pSymbols = reinterpret_cast<const ElfW(Sym) *>(nAddress); break;
    case DT_STRTAB: stDynamic.pNames = reinterpret_cast<const char *>(nAddress); break;
    case DT_JMPREL: stDynamic.apTables[0] = reinterpret_cast<const ElfW(Rela) *>(nAddress); break;
    case DT_RELA: stDynamic.apTables[1] = reinterpret_cast<const ElfW(Rela) *>(nAddress); break;
    case DT_PLTRELSZ: stDynamic.anSizes[0] = pEntry->d_un.d_val; break;
    case DT_RELASZ: stDynamic.anSizes[1] = pEntry->d_un.d_val; break;
    default: break;
    }
  }
  return stDynamic;
}

void Bend(uintptr_t nSlot, void *pTarget)
{
  const auto nPage = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
  void *const pPage = reinterpret_cast<void *>(nSlot / nPage * nPage);
  mprotect(pPage, nPage, PROT_READ | PROT_WRITE);
  *reinterpret_cast<void **>(nSlot) = pTarget;
}

bool BendImport(const link_map &stMap, const char *pName, void *pTarget)
{
  bool bFound = false;
  const SDynamic stDynamic = ReadDynamic(stMap.l_ld);
  for (int nTable = 0; nTable < 2; ++nTable) {
    const std::size_t nCount = stDynamic.anSizes[nTable] / sizeof(ElfW(Rela));
    for (std::size_t n = 0; n < nCount; ++n) {
      const ElfW(Rela) &stEntry = stDynamic.apTables[nTable][n];
      const std::size_t nSymbol = ELF64_R_SYM(stEntry.r_info);
      if (nSymbol != 0 && std::strcmp(stDynamic.pNames + stDynamic.pSymbols[nSymbol].st_name, pName) == 0) {
        Bend(stMap.l_addr + stEntry.r_offset, pTarget);
        bFound = true;
      }
    }
  }
  return bFound;
}

} // namespace

CModuleAllocations::CModuleAllocations(uint64_t nFailing, EWhose eWhose)
{
  t_bEverybody = eWhose == EWhose::Everybody;
  t_nCount = 0;
  t_nFailing = nFailing;
  t_bFailed = false;
  t_bCounting = true;
}

CModuleAllocations::~CModuleAllocations()
{
  t_bCounting = false;
}

uint64_t CModuleAllocations::GetCount() const
{
  return t_nCount;
}

bool CModuleAllocations::HasFailed() const
{
  return t_bFailed;
}

std::string CModuleAllocations::Watch(const std::string &strModule)
{
  if (!s_listOwn.empty()) {
    return {};
  }
  void *const pModule = dlopen(strModule.c_str(), RTLD_NOW | RTLD_NOLOAD);
  link_map *pMap = nullptr;
  if (pModule == nullptr || dlinfo(pModule, RTLD_DI_LINKMAP, &pMap) != 0) {
    return "the module is not loaded";
  }
  if (!FindCode("FlatFieldCorrection.plx", s_listOwn) || !FindCode("libOmbrix", s_listOwn) ||
      !FindCode("libstdc++", s_listLibrary) || !FindCode("", s_listProgram)) {
    return "no code found";
  }
  return BendImport(*pMap, "calloc", reinterpret_cast<void *>(&TakeZeroed)) ? std::string()
                                                                            : std::string("no calloc found");
}

// The program's own, in place of the C++ library's, for every module: all of them, because each gives back what
// another took.

void *operator new(std::size_t nSize)
{
  return TakeOrThrow(nSize, __builtin_return_address(0));
}

void *operator new[](std::size_t nSize)
{
  return TakeOrThrow(nSize, __builtin_return_address(0));
}

void *operator new(std::size_t nSize, const std::nothrow_t &) noexcept
{
  return Take(nSize, __builtin_return_address(0));
}

void *operator new[](std::size_t nSize, const std::nothrow_t &) noexcept
{
  return Take(nSize, __builtin_return_address(0));
}

void operator delete(void *pMemory) noexcept
{
  std::free(pMemory);
}

void operator delete[](void *pMemory) noexcept
{
  std::free(pMemory);
}

void operator delete(void *pMemory, std::size_t) noexcept
{
  std::free(pMemory);
}

void operator delete[](void *pMemory, std::size_t) noexcept
{
  std::free(pMemory);
}

void operator delete(void *pMemory, const std::nothrow_t &) noexcept
{
  std::free(pMemory);
}

void operator delete[](void *pMemory, const std::nothrow_t &) noexcept
{
  std::free(pMemory);
}

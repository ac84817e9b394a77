#include "tests/support/fullvolume.h"

#include <atomic>
#include <cstring>

#include <QtGlobal>

#include <windows.h>

namespace ffc::test {

namespace {

using FnWriteFile = decltype(&WriteFile);

std::atomic<uint64_t> s_nLargestFile{UINT64_MAX};
FnWriteFile s_fnWriteFile = nullptr;

// What the toolkit calls meanwhile in place of the system's function.
BOOL WINAPI WriteWhileThereIsRoom(HANDLE hFile, LPCVOID pBytes, DWORD nBytes, LPDWORD pnWritten,
                                  LPOVERLAPPED pOverlapped)
{
  LARGE_INTEGER stPosition = {};
  const bool bFile = GetFileType(hFile) == FILE_TYPE_DISK &&
                     SetFilePointerEx(hFile, LARGE_INTEGER{}, &stPosition, FILE_CURRENT) != FALSE;
  if (bFile && static_cast<uint64_t>(stPosition.QuadPart) + nBytes > s_nLargestFile) {
    SetLastError(ERROR_DISK_FULL);
    return FALSE;
  }
  return s_fnWriteFile(hFile, pBytes, nBytes, pnWritten, pOverlapped);
}

// The place in the toolkit's import table that holds the address of WriteFile.
FnWriteFile *FindToolkitsWriteFile()
{
  HMODULE hToolkit = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<LPCWSTR>(&qVersion), &hToolkit);
  auto *pImage = reinterpret_cast<unsigned char *>(hToolkit);
  const auto *pDos = reinterpret_cast<const IMAGE_DOS_HEADER *>(pImage);
  const auto *pHeaders = reinterpret_cast<const IMAGE_NT_HEADERS64 *>(pImage + pDos->e_lfanew);
  const IMAGE_DATA_DIRECTORY &stTable = pHeaders->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IAT];
  auto *pBegin = reinterpret_cast<FnWriteFile *>(pImage + stTable.VirtualAddress);
  for (auto *pPlace = pBegin; pPlace != pBegin + stTable.Size / sizeof(FnWriteFile); ++pPlace) {
    if (*pPlace == &WriteFile || *pPlace == &WriteWhileThereIsRoom) {
      return pPlace;
    }
  }
  return nullptr;
}

void Put(FnWriteFile *pPlace, FnWriteFile fnWriteFile)
{
  DWORD nProtection = 0;
  VirtualProtect(pPlace, sizeof *pPlace, PAGE_READWRITE, &nProtection);
  *pPlace = fnWriteFile;
  VirtualProtect(pPlace, sizeof *pPlace, nProtection, &nProtection);
}

} // namespace

struct CFullVolume::SImpl {
  FnWriteFile *m_pPlace = FindToolkitsWriteFile();
};

CFullVolume::CFullVolume(uint64_t nBytes) : m_pImpl(std::make_unique<SImpl>())
{
  s_fnWriteFile = *m_pImpl->m_pPlace;
  s_nLargestFile = nBytes;
  Put(m_pImpl->m_pPlace, &WriteWhileThereIsRoom);
}

CFullVolume::~CFullVolume()
{
  Put(m_pImpl->m_pPlace, s_fnWriteFile);
}

CPlainUser::CPlainUser(const std::string &) {}

CPlainUser::~CPlainUser() = default;

// What the toolkit can set of access rights here is one flag, which holds back no reader and protects no folder.
bool IsAboveAccessRights()
{
  return true;
}

} // namespace ffc::test

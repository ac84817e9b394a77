#include "platform/moduleversion.h"

#include <memory>
#include <new>

#include <windows.h>

namespace ffc::platform {

namespace {

constexpr const char *NO_PATH = "Failed to get the full path of current process";
constexpr const char *NO_STRUCTURE = "Failed to get the content of version structure";
constexpr const char *NO_INFORMATION = "Failed to query version information";

bool QueryFileVersion(const wchar_t *pPath, uint16_t (&anVersion)[4], std::string &strError)
{
  const DWORD nSize = GetFileVersionInfoSizeW(pPath, nullptr);
  const std::unique_ptr<unsigned char[]> pBlock(nSize == 0 ? nullptr : new (std::nothrow) unsigned char[nSize]);
  if (pBlock == nullptr || GetFileVersionInfoW(pPath, 0, nSize, pBlock.get()) == FALSE) {
    strError = NO_STRUCTURE;
    return false;
  }
  void *pRoot = nullptr;
  UINT nRootSize = 0;
  if (VerQueryValueW(pBlock.get(), L"\\", &pRoot, &nRootSize) == FALSE || nRootSize < sizeof(VS_FIXEDFILEINFO)) {
    strError = NO_INFORMATION;
    return false;
  }
  const auto *pInfo = static_cast<const VS_FIXEDFILEINFO *>(pRoot);
  anVersion[0] = HIWORD(pInfo->dwFileVersionMS);
  anVersion[1] = LOWORD(pInfo->dwFileVersionMS);
  anVersion[2] = HIWORD(pInfo->dwFileVersionLS);
  anVersion[3] = LOWORD(pInfo->dwFileVersionLS);
  return true;
}

} // namespace

bool QueryModuleVersion(uint16_t (&anVersion)[4], std::string &strError)
{
  constexpr DWORD MAX_PATH_CHARACTERS = 2048;
  MEMORY_BASIC_INFORMATION stRegion = {};
  const auto *pAddress = reinterpret_cast<const void *>(&QueryModuleVersion);
  const bool bFound = VirtualQuery(pAddress, &stRegion, sizeof stRegion) != 0;
  const auto hModule = bFound ? static_cast<HMODULE>(stRegion.AllocationBase) : nullptr;
  wchar_t acPath[MAX_PATH_CHARACTERS] = {};
  if (GetModuleFileNameW(hModule, acPath, MAX_PATH_CHARACTERS) == 0) {
    strError = NO_PATH;
    return false;
  }
  return QueryFileVersion(acPath, anVersion, strError);
}

bool QueryModuleFileVersion(const std::string &strPath, uint16_t (&anVersion)[4], std::string &strError)
{
  const int nLength = MultiByteToWideChar(CP_UTF8, 0, strPath.c_str(), -1, nullptr, 0);
  std::wstring strWide(nLength > 0 ? static_cast<std::size_t>(nLength) : 0, L'\0');
  if (nLength <= 0 || MultiByteToWideChar(CP_UTF8, 0, strPath.c_str(), -1, strWide.data(), nLength) == 0) {
    strError = NO_PATH;
    return false;
  }
  return QueryFileVersion(strWide.c_str(), anVersion, strError);
}

} // namespace ffc::platform

#include "tests/support/loadedmodule.h"

#include <windows.h>

#include <tlhelp32.h>

namespace ffc::test {

namespace {

std::string ToUtf8(const wchar_t *pText)
{
  const int nSize = WideCharToMultiByte(CP_UTF8, 0, pText, -1, nullptr, 0, nullptr, nullptr);
  std::string strText(nSize > 0 ? static_cast<std::size_t>(nSize) : 1, '\0');
  WideCharToMultiByte(CP_UTF8, 0, pText, -1, strText.data(), nSize, nullptr, nullptr);
  strText.pop_back();
  return strText;
}

} // namespace

std::string FindLoadedModule(const std::string &strPart)
{
  const HANDLE hSnapshot = CreateToolhelp32Snapshot(TH32CS_SNAPMODULE, 0);
  MODULEENTRY32W stModule = {};
  stModule.dwSize = sizeof stModule;
  std::string strFound;
  for (BOOL bMore = Module32FirstW(hSnapshot, &stModule); bMore != FALSE && strFound.empty();
       bMore = Module32NextW(hSnapshot, &stModule)) {
    const std::string strFile = ToUtf8(stModule.szExePath);
    if (strFile.find(strPart) != std::string::npos) {
      strFound = strFile;
    }
  }
  CloseHandle(hSnapshot);
  return strFound;
}

} // namespace ffc::test

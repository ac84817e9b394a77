#include <cstdio>

#include <io.h>
#include <windows.h>
// After windows.h, which it needs.
#include <shellapi.h>

#include "tools/ffc/terminal.h"

namespace ffc::tool {

bool IsErrorStreamTerminal()
{
  return _isatty(_fileno(stderr)) != 0;
}

// Those of main have lost what the code page does not have.
std::vector<std::string> GetArguments(int, char **)
{
  int nArguments = 0;
  wchar_t **pArguments = CommandLineToArgvW(GetCommandLineW(), &nArguments);
  std::vector<std::string> listArguments;
  for (int n = 1; n < nArguments; ++n) {
    const int nBytes = WideCharToMultiByte(CP_UTF8, 0, pArguments[n], -1, nullptr, 0, nullptr, nullptr);
    std::string strArgument(static_cast<std::size_t>(nBytes), '\0');
    WideCharToMultiByte(CP_UTF8, 0, pArguments[n], -1, strArgument.data(), nBytes, nullptr, nullptr);
    strArgument.resize(static_cast<std::size_t>(nBytes) - 1);
    listArguments.push_back(strArgument);
  }
  LocalFree(pArguments);
  return listArguments;
}

} // namespace ffc::tool

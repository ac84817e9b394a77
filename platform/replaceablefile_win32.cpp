#include "platform/replaceablefile.h"

#include <io.h>
#include <windows.h>

namespace ffc::platform {

bool IsReplaceable(const SNativeName &stName)
{
  // What a file lets whom do comes from its folder here; only its names count.
  const HANDLE hFile = CreateFileW(stName.strWide.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                   nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (hFile == INVALID_HANDLE_VALUE) {
    return true;
  }
  BY_HANDLE_FILE_INFORMATION stInformation = {};
  const bool bKnown = GetFileInformationByHandle(hFile, &stInformation) != FALSE;
  CloseHandle(hFile);
  return !bKnown || stInformation.nNumberOfLinks <= 1;
}

bool SyncFile(int nFile)
{
  return _commit(nFile) == 0;
}

} // namespace ffc::platform

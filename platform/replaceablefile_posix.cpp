#include "platform/replaceablefile.h"

#include <cerrno>
#include <filesystem>

#include <sys/stat.h>
#include <unistd.h>

namespace ffc::platform {

bool IsReplaceable(const SNativeName &stName)
{
  struct stat stFile = {};
  if (stat(stName.strBytes.c_str(), &stFile) != 0) {
    return true;
  }
  // A folder may hand its group on to what is made in it.
  const std::string strFolder = std::filesystem::path(stName.strBytes).parent_path().string();
  struct stat stFolder = {}; // stays where the folder is gone meanwhile
  (void)stat(strFolder.empty() ? "." : strFolder.c_str(), &stFolder);
  const bool bGroupHandedOn = (stFolder.st_mode & S_ISGID) != 0;
  return stFile.st_nlink == 1 && stFile.st_uid == geteuid() &&
         stFile.st_gid == (bGroupHandedOn ? stFolder.st_gid : getegid());
}

bool SyncFile(int nFile)
{
  return fdatasync(nFile) == 0 || errno == EINVAL || errno == ENOTSUP;
}

} // namespace ffc::platform

/// \file
/// Whether one file can take the place of another, and what is in it when it does.
#pragma once

#include <string>

namespace ffc::platform {

/// A file's name as each system wants it; only its own is looked at.
struct SNativeName {
  std::string strBytes; ///< POSIX
  std::wstring strWide; ///< Windows
};

/// Whether a new file under the name of an existing one would be to everybody what the former was: it has no other
/// name, and belongs to whom the new one would belong to. \return true also for a file that is not there
bool IsReplaceable(const SNativeName &stName);

/// Brings what was written to an open file to the disk, so that it outlives a loss of power.
/// \param nFile the C library's number of the file
/// \return false when the disk refused; true also where a file system cannot do it
bool SyncFile(int nFile);

} // namespace ffc::platform

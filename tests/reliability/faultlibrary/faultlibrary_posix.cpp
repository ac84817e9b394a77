// Stands before the C library of a program (LD_PRELOAD): counts what the program does with the files of one folder, and
// lets one of these calls fail, or be the program's last.
//
//   FFC_FAULT_FOLDER   the folder, as an absolute path without links
//   FFC_FAULT          OPERATION NUMBER: the call that fails, counted from 1; see FAULTS
//   FFC_FAULT_COUNTS   a file, in another folder, for the numbers of calls: a line for each operation, at the end
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>
#include <string>
#include <utility>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

enum class EFault {
  Open,
  Read,
  Write,
  Rename,
  Sync,
  Close,     ///< of a file that was written: its system tells only then that it has no room
  Kill,      ///< before a call that changes something
  PowerLoss, ///< the same, and what was not brought to the disk by then is lost
  Count
};

constexpr std::size_t FAULT_COUNT = static_cast<std::size_t>(EFault::Count);
constexpr const char *FAULTS[] = {"open", "read", "write", "rename", "sync", "close", "kill", "powerloss"};
constexpr int READ_ERROR = EIO;
constexpr int WRITE_ERROR = ENOSPC;
constexpr int OPEN_ERROR = EACCES;
constexpr int RENAME_ERROR = EIO;

template <class TFunction>
TFunction *FindNext(const char *pName)
{
  return reinterpret_cast<TFunction *>(dlsym(RTLD_NEXT, pName));
}

bool s_bEnded = false; ///< files may be closed after the numbers are written

/// Of the whole program.
class CFaults {
public:
  CFaults()
  {
    const char *pFolder = std::getenv("FFC_FAULT_FOLDER");
    m_strFolder = pFolder == nullptr ? std::string() : std::string(pFolder) + '/';
    const char *pFault = std::getenv("FFC_FAULT");
    const std::string strFault = pFault == nullptr ? std::string() : pFault;
    for (std::size_t n = 0; n < FAULT_COUNT; ++n) {
      const std::string strName = std::string(FAULTS[n]) + ' ';
      if (strFault.compare(0, strName.size(), strName) == 0) {
        m_eFault = static_cast<EFault>(n);
        m_nNumber = std::strtoul(strFault.c_str() + strName.size(), nullptr, 10);
      }
    }
  }
  ~CFaults()
  {
    s_bEnded = true;
    const char *pCounts = std::getenv("FFC_FAULT_COUNTS");
    std::FILE *pFile = pCounts == nullptr ? nullptr : std::fopen(pCounts, "w");
    for (std::size_t n = 0; pFile != nullptr && n < FAULT_COUNT; ++n) {
      std::fprintf(pFile, "%s %lu\n", FAULTS[n], m_anCounts[n]);
    }
    if (pFile != nullptr) {
      std::fclose(pFile);
    }
  }
  CFaults(const CFaults &) = delete;
  CFaults &operator=(const CFaults &) = delete;

  bool IsWatched(const char *pPath) const
  {
    if (s_bEnded || m_strFolder.empty() || pPath == nullptr) {
      return false;
    }
    std::string strPath = pPath;
    if (*pPath != '/') {
      char acFolder[4096];
      strPath = std::string(getcwd(acFolder, sizeof acFolder) == nullptr ? "" : acFolder) + '/' + pPath;
    }
    return (strPath + '/').compare(0, m_strFolder.size(), m_strFolder) == 0;
  }
  bool IsWatched(int nFile) const
  {
    char acPath[4096];
    const ssize_t nLength = s_bEnded || m_strFolder.empty()
                              ? -1
                              : readlink(("/proc/self/fd/" + std::to_string(nFile)).c_str(), acPath, sizeof acPath);
    return nLength > 0 && IsWatched(std::string(acPath, static_cast<std::size_t>(nLength)).c_str());
  }

  /// Counts one operation. \return whether it is the one that fails
  bool Meets(EFault eFault)
  {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const unsigned long nCount = ++m_anCounts[static_cast<std::size_t>(eFault)];
    return eFault == m_eFault && nCount == m_nNumber;
  }
  /// Counts a call that changes something, which may not come to it.
  void BeginChange()
  {
    if (Meets(EFault::PowerLoss)) {
      LoseUnsynced(m_strFolder);
    } else if (!Meets(EFault::Kill)) {
      return;
    }
    kill(getpid(), SIGKILL);
  }

  /// Everything in the file is on the disk; or so much of it as is known to be.
  void NoteSynced(int nFile, bool bAll)
  {
    struct stat stFile = {};
    if (fstat(nFile, &stFile) == 0) {
      const std::lock_guard<std::mutex> lock(m_mutex);
      const auto key = std::pair(stFile.st_dev, stFile.st_ino);
      if (bAll) {
        m_mapSynced[key] = stFile.st_size;
      } else {
        m_mapSynced.emplace(key, stFile.st_size);
      }
    }
  }

private:
  void LoseUnsynced(const std::string &strFolder)
  {
    DIR *pFolder = opendir(strFolder.c_str());
    for (const dirent *pEntry = pFolder == nullptr ? nullptr : readdir(pFolder); pEntry != nullptr;
         pEntry = readdir(pFolder)) {
      const std::string strPath = strFolder + pEntry->d_name;
      struct stat stFile = {};
      if (std::strcmp(pEntry->d_name, ".") == 0 || std::strcmp(pEntry->d_name, "..") == 0 ||
          lstat(strPath.c_str(), &stFile) != 0) {
        continue;
      }
      if (S_ISDIR(stFile.st_mode)) {
        LoseUnsynced(strPath + '/');
      }
      const auto itSynced = m_mapSynced.find({stFile.st_dev, stFile.st_ino});
      if (itSynced != m_mapSynced.end() && truncate(strPath.c_str(), itSynced->second) != 0) {
        std::abort();
      }
    }
    if (pFolder != nullptr) {
      closedir(pFolder);
    }
  }

  std::string m_strFolder;
  EFault m_eFault = EFault::Count;
  unsigned long m_nNumber = 0;

  std::mutex m_mutex; ///< guards what follows
  unsigned long m_anCounts[FAULT_COUNT] = {};
  std::map<std::pair<dev_t, ino_t>, off_t> m_mapSynced; ///< of files that were opened for writing, bytes
};

CFaults &GetFaults()
{
  static CFaults s_faults;
  return s_faults;
}

int OpenWatched(int (*fnNext)(int, const char *, int, ...), int nFolder, const char *pPath, int nFlags, mode_t nMode)
{
  CFaults &faults = GetFaults();
  if (!faults.IsWatched(pPath)) {
    return fnNext(nFolder, pPath, nFlags, nMode);
  }
  const bool bWriting = (nFlags & O_ACCMODE) != O_RDONLY;
  if (bWriting) {
    faults.BeginChange();
  }
  if (faults.Meets(EFault::Open)) {
    errno = OPEN_ERROR;
    return -1;
  }
  const int nFile = fnNext(nFolder, pPath, nFlags, nMode);
  if (nFile >= 0 && bWriting) {
    faults.NoteSynced(nFile, false);
  }
  return nFile;
}

/// \param bChanges whether it writes
/// \return whether the call is to fail; errno is set then
bool IsFailing(int nFile, bool bChanges)
{
  CFaults &faults = GetFaults();
  if (!faults.IsWatched(nFile)) {
    return false;
  }
  if (bChanges) {
    faults.BeginChange();
  }
  errno = bChanges ? WRITE_ERROR : READ_ERROR;
  return faults.Meets(bChanges ? EFault::Write : EFault::Read);
}

bool IsRenameFailing(const char *pPath)
{
  CFaults &faults = GetFaults();
  if (!faults.IsWatched(pPath)) {
    return false;
  }
  faults.BeginChange();
  errno = RENAME_ERROR;
  return faults.Meets(EFault::Rename);
}

int Sync(int nFile, int (*fnNext)(int))
{
  if (GetFaults().IsWatched(nFile) && GetFaults().Meets(EFault::Sync)) {
    errno = READ_ERROR;
    return -1;
  }
  const int nResult = fnNext(nFile);
  if (nResult == 0 && GetFaults().IsWatched(nFile)) {
    GetFaults().NoteSynced(nFile, true);
  }
  return nResult;
}

int Remove(const char *pPath, int (*fnNext)(const char *))
{
  if (GetFaults().IsWatched(pPath)) {
    GetFaults().BeginChange();
  }
  return fnNext(pPath);
}

mode_t TakeMode(int nFlags, va_list &listArguments)
{
  return (nFlags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(listArguments, mode_t) : 0;
}

} // namespace

// The C library's own names, in each of the forms that programs are linked against.
extern "C" {

int openat(int nFolder, const char *pPath, int nFlags, ...)
{
  static const auto fnNext = FindNext<decltype(openat)>("openat");
  va_list listArguments;
  va_start(listArguments, nFlags);
  const mode_t nMode = TakeMode(nFlags, listArguments);
  va_end(listArguments);
  return OpenWatched(fnNext, nFolder, pPath, nFlags, nMode);
}

int openat64(int nFolder, const char *pPath, int nFlags, ...)
{
  va_list listArguments;
  va_start(listArguments, nFlags);
  const mode_t nMode = TakeMode(nFlags, listArguments);
  va_end(listArguments);
  return openat(nFolder, pPath, nFlags, nMode);
}

int open(const char *pPath, int nFlags, ...)
{
  va_list listArguments;
  va_start(listArguments, nFlags);
  const mode_t nMode = TakeMode(nFlags, listArguments);
  va_end(listArguments);
  return openat(AT_FDCWD, pPath, nFlags, nMode);
}

int open64(const char *pPath, int nFlags, ...)
{
  va_list listArguments;
  va_start(listArguments, nFlags);
  const mode_t nMode = TakeMode(nFlags, listArguments);
  va_end(listArguments);
  return openat(AT_FDCWD, pPath, nFlags, nMode);
}

ssize_t read(int nFile, void *pBytes, size_t nBytes)
{
  static const auto fnNext = FindNext<decltype(read)>("read");
  return IsFailing(nFile, false) ? -1 : fnNext(nFile, pBytes, nBytes);
}

ssize_t write(int nFile, const void *pBytes, size_t nBytes)
{
  static const auto fnNext = FindNext<decltype(write)>("write");
  return IsFailing(nFile, true) ? -1 : fnNext(nFile, pBytes, nBytes);
}

int close(int nFile)
{
  static const auto fnNext = FindNext<decltype(close)>("close");
  const bool bFails =
    (fcntl(nFile, F_GETFL) & O_ACCMODE) != O_RDONLY && GetFaults().IsWatched(nFile) && GetFaults().Meets(EFault::Close);
  const int nResult = fnNext(nFile);
  errno = bFails ? WRITE_ERROR : errno;
  return bFails ? -1 : nResult;
}

int fdatasync(int nFile)
{
  static const auto fnNext = FindNext<decltype(fdatasync)>("fdatasync");
  return Sync(nFile, fnNext);
}

int fsync(int nFile)
{
  static const auto fnNext = FindNext<decltype(fsync)>("fsync");
  return Sync(nFile, fnNext);
}

int rename(const char *pFrom, const char *pTo)
{
  static const auto fnNext = FindNext<decltype(rename)>("rename");
  return IsRenameFailing(pTo) ? -1 : fnNext(pFrom, pTo);
}

int linkat(int nFromFolder, const char *pFrom, int nToFolder, const char *pTo, int nFlags)
{
  static const auto fnNext = FindNext<decltype(linkat)>("linkat");
  return IsRenameFailing(pTo) ? -1 : fnNext(nFromFolder, pFrom, nToFolder, pTo, nFlags);
}

int unlink(const char *pPath)
{
  static const auto fnNext = FindNext<decltype(unlink)>("unlink");
  return Remove(pPath, fnNext);
}

int remove(const char *pPath)
{
  static const auto fnNext = FindNext<decltype(remove)>("remove");
  return Remove(pPath, fnNext);
}

} // extern "C"

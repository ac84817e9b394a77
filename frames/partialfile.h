/// \file
/// A file that is written beside its place, and moved there when it is complete.
#pragma once

#include <cstdint>
#include <filesystem>

#include <QFile>
#include <QString>

#include "frames/ifilekind.h"
#include "platform/result.h"

namespace ffc::frames {

/// Unlike QSaveFile it can be read while it is written, and what a killed program leaves has a name that tells so
/// (".ffc-....part"), so that it is never taken for a frame. Messages name the file.
class CPartialFile {
public:
  explicit CPartialFile(const QString &strPath);
  /// Removes what was not committed.
  ~CPartialFile();
  CPartialFile(const CPartialFile &) = delete;
  CPartialFile &operator=(const CPartialFile &) = delete;

  Result<> Open();
  /// For reading and writing, without a buffer of its own. Only after Open.
  QFile &GetFile() { return m_file; }
  const QFile &GetFile() const { return m_file; }
  /// Writes all bytes at the place where the file stands.
  Result<> Write(const void *pBytes, uint64_t nBytes);
  /// Writes samples, those of 16 bits with the low byte first.
  Result<> WriteLittleEndian(const void *pFrame, const SLayout &stLayout);
  /// Puts the file in its place. A former file is replaced, when this one is on the disk, and lends its access rights.
  Result<> Commit(ECommit eCommit);
  /// A message about the file, with the reason that the system gave last.
  Failure Describe() const { return Describe(m_file.errorString()); }
  Failure Describe(const QString &strReason) const;

  /// Removes what killed programs left of this file.
  static void RemoveLeftOvers(const QString &strPath);

private:
  void Remove() noexcept;

  QString m_strPath;
  QFile m_file;
  std::filesystem::path m_partPath; ///< of the file, while it is not in its place: removed without more memory
};

} // namespace ffc::frames

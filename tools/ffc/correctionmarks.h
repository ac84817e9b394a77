/// \file
/// Which frames are corrected already.
#pragma once

#include <filesystem>
#include <optional>

#include <QByteArray>
#include <QString>

#include "frames/frameinfo.h"
#include "platform/result.h"
#include "tools/ffc/report.h"
#include "tools/ffc/transfer.h"

namespace ffc::tool {

/// Whether a frame carries the mark of a correction, in its file or beside it.
/// \return the SHA-256 of the flat's file; empty when not; a failure when the file beside it cannot be read, which then
/// may have the mark
Result<QString> FindCorrection(const QString &strFile, const frames::SFrameInfo &stInfo);

/// Refuses a frame that carries the mark, or may.
/// \param pWhy goes on after "is corrected already"
std::optional<STrouble> CheckUncorrected(const QString &strFile, const frames::SFrameInfo &stInfo, const char *pWhy);

/// Whether the mark beside a file was written, but not the corrected frames that it is about: a run ended between the
/// two.
/// \param strFramesHash of the samples that are in the file
bool IsMarkAhead(const QString &strFile, const QString &strFramesHash);

/// The mark beside a file that has no place for it. It is written before the frames are put in their place: a file that
/// only seems to be corrected is refused, one that only seems not to be would be corrected twice. Without Keep, its
/// destructor leaves it as it was before Write, also where memory has ended.
class CMarkFile {
public:
  explicit CMarkFile(const QString &strFile);
  ~CMarkFile();
  CMarkFile(const CMarkFile &) = delete;
  CMarkFile &operator=(const CMarkFile &) = delete;

  /// \param stHashes of the frames that it is about
  Result<> Write(const QString &strCorrection, const SHashes &stHashes);
  /// The frames are in their place.
  void Keep() noexcept;

private:
  QString m_strPath;
  std::filesystem::path m_path; ///< the same; removing it takes no memory
  bool m_bPending = false;      ///< it may be written, and the frames not
  std::optional<QByteArray> m_byteFormer;
};

} // namespace ffc::tool

/// \file
/// The pictures, frames and figures that one run leaves behind.
#pragma once

#include <cstdint>
#include <vector>

#include <QByteArray>
#include <QDir>
#include <QImage>
#include <QString>

#include "host/measurement/freshframes.h"
#include "platform/result.h"
#include "quality/framestack.h"
#include "quality/report.h"

namespace ffc::host {

/// Writes into one folder; each file whole or not at all. A failure names the file and the reason.
class CResultFolder {
public:
  explicit CResultFolder(const QString &strFolder) : m_dir(strFolder) {}

  /// Makes the folder when it is not there.
  Result<> Prepare();
  QString GetPath(const QString &strFile) const { return m_dir.absoluteFilePath(strFile); }

  /// before.png, after.png: the mean images. contrast_before.png, contrast_after.png: the same stretched
  /// about their means, with one stretch for both. profile.png.
  Result<> WritePictures(const quality::CFrameStack &stBefore, const quality::CFrameStack &stAfter,
                         genapi::EColorLayout eLayout, const QString &strTitle) const;
  /// KIND_NNN.png at full depth.
  Result<> WriteFrame(const char *pKind, uint32_t nIndex, const std::vector<uint8_t> &listFrame,
                      const SStreamFormat &stFormat) const;
  /// dialog.png.
  Result<> WriteDialog(const QImage &imgDialog) const;
  /// report.json.
  Result<> WriteReport(const QByteArray &byteReport) const;
  /// defects.csv and defects.xml; nothing where there are none.
  Result<> WriteDefects(const quality::SReport &stReport) const;

private:
  QDir m_dir;
};

} // namespace ffc::host

/// \file
/// The pictures, frames and figures that one run leaves behind.
#pragma once

#include <cstdint>
#include <vector>

#include <QByteArray>
#include <QDir>
#include <QImage>
#include <QString>

#include "camera/sensorformat.h"
#include "quality/framestack.h"
#include "quality/report.h"

namespace ffc::host {

/// Writes into one folder; each file whole or not at all. Every operation returns empty or one line that
/// names the file and the reason.
class CResultFolder {
public:
  explicit CResultFolder(const QString &strFolder) : m_dir(strFolder) {}

  /// Makes the folder when it is not there.
  QString Prepare();
  QString GetPath(const QString &strFile) const { return m_dir.absoluteFilePath(strFile); }

  /// before.png, after.png: the mean images. contrast_before.png, contrast_after.png: the same stretched
  /// about their means, with one stretch for both. profile.png.
  QString WritePictures(const quality::CFrameStack &stBefore, const quality::CFrameStack &stAfter, EColorLayout eLayout,
                        const QString &strTitle) const;
  /// KIND_NNN.png at full depth.
  /// \param stReport has the frame's size
  QString WriteFrame(const char *pKind, uint32_t nIndex, const std::vector<uint8_t> &listFrame,
                     const quality::SReport &stReport, const SSensorFormat &stFormat) const;
  /// dialog.png.
  QString WriteDialog(const QImage &imgDialog) const;
  /// report.json.
  QString WriteReport(const QByteArray &byteReport) const;

private:
  QDir m_dir;
};

} // namespace ffc::host

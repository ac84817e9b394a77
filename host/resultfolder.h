/// \file
/// The pictures, frames and figures that one run leaves behind.
#pragma once

#include <cstdint>
#include <vector>

#include <QDir>
#include <QImage>
#include <QString>

#include "camera/sensorformat.h"
#include "host/quality/pairedstacks.h"
#include "host/quality/report.h"

/// One exposure, as it came and as it was corrected.
struct SFramePair {
  std::vector<uint8_t> listRaw;
  std::vector<uint8_t> listCorrected;

  /// \return false when memory is short
  bool Take(const void *pRaw, const void *pCorrected, std::size_t nSize);
};

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
  QString WritePictures(const CPairedStacks &stBright, EColorLayout eLayout, const QString &strTitle) const;
  /// raw_NNN.png and corrected_NNN.png at full depth.
  QString WriteFrames(const SFramePair &stPair, uint32_t nIndex, uint32_t nWidth, uint32_t nHeight,
                      const SSensorFormat &stFormat) const;
  /// dialog.png.
  QString WriteDialog(const QImage &imgDialog) const;
  /// report.json.
  QString WriteReport(const SReport &stReport) const;

private:
  QDir m_dir;
};

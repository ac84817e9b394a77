/// \file
/// The line below the image.
#pragma once

#include <QStatusBar>

#include "host/viewer/framepipeline.h"
#include "host/window/correctionstate.h"

class QLabel;

namespace ffc::host {

/// Whether the image is corrected, how fast frames come, what was dropped, and the pixel that is read.
class CStatusLine : public QStatusBar {
  Q_OBJECT

public:
  explicit CStatusLine(QWidget *pParent = nullptr);

  void ShowCorrection(const SCorrectionState &stState);
  /// \param dRate frames per second
  void ShowRate(double dRate);
  /// \param strLosses how many frames the camera lost and why; empty: none, or it does not tell
  void ShowCounts(const SFrameCounts &stCounts, const QString &strLosses);
  void ShowShape(const QString &strShape, double dScale);
  void ShowPixel(const QString &strPixel);
  /// As made: of no camera, and of no frame.
  void Clear();

private:
  QLabel *Add(QLabel *pLabel, const char *pName, int nStretch);

  QLabel *m_pCorrection;
  QLabel *m_pRate;
  QLabel *m_pDropped;
  QLabel *m_pShape;
  QLabel *m_pPixel;
};

} // namespace ffc::host

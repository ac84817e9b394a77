/// \file
/// Figures below the image.
#pragma once

#include <QWidget>

#include "host/window/frameinspection.h"

class QDoubleSpinBox;
class QLabel;

namespace ffc::host {

/// How much is over-exposed, from a threshold of the user's own on, and what a marked region has.
class CInspectionBar : public QWidget {
  Q_OBJECT

public:
  explicit CInspectionBar(QWidget *pParent = nullptr);

  /// Percent of the format's maximum.
  double GetThreshold() const;
  void SetThreshold(double dPercent);
  /// \param pFrame null: no frame
  /// \param pPrevious the frame before, null: none
  /// \param rcRegion that is marked; empty: none
  void ShowFigures(const SFrameCopy *pFrame, const SFrameCopy *pPrevious, const QRect &rcRegion);

signals:
  void SigThreshold();

private:
  static QString DescribeBoth(const SFrameCopy &stFrame, const SFrameCopy *pPrevious, const QRect &rcRegion);

  QLabel *m_pOverexposed;
  QDoubleSpinBox *m_pThreshold;
  QLabel *m_pRegion;
};

} // namespace ffc::host

/// \file
/// A small plot of one curve per colour plane.
#pragma once

#include <utility>
#include <vector>

#include <QString>
#include <QVector>

#include <qwt_plot.h>

class QwtPlotCurve;
class QwtPlotGrid;

namespace ffc::host {

/// What to draw: the plane's name, which chooses the colour, and points.
struct SCurve {
  QString strName;
  QVector<double> listX;
  QVector<double> listY;
  bool bRaw = false; ///< of the frame before the correction: dashed
};

/// The colour of a plane's curve, on the ground of a palette.
QColor GetPlaneColor(const QString &strName, const QPalette &palette);

/// In the colours of the palette, and in those of another when it changes.
class CCurvePlot : public QwtPlot {
  Q_OBJECT

public:
  CCurvePlot(const QString &strTitle, const QString &strXAxis, const QString &strYAxis, QWidget *pParent);

  /// \param bFilled areas instead of lines
  void SetCurves(const std::vector<SCurve> &listCurves, bool bFilled = false);
  void SetXRange(double dMin, double dMax);
  /// Keeps the range of the greys as it is now, or lets it follow the curves.
  void LockScale(bool bLock);

protected:
  void changeEvent(QEvent *pEvent) override;

private:
  void Restyle();

  QwtPlotGrid *m_pGrid;                     ///< owned by the plot, as the curves
  std::vector<QwtPlotCurve *> m_listCurves; ///< owned by the plot they are attached to
};

/// The look that all plots of the window share.
void StylePlot(QwtPlot &plot, const QString &strTitle, const QString &strXAxis, const QString &strYAxis);

/// Grounds in the colours of the palette.
void ColorPlot(QwtPlot &plot);

} // namespace ffc::host

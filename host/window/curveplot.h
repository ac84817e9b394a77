/// \file
/// A small plot of one curve per colour plane.
#pragma once

#include <utility>
#include <vector>

#include <QString>
#include <QVector>

#include <qwt_plot.h>

class QwtPlotCurve;

namespace ffc::host {

/// What to draw: the plane's name, which chooses the colour, and points.
struct SCurve {
  QString strName;
  QVector<double> listX;
  QVector<double> listY;
};

/// The colour of a plane's curve.
QColor GetPlaneColor(const QString &strName);

class CCurvePlot : public QwtPlot {
  Q_OBJECT

public:
  CCurvePlot(const QString &strTitle, const QString &strXAxis, const QString &strYAxis, QWidget *pParent);

  /// \param bFilled areas instead of lines
  void SetCurves(const std::vector<SCurve> &listCurves, bool bFilled = false);
  void SetXRange(double dMin, double dMax);

private:
  std::vector<QwtPlotCurve *> m_listCurves; ///< owned by the plot they are attached to
};

/// The look that all plots of the window share.
void StylePlot(QwtPlot &plot, const QString &strTitle, const QString &strXAxis, const QString &strYAxis);

} // namespace ffc::host

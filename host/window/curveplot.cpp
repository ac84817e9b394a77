#include "host/window/curveplot.h"

#include <cmath>

#include <qwt_plot_canvas.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_layout.h>
#include <qwt_scale_div.h>
#include <qwt_scale_draw.h>
#include <qwt_scale_widget.h>
#include <qwt_text.h>

#include "host/window/appearance.h"

namespace ffc::host {
namespace {

constexpr int TITLE_POINTS = 9;
constexpr int SCALE_POINTS = 7;

QwtText MakeText(const QString &strText, int nPoints, bool bBold)
{
  QwtText text(strText);
  QFont font;
  font.setPointSize(nPoints);
  font.setBold(bBold);
  text.setFont(font);
  return text;
}

/// One notation for all axes: whole numbers with a letter for thousands and millions, so that labels stay short.
class CShortScaleDraw final : public QwtScaleDraw {
public:
  QwtText label(double dValue) const override
  {
    const double dSize = std::abs(dValue);
    return dSize >= 1e6   ? QwtText(QString::number(dValue / 1e6, 'g', 4) + QLatin1Char('M'))
           : dSize >= 1e4 ? QwtText(QString::number(dValue / 1e3, 'g', 4) + QLatin1Char('k'))
                          : QwtText(QString::number(dValue, 'g', 6));
  }
};

bool IsDark(const QPalette &palette)
{
  return palette.color(QPalette::Base).lightness() < 128;
}

} // namespace

QColor GetPlaneColor(const QString &strName, const QPalette &palette)
{
  const bool bDark = IsDark(palette);
  if (strName == QLatin1String("R")) {
    return bDark ? QColor(255, 120, 105) : QColor(200, 50, 40);
  }
  if (strName == QLatin1String("G")) {
    return bDark ? QColor(110, 215, 130) : QColor(40, 140, 60);
  }
  if (strName == QLatin1String("B")) {
    return bDark ? QColor(125, 170, 255) : QColor(40, 90, 190);
  }
  return palette.color(QPalette::Text);
}

void StylePlot(QwtPlot &plot, const QString &strTitle, const QString &strXAxis, const QString &strYAxis)
{
  plot.setTitle(MakeText(strTitle, TITLE_POINTS, true));
  plot.setAxisTitle(QwtPlot::xBottom, MakeText(strXAxis, SCALE_POINTS, false));
  plot.setAxisTitle(QwtPlot::yLeft, MakeText(strYAxis, SCALE_POINTS, false));
  QFont font;
  font.setPointSize(SCALE_POINTS);
  for (const int nAxis : {QwtPlot::xBottom, QwtPlot::yLeft, QwtPlot::yRight}) {
    plot.setAxisFont(nAxis, font);
    plot.setAxisMaxMajor(nAxis, 5);
    plot.setAxisMaxMinor(nAxis, 2);
  }
  plot.setAxisScaleDraw(QwtPlot::xBottom, new CShortScaleDraw);
  plot.setAxisScaleDraw(QwtPlot::yLeft, new CShortScaleDraw);
  ColorPlot(plot);
  plot.plotLayout()->setCanvasMargin(0);
  QwtPlotCanvas &canvas = *static_cast<QwtPlotCanvas *>(plot.canvas()); // as the plot makes it
  canvas.setFrameStyle(QFrame::Box | QFrame::Plain);
  canvas.setLineWidth(0);
  plot.setMinimumHeight(110);
  plot.setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void ColorPlot(QwtPlot &plot)
{
  plot.setCanvasBackground(plot.palette().color(QPalette::Base));
}

CCurvePlot::CCurvePlot(const QString &strTitle, const QString &strXAxis, const QString &strYAxis, QWidget *pParent)
  : QwtPlot(pParent), m_pGrid(new QwtPlotGrid)
{
  m_pGrid->attach(this);
  StylePlot(*this, strTitle, strXAxis, strYAxis);
  Restyle();
}

void CCurvePlot::changeEvent(QEvent *pEvent)
{
  QwtPlot::changeEvent(pEvent);
  if (IsNewLook(*pEvent)) {
    Restyle();
  }
}

void CCurvePlot::Restyle()
{
  ColorPlot(*this);
  QColor clrGrid = palette().color(QPalette::Text);
  clrGrid.setAlpha(40);
  m_pGrid->setPen(clrGrid, 0.0, Qt::SolidLine);
}

void CCurvePlot::LockScale(bool bLock)
{
  if (bLock) {
    const QwtScaleDiv stDivision = axisScaleDiv(QwtPlot::yLeft);
    setAxisScaleDiv(QwtPlot::yLeft, stDivision);
  } else {
    setAxisAutoScale(QwtPlot::yLeft, true);
    replot();
  }
}

void CCurvePlot::SetCurves(const std::vector<SCurve> &listCurves, bool bFilled)
{
  while (m_listCurves.size() > listCurves.size()) {
    delete m_listCurves.back(); // detaches itself
    m_listCurves.pop_back();
  }
  while (m_listCurves.size() < listCurves.size()) {
    QwtPlotCurve *pCurve = new QwtPlotCurve;
    pCurve->attach(this);
    m_listCurves.push_back(pCurve);
  }
  for (std::size_t nCurve = 0; nCurve < listCurves.size(); ++nCurve) {
    QColor clrPlane = GetPlaneColor(listCurves[nCurve].strName, palette());
    clrPlane.setAlpha(listCurves[nCurve].bRaw ? 150 : 255);
    QwtPlotCurve &curve = *m_listCurves[nCurve];
    curve.setTitle(listCurves[nCurve].strName);
    curve.setPen(clrPlane, 1.0, listCurves[nCurve].bRaw ? Qt::DashLine : Qt::SolidLine);
    QColor clrArea = clrPlane;
    clrArea.setAlpha(110);
    curve.setBrush(bFilled ? QBrush(clrArea) : QBrush(Qt::NoBrush));
    curve.setSamples(listCurves[nCurve].listX, listCurves[nCurve].listY);
  }
  replot();
}

void CCurvePlot::SetXRange(double dMin, double dMax)
{
  setAxisScale(QwtPlot::xBottom, dMin, dMax);
}

} // namespace ffc::host

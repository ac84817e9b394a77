#include "host/window/curveplot.h"

#include <qwt_plot_canvas.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_layout.h>
#include <qwt_scale_widget.h>
#include <qwt_text.h>

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

} // namespace

QColor GetPlaneColor(const QString &strName)
{
  if (strName == QLatin1String("R")) {
    return {200, 50, 40};
  }
  if (strName == QLatin1String("G")) {
    return {40, 140, 60};
  }
  return strName == QLatin1String("B") ? QColor(40, 90, 190) : QColor(60, 64, 70);
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
  plot.setCanvasBackground(Qt::white);
  plot.plotLayout()->setCanvasMargin(0);
  if (QwtPlotCanvas *pCanvas = qobject_cast<QwtPlotCanvas *>(plot.canvas())) {
    pCanvas->setFrameStyle(QFrame::Box | QFrame::Plain);
    pCanvas->setLineWidth(0);
  }
  plot.setMinimumHeight(110);
  plot.setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

CCurvePlot::CCurvePlot(const QString &strTitle, const QString &strXAxis, const QString &strYAxis, QWidget *pParent)
  : QwtPlot(pParent)
{
  StylePlot(*this, strTitle, strXAxis, strYAxis);
  QwtPlotGrid *pGrid = new QwtPlotGrid;
  pGrid->setPen(QColor(225, 227, 230), 0.0, Qt::SolidLine);
  pGrid->attach(this);
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
    const QColor clrPlane = GetPlaneColor(listCurves[nCurve].strName);
    QwtPlotCurve &curve = *m_listCurves[nCurve];
    curve.setTitle(listCurves[nCurve].strName);
    curve.setPen(clrPlane, 1.0);
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

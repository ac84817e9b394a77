#include "quality/profileplot.h"

#include <algorithm>

#include <QPainter>

#include <qwt_legend.h>
#include <qwt_plot.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_renderer.h>

namespace ffc::quality {

using genapi::EColorLayout;

namespace {

constexpr QSize PLOT_SIZE(1000, 500);

/// The plot owns what is attached to it.
void AttachCurve(QwtPlot &plot, const QString &strTitle, const SProfile &stProfile, const QColor &clrLine)
{
  QwtPlotCurve *pCurve = new QwtPlotCurve(strTitle);
  pCurve->setSamples(stProfile.listPositions, stProfile.listGrays);
  pCurve->setPen(clrLine, 1.5);
  pCurve->setRenderHint(QwtPlotItem::RenderAntialiased);
  pCurve->attach(&plot);
}

} // namespace

SProfile MakeRowProfile(const CFrameStack &stStack, EColorLayout eLayout)
{
  const std::vector<SColorPlane> listPlanes = GetColorPlanes(eLayout);
  return MakeRowProfile(stStack, listPlanes[listPlanes.size() / 2]);
}

QImage DrawProfilePlot(const SProfile &stBefore, const SProfile &stAfter, const QString &strTitle)
{
  QwtPlot plot(strTitle);
  plot.setCanvasBackground(Qt::white);
  plot.setAxisTitle(QwtPlot::xBottom, QStringLiteral("column, pixels"));
  plot.setAxisTitle(QwtPlot::yLeft, QStringLiteral("grey, DN"));
  plot.insertLegend(new QwtLegend, QwtPlot::BottomLegend);
  QwtPlotGrid *pGrid = new QwtPlotGrid;
  pGrid->setPen(QColor(220, 220, 220), 0.0, Qt::SolidLine);
  pGrid->attach(&plot);
  AttachCurve(plot, QStringLiteral("before"), stBefore, QColor(200, 60, 40));
  if (!stAfter.listPositions.isEmpty()) {
    AttachCurve(plot, QStringLiteral("after"), stAfter, QColor(30, 90, 170));
  }
  if (!stBefore.listPositions.isEmpty()) {
    plot.setAxisScale(QwtPlot::xBottom, 0, std::max(1.0, stBefore.listPositions.last()));
  }
  plot.replot();

  QImage imgPlot(PLOT_SIZE, QImage::Format_RGB32);
  imgPlot.fill(Qt::white);
  QPainter painter(&imgPlot);
  QwtPlotRenderer renderer;
  renderer.setDiscardFlag(QwtPlotRenderer::DiscardBackground);
  renderer.render(&plot, &painter, QRectF(QPointF(10, 10), PLOT_SIZE - QSize(20, 20)));
  return imgPlot;
}

} // namespace ffc::quality

#include "host/quality/profileplot.h"

#include <algorithm>

#include <QPainter>

#include <qwt_legend.h>
#include <qwt_plot.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_renderer.h>

namespace {

constexpr uint32_t PROFILE_LINES = 32;
constexpr QSize PLOT_SIZE(1000, 500);

/// The plot owns what is attached to it.
void AttachCurve(QwtPlot &plot, const QString &strTitle, const SRowProfile &stProfile, const QColor &clrLine)
{
  QwtPlotCurve *pCurve = new QwtPlotCurve(strTitle);
  pCurve->setSamples(stProfile.listColumns, stProfile.listGrays);
  pCurve->setPen(clrLine, 1.5);
  pCurve->setRenderHint(QwtPlotItem::RenderAntialiased);
  pCurve->attach(&plot);
}

} // namespace

SRowProfile MakeRowProfile(const CFrameStack &stStack, EColorLayout eLayout)
{
  const std::vector<SColorPlane> listPlanes = GetColorPlanes(eLayout);
  const SColorPlane &stPlane = listPlanes[listPlanes.size() / 2];
  const uint32_t nBin = eLayout == EColorLayout::Mono ? 1U : 2U;
  const uint32_t nLines = std::min(PROFILE_LINES, stStack.GetHeight());
  const uint32_t nFirst = (stStack.GetHeight() - nLines) / 2;

  std::vector<double> listSums((stStack.GetWidth() + nBin - 1) / nBin, 0.0);
  std::vector<int> listCounts(listSums.size(), 0);
  for (uint32_t nLine = nFirst; nLine < nFirst + nLines; ++nLine) {
    VisitPlaneLine(stPlane, stStack.GetWidth(), nLine, [&](uint32_t nColumn) {
      listSums[nColumn / nBin] += stStack.GetMean(nColumn, nLine);
      ++listCounts[nColumn / nBin];
    });
  }

  SRowProfile stProfile;
  for (std::size_t nPoint = 0; nPoint < listSums.size(); ++nPoint) {
    if (listCounts[nPoint] > 0) {
      stProfile.listColumns << double(nPoint * nBin) + 0.5 * double(nBin - 1);
      stProfile.listGrays << listSums[nPoint] / listCounts[nPoint];
    }
  }
  return stProfile;
}

QImage DrawProfilePlot(const SRowProfile &stBefore, const SRowProfile &stAfter, const QString &strTitle)
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
  AttachCurve(plot, QStringLiteral("after"), stAfter, QColor(30, 90, 170));
  if (!stBefore.listColumns.isEmpty()) {
    plot.setAxisScale(QwtPlot::xBottom, 0, std::max(1.0, stBefore.listColumns.last()));
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

#include "host/window/blockmapplot.h"

#include <algorithm>
#include <cmath>

#include <qwt_color_map.h>
#include <qwt_matrix_raster_data.h>
#include <qwt_plot_layout.h>
#include <qwt_plot_spectrogram.h>
#include <qwt_scale_widget.h>

#include "host/window/appearance.h"
#include "host/window/curveplot.h"

namespace ffc::host {
namespace {

/// A scale of at least so many percent, so that noise does not look like shading.
constexpr double MIN_SPAN = 0.5;

/// From dark blue over green to yellow, rising in lightness all the way, so that it also reads in grey.
QwtColorMap *MakeColors()
{
  QwtLinearColorMap *pColors = new QwtLinearColorMap(QColor(48, 18, 84), QColor(250, 231, 60));
  pColors->addColorStop(0.25, QColor(56, 86, 140));
  pColors->addColorStop(0.5, QColor(34, 144, 140));
  pColors->addColorStop(0.75, QColor(100, 198, 96));
  return pColors;
}

/// Takes from the canvas what its aspect leaves over, in the middle of its place, so that no axis runs on past the map.
class CAspectLayout final : public QwtPlotLayout {
public:
  void SetAspect(double dAspect) { m_dAspect = dAspect; }

  void activate(const QwtPlot *pPlot, const QRectF &rcPlot, Options options) override
  {
    QwtPlotLayout::activate(pPlot, rcPlot, options);
    const QRectF rcPlace = canvasRect();
    if (m_dAspect <= 0 || rcPlace.isEmpty()) {
      return;
    }
    QSizeF szMap(m_dAspect, 1);
    szMap.scale(rcPlace.size(), Qt::KeepAspectRatio);
    const double dWide = (rcPlace.width() - szMap.width()) / 2;
    const double dHigh = (rcPlace.height() - szMap.height()) / 2;
    setCanvasRect(rcPlace.adjusted(dWide, dHigh, -dWide, -dHigh));
    setScaleRect(QwtPlot::xBottom, scaleRect(QwtPlot::xBottom).adjusted(dWide, -dHigh, -dWide, -dHigh));
    setScaleRect(QwtPlot::yLeft, scaleRect(QwtPlot::yLeft).adjusted(dWide, dHigh, dWide, -dHigh));
    setScaleRect(QwtPlot::yRight, scaleRect(QwtPlot::yRight).adjusted(-dWide, dHigh, -dWide, -dHigh));
  }

private:
  double m_dAspect = 0; ///< width by height; 0: whatever there is
};

} // namespace

CBlockMapPlot::CBlockMapPlot(QWidget *pParent) : QwtPlot(pParent), m_pMap(new QwtPlotSpectrogram)
{
  setPlotLayout(new CAspectLayout);
  StylePlot(*this, tr("Block means, % of the mean"), tr("column, blocks"), tr("line, blocks"));
  m_pMap->setRenderThreadCount(1);
  m_pMap->setColorMap(MakeColors());
  m_pMap->attach(this);
  setCanvasBackground(palette().color(QPalette::Window));
  QwtScaleWidget *pScale = axisWidget(QwtPlot::yRight);
  pScale->setColorBarEnabled(true);
  pScale->setColorBarWidth(10);
  pScale->setMargin(10); // it is no part of the map
  enableAxis(QwtPlot::yRight);
  plotLayout()->setAlignCanvasToScales(true);
}

void CBlockMapPlot::changeEvent(QEvent *pEvent)
{
  QwtPlot::changeEvent(pEvent);
  if (IsNewLook(*pEvent)) {
    setCanvasBackground(palette().color(QPalette::Window)); // not one of the map's colours
  }
}

void CBlockMapPlot::SetBlocks(const quality::SBlockMeans &stBlocks)
{
  if (stBlocks.listMeans.empty()) {
    m_pMap->setData(nullptr);
    replot();
    return;
  }
  QVector<double> listValues;
  for (const double dMean : stBlocks.listMeans) {
    listValues << dMean;
  }
  const auto [itMin, itMax] = std::minmax_element(listValues.cbegin(), listValues.cend());
  const double dMiddle = (*itMin + *itMax) / 2;
  const double dHalf = std::max(MIN_SPAN, *itMax - *itMin) / 2;
  const QwtInterval interval(dMiddle - dHalf, dMiddle + dHalf);
  QwtMatrixRasterData *pData = new QwtMatrixRasterData;
  pData->setValueMatrix(listValues, static_cast<int>(stBlocks.nColumns));
  pData->setInterval(Qt::XAxis, QwtInterval(0, stBlocks.nColumns, QwtInterval::ExcludeMaximum));
  pData->setInterval(Qt::YAxis, QwtInterval(0, stBlocks.nLines, QwtInterval::ExcludeMaximum));
  pData->setInterval(Qt::ZAxis, interval);
  m_pMap->setData(pData);
  setAxisScale(QwtPlot::xBottom, 0, stBlocks.nColumns);
  setAxisScale(QwtPlot::yLeft, stBlocks.nLines, 0); // as the image stands
  setAxisScale(QwtPlot::yRight, interval.minValue(), interval.maxValue());
  axisWidget(QwtPlot::yRight)->setColorMap(interval, MakeColors());
  static_cast<CAspectLayout *>(plotLayout())->SetAspect(static_cast<double>(stBlocks.nColumns) / stBlocks.nLines);
  updateLayout();
  replot();
}

} // namespace ffc::host

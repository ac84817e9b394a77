#include "host/window/plotpanel.h"

#include <algorithm>

#include <QVBoxLayout>

#include "host/window/blockmapplot.h"
#include "host/window/curveplot.h"

namespace ffc::host {
namespace {

QVector<double> GetBinGrays(uint32_t nMaximum)
{
  QVector<double> listGrays;
  for (int nBin = 0; nBin < HISTOGRAM_BINS; ++nBin) {
    listGrays << (nBin + 0.5) * (nMaximum + 1.0) / HISTOGRAM_BINS;
  }
  return listGrays;
}

} // namespace

CPlotPanel::CPlotPanel(QWidget *pParent)
  : QWidget(pParent), m_pRow(new CCurvePlot(tr("Row profile"), tr("column, px"), tr("DN"), this)),
    m_pColumn(new CCurvePlot(tr("Column profile"), tr("line, px"), tr("DN"), this)),
    m_pHistogram(new CCurvePlot(tr("Histogram"), tr("DN"), tr("pixels"), this)), m_pMap(new CBlockMapPlot(this))
{
  QVBoxLayout *pLayout = new QVBoxLayout(this);
  pLayout->setContentsMargins(4, 4, 4, 4);
  pLayout->setSpacing(4);
  for (QWidget *pPlot : QList<QWidget *>{m_pRow, m_pColumn, m_pHistogram}) {
    pLayout->addWidget(pPlot, 3);
  }
  pLayout->addWidget(m_pMap, 4);
}

bool CPlotPanel::Offer(const std::shared_ptr<const SFrameCopy> &pFrame)
{
  if (!isVisible()) {
    return false;
  }
  return m_background.Start([this, pFrame]() -> std::function<void()> {
    const auto pAnalysis = std::make_shared<const SFrameAnalysis>(AnalyseFrame(*pFrame));
    return [this, pAnalysis] { Show(*pAnalysis); };
  });
}

void CPlotPanel::Show(const SFrameAnalysis &stAnalysis)
{
  std::vector<SCurve> listRows;
  std::vector<SCurve> listColumns;
  std::vector<SCurve> listHistograms;
  const QVector<double> listGrays = GetBinGrays(stAnalysis.nMaximum);
  for (const SPlaneAnalysis &stPlane : stAnalysis.listPlanes) {
    listRows.push_back({stPlane.strName, stPlane.stRow.listPositions, stPlane.stRow.listGrays});
    listColumns.push_back({stPlane.strName, stPlane.stColumn.listPositions, stPlane.stColumn.listGrays});
    listHistograms.push_back({stPlane.strName, listGrays, stPlane.listHistogram});
  }
  if (!listRows.empty() && !listRows[0].listX.isEmpty() && !listColumns[0].listX.isEmpty()) {
    m_pRow->SetXRange(0, std::max(1.0, listRows[0].listX.last()));
    m_pColumn->SetXRange(0, std::max(1.0, listColumns[0].listX.last()));
    m_pHistogram->SetXRange(0, stAnalysis.nMaximum);
  }
  m_pRow->SetCurves(listRows);
  m_pColumn->SetCurves(listColumns);
  m_pHistogram->SetCurves(listHistograms, true);
  m_pMap->SetBlocks(stAnalysis.stBlocks);
  emit SigShown();
}

} // namespace ffc::host

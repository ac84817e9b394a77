#include "host/window/plotpanel.h"

#include <algorithm>

#include <QAction>
#include <QMenu>
#include <QVBoxLayout>

#include "host/window/blockmapplot.h"
#include "host/window/curveplot.h"
#include "host/window/toolbar.h"

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

/// One curve for each plane.
void AddCurves(std::vector<SCurve> &listCurves, const SFrameAnalysis &stAnalysis,
               quality::SProfile SPlaneAnalysis::*pProfile, bool bRaw)
{
  for (const SPlaneAnalysis &stPlane : stAnalysis.listPlanes) {
    listCurves.push_back({stPlane.strName, (stPlane.*pProfile).listPositions, (stPlane.*pProfile).listGrays, bRaw});
  }
}

/// The raw frame's below the other's.
void ShowProfile(CCurvePlot &plot, const SFrameAnalysis &stAnalysis, const SFrameAnalysis &stRaw,
                 quality::SProfile SPlaneAnalysis::*pProfile)
{
  std::vector<SCurve> listCurves;
  AddCurves(listCurves, stRaw, pProfile, true);
  AddCurves(listCurves, stAnalysis, pProfile, false);
  double dEnd = 1;
  for (const SCurve &stCurve : listCurves) {
    dEnd = stCurve.listX.isEmpty() ? dEnd : std::max(dEnd, stCurve.listX.last());
  }
  plot.SetXRange(0, dEnd);
  plot.SetCurves(listCurves);
}

} // namespace

CPlotPanel::CPlotPanel(QWidget *pParent)
  : QWidget(pParent), m_pTools(new CToolBar(this)),
    m_pLinePlot(new CCurvePlot(tr("Profile along the marked line"), tr("distance, px"), tr("DN"), this)),
    m_pRow(new CCurvePlot(tr("Row profile"), tr("column, px"), tr("DN"), this)),
    m_pColumn(new CCurvePlot(tr("Column profile"), tr("line, px"), tr("DN"), this)),
    m_pHistogram(new CCurvePlot(tr("Histogram"), tr("DN"), tr("pixels"), this)), m_pMap(new CBlockMapPlot(this))
{
  m_pTools->setObjectName(QStringLiteral("PlotTools"));
  m_pLinePlot->setObjectName(QStringLiteral("LineProfile"));
  m_pRow->setObjectName(QStringLiteral("RowProfile"));
  m_pHistogram->setObjectName(QStringLiteral("Histogram"));
  m_pMap->setObjectName(QStringLiteral("BlockMap"));
  QVBoxLayout *pLayout = new QVBoxLayout(this);
  pLayout->setContentsMargins(4, 4, 4, 4);
  pLayout->setSpacing(4);
  pLayout->addWidget(m_pTools);
  for (QWidget *pPlot : QList<QWidget *>{m_pLinePlot, m_pRow, m_pColumn, m_pHistogram}) {
    pLayout->addWidget(pPlot, 3);
  }
  pLayout->addWidget(m_pMap, 4);
  m_pLinePlot->hide();
}

QAction *CPlotPanel::AddOption(QMenu &menu, const QString &strText, const QKeySequence &keys, const QString &strTip)
{
  QAction *pAction = menu.addAction(strText);
  pAction->setShortcut(keys);
  pAction->setCheckable(true);
  pAction->setToolTip(strTip);
  pAction->setIconText(GetToolBarText(strText));
  m_pTools->addAction(pAction);
  return pAction;
}

void CPlotPanel::FillMenu(QMenu &menu)
{
  menu.addSeparator();
  m_pLock = AddOption(menu, tr("Loc&k plot scales"), Qt::CTRL + Qt::Key_L,
                      tr("The plots keep their scales of grey as they are now, so that frames compare"));
  m_pRaw = AddOption(menu, tr("Ra&w in plots"), Qt::CTRL + Qt::Key_R,
                     tr("Profiles of a corrected image have those of the raw one beside them, dashed"));
  m_pRaw->setChecked(true);
  connect(m_pLock, &QAction::toggled, this, [this](bool bLock) {
    for (CCurvePlot *pPlot : {m_pLinePlot, m_pRow, m_pColumn, m_pHistogram}) {
      pPlot->LockScale(bLock);
    }
  });
}

void CPlotPanel::SetLine(const std::optional<QLine> &line)
{
  m_line = line;
  m_pLinePlot->setVisible(line.has_value());
}

bool CPlotPanel::Offer(const std::shared_ptr<const SFrameCopy> &pFrame)
{
  if (!isVisible()) {
    return false;
  }
  const bool bRaw = m_pRaw != nullptr && m_pRaw->isChecked() && pFrame->pRaw != nullptr;
  return m_background.Start([this, pFrame, bRaw, line = m_line]() -> std::function<void()> {
    const auto pAnalysis = std::make_shared<const SFrameAnalysis>(AnalyseFrame(*pFrame, line));
    const auto pOfRaw =
      std::make_shared<const SFrameAnalysis>(bRaw ? AnalyseFrame(*pFrame->pRaw, line) : SFrameAnalysis());
    return [this, pAnalysis, pOfRaw] { Show(*pAnalysis, *pOfRaw); };
  });
}

void CPlotPanel::Show(const SFrameAnalysis &stAnalysis, const SFrameAnalysis &stRaw)
{
  ShowProfile(*m_pRow, stAnalysis, stRaw, &SPlaneAnalysis::stRow);
  ShowProfile(*m_pColumn, stAnalysis, stRaw, &SPlaneAnalysis::stColumn);
  ShowProfile(*m_pLinePlot, stAnalysis, stRaw, &SPlaneAnalysis::stLine);
  std::vector<SCurve> listHistograms;
  const QVector<double> listGrays = GetBinGrays(stAnalysis.nMaximum);
  for (const SPlaneAnalysis &stPlane : stAnalysis.listPlanes) {
    listHistograms.push_back({stPlane.strName, listGrays, stPlane.listHistogram});
  }
  m_pHistogram->SetXRange(0, std::max(1.0, static_cast<double>(stAnalysis.nMaximum)));
  m_pHistogram->SetCurves(listHistograms, true);
  m_pMap->SetBlocks(stAnalysis.stBlocks);
  emit SigShown();
}

} // namespace ffc::host

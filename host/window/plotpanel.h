/// \file
/// The plots beside the image.
#pragma once

#include <memory>
#include <optional>

#include <QLine>
#include <QWidget>

#include "host/measurement/background.h"
#include "host/window/frameanalysis.h"

class QAction;
class QMenu;
class QToolBar;

namespace ffc::host {

class CBlockMapPlot;
class CCurvePlot;

/// Row and column profile, a line of the user's own, histogram and block means of a frame, analysed beside the stream
/// and the window: a frame that comes while the last one is analysed is left out.
class CPlotPanel : public QWidget {
  Q_OBJECT

public:
  explicit CPlotPanel(QWidget *pParent = nullptr);

  /// The entries that the menu of the view has for the plots, which the panel has too. Once.
  void FillMenu(QMenu &menu);
  /// \param line on the image, of which the profile is plotted; none: no such plot
  void SetLine(const std::optional<QLine> &line);
  /// Analyses a frame, unless the panel is hidden or still busy.
  /// \return false when the frame was left out
  bool Offer(const std::shared_ptr<const SFrameCopy> &pFrame);

signals:
  void SigShown();

private:
  QAction *AddOption(QMenu &menu, const QString &strText, const QKeySequence &keys, const QString &strTip);
  void Show(const SFrameAnalysis &stAnalysis, const SFrameAnalysis &stRaw);

  QToolBar *m_pTools;
  QAction *m_pLock = nullptr;
  QAction *m_pRaw = nullptr;
  CCurvePlot *m_pLinePlot;
  CCurvePlot *m_pRow;
  CCurvePlot *m_pColumn;
  CCurvePlot *m_pHistogram;
  CBlockMapPlot *m_pMap;
  std::optional<QLine> m_line;
  CBackground m_background;
};

} // namespace ffc::host

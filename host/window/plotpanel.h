/// \file
/// The plots beside the image.
#pragma once

#include <memory>

#include <QWidget>

#include "host/measurement/background.h"
#include "host/window/frameanalysis.h"

namespace ffc::host {

class CBlockMapPlot;
class CCurvePlot;

/// Row and column profile, histogram and block means of a frame, analysed beside the stream and the window: a frame
/// that comes while the last one is analysed is left out.
class CPlotPanel : public QWidget {
  Q_OBJECT

public:
  explicit CPlotPanel(QWidget *pParent = nullptr);

  /// Analyses a frame, unless the panel is hidden or still busy.
  /// \return false when the frame was left out
  bool Offer(const std::shared_ptr<const SFrameCopy> &pFrame);

signals:
  void SigShown();

private:
  void Show(const SFrameAnalysis &stAnalysis);

  CCurvePlot *m_pRow;
  CCurvePlot *m_pColumn;
  CCurvePlot *m_pHistogram;
  CBlockMapPlot *m_pMap;
  CBackground m_background;
};

} // namespace ffc::host

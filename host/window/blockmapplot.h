/// \file
/// Block means in false colour.
#pragma once

#include <qwt_plot.h>

#include "quality/blockmeans.h"

class QwtPlotSpectrogram;

namespace ffc::host {

/// A map of the image in its own aspect, upper line on top, each block in the colour of its mean; blue below, yellow
/// above.
class CBlockMapPlot : public QwtPlot {
  Q_OBJECT

public:
  explicit CBlockMapPlot(QWidget *pParent);

  /// \param stBlocks in percent of the mean; nothing is drawn without blocks
  void SetBlocks(const quality::SBlockMeans &stBlocks);

protected:
  void changeEvent(QEvent *pEvent) override;

private:
  QwtPlotSpectrogram *m_pMap; ///< owned by the plot
};

} // namespace ffc::host

/// \file
/// Defect pixels: which there are, and lists of them.
#pragma once

#include <cstdint>
#include <vector>

#include <QByteArray>
#include <QString>

#include "platform/result.h"
#include "quality/framestack.h"

namespace ffc::quality {

/// From what on a pixel counts as defect. Each pixel is compared with the median of the 5 x 5 pixels of its channel
/// around it, so that shading and defects nearby do not count.
struct SDefectLimits {
  double dBrightPercent = 10;  ///< deviation of its signal in bright frames, and 6 robust deviations of all
  double dDarkDeviations = 10; ///< deviation in dark frames, times the channel's robust standard deviation
  double dNoiseTimes = 5;      ///< standard deviation in time, times the channel's median
};

/// What is wrong with a pixel; several at once are added.
enum EDefectKind : uint32_t {
  DEFECT_DARK = 1,   ///< too little signal
  DEFECT_BRIGHT = 2, ///< too much signal
  DEFECT_HOT = 4,    ///< too bright without light
  DEFECT_STUCK = 8,  ///< a tenth of its neighbours' signal, or less
  DEFECT_NOISY = 16, ///< too restless in time
};

struct SDefect {
  uint32_t nColumn = 0;
  uint32_t nLine = 0;
  uint32_t nKinds = 0;       ///< EDefectKind
  double dBrightPercent = 0; ///< deviation of the signal
  double dDarkDn = 0;        ///< deviation without light
  double dNoiseTimes = 0;    ///< 0 where it was not measured
};

/// Stacks of one size, with frames; the noise counts where both keep squares and have at least 4 frames.
/// \return by line, then column; nothing for stacks that do not match. Throws what the memory does.
std::vector<SDefect> FindDefects(const CFrameStack &stBright, const CFrameStack &stDark, genapi::EColorLayout eLayout,
                                 const SDefectLimits &stLimits);

/// "dark+hot"
QString GetKindNames(uint32_t nKinds);
/// "3 defect pixels: 2 dark, 1 hot", or "no defect pixels"
QString SummarizeDefects(const std::vector<SDefect> &listDefects);

/// Columns x, y from 0 at the left and top, kind and measured values.
QByteArray MakeDefectsCsv(const std::vector<SDefect> &listDefects);
/// A map with the image's size and one element for each pixel.
QByteArray MakeDefectsXml(const std::vector<SDefect> &listDefects, uint32_t nWidth, uint32_t nHeight);

/// Reads either kind of list, the kinds and values of which are ignored. A list without its head is read too.
/// \return a failure that names the line
Result<std::vector<SDefect>> ParseDefects(const QByteArray &byteList);

} // namespace ffc::quality

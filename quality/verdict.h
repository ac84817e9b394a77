/// \file
/// Whether a corrected image is flat enough.
#pragma once

#include <QString>

#include "quality/uniformity.h"

namespace ffc::quality {

enum class EVerdict {
  Unknown, ///< nothing was measured
  Pass,    ///< every plane's shading is within the limit
  Fail,    ///< some plane's is not
  Worse    ///< some plane is less even than it was without correction
};

/// Judges the shading of every colour plane. Worse wins over Fail.
/// \param dLimitPercent highest shading that passes, in percent of the mean
EVerdict JudgeShading(const SUniformity &stBefore, const SUniformity &stAfter, double dLimitPercent);

/// The verdict in a sentence, in the language of the program.
QString DescribeVerdict(EVerdict eVerdict, const SUniformity &stAfter, double dLimitPercent);

/// What a fresh flat says of the coefficients in use.
enum class EDrift {
  Unknown, ///< nothing was measured
  Steady,  ///< within the limit
  Grown,   ///< within the limit, but more than twice as uneven as when it was measured first
  Beyond   ///< not within the limit any more
};

/// \param dThenPercent shading at the measurement before, or negative when there was none
EDrift JudgeDrift(double dThenPercent, double dNowPercent, double dLimitPercent);

QString DescribeDrift(EDrift eDrift, double dThenPercent, double dNowPercent, double dLimitPercent);

} // namespace ffc::quality

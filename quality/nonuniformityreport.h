/// \file
/// The spatial figures of EMVA 1288 under the standard's names.
#pragma once

#include <QJsonObject>
#include <QString>

#include "quality/uniformity.h"

namespace ffc::quality {

/// Everything that was measured, by channel: "plain" without and "high_pass" with the correction for uneven
/// illumination, each an array. Variances are s2_y... and sigma2_y_stack, DN^2, and may be negative.
QJsonObject MakeNonuniformityJson(const SUniformity &stUniformity);

/// A PRNU or DSNU, or one of its parts. A variance that is not above 0 once the noise is taken off has no root: its
/// figure, 0, is "below noise", and the parts beside it may add up to more than the total.
QString DescribeFigure(double dFigure, int nDecimals, const QString &strUnit = {});

/// "0.430 % (rows 0.020, columns 0.050, pixels 0.420)"; what the noise hides is "below noise".
QString DescribeParts(const SNonuniformityParts &stParts, const QString &strUnit);

} // namespace ffc::quality

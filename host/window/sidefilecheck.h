/// \file
/// Whether a coefficient file that the user chooses is for the camera that is open, and how that is kept.
#pragma once

#include <QString>

#include <GenApi/GenApi.h>

#include "host/measurement/coefficientorigin.h"
#include "host/window/correctionstate.h"
#include "platform/result.h"

namespace ffc::host {

/// What the side file says of a coefficient file that does not fit the camera, as sentences; empty when it fits.
/// Without a side file the table's own structure says whether it is of another shape.
QString DescribeMisfit(const QString &strFile, GenApi::INodeMap &deviceMap);

/// Writes the file beside host-side coefficients that were computed here and have just been saved.
/// \param stShape of the frames that they are for
/// \param strPrograms that made them
Result<> WriteSideFile(const QString &strFile, const SCoefficientOrigin &stOrigin, const SFrameShape &stShape,
                       GenApi::INodeMap &deviceMap, const QString &strPrograms);

} // namespace ffc::host

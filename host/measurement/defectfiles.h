/// \file
/// The defect pixels that a measurement found, as files.
#pragma once

#include <QString>

#include "platform/result.h"
#include "quality/report.h"

namespace ffc::host {

/// Writes the report's defect pixels as a list and as a map; nothing where there are none.
/// \param strBase path of both without ending: .csv and .xml are added
Result<> SaveDefects(const QString &strBase, const quality::SReport &stReport);

} // namespace ffc::host

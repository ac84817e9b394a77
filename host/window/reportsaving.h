/// \file
/// A quality measurement into files.
#pragma once

#include <memory>

#include <QString>

#include "quality/qualityresult.h"

class QWidget;

namespace ffc::host {

/// Asks where to save, beginning in the folder of the last time.
/// \return empty when the user does not want to
QString AskReportPath(QWidget *pParent);

/// Writes the HTML file, and the JSON of the same base name beside it, each whole or not at all. A box in front shows
/// that it works, and cancels.
/// \return empty, also when cancelled, or one line that names the file and the reason
QString SaveReport(const QString &strPath, const std::shared_ptr<const quality::SResult> &pResult, double dLimitPercent,
                   QWidget *pParent);

} // namespace ffc::host

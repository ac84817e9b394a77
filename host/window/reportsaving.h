/// \file
/// A quality measurement into files.
#pragma once

#include <memory>

#include <QDateTime>
#include <QString>

#include "platform/result.h"
#include "quality/qualityresult.h"

class QWidget;

namespace ffc::host {

/// Asks where to save, beginning in the folder of the last time.
/// \return empty when the user does not want to
QString AskReportPath(QWidget *pParent);

/// Writes the HTML file, and the JSON of the same base name beside it, each whole or not at all. A box in front shows
/// that it works, and cancels.
/// \param dtMeasured in both files
/// \return success also when cancelled; a failure names the file and the reason
Result<> SaveReport(const QString &strPath, const std::shared_ptr<const quality::SResult> &pResult,
                    const quality::SLimits &stLimits, const QDateTime &dtMeasured, QWidget *pParent);

} // namespace ffc::host

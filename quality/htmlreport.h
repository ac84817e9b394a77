/// \file
/// A quality measurement as a page to file or to send.
#pragma once

#include <QByteArray>
#include <QDateTime>

#include "quality/qualityresult.h"

namespace ffc::quality {

/// One HTML file, UTF-8, that needs nothing beside it: pictures are in it as data URIs, no scripts, nothing is fetched.
/// In the language of the program.
/// \param stLimits the user's
/// \param dtMade printed as it is, to the second
QByteArray MakeHtmlReport(const SResult &stResult, const SLimits &stLimits, const QDateTime &dtMade);

/// The rows of figures that panel and report have in common: name, before, after, one row per figure and plane.
struct SFigureRow {
  QString strName;
  QString strBefore;
  QString strAfter;
};
QList<SFigureRow> ListFigureRows(const SReport &stReport);

/// What else there is to say, in sentences: noise, clipped pixels, gain limit, notes of the figures.
QStringList ListFindings(const SResult &stResult);

} // namespace ffc::quality

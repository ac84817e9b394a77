/// \file
/// What a corrected frame says of its correction, so that it is not corrected twice.
#pragma once

#include <QJsonObject>
#include <QString>

namespace ffc::frames {

/// For TEXT_CORRECTION. Whoever knows more adds it.
/// \param strFlat name of the coefficient file
/// \param strSha256 of that file, in hexadecimal
/// \param strTool program and version
QJsonObject MakeCorrectionMark(const QString &strFlat, const QString &strSha256, const QString &strTool);

/// As one line.
QString ToLine(const QJsonObject &object);

/// Where the mark is kept of a file that has no place for texts.
QString GetMarkPath(const QString &strFile);

} // namespace ffc::frames

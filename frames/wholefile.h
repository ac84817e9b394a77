/// \file
/// Files that are written whole or not at all.
#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

/// \return empty, or one line that names the file and the reason; the old file, if any, then stays
QString SaveWholeFile(const QString &strPath, const QByteArray &byteContent);

/// The same for a picture, as PNG.
QString SaveWholePicture(const QString &strPath, const QImage &imgPicture);

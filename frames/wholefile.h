/// \file
/// Files that are written whole or not at all.
#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

#include "platform/result.h"

namespace ffc::frames {

/// \return one line that names the file and the reason when it cannot be written; the old file, if any, then stays
Result<> SaveWholeFile(const QString &strPath, const QByteArray &byteContent);

/// The same for a picture, as PNG.
Result<> SaveWholePicture(const QString &strPath, const QImage &imgPicture);

} // namespace ffc::frames

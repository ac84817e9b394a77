#include "frames/wholefile.h"

#include <QDir>
#include <QImageWriter>
#include <QSaveFile>

namespace ffc::frames {
namespace {

Failure Describe(const QString &strPath, const QString &strReason)
{
  return Failure(QStringLiteral("cannot write %1: %2").arg(QDir::toNativeSeparators(strPath), strReason));
}

// Flushed before, because QSaveFile::commit does not notice that a buffered rest cannot be written.
Result<> Commit(QSaveFile &file)
{
  const bool bCommitted = file.flush() && file.commit();
  return bCommitted ? Result<>() : Describe(file.fileName(), file.errorString());
}

} // namespace

Result<> SaveWholeFile(const QString &strPath, const QByteArray &byteContent)
{
  QSaveFile file(strPath);
  if (!file.open(QIODevice::WriteOnly) || file.write(byteContent) != byteContent.size()) {
    return Describe(strPath, file.errorString());
  }
  return Commit(file);
}

Result<> SaveWholePicture(const QString &strPath, const QImage &imgPicture)
{
  QSaveFile file(strPath);
  if (!file.open(QIODevice::WriteOnly)) {
    return Describe(strPath, file.errorString());
  }
  QImageWriter writer(&file, "PNG");
  if (!writer.write(imgPicture)) {
    return Describe(strPath, writer.errorString());
  }
  return Commit(file);
}

} // namespace ffc::frames

#include "frames/wholefile.h"

#include <QDir>
#include <QImageWriter>
#include <QSaveFile>

namespace {

QString DescribeFailure(const QString &strPath, const QString &strReason)
{
  return QStringLiteral("cannot write %1: %2").arg(QDir::toNativeSeparators(strPath), strReason);
}

/// Flushed before, because QSaveFile::commit does not notice that a buffered rest cannot be written.
QString Commit(QSaveFile &file)
{
  return file.flush() && file.commit() ? QString() : DescribeFailure(file.fileName(), file.errorString());
}

} // namespace

QString SaveWholeFile(const QString &strPath, const QByteArray &byteContent)
{
  QSaveFile file(strPath);
  if (!file.open(QIODevice::WriteOnly) || file.write(byteContent) != byteContent.size()) {
    return DescribeFailure(strPath, file.errorString());
  }
  return Commit(file);
}

QString SaveWholePicture(const QString &strPath, const QImage &imgPicture)
{
  QSaveFile file(strPath);
  if (!file.open(QIODevice::WriteOnly)) {
    return DescribeFailure(strPath, file.errorString());
  }
  QImageWriter writer(&file, "PNG");
  if (!writer.write(imgPicture)) {
    return DescribeFailure(strPath, writer.errorString());
  }
  return Commit(file);
}

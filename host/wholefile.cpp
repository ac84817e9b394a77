#include "host/wholefile.h"

#include <QDir>
#include <QImageWriter>
#include <QSaveFile>

namespace {

QString DescribeFailure(const QString &strPath, const QString &strReason)
{
  return QStringLiteral("cannot write %1: %2").arg(QDir::toNativeSeparators(strPath), strReason);
}

} // namespace

QString SaveWholeFile(const QString &strPath, const QByteArray &byteContent)
{
  QSaveFile file(strPath);
  if (!file.open(QIODevice::WriteOnly) || file.write(byteContent) != byteContent.size() || !file.commit()) {
    return DescribeFailure(strPath, file.errorString());
  }
  return {};
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
  return file.commit() ? QString() : DescribeFailure(strPath, file.errorString());
}

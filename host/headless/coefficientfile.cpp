#include "host/headless/coefficientfile.h"

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>

namespace ffc::host {
namespace {

const QString FILE_NAME = QStringLiteral("coefficients.ffc");

Result<QByteArray> ReadWholeFile(const QString &strPath)
{
  QFile file(strPath);
  if (!file.open(QIODevice::ReadOnly)) {
    return Failure(QStringLiteral("cannot read %1: %2").arg(strPath, file.errorString()));
  }
  QByteArray byteContent = file.readAll();
  if (byteContent.isEmpty()) {
    return Failure(QStringLiteral("%1 is empty").arg(strPath));
  }
  return byteContent;
}

} // namespace

QString GetCoefficientPath(CBench &bench)
{
  return bench.GetFolder().GetPath(FILE_NAME);
}

Result<> SaveCoefficients(CBench &bench)
{
  const QString strPath = GetCoefficientPath(bench);
  QFile::remove(strPath);
  return bench.Judge(bench.GetDriver().SaveFile(strPath));
}

Result<> CheckSavedAgain(CBench &bench)
{
  const QTemporaryDir dir;
  const QString strAgain = dir.filePath(FILE_NAME);
  const Result<> saved = bench.Judge(bench.GetDriver().SaveFile(strAgain));
  if (!saved) {
    return saved;
  }
  const Result<QByteArray> first = ReadWholeFile(GetCoefficientPath(bench));
  const Result<QByteArray> again = ReadWholeFile(strAgain);
  if (!first || !again) {
    return first ? again.GetFailure() : first.GetFailure();
  }
  if (first.GetValue() != again.GetValue()) {
    return Failure("the coefficients change when they are loaded and saved again");
  }
  return {};
}

} // namespace ffc::host

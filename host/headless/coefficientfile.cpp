#include "host/headless/coefficientfile.h"

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>

#include "host/headless/steps.h"

namespace ffc::host {
namespace {

const QString FILE_NAME = QStringLiteral("coefficients.ffc");

QString ReadWholeFile(const QString &strPath, QByteArray &byteContent)
{
  QFile file(strPath);
  if (!file.open(QIODevice::ReadOnly)) {
    return QStringLiteral("cannot read %1: %2").arg(strPath, file.errorString());
  }
  byteContent = file.readAll();
  return byteContent.isEmpty() ? QStringLiteral("%1 is empty").arg(strPath) : QString();
}

} // namespace

QString GetCoefficientPath(CBench &bench)
{
  return bench.GetFolder().GetPath(FILE_NAME);
}

QString SaveCoefficients(CBench &bench)
{
  const QString strPath = GetCoefficientPath(bench);
  QFile::remove(strPath);
  return bench.Judge(bench.GetDriver().SaveFile(strPath));
}

QString CheckSavedAgain(CBench &bench)
{
  const QTemporaryDir dir;
  const QString strAgain = dir.filePath(FILE_NAME);
  QByteArray byteFirst;
  QByteArray byteAgain;
  return RunUntilFailure({
    [&] { return bench.Judge(bench.GetDriver().SaveFile(strAgain)); },
    [&] { return ReadWholeFile(GetCoefficientPath(bench), byteFirst); },
    [&] { return ReadWholeFile(strAgain, byteAgain); },
    [&] {
      return byteFirst == byteAgain ? QString()
                                    : QStringLiteral("the coefficients change when they are loaded and saved again");
    },
  });
}

} // namespace ffc::host

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

QString GetCoefficientPath(CWorkflowSession &session)
{
  return session.GetFolder().GetPath(FILE_NAME);
}

Result<> SaveCoefficients(CWorkflowSession &session)
{
  const QString strPath = GetCoefficientPath(session);
  QFile::remove(strPath);
  return session.Judge(session.GetDriver().SaveFile(strPath));
}

Result<> CheckSavedAgain(CWorkflowSession &session)
{
  const QTemporaryDir dir;
  const QString strAgain = dir.filePath(FILE_NAME);
  Result<> saved = session.Judge(session.GetDriver().SaveFile(strAgain));
  if (!saved) {
    return saved;
  }
  const Result<QByteArray> first = ReadWholeFile(GetCoefficientPath(session));
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

#include "tests/host/hostrun.h"

#include <cmath>

#include <QFile>
#include <QJsonDocument>
#include <QProcess>

namespace {

constexpr int RUN_LIMIT_MS = 550000;

} // namespace

SHostOutput RunHost(const QStringList &listArguments, const QString &strPlatform)
{
  QProcess process;
  if (!strPlatform.isEmpty()) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", strPlatform);
    process.setProcessEnvironment(environment);
  }
  process.start(FFCHOST, listArguments);
  SHostOutput stOutput;
  stOutput.bFinished = process.waitForFinished(RUN_LIMIT_MS) && process.exitStatus() == QProcess::NormalExit;
  stOutput.nExitCode = process.exitCode();
  stOutput.strOutput = QString::fromUtf8(process.readAllStandardOutput());
  stOutput.strError = QString::fromUtf8(process.readAllStandardError());
  return stOutput;
}

CHostRun::CHostRun(const QStringList &listArguments)
{
  QStringList listAll{"--headless"};
  if (!listArguments.contains("--out")) {
    listAll << "--out" << GetPath("out");
  }
  const SHostOutput stOutput = RunHost(listAll + listArguments);
  m_bFinished = stOutput.bFinished;
  m_nExitCode = stOutput.nExitCode;
  m_strOutput = stOutput.strOutput;
  m_strError = stOutput.strError;
  QFile file(GetPath("out/report.json"));
  if (file.open(QIODevice::ReadOnly)) {
    m_json = QJsonDocument::fromJson(file.readAll()).object();
  }
}

bool CHostRun::FailedWithOneLine() const
{
  return m_bFinished && m_nExitCode != 0 && m_strError.startsWith("ffchost: ") && m_strError.count('\n') == 1 &&
         m_json.isEmpty();
}

double Number(const QJsonObject &json, const char *pKey)
{
  return json[QLatin1String(pKey)].toDouble(std::nan(""));
}

#include "tests/host/hostrun.h"

#include <cmath>

#include <QFile>
#include <QJsonDocument>
#include <QProcess>

namespace {

constexpr int RUN_LIMIT_MS = 550000;

} // namespace

CHostRun::CHostRun(const QStringList &listArguments)
{
  QProcess process;
  QStringList listAll{"--headless"};
  if (!listArguments.contains("--out")) {
    listAll << "--out" << GetPath("out");
  }
  process.start(FFCHOST, listAll + listArguments);
  m_bFinished = process.waitForFinished(RUN_LIMIT_MS) && process.exitStatus() == QProcess::NormalExit;
  m_nExitCode = process.exitCode();
  m_strOutput = QString::fromUtf8(process.readAllStandardOutput());
  m_strError = QString::fromUtf8(process.readAllStandardError());
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

#include "tools/ffc/report.h"

#include <algorithm>
#include <cmath>

#include <QJsonDocument>

namespace ffc::tool {
namespace {

constexpr std::chrono::milliseconds PRINT_INTERVAL(100);

} // namespace

CReport::CReport(const SReportOptions &stOptions, std::ostream &output, std::ostream &errors)
  : m_stOptions(stOptions), m_output(output), m_errors(errors), m_tStarted(std::chrono::steady_clock::now())
{
}

void CReport::AddDone(const QString &strFile, QJsonObject object, const QString &strText)
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  ++m_nDone;
  ClearProgress();
  if (m_stOptions.bJson) {
    object[QStringLiteral("file")] = strFile;
    WriteJson(object);
  } else if (!m_stOptions.bQuiet && !strText.isEmpty()) {
    m_output << strText.toStdString() << '\n';
  }
  ShowProgress();
}

void CReport::AddRemark(const QJsonObject &object, const QString &strText)
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  ClearProgress();
  if (m_stOptions.bJson) {
    WriteJson(object);
  } else if (!m_stOptions.bQuiet) {
    m_output << strText.toStdString() << '\n';
  }
}

void CReport::AddTrouble(const QString &strFile, const STrouble &stTrouble)
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_nRefused += stTrouble.bRefused ? 1 : 0;
  m_listTroubles << stTrouble.strText;
  if (m_stOptions.bJson) {
    ClearProgress();
    WriteJson({{"file", strFile}, {"status", stTrouble.bRefused ? "refused" : "failed"}, {"error", stTrouble.strText}});
  }
  ShowProgress();
}

void CReport::Warn(const QString &strText)
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  ClearProgress();
  if (m_stOptions.bJson) {
    WriteJson({{"warning", strText}});
  }
  m_errors << "ffc: " << strText.toStdString() << std::endl;
}

EExitCode CReport::Finish(const QString &strCommand, EExitCode eWithoutTrouble)
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  ClearProgress();
  const auto nFailed = static_cast<uint64_t>(m_listTroubles.size());
  const EExitCode eCode = nFailed == 0                            ? eWithoutTrouble
                          : m_nDone == 0 && m_nRefused == nFailed ? EXIT_REFUSED
                                                                  : EXIT_SOME_FAILED;
  for (const QString &strTrouble : m_listTroubles) {
    m_errors << "ffc: " << strTrouble.toStdString() << '\n';
  }
  m_errors.flush();
  if (m_stOptions.bJson) {
    WriteJson({{"summary", strCommand},
               {"done", static_cast<double>(m_nDone)},
               {"failed", static_cast<double>(nFailed)},
               {"exitCode", static_cast<int>(eCode)}});
  } else if (!m_stOptions.bQuiet && m_nDone + nFailed > 1) {
    m_output << m_nDone << " done, " << nFailed << " failed\n";
  }
  m_output.flush();
  return eCode;
}

void CReport::WriteJson(const QJsonObject &object)
{
  m_output << QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString() << std::endl;
}

void CReport::ShowProgress()
{
  const auto tNow = std::chrono::steady_clock::now();
  const uint64_t nSoFar = m_nDone + static_cast<uint64_t>(m_listTroubles.size());
  if (m_stOptions.bQuiet || !m_stOptions.bTerminal || m_nTotal < 2 || tNow - m_tPrinted < PRINT_INTERVAL) {
    return;
  }
  m_tPrinted = tNow;
  const double dSeconds = std::chrono::duration<double>(tNow - m_tStarted).count();
  const double dRate = static_cast<double>(nSoFar) / std::max(dSeconds, 1e-3);
  const double dLeft = static_cast<double>(m_nTotal - std::min(nSoFar, m_nTotal)) / std::max(dRate, 1e-9);
  std::string strLine = std::to_string(nSoFar) + " of " + std::to_string(m_nTotal) + " files, " +
                        QString::number(dRate, 'f', 1).toStdString() + " files/s, " +
                        std::to_string(std::llround(dLeft)) + " s left";
  m_nPrinted = strLine.size();
  m_errors << '\r' << strLine << std::flush;
}

void CReport::ClearProgress()
{
  if (m_nPrinted > 0) {
    m_errors << '\r' << std::string(m_nPrinted, ' ') << '\r' << std::flush;
    m_nPrinted = 0;
  }
}

} // namespace ffc::tool

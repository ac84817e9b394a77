/// \file
/// What the tool tells people and programs, and its exit code.
#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>
#include <ostream>
#include <string>

#include <QJsonObject>
#include <QString>
#include <QStringList>

namespace ffc::tool {

enum EExitCode {
  EXIT_DONE = 0,
  EXIT_SOME_FAILED = 1, ///< the others are done
  EXIT_USAGE = 2,
  EXIT_REFUSED = 3, ///< frames or coefficients that do not fit
  EXIT_VERDICT = 4, ///< not flat enough
};

/// Why a file was not processed.
struct STrouble {
  bool bRefused = false; ///< because it does not fit; else because of the file system
  QString strText;       ///< a sentence that names the file and what to do
};

/// "1 frame", "2 frames".
inline QString CountFrames(uint64_t nFrames)
{
  return QString::number(nFrames) + QLatin1String(nFrames == 1 ? " frame" : " frames");
}

/// What does not fit.
inline STrouble Refuse(const QString &strText)
{
  return {true, strText};
}

struct SReportOptions {
  bool bJson = false;
  bool bQuiet = false;
  bool bTerminal = false; ///< whether somebody looks at the error stream
};

/// From any thread.
class CReport {
public:
  CReport(const SReportOptions &stOptions, std::ostream &output, std::ostream &errors);

  void SetTotal(uint64_t nFiles) { m_nTotal = nFiles; }
  /// A file that is done. \param object its JSON line; "file" is set
  void AddDone(const QString &strFile, QJsonObject object, const QString &strText);
  /// What is known of several files together.
  void AddRemark(const QJsonObject &object, const QString &strText);
  void AddTrouble(const QString &strFile, const STrouble &stTrouble);
  /// What a person must know although the work goes on.
  void Warn(const QString &strText);
  /// Prints the summary with all files that failed. Once, at the end.
  /// \param eWithoutTrouble exit code when no file failed
  EExitCode Finish(const QString &strCommand, EExitCode eWithoutTrouble = EXIT_DONE);

private:
  void WriteJson(const QJsonObject &object);
  void ShowProgress();
  void ClearProgress();

  const SReportOptions m_stOptions;
  std::ostream &m_output;
  std::ostream &m_errors;
  std::mutex m_mutex;
  uint64_t m_nTotal = 0;
  uint64_t m_nDone = 0;
  uint64_t m_nRefused = 0;
  QStringList m_listTroubles;
  std::size_t m_nPrinted = 0;
  std::chrono::steady_clock::time_point m_tStarted;
  std::chrono::steady_clock::time_point m_tPrinted;
};

} // namespace ffc::tool

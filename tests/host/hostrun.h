/// \file
/// One run of the built host, as a user starts it.
#pragma once

#include <QImage>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

struct SHostOutput {
  bool bFinished = false; ///< by itself
  int nExitCode = -1;
  QString strOutput;
  QString strError;
};

/// Runs the host with these arguments alone.
/// \param strPlatform of the toolkit; empty: as this program has it
SHostOutput RunHost(const QStringList &listArguments, const QString &strPlatform = QString());

/// Runs headless into a folder of its own.
class CHostRun {
public:
  explicit CHostRun(const QStringList &listArguments);

  QString GetPath(const QString &strFile) const { return m_dir.filePath(strFile); }
  QImage Read(const QString &strFile) const { return QImage(GetPath("out/" + strFile)); }
  bool Succeeded() const { return m_bFinished && m_nExitCode == 0; }
  QJsonObject Before() const { return m_json["before"].toObject(); }
  QJsonObject After() const { return m_json["after"].toObject(); }
  /// A clean failure: a code, one line, no report.
  bool FailedWithOneLine() const;

  QTemporaryDir m_dir;
  bool m_bFinished = false;
  int m_nExitCode = -1;
  QString m_strOutput;
  QString m_strError;
  QJsonObject m_json;
};

/// Not a number when there is no such figure.
double Number(const QJsonObject &json, const char *pKey);

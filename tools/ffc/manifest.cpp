#include "tools/ffc/manifest.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>

#include "frames/fileio.h"

namespace ffc::tool {

Result<> CManifest::Open(const QString &strFolder)
{
  m_file.setFileName(QDir(strFolder).filePath(QStringLiteral("ffc-manifest.jsonl")));
  if (m_file.exists()) {
    const Result<QByteArray> lines = frames::ReadWhole(m_file);
    if (!lines) {
      return Failure(QStringLiteral("The file \"%1\" %2").arg(m_file.fileName(), lines.GetError().c_str()));
    }
    for (const QByteArray &byteLine : lines.GetValue().split('\n')) {
      ReadLine(byteLine);
    }
    m_file.close();
  }
  return m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered)
           ? Result<>()
           : Failure(QStringLiteral("cannot write %1: %2").arg(m_file.fileName(), m_file.errorString()));
}

void CManifest::ReadLine(const QByteArray &byteLine)
{
  const QJsonObject object = QJsonDocument::fromJson(byteLine).object();
  const QString strName = object.value(QStringLiteral("output")).toString();
  if (!strName.isEmpty()) {
    m_mapEntries[strName] = {
      object.value(QStringLiteral("flat")).toString(),
      {object.value(QStringLiteral("framesHash")).toString(), object.value(QStringLiteral("outputHash")).toString()}};
  }
}

std::optional<SManifestEntry> CManifest::Find(const QString &strName) const
{
  const auto it = m_mapEntries.find(strName);
  return it == m_mapEntries.end() ? std::nullopt : std::optional<SManifestEntry>(it.value());
}

Result<> CManifest::Add(const QString &strName, const SManifestEntry &stEntry)
{
  const QJsonObject object{{"output", strName},
                           {"flat", stEntry.strFlat},
                           {"framesHash", stEntry.stHashes.strRead},
                           {"outputHash", stEntry.stHashes.strWritten}};
  // Begins with a line feed, because a killed run may have left half a line.
  const QByteArray byteLine = '\n' + QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
  const std::lock_guard<std::mutex> lock(m_mutex);
  return m_file.write(byteLine) == byteLine.size()
           ? Result<>()
           : Failure(QStringLiteral("cannot write %1: %2").arg(m_file.fileName(), m_file.errorString()));
}

} // namespace ffc::tool

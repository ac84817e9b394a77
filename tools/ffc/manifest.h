/// \file
/// What former runs have done.
#pragma once

#include <mutex>

#include <QFile>
#include <QHash>
#include <QString>

#include "platform/result.h"
#include "tools/ffc/transfer.h"

namespace ffc::tool {

/// One file that was corrected.
struct SManifestEntry {
  QString strFlat; ///< SHA-256
  SHashes stHashes;
};

/// A file "ffc-manifest.jsonl" in the folder of the corrected files: a line for each of them, added when it is there.
/// Runs on parts of the input may add at the same time. From any thread.
class CManifest {
public:
  /// Reads what is there and opens it for adding. Lines that a killed run did not finish are skipped.
  Result<> Open(const QString &strFolder);
  /// The last entry of a file of this name.
  std::optional<SManifestEntry> Find(const QString &strName) const;
  Result<> Add(const QString &strName, const SManifestEntry &stEntry);

private:
  void ReadLine(const QByteArray &byteLine);

  std::mutex m_mutex;
  QFile m_file;
  QHash<QString, SManifestEntry> m_mapEntries;
};

} // namespace ffc::tool

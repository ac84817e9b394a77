#include "frames/partialfile.h"

#include <filesystem>
#include <system_error>
#include <vector>

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>

#include "frames/fileio.h"
#include "platform/replaceablefile.h"

namespace ffc::frames {
namespace {

// The same for every program that writes this file. A hash, because the name may be as long as names can be.
QString GetNameBegin(const QString &strPath)
{
  const QByteArray byteName = QFileInfo(strPath).fileName().toUtf8();
  const QByteArray byteHash = QCryptographicHash::hash(byteName, QCryptographicHash::Md5).toHex();
  return QStringLiteral(".ffc-%1-").arg(QLatin1String(byteHash));
}

// The file behind a link: the link stays one.
QString Resolve(const QString &strPath)
{
  const QString strTarget = QFileInfo(strPath).canonicalFilePath();
  return strTarget.isEmpty() ? strPath : strTarget;
}

} // namespace

CPartialFile::CPartialFile(const QString &strPath) : m_strPath(Resolve(strPath))
{
  const QString strName =
    QStringLiteral("%1%2.part").arg(GetNameBegin(m_strPath)).arg(QRandomGenerator::global()->generate64(), 0, 16);
  m_file.setFileName(QFileInfo(m_strPath).dir().filePath(strName));
}

CPartialFile::~CPartialFile()
{
  Remove();
}

void CPartialFile::Remove() noexcept
{
  if (!m_partPath.empty()) {
    m_file.close();
    std::error_code error;
    std::filesystem::remove(m_partPath, error);
    m_partPath.clear();
  }
}

Result<> CPartialFile::Open()
{
  const QFileInfo info(m_strPath);
  if (info.exists() && !info.isFile()) {
    return Describe(QStringLiteral("it is no file"));
  }
  const auto eMode = QIODevice::ReadWrite | QIODevice::NewOnly | QIODevice::Unbuffered;
  m_partPath = ToPath(m_file.fileName());
  if (m_file.open(eMode)) {
    return {};
  }
  m_partPath.clear();
  return Describe();
}

Result<> CPartialFile::Write(const void *pBytes, uint64_t nBytes)
{
  const auto nWanted = static_cast<qint64>(nBytes);
  return m_file.write(static_cast<const char *>(pBytes), nWanted) == nWanted ? Result<>() : Describe();
}

Result<> CPartialFile::WriteLittleEndian(const void *pFrame, const SLayout &stLayout)
{
  if constexpr (QSysInfo::ByteOrder == QSysInfo::BigEndian) {
    const auto *pBytes = static_cast<const uint8_t *>(pFrame);
    std::vector<uint8_t> listSwapped(pBytes, pBytes + stLayout.GetFrameSize());
    SwapSamples(listSwapped.data(), stLayout);
    return Write(listSwapped.data(), listSwapped.size());
  }
  return Write(pFrame, stLayout.GetFrameSize());
}

Result<> CPartialFile::Commit(ECommit eCommit)
{
  const bool bReplaces = QFile::exists(m_strPath);
  if (bReplaces) {
    m_file.setPermissions(QFile::permissions(m_strPath));
  }
  if ((bReplaces || eCommit == ECommit::Durable) && !platform::SyncFile(m_file.handle())) {
    Remove();
    return Describe(QStringLiteral("the disk does not take it"));
  }
  const std::filesystem::path path = ToPath(m_strPath);
  m_file.close();
  std::error_code error;
  // A file of a network may find only now that the disk is full.
  if (m_file.error() == QFileDevice::NoError) {
    std::filesystem::rename(m_partPath, path, error);
    if (!error) {
      m_partPath.clear();
      return {};
    }
  }
  const Failure failure = error ? Describe(QString::fromStdString(error.message())) : Describe();
  Remove();
  return failure;
}

Failure CPartialFile::Describe(const QString &strReason) const
{
  return Failure(QStringLiteral("cannot write %1: %2").arg(QDir::toNativeSeparators(m_strPath), strReason));
}

void CPartialFile::RemoveLeftOvers(const QString &strPath)
{
  QDir dir = QFileInfo(Resolve(strPath)).dir();
  const QStringList listNames =
    dir.entryList({GetNameBegin(Resolve(strPath)) + QStringLiteral("*.part")}, QDir::Files | QDir::Hidden);
  for (const QString &strName : listNames) {
    dir.remove(strName);
  }
}

} // namespace ffc::frames

#include "frames/fileio.h"

#include <algorithm>
#include <new>
#include <system_error>

#include <QFileInfo>
#include <QtEndian>

namespace ffc::frames {

Result<> OpenForReading(QFile &file)
{
  const QFileInfo info(file.fileName());
  if (info.exists() && !info.isFile()) {
    return Failure("is no file.");
  }
  return file.open(QIODevice::ReadOnly) ? Result<>()
                                        : Failure("cannot be opened: " + file.errorString().toStdString() + ".");
}

Result<> CheckFrameSize(uint64_t nWidth, uint64_t nHeight, uint32_t nBytesPerSample, uint64_t nFileSize)
{
  const std::string strSize = std::to_string(nWidth) + " x " + std::to_string(nHeight);
  if (nWidth == 0 || nHeight == 0) {
    return Failure("has frames of " + strSize + " pixels, which is no size.");
  }
  if (nWidth > MAX_PIXELS || nHeight > MAX_PIXELS || nWidth * nHeight > MAX_PIXELS) {
    return Failure("has frames of " + strSize + " pixels; at most " + std::to_string(MAX_PIXELS) + " are read.");
  }
  if (nWidth * nHeight * nBytesPerSample > nFileSize) {
    return Failure("is too short for a frame of " + strSize + " pixels: it ends early.");
  }
  return {};
}

std::filesystem::path ToPath(const QString &strPath)
{
  return std::filesystem::u8path(strPath.toStdString());
}

QStringList ListFiles(const QDir &dir)
{
  QStringList listNames = dir.entryList(QDir::Files, QDir::Name);
  if (listNames.isEmpty()) {
    // A folder that finds no memory to be opened is an empty one to the toolkit.
    std::error_code error;
    const std::filesystem::directory_iterator first(ToPath(dir.path()), error);
    if (error == std::errc::not_enough_memory) {
      throw std::bad_alloc();
    }
    listNames = QDir(dir.path()).entryList(QDir::Files, QDir::Name);
  }
  return listNames;
}

QStringList ListNames(const QDir &dir, const QString &strBegin, const QStringList &listSuffixes)
{
  QStringList listNames = ListFiles(dir);
  const auto isOther = [&](const QString &strName) {
    return !strName.startsWith(strBegin, Qt::CaseInsensitive) ||
           std::none_of(listSuffixes.begin(), listSuffixes.end(), [&](const QString &strSuffix) {
             return strName.endsWith('.' + strSuffix, Qt::CaseInsensitive);
           });
  };
  listNames.erase(std::remove_if(listNames.begin(), listNames.end(), isOther), listNames.end());
  return listNames;
}

// Errors of the disk, here and below, come in tests/reliability, where the files of the whole tool fail.
Result<> ReadExactly(QFile &file, void *pBytes, uint64_t nBytes)
{
  const auto nWanted = static_cast<qint64>(nBytes);
  if (file.read(static_cast<char *>(pBytes), nWanted) == nWanted) {
    return {};
  }
  return file.error() == QFileDevice::NoError ? Failure("ends early.")
                                              : Failure("cannot be read: " + file.errorString().toStdString() + ".");
}

Result<QByteArray> ReadWhole(QFile &file)
{
  const Result<> opened = OpenForReading(file);
  if (!opened) {
    return opened.GetFailure();
  }
  QByteArray byteContent = file.readAll();
  if (file.error() != QFileDevice::NoError) {
    return Failure("cannot be read: " + file.errorString().toStdString() + ".");
  }
  return byteContent;
}

void SwapSamples(void *pFrame, const SLayout &stLayout)
{
  if (stLayout.nBytesPerSample == 2) {
    qbswap<2>(pFrame, static_cast<qsizetype>(stLayout.GetFrameSize() / 2), pFrame);
  }
}

std::string Describe(const SLayout &stLayout)
{
  return std::to_string(stLayout.nWidth) + " x " + std::to_string(stLayout.nHeight) + " with " +
         std::to_string(8 * stLayout.nBytesPerSample) + " bits per pixel";
}

} // namespace ffc::frames

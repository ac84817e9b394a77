/// \file
/// Reading files that may say anything.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <utility>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QStringList>
#include <QSysInfo>

#include "frames/frameinfo.h"
#include "platform/result.h"

namespace ffc::frames {

/// Largest frame: what a coefficient table can have entries for.
constexpr uint64_t MAX_PIXELS = uint64_t{1} << 30U;
/// No kind of compression that is read makes data smaller than this, so a file cannot ask for more memory.
constexpr uint64_t MAX_COMPRESSION = 4096;

/// Opens a file for reading. A folder or a device is none.
Result<> OpenForReading(QFile &file);

/// Whether frames of this size can be in the file, before memory is taken for one.
/// \param nFileSize bytes of the file, or more where it is compressed
Result<> CheckFrameSize(uint64_t nWidth, uint64_t nHeight, uint32_t nBytesPerSample, uint64_t nFileSize);

/// Reads exactly so many bytes at the place where the file stands.
Result<> ReadExactly(QFile &file, void *pBytes, uint64_t nBytes);

/// Opens a file and reads all of it: a file that ends early by an error of the disk is no shorter file.
Result<QByteArray> ReadWhole(QFile &file);

/// For the language's own functions on files, of which some take no memory.
std::filesystem::path ToPath(const QString &strPath);

/// Names of the files in a folder, sorted; none where it cannot be read.
QStringList ListFiles(const QDir &dir);

/// Names of the files in a folder that begin and end like this, in either case, sorted. The folder's own filters leave
/// a file out where they find no memory, and say nothing.
QStringList ListNames(const QDir &dir, const QString &strBegin, const QStringList &listSuffixes);

/// Brings 16-bit samples from one byte order to the other; leaves others alone.
void SwapSamples(void *pFrame, const SLayout &stLayout);

/// Brings samples from the byte order of a file to the machine's, or back: 16-bit ones change where the two differ.
/// \param eFileOrder QSysInfo::LittleEndian or QSysInfo::BigEndian
template <QSysInfo::Endian eFileOrder>
void ConvertOrder(void *pFrame, const SLayout &stLayout)
{
  if constexpr (eFileOrder != QSysInfo::ByteOrder) {
    SwapSamples(pFrame, stLayout);
  }
}

/// A reader or writer, once its Open has succeeded.
template <class TInterface, class TObject, class... TArguments>
Result<std::unique_ptr<TInterface>> OpenObject(std::unique_ptr<TObject> pObject, const TArguments &...arguments)
{
  const Result<> result = pObject->Open(arguments...);
  if (!result) {
    return result.GetFailure();
  }
  return std::unique_ptr<TInterface>(std::move(pObject));
}

/// "640 x 480 with 16 bits per pixel"
std::string Describe(const SLayout &stLayout);

} // namespace ffc::frames

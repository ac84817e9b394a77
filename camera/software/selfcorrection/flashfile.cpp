#include "camera/software/selfcorrection/flashfile.h"

#include <cstddef>
#include <memory>
#include <utility>

#include <QByteArray>
#include <QCryptographicHash>
#include <QDataStream>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QString>

namespace ffc::camera {

namespace {

constexpr char FILE_MARK[] = "SIMFLASH";
constexpr quint32 FILE_VERSION = 1;
constexpr auto STREAM_VERSION = QDataStream::Qt_5_15;
// The largest sensor in the smallest blocks takes less than 9 million bytes.
constexpr qint64 MAX_FILE_SIZE = 16 << 20;

QByteArray ToBytes(const std::string &strText)
{
  return QByteArray(strText.data(), static_cast<int>(strText.size()));
}

QByteArray GetChecksum(const QByteArray &byteContent)
{
  return QCryptographicHash::hash(byteContent, QCryptographicHash::Sha256);
}

QDataStream &operator<<(QDataStream &stream, const SettingValue &value)
{
  const bool bReal = std::holds_alternative<double>(value);
  stream << bReal;
  return bReal ? stream << std::get<double>(value) : stream << qint64{std::get<int64_t>(value)};
}

QDataStream &operator>>(QDataStream &stream, SettingValue &value)
{
  bool bReal = false;
  double dValue = 0.0;
  qint64 nValue = 0;
  stream >> bReal;
  if (bReal) {
    stream >> dValue;
    value = dValue;
  } else {
    stream >> nValue;
    value = int64_t{nValue};
  }
  return stream;
}

template <class TValue>
void WriteMap(QDataStream &stream, const std::map<std::string, TValue> &mapValues);
template <class TValue>
void ReadMap(QDataStream &stream, std::map<std::string, TValue> &mapValues);

QDataStream &operator<<(QDataStream &stream, const SettingSnapshot &mapSnapshot)
{
  WriteMap(stream, mapSnapshot);
  return stream;
}

QDataStream &operator>>(QDataStream &stream, SettingSnapshot &mapSnapshot)
{
  ReadMap(stream, mapSnapshot);
  return stream;
}

template <class TValue>
void WriteMap(QDataStream &stream, const std::map<std::string, TValue> &mapValues)
{
  stream << static_cast<quint32>(mapValues.size());
  for (const auto &[strName, value] : mapValues) {
    stream << ToBytes(strName) << value;
  }
}

template <class TValue>
void ReadMap(QDataStream &stream, std::map<std::string, TValue> &mapValues)
{
  quint32 nCount = 0;
  stream >> nCount;
  for (quint32 n = 0; n < nCount && stream.status() == QDataStream::Ok; ++n) {
    QByteArray byteName;
    stream >> byteName;
    stream >> mapValues[byteName.toStdString()];
  }
}

void WriteCoefficients(QDataStream &stream, const SCoefficients &stCoefficients)
{
  const SBlockLayout &stLayout = stCoefficients.stLayout;
  stream << static_cast<quint32>(stLayout.eMode) << stLayout.bColor << stLayout.nOffsetX << stLayout.nOffsetY
         << stLayout.nWidth << stLayout.nHeight << stLayout.nBlockSide;
  stream << QByteArray(reinterpret_cast<const char *>(stCoefficients.listRegister.data()),
                       static_cast<int>(stCoefficients.listRegister.size()));
}

// Null when size and layout contradict each other.
std::shared_ptr<const SCoefficients> ReadCoefficients(QDataStream &stream)
{
  auto pCoefficients = std::make_shared<SCoefficients>();
  SBlockLayout &stLayout = pCoefficients->stLayout;
  quint32 nMode = 0;
  QByteArray byteRegister;
  stream >> nMode >> stLayout.bColor >> stLayout.nOffsetX >> stLayout.nOffsetY >> stLayout.nWidth >> stLayout.nHeight >>
    stLayout.nBlockSide >> byteRegister;
  stLayout.eMode = static_cast<ECorrectionMode>(nMode);
  pCoefficients->listRegister.assign(byteRegister.begin(), byteRegister.end());
  const bool bSound = stLayout.nBlockSide > 0 && pCoefficients->listRegister.size() == stLayout.GetRegisterSize();
  return bSound ? pCoefficients : nullptr;
}

QByteArray Pack(const std::string &strCamera, const SFlashContent &stContent)
{
  QByteArray byteContent;
  QDataStream stream(&byteContent, QIODevice::WriteOnly);
  stream.setVersion(STREAM_VERSION);
  stream << ToBytes(strCamera) << ToBytes(stContent.strStartSet);
  WriteMap(stream, stContent.mapUserSets);
  stream << (stContent.pCoefficients != nullptr);
  if (stContent.pCoefficients != nullptr) {
    WriteCoefficients(stream, *stContent.pCoefficients);
  }
  return byteContent;
}

// The messages of this and the next go on from the file's name.
Result<SFlashContent> Unpack(const QByteArray &byteContent, const std::string &strCamera)
{
  QDataStream stream(byteContent);
  stream.setVersion(STREAM_VERSION);
  QByteArray byteCamera;
  QByteArray byteStartSet;
  stream >> byteCamera;
  if (byteCamera.toStdString() != strCamera) {
    return Failure("is the flash of another camera (" + byteCamera.toStdString() + ", not " + strCamera + ").");
  }
  SFlashContent stContent;
  bool bCoefficients = false;
  stream >> byteStartSet;
  stContent.strStartSet = byteStartSet.toStdString();
  ReadMap(stream, stContent.mapUserSets);
  stream >> bCoefficients;
  if (bCoefficients) {
    stContent.pCoefficients = ReadCoefficients(stream);
  }
  if (stream.status() != QDataStream::Ok || !stream.atEnd() || bCoefficients != (stContent.pCoefficients != nullptr)) {
    return Failure("is damaged.");
  }
  return stContent;
}

Result<QByteArray> ReadContent(QFile &file)
{
  if (!QFileInfo(file).isFile()) {
    return Failure("is no file.");
  }
  if (!file.open(QIODevice::ReadOnly)) {
    return Failure("cannot be read: " + file.errorString().toStdString() + ".");
  }
  if (file.size() > MAX_FILE_SIZE || file.read(sizeof FILE_MARK) != QByteArray(FILE_MARK, sizeof FILE_MARK)) {
    return Failure("is not the flash of a simulated camera.");
  }
  QDataStream stream(&file);
  stream.setVersion(STREAM_VERSION);
  quint32 nVersion = 0;
  QByteArray byteContent;
  QByteArray byteChecksum;
  stream >> nVersion;
  if (nVersion != FILE_VERSION) {
    return Failure("has the version " + std::to_string(nVersion) + ", which this program does not know.");
  }
  stream >> byteContent >> byteChecksum;
  if (stream.status() != QDataStream::Ok || !stream.atEnd() || byteChecksum != GetChecksum(byteContent)) {
    return Failure("is damaged.");
  }
  return byteContent;
}

} // namespace

bool FlashFileExists(const std::string &strFile)
{
  return QFileInfo::exists(QString::fromStdString(strFile));
}

Result<SFlashContent> ReadFlashFile(const std::string &strFile, const std::string &strCamera)
{
  QFile file(QString::fromStdString(strFile));
  const Result<QByteArray> bytes = ReadContent(file);
  Result<SFlashContent> content = bytes ? Unpack(bytes.GetValue(), strCamera) : bytes.GetFailure();
  return content ? std::move(content) : Failure("The camera's flash \"" + strFile + "\" " + content.GetError());
}

Result<> WriteFlashFile(const std::string &strFile, const std::string &strCamera, const SFlashContent &stContent)
{
  const QByteArray byteContent = Pack(strCamera, stContent);
  QSaveFile file(QString::fromStdString(strFile));
  if (file.open(QIODevice::WriteOnly)) {
    file.write(FILE_MARK, sizeof FILE_MARK);
    QDataStream stream(&file);
    stream.setVersion(STREAM_VERSION);
    stream << FILE_VERSION << byteContent << GetChecksum(byteContent);
    // Flushed here, because commit does not notice that a buffered rest cannot be written.
    if (stream.status() == QDataStream::Ok && file.flush() && file.commit()) {
      return {};
    }
  }
  return Failure("The camera's flash \"" + strFile + "\" cannot be written: " + file.errorString().toStdString() + ".");
}

} // namespace ffc::camera

#include "frames/sidefile.h"

#include <QCryptographicHash>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include "frames/fileio.h"

namespace ffc::frames {

using genapi::FindSensorFormat;

namespace {

const QString KIND = QStringLiteral("flat-field coefficients");
constexpr qint64 LARGEST_FILE = 1 << 20;
constexpr double LARGEST_SIDE = 100000;

void SetText(QJsonObject &object, const char *pKey, const QString &strText)
{
  if (!strText.isEmpty()) {
    object[QLatin1String(pKey)] = strText;
  }
}

void SetNumber(QJsonObject &object, const char *pKey, const std::optional<double> &dNumber)
{
  if (dNumber) {
    object[QLatin1String(pKey)] = *dNumber;
  }
}

// Takes values out of an object and remembers the first that is not what it must be.
class CObjectReader {
public:
  explicit CObjectReader(const QJsonObject &object) : m_object(object) {}

  QString TakeText(const char *pKey)
  {
    const QJsonValue value = m_object.value(QLatin1String(pKey));
    Check(value.isString() || value.isUndefined(), pKey, "a text");
    return value.toString();
  }

  std::optional<double> TakeNumber(const char *pKey)
  {
    const QJsonValue value = m_object.value(QLatin1String(pKey));
    Check(value.isDouble() || value.isUndefined(), pKey, "a number");
    return value.isDouble() ? std::optional<double>(value.toDouble()) : std::nullopt;
  }

  // A whole number, which must be there.
  uint32_t TakeCount(const char *pKey, double dMinimum, double dMaximum)
  {
    const QJsonValue value = m_object.value(QLatin1String(pKey));
    const double dNumber = value.toDouble();
    const bool bFits = value.isDouble() && dNumber >= dMinimum && dNumber <= dMaximum;
    const uint32_t nNumber = bFits ? static_cast<uint32_t>(dNumber) : 0;
    Check(bFits && static_cast<double>(nNumber) == dNumber, pKey, "a whole number in its range");
    return nNumber;
  }

  bool TakeFlag(const char *pKey)
  {
    const QJsonValue value = m_object.value(QLatin1String(pKey));
    Check(value.isBool() || value.isUndefined(), pKey, "true or false");
    return value.toBool();
  }

  void Check(bool bRight, const char *pKey, const char *pExpected)
  {
    if (!bRight && m_strError.empty()) {
      m_strError = std::string("has something else than ") + pExpected + " as \"" + pKey + "\".";
    }
  }

  const std::string &GetError() const { return m_strError; }

private:
  const QJsonObject &m_object;
  std::string m_strError;
};

} // namespace

QString GetSideFilePath(const QString &strFlat)
{
  return strFlat + QStringLiteral(".json");
}

Result<QString> HashCoefficientFile(const QString &strFlat)
{
  QFile file(strFlat);
  QCryptographicHash hash(QCryptographicHash::Sha256);
  if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file)) { // the second: an error of the disk alone
    return Failure(file.errorString());
  }
  return QString::fromLatin1(hash.result().toHex());
}

QByteArray MakeSideFile(const SSideFile &stSide)
{
  QJsonObject object{
    {"kind", KIND},
    {"width", static_cast<double>(stSide.nWidth)},
    {"height", static_cast<double>(stSide.nHeight)},
    {"pixelFormat", stSide.strPixelFormat},
    {"alignment", stSide.eAlignment == EAlignment::Left ? "left" : "right"},
    {"darkFrames", static_cast<double>(stSide.nDarkFrames)},
    {"brightFrames", static_cast<double>(stSide.nBrightFrames)},
    {"darkUsed", stSide.bDarkUsed},
    {"expectedGray", static_cast<double>(stSide.nExpectGray)},
  };
  SetText(object, "camera", stSide.strCamera);
  SetText(object, "serial", stSide.strSerial);
  SetNumber(object, "exposureTime", stSide.dExposureTime);
  SetNumber(object, "gain", stSide.dGain);
  SetNumber(object, "blackLevel", stSide.dBlackLevel);
  SetNumber(object, "temperature", stSide.dTemperature);
  SetText(object, "method", stSide.strMethod);
  SetText(object, "noise", stSide.strNoise);
  SetText(object, "created", stSide.strCreated);
  SetText(object, "tool", stSide.strTool);
  SetText(object, "sha256", stSide.strSha256);
  return QJsonDocument(object).toJson();
}

Result<SSideFile> ParseSideFile(const QByteArray &byteJson)
{
  const QJsonObject object = QJsonDocument::fromJson(byteJson).object();
  if (object.value(QStringLiteral("kind")).toString() != KIND) {
    return Failure("is no side file of a coefficient file.");
  }
  CObjectReader reader(object);
  SSideFile stSide;
  stSide.nWidth = reader.TakeCount("width", 1, LARGEST_SIDE);
  stSide.nHeight = reader.TakeCount("height", 1, LARGEST_SIDE);
  stSide.strPixelFormat = reader.TakeText("pixelFormat");
  reader.Check(FindSensorFormat(stSide.strPixelFormat.toStdString()) != nullptr, "pixelFormat", "an unpacked format");
  const QString strAlignment = reader.TakeText("alignment");
  reader.Check(strAlignment == "left" || strAlignment == "right", "alignment", "left or right");
  stSide.eAlignment = strAlignment == "left" ? EAlignment::Left : EAlignment::Right;
  stSide.strCamera = reader.TakeText("camera");
  stSide.strSerial = reader.TakeText("serial");
  stSide.dExposureTime = reader.TakeNumber("exposureTime");
  stSide.dGain = reader.TakeNumber("gain");
  stSide.dBlackLevel = reader.TakeNumber("blackLevel");
  stSide.dTemperature = reader.TakeNumber("temperature");
  stSide.nDarkFrames = reader.TakeCount("darkFrames", 0, UINT32_MAX);
  stSide.nBrightFrames = reader.TakeCount("brightFrames", 0, UINT32_MAX);
  stSide.bDarkUsed = reader.TakeFlag("darkUsed");
  stSide.strMethod = reader.TakeText("method");
  stSide.strNoise = reader.TakeText("noise");
  stSide.nExpectGray = reader.TakeCount("expectedGray", 0, 255);
  stSide.strCreated = reader.TakeText("created");
  stSide.strTool = reader.TakeText("tool");
  stSide.strSha256 = reader.TakeText("sha256");
  return reader.GetError().empty() ? Result<SSideFile>(stSide) : Failure(reader.GetError());
}

Result<std::optional<QByteArray>> ReadSideBytes(const QString &strFlat)
{
  QFile file(GetSideFilePath(strFlat));
  if (!file.exists()) {
    return std::optional<QByteArray>();
  }
  if (file.size() > LARGEST_FILE) {
    return std::optional<QByteArray>(QByteArray());
  }
  Result<QByteArray> bytes = ReadWhole(file);
  if (!bytes) {
    return bytes.GetFailure();
  }
  return std::optional<QByteArray>(std::move(bytes).GetValue());
}

Result<std::optional<SSideFile>> ReadSideFile(const QString &strFlat)
{
  const Result<std::optional<QByteArray>> bytes = ReadSideBytes(strFlat);
  if (!bytes) {
    return bytes.GetFailure();
  }
  if (!bytes.GetValue()) {
    return std::optional<SSideFile>();
  }
  Result<SSideFile> side = ParseSideFile(*bytes.GetValue());
  if (!side) {
    return side.GetFailure();
  }
  return std::optional<SSideFile>(std::move(side).GetValue());
}

} // namespace ffc::frames

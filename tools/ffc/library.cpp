#include "tools/ffc/library.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "frames/fileio.h"
#include "frames/wholefile.h"
#include "genapi/sensorformat.h"
#include "tools/ffc/flat.h"
#include "tools/ffc/inputs.h"

namespace ffc::tool {

using genapi::FindSensorFormat;
using genapi::SSensorFormat;

namespace {

using FlatList = std::vector<SLibraryFlat>;

QString MakeName(const frames::SSideFile &stSide)
{
  QStringList listParts;
  for (const QString &strPart : {stSide.strCamera, stSide.strSerial}) {
    if (!strPart.isEmpty()) {
      listParts << strPart;
    }
  }
  listParts << QStringLiteral("%1x%2").arg(stSide.nWidth).arg(stSide.nHeight) << stSide.strPixelFormat;
  if (stSide.dExposureTime) {
    listParts << QStringLiteral("%1us").arg(*stSide.dExposureTime);
  }
  if (stSide.dGain) {
    listParts << QStringLiteral("%1dB").arg(*stSide.dGain);
  }
  QString strName = listParts.join('_');
  const auto isPlain = [](QChar c) {
    return c.unicode() < 128 && (c.isLetterOrNumber() || QStringLiteral("._+-").contains(c));
  };
  for (QChar &c : strName) {
    c = isPlain(c) ? c : QChar('-');
  }
  return strName + QStringLiteral(".ffc");
}

void Keep(FlatList &listFlats, const std::function<bool(const SLibraryFlat &)> &fnIsKept)
{
  listFlats.erase(
    std::remove_if(listFlats.begin(), listFlats.end(), [&](const SLibraryFlat &stFlat) { return !fnIsKept(stFlat); }),
    listFlats.end());
}

bool HasFormat(const frames::SSideFile &stSide, const frames::SFrameInfo &stInfo, const std::string &strPixelFormat)
{
  const SSensorFormat *pFormat = FindSensorFormat(stSide.strPixelFormat.toStdString());
  return pFormat != nullptr && stSide.nWidth == stInfo.stLayout.nWidth && stSide.nHeight == stInfo.stLayout.nHeight &&
         pFormat->GetBytesPerPixel() == stInfo.stLayout.nBytesPerSample &&
         (strPixelFormat.empty() || strPixelFormat == stSide.strPixelFormat.toStdString()) &&
         (!stInfo.eColors || *stInfo.eColors == pFormat->eLayout);
}

/// Keeps the flats nearest to a stated number, where it is stated.
/// \param fnDistance from the stated one, the smaller the nearer; at most dLargest
/// \return whether what is left agrees in it
bool KeepNearest(FlatList &listFlats, const std::optional<double> &dStated,
                 std::optional<double> frames::SSideFile::*pNumber, double dLargest,
                 const std::function<double(double, double)> &fnDistance)
{
  if (dStated) {
    double dNearest = dLargest;
    const auto fnGet = [&](const SLibraryFlat &stFlat) {
      const std::optional<double> &dNumber = stFlat.stSide.*pNumber;
      return dNumber ? fnDistance(*dNumber, *dStated) : HUGE_VAL;
    };
    for (const SLibraryFlat &stFlat : listFlats) {
      dNearest = std::min(dNearest, fnGet(stFlat));
    }
    Keep(listFlats, [&](const SLibraryFlat &stFlat) { return fnGet(stFlat) <= dNearest; });
  }
  return std::all_of(listFlats.begin(), listFlats.end(), [&](const SLibraryFlat &stFlat) {
    return dStated || stFlat.stSide.*pNumber == listFlats.front().stSide.*pNumber;
  });
}

bool KeepText(FlatList &listFlats, const std::string &strStated, QString frames::SSideFile::*pText)
{
  const QString strWanted = QString::fromStdString(strStated);
  if (!strWanted.isEmpty()) {
    Keep(listFlats, [&](const SLibraryFlat &stFlat) { return stFlat.stSide.*pText == strWanted; });
  }
  return std::all_of(listFlats.begin(), listFlats.end(), [&](const SLibraryFlat &stFlat) {
    return stFlat.stSide.*pText == listFlats.front().stSide.*pText;
  });
}

std::optional<Failure> CheckLeft(const FlatList &listFlats, bool bAgree, const QString &strWhat, const char *pOption)
{
  if (listFlats.empty()) {
    return Failure(QStringLiteral("The library has no flat for %1.").arg(strWhat));
  }
  return bAgree ? std::nullopt
                : std::optional<Failure>(
                    Failure(QStringLiteral("The library has several flats for these frames, which differ: state %1.")
                              .arg(QLatin1String(pOption))));
}

QString DescribeStated(const char *pText, const std::string &strStated)
{
  return QLatin1String(pText) + QStringLiteral(" \"") + QString::fromStdString(strStated) + '"';
}

QString DescribeStated(const char *pText, const std::optional<double> &dStated)
{
  return QString::fromLatin1(pText).arg(dStated.value_or(0));
}

} // namespace

Result<std::vector<SLibraryFlat>> ListLibrary(const QString &strFolder)
{
  const QDir dir(strFolder);
  if (!dir.exists()) {
    return Failure(QStringLiteral("There is no library \"%1\": ffc library %1 FLAT.ffc makes it.").arg(strFolder));
  }
  std::vector<SLibraryFlat> listFlats;
  for (const QString &strFile : frames::ListNames(dir, QString(), {QStringLiteral("ffc")})) {
    const QString strPath = dir.filePath(strFile);
    const Result<std::optional<frames::SSideFile>> side = frames::ReadSideFile(strPath);
    if (!side) {
      return Failure(MakeSentence(frames::GetSideFilePath(strPath), side.GetError()));
    }
    if (side.GetValue()) {
      listFlats.push_back({strPath, *side.GetValue()});
    }
  }
  return listFlats;
}

std::optional<STrouble> AddToLibrary(const QString &strFolder, const QString &strFlat, bool bForce)
{
  CFlat flat;
  SOptions stOptions;
  std::optional<STrouble> stTrouble = flat.Load(strFlat, stOptions);
  if (stTrouble) {
    return stTrouble;
  }
  if (!flat.GetSide()) {
    return Refuse(
      MakeSentence(strFlat, "has no side file, which describes its camera and frames; ffc make writes one."));
  }
  const QString strPath = QDir(strFolder).filePath(MakeName(*flat.GetSide()));
  if (!bForce && QFileInfo::exists(strPath)) {
    return STrouble{false, MakeSentence(strPath, "is there already; replacing it takes --force.")};
  }
  const QByteArray byteTable(reinterpret_cast<const char *>(flat.GetTable().GetData()),
                             static_cast<int>(flat.GetTable().GetSize()));
  const Result<> saved = RunUntilFailure(
    [&] {
      return QDir().mkpath(strFolder) ? Result<>()
                                      : Failure(QStringLiteral("The folder \"%1\" cannot be made.").arg(strFolder));
    },
    [&] { return frames::SaveWholeFile(strPath, byteTable); },
    [&] { return frames::SaveWholeFile(frames::GetSideFilePath(strPath), frames::MakeSideFile(*flat.GetSide())); });
  return saved ? std::nullopt : std::optional<STrouble>(STrouble{false, QString::fromStdString(saved.GetError())});
}

QString DescribeConditions(const frames::SSideFile &stSide)
{
  QString strText = QStringLiteral("%1 %2 x %3").arg(stSide.strPixelFormat).arg(stSide.nWidth).arg(stSide.nHeight);
  if (!stSide.strCamera.isEmpty() || !stSide.strSerial.isEmpty()) {
    strText += QStringLiteral(", camera %1").arg((stSide.strCamera + ' ' + stSide.strSerial).trimmed());
  }
  if (stSide.dExposureTime) {
    strText += QStringLiteral(", %1 us").arg(*stSide.dExposureTime);
  }
  if (stSide.dGain) {
    strText += QStringLiteral(", %1 dB").arg(*stSide.dGain);
  }
  return strText;
}

Result<SLibraryFlat> ChooseFlat(const std::vector<SLibraryFlat> &listFlats, const frames::SFrameInfo &stInfo,
                                const std::string &strPixelFormat, const SOrigin &stOrigin)
{
  FlatList listLeft = listFlats;
  Keep(listLeft, [&](const SLibraryFlat &stFlat) { return HasFormat(stFlat.stSide, stInfo, strPixelFormat); });
  const QString strSize = QStringLiteral("frames of %1 x %2 pixels%3")
                            .arg(stInfo.stLayout.nWidth)
                            .arg(stInfo.stLayout.nHeight)
                            .arg(strPixelFormat.empty() ? QString() : ' ' + QString::fromStdString(strPixelFormat));
  bool bAgree = KeepText(listLeft, {}, &frames::SSideFile::strPixelFormat);
  std::optional<Failure> failure = CheckLeft(listLeft, bAgree, strSize, "--pixel-format");
  struct SName {
    const std::string &strStated;
    QString frames::SSideFile::*pText;
    const char *pWhat;
    const char *pOption;
  };
  const SName stCamera{stOrigin.strCamera, &frames::SSideFile::strCamera, "the camera", "--camera"};
  const SName stSerial{stOrigin.strSerial, &frames::SSideFile::strSerial, "the serial number", "--serial"};
  // Who states a serial number has named the camera: its model is asked for only where two of it have the same number.
  const bool bSerialFirst = !stOrigin.strSerial.empty();
  for (const SName *pName : {bSerialFirst ? &stSerial : &stCamera, bSerialFirst ? &stCamera : &stSerial}) {
    if (!failure) {
      bAgree = KeepText(listLeft, pName->strStated, pName->pText);
      failure = CheckLeft(listLeft, bAgree, DescribeStated(pName->pWhat, pName->strStated), pName->pOption);
    }
  }
  if (!failure) {
    bAgree = KeepNearest(listLeft, stOrigin.dGain, &frames::SSideFile::dGain, LARGEST_GAIN_DISTANCE,
                         [](double dOne, double dOther) { return std::abs(dOne - dOther); });
    failure = CheckLeft(listLeft, bAgree, DescribeStated("a gain within 1 dB of %1 dB", stOrigin.dGain), "--gain");
  }
  if (!failure) {
    bAgree = KeepNearest(listLeft, stOrigin.dExposureTime, &frames::SSideFile::dExposureTime, LARGEST_EXPOSURE_RATIO,
                         [](double dOne, double dOther) {
                           return dOne > 0 && dOther > 0 ? std::max(dOne / dOther, dOther / dOne) : HUGE_VAL;
                         });
    failure =
      CheckLeft(listLeft, bAgree, DescribeStated("an exposure within a factor of 1.5 of %1 us", stOrigin.dExposureTime),
                "--exposure");
  }
  if (failure) {
    return *failure;
  }
  return *std::max_element(listLeft.begin(), listLeft.end(),
                           [](const SLibraryFlat &stOne, const SLibraryFlat &stOther) {
                             return stOne.stSide.strCreated < stOther.stSide.strCreated;
                           });
}

} // namespace ffc::tool

#include <vector>

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QtEndian>

#include "frames/wholefile.h"
#include "pluginobject/shadingcorrection/process/coefficients/ffcinfo.h"
#include "tools/ffc/commands.h"
#include "tools/ffc/flat.h"
#include "tools/ffc/gains.h"
#include "tools/ffc/inputs.h"

namespace ffc::tool {

using camera::FindSensorFormat;
using camera::SSensorFormat;
using genapi::GetLayoutName;

using process::CFrameBuffer;

namespace {

constexpr int RECORD_WORDS = 6;
constexpr int RECORD_SIZE = 4 * RECORD_WORDS;
constexpr int SIZE_WORD = 4; ///< of the record: size of the file in bytes

/// The record that ends a file of a camera's coefficients.
/// \param bSwapped whether the bytes of each pair are exchanged, as the flat-field process keeps them
/// \return nothing when the record does not tell the file's own size
std::optional<std::vector<uint32_t>> ReadRecord(const CFrameBuffer &content, bool bSwapped)
{
  if (content.GetSize() <= RECORD_SIZE) {
    return std::nullopt;
  }
  uint8_t anRecord[RECORD_SIZE];
  std::copy_n(content.GetData() + content.GetSize() - RECORD_SIZE, RECORD_SIZE, anRecord);
  if (bSwapped) {
    for (int n = 0; n < RECORD_SIZE; n += 2) {
      std::swap(anRecord[n], anRecord[n + 1]);
    }
  }
  std::vector<uint32_t> listWords(RECORD_WORDS);
  for (int n = 0; n < RECORD_WORDS; ++n) {
    listWords[static_cast<std::size_t>(n)] = qFromLittleEndian<uint32_t>(anRecord + 4 * n);
  }
  const bool bOwnSize = listWords[SIZE_WORD] == content.GetSize();
  return bOwnSize ? std::optional<std::vector<uint32_t>>(listWords) : std::nullopt;
}

class CInspection {
public:
  CInspection(const SOptions &stOptions, CReport &report) : m_stOptions(stOptions), m_report(report) {}

  void Inspect(const QString &strFile)
  {
    const bool bFlat = QFileInfo(strFile).suffix().toLower() == QStringLiteral("ffc");
    const std::optional<STrouble> stTrouble = bFlat ? InspectFlat(strFile) : InspectFrames(strFile);
    if (stTrouble) {
      m_report.AddTrouble(strFile, *stTrouble);
    }
  }

private:
  std::optional<STrouble> InspectFlat(const QString &strFile)
  {
    CFlat flat;
    const std::optional<STrouble> stTrouble = flat.Load(strFile, m_stOptions);
    if (stTrouble) {
      return stTrouble;
    }
    for (const bool bSwapped : {true, false}) {
      const std::optional<std::vector<uint32_t>> listWords = ReadRecord(flat.GetTable(), bSwapped);
      if (listWords && !flat.GetSide()) {
        DescribeCameraFile(strFile, *listWords, flat, bSwapped);
        return std::nullopt;
      }
    }
    return DescribeTable(strFile, flat);
  }

  void DescribeCameraFile(const QString &strFile, const std::vector<uint32_t> &listWords, const CFlat &flat,
                          bool bSwapped)
  {
    const QString strKind = bSwapped ? QStringLiteral("camera's flat-field coefficients")
                                     : QStringLiteral("camera's vignetting coefficients, or flat-field ones that were "
                                                      "never in a camera");
    m_report.AddDone(strFile,
                     {{"kind", strKind},
                      {"bytes", static_cast<double>(flat.GetTable().GetSize())},
                      {"frameCount", static_cast<double>(listWords[2])},
                      {"blockSizeCode", static_cast<double>(listWords[3])},
                      {"expectedGray", static_cast<double>(listWords[5])},
                      {"sha256", flat.GetSha256()}},
                     QStringLiteral("%1: %2, %3 bytes, block size code %4, expected grey %5")
                       .arg(strFile, strKind)
                       .arg(flat.GetTable().GetSize())
                       .arg(listWords[3])
                       .arg(listWords[5]));
  }

  std::optional<STrouble> DescribeTable(const QString &strFile, const CFlat &flat)
  {
    const std::optional<frames::SSideFile> &stSide = flat.GetSide();
    if (!stSide) {
      m_report.AddDone(strFile,
                       {{"kind", "host-side table"}, {"bytes", static_cast<double>(flat.GetTable().GetSize())}},
                       QStringLiteral("%1: a table of the host-side correction of %2 bytes; without a side file nobody "
                                      "knows its size and format")
                         .arg(strFile)
                         .arg(flat.GetTable().GetSize()));
      return std::nullopt;
    }
    const uint64_t nPixels = uint64_t{stSide->nWidth} * stSide->nHeight;
    const bool bDark = flat.GetTable().GetSize() == 4 * nPixels;
    const SGains stGains = MeasureGains(flat.GetTable(), nPixels);
    if (!m_stOptions.strPlot.empty()) {
      const Result<> saved = frames::SaveWholePicture(QString::fromStdString(m_stOptions.strPlot),
                                                      PaintGains(flat.GetTable(), stSide->nWidth, stSide->nHeight));
      if (!saved) {
        return STrouble{false, QString::fromStdString(saved.GetError())};
      }
    }
    QJsonObject object = QJsonDocument::fromJson(frames::MakeSideFile(*stSide)).object();
    object[QStringLiteral("kind")] = QStringLiteral("host-side table");
    object[QStringLiteral("darkLevels")] = bDark;
    object[QStringLiteral("gainSmallest")] = stGains.dSmallest;
    object[QStringLiteral("gainLargest")] = stGains.dLargest;
    object[QStringLiteral("gainMean")] = stGains.dMean;
    object[QStringLiteral("pixelsAtGainLimit")] = static_cast<double>(stGains.nAtLimit);
    m_report.AddDone(strFile, object,
                     QStringLiteral("%1: a table of the host-side correction for %2 x %3 %4, %5 dark levels\n  gains "
                                    "%6 to %7, mean %8; %9 pixels at the limit")
                       .arg(strFile)
                       .arg(stSide->nWidth)
                       .arg(stSide->nHeight)
                       .arg(stSide->strPixelFormat, bDark ? QStringLiteral("with") : QStringLiteral("without"))
                       .arg(stGains.dSmallest, 0, 'f', 3)
                       .arg(stGains.dLargest, 0, 'f', 3)
                       .arg(stGains.dMean, 0, 'f', 3)
                       .arg(stGains.nAtLimit));
    return std::nullopt;
  }

  std::optional<STrouble> InspectFrames(const QString &strFile)
  {
    auto reader = OpenFrames(strFile, m_stOptions);
    if (!reader) {
      return STrouble{false, QString::fromStdString(reader.GetError())};
    }
    const frames::SFrameInfo &stInfo = reader.GetValue()->GetInfo();
    std::vector<uint8_t> listFrame(stInfo.stLayout.GetFrameSize());
    frames::SEvidence stEvidence;
    for (uint64_t n = 0; n < stInfo.nFrames; ++n) {
      const Result<> read = reader.GetValue()->Read(listFrame.data());
      if (!read) {
        return STrouble{false, MakeSentence(strFile, read.GetError())};
      }
      stEvidence.Add(listFrame.data(), stInfo.stLayout);
    }
    DescribeFrames(strFile, stInfo, stEvidence);
    return std::nullopt;
  }

  void DescribeFrames(const QString &strFile, const frames::SFrameInfo &stInfo, const frames::SEvidence &stEvidence)
  {
    const SSensorFormat *pStated =
      m_stOptions.strPixelFormat.empty() ? nullptr : FindSensorFormat(m_stOptions.strPixelFormat);
    const uint32_t nStated = pStated != nullptr ? pStated->nBitDepth : stInfo.nBitDepth;
    const Result<frames::SDepth> depth =
      frames::DecideDepth(stEvidence, stInfo.stLayout, {nStated, m_stOptions.eAlignment});
    const QString strColors = stInfo.eColors ? QLatin1String(GetLayoutName(*stInfo.eColors)) : QStringLiteral("?");
    QString strReason = depth ? depth.GetValue().strReason : QStringLiteral("It ") + depth.GetError().c_str();
    QJsonObject object{{"kind", "frames"},
                       {"width", static_cast<double>(stInfo.stLayout.nWidth)},
                       {"height", static_cast<double>(stInfo.stLayout.nHeight)},
                       {"frames", static_cast<double>(stInfo.nFrames)},
                       {"bitsPerPixel", static_cast<double>(8 * stInfo.stLayout.nBytesPerSample)},
                       {"colors", strColors},
                       {"largestValue", static_cast<double>(stEvidence.nLargest)},
                       {"emptyLowBits", static_cast<double>(stEvidence.CountEmptyLowBits())},
                       {"correctedWith", FindCorrection(strFile, stInfo)},
                       {"remark", stInfo.strRemark},
                       {"reason", strReason}};
    if (depth) {
      object[QStringLiteral("bitDepth")] = static_cast<double>(depth.GetValue().nBitDepth);
      object[QStringLiteral("alignment")] =
        depth.GetValue().eAlignment == frames::EAlignment::Left ? QStringLiteral("left") : QStringLiteral("right");
    }
    m_report.AddDone(
      strFile, object,
      QStringLiteral("%1: %2 frame(s) of %3 x %4 with %5 bits per pixel, colours %6, largest value %7, %8 "
                     "empty low bits\n  %9 %10")
        .arg(strFile)
        .arg(stInfo.nFrames)
        .arg(stInfo.stLayout.nWidth)
        .arg(stInfo.stLayout.nHeight)
        .arg(8 * stInfo.stLayout.nBytesPerSample)
        .arg(strColors)
        .arg(stEvidence.nLargest)
        .arg(stEvidence.CountEmptyLowBits())
        .arg(strReason, stInfo.strRemark)
        .trimmed());
  }

  const SOptions &m_stOptions;
  CReport &m_report;
};

} // namespace

EExitCode RunInspect(const SOptions &stOptions, CReport &report)
{
  const Result<QStringList> listFiles = ListFiles(stOptions.listFrames, stOptions.raw.has_value());
  if (!listFiles) {
    report.Warn(QString::fromStdString(listFiles.GetError()));
    return EXIT_SOME_FAILED;
  }
  CInspection inspection(stOptions, report);
  for (const QString &strFile : listFiles.GetValue()) {
    inspection.Inspect(strFile);
  }
  return report.Finish(QStringLiteral("inspect"));
}

} // namespace ffc::tool

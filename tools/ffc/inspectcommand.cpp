#include <vector>

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QtEndian>

#include "frames/wholefile.h"
#include "pluginobject/shadingcorrection/process/coefficients/ffcinfo.h"
#include "tools/ffc/commands.h"
#include "tools/ffc/correctionmarks.h"
#include "tools/ffc/flat.h"
#include "tools/ffc/gains.h"
#include "tools/ffc/inputs.h"

namespace ffc::tool {

using genapi::FindSensorFormat;
using genapi::GetLayoutName;
using genapi::SSensorFormat;

using process::CFrameBuffer;

namespace {

constexpr int RECORD_WORDS = 6;
constexpr int RECORD_SIZE = 4 * RECORD_WORDS;
constexpr int SIZE_WORD = 4; ///< of the record: size of the file in bytes
constexpr uint32_t REPORTED_BINS = 64;

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
    listWords[static_cast<std::size_t>(n)] = qFromLittleEndian<uint32_t>(anRecord + qptrdiff{4} * n);
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

  /// What the files of frames have in common, where there is more than one.
  void Summarise()
  {
    if (m_stTotal.nFiles < 2) {
      return;
    }
    QString strText =
      QStringLiteral("Together: %1 files with %2 frames, ").arg(m_stTotal.nFiles).arg(m_stTotal.nFrames);
    QJsonObject object{{"files", static_cast<double>(m_stTotal.nFiles)},
                       {"frames", static_cast<double>(m_stTotal.nFrames)},
                       {"alike", !m_stTotal.bUnlike},
                       {"corrected", static_cast<double>(m_stTotal.nCorrected)}};
    if (m_stTotal.bUnlike) {
      strText += QStringLiteral("of different sizes or depths");
    } else {
      const Result<frames::SDepth> depth = Decide(m_stTotal.stEvidence, m_stTotal.stFirst);
      const QString strReason = depth ? depth.GetValue().strReason : QStringLiteral("It ") + depth.GetError().c_str();
      object[QStringLiteral("bitDepth")] = static_cast<double>(depth ? depth.GetValue().nBitDepth : 0);
      object[QStringLiteral("largestValue")] = static_cast<double>(m_stTotal.stEvidence.nLargest);
      object[QStringLiteral("emptyLowBits")] = static_cast<double>(m_stTotal.stEvidence.CountEmptyLowBits());
      object[QStringLiteral("reason")] = strReason;
      strText += QStringLiteral("all alike, largest value %1, %2 empty low bits. %3")
                   .arg(m_stTotal.stEvidence.nLargest)
                   .arg(m_stTotal.stEvidence.CountEmptyLowBits())
                   .arg(strReason);
    }
    strText += QStringLiteral("\n  %1 of the files are corrected").arg(m_stTotal.nCorrected);
    m_report.AddRemark({{"together", object}}, strText);
  }

private:
  std::optional<STrouble> InspectFlat(const QString &strFile)
  {
    CFlat flat;
    std::optional<STrouble> stTrouble = flat.Load(strFile, m_stOptions);
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
                       QStringLiteral("%1: a table of the host-side correction of %2 bytes; without a side file the "
                                      "size and format of its frames are unknown")
                         .arg(strFile)
                         .arg(flat.GetTable().GetSize()));
      return std::nullopt;
    }
    const uint64_t nPixels = uint64_t{stSide->nWidth} * stSide->nHeight;
    const bool bDark = flat.GetTable().GetSize() == 4 * nPixels;
    const SGains stGains = MeasureGains(flat.GetTable(), nPixels);
    if (!m_stOptions.strPlot.empty()) {
      const QImage plot = PlotGains(flat.GetTable(), stSide->nWidth, stSide->nHeight);
      if (plot.isNull()) {
        return STrouble{false, QStringLiteral("There is not enough memory for the plot.")};
      }
      const Result<> saved = frames::SaveWholePicture(QString::fromStdString(m_stOptions.strPlot), plot);
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
    const SGainHistogram stHistogram = MeasureGainHistogram(flat.GetTable(), nPixels, REPORTED_BINS);
    QJsonArray listCounts;
    for (const uint64_t nCount : stHistogram.listCounts) {
      listCounts.append(static_cast<double>(nCount));
    }
    object[QStringLiteral("gainHistogram")] =
      QJsonObject{{"from", stHistogram.dFrom}, {"to", stHistogram.dTo}, {"pixels", listCounts}};
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
    const Result<QString> correction = FindCorrection(strFile, stInfo);
    if (!correction) {
      return STrouble{false, QString::fromStdString(correction.GetError())};
    }
    DescribeFrames(strFile, stInfo, stEvidence, correction.GetValue());
    AddToTotal(stInfo, stEvidence, !correction.GetValue().isEmpty());
    return std::nullopt;
  }

  void AddToTotal(const frames::SFrameInfo &stInfo, const frames::SEvidence &stEvidence, bool bCorrected)
  {
    const frames::SFrameInfo &stFirst = m_stTotal.nFiles == 0 ? (m_stTotal.stFirst = stInfo) : m_stTotal.stFirst;
    m_stTotal.bUnlike = m_stTotal.bUnlike || stFirst.stLayout != stInfo.stLayout ||
                        stFirst.nBitDepth != stInfo.nBitDepth || stFirst.eColors != stInfo.eColors;
    ++m_stTotal.nFiles;
    m_stTotal.nFrames += stInfo.nFrames;
    m_stTotal.nCorrected += bCorrected ? 1 : 0;
    m_stTotal.stEvidence.Add(stEvidence);
  }

  Result<frames::SDepth> Decide(const frames::SEvidence &stEvidence, const frames::SFrameInfo &stInfo) const
  {
    const SSensorFormat *pStated =
      m_stOptions.strPixelFormat.empty() ? nullptr : FindSensorFormat(m_stOptions.strPixelFormat);
    const uint32_t nStated = pStated != nullptr ? pStated->nBitDepth : stInfo.nBitDepth;
    return frames::DecideDepth(stEvidence, stInfo.stLayout, {nStated, m_stOptions.eAlignment});
  }

  void DescribeFrames(const QString &strFile, const frames::SFrameInfo &stInfo, const frames::SEvidence &stEvidence,
                      const QString &strCorrection)
  {
    const Result<frames::SDepth> depth = Decide(stEvidence, stInfo);
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
                       {"correctedWith", strCorrection},
                       {"remark", stInfo.strRemark},
                       {"reason", strReason}};
    if (depth) {
      object[QStringLiteral("bitDepth")] = static_cast<double>(depth.GetValue().nBitDepth);
      object[QStringLiteral("alignment")] =
        depth.GetValue().eAlignment == frames::EAlignment::Left ? QStringLiteral("left") : QStringLiteral("right");
    }
    m_report.AddDone(strFile, object,
                     QStringLiteral("%1: %2 of %3 x %4 with %5 bits per pixel, colours %6, largest value %7, %8 "
                                    "empty low bits\n  %9 %10")
                       .arg(strFile)
                       .arg(CountFrames(stInfo.nFrames))
                       .arg(stInfo.stLayout.nWidth)
                       .arg(stInfo.stLayout.nHeight)
                       .arg(8 * stInfo.stLayout.nBytesPerSample)
                       .arg(strColors)
                       .arg(stEvidence.nLargest)
                       .arg(stEvidence.CountEmptyLowBits())
                       .arg(strReason, stInfo.strRemark)
                       .trimmed());
  }

  /// Of all files of frames.
  struct STotal {
    uint64_t nFiles = 0;
    uint64_t nFrames = 0;
    uint64_t nCorrected = 0; ///< files
    bool bUnlike = false;
    frames::SFrameInfo stFirst;
    frames::SEvidence stEvidence;
  };

  const SOptions &m_stOptions;
  CReport &m_report;
  STotal m_stTotal;
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
  inspection.Summarise();
  return report.Finish(QStringLiteral("inspect"));
}

} // namespace ffc::tool

#include <utility>

#include <QDateTime>
#include <QFileInfo>

#include "flat/weightedframes.h"
#include "frames/partialfile.h"
#include "frames/sidefile.h"
#include "frames/wholefile.h"
#include "pluginobject/shadingcorrection/process/acquisition/framejudge.h"
#include "pluginobject/shadingcorrection/process/coefficients/hosttable.h"
#include "pluginobject/statuscode.h"
#include "tools/ffc/commands.h"
#include "tools/ffc/flat.h"
#include "tools/ffc/inputs.h"
#include "tools/ffc/lightjudge.h"
#include "tools/ffc/referencestack.h"

namespace ffc::tool {

using genapi::EColorLayout;
using genapi::FindSensorFormat;
using genapi::GetLayoutName;
using genapi::SSensorFormat;

using process::CFrameBuffer;
using process::ComputeHostTable;
using process::HostTablePtr;
using process::MeasureEightBitMeans;
using process::SBlockMeanRange;
using process::SFrameFormat;
using process::SHostReference;

namespace {

constexpr int64_t BLOCK_SIDE = 32;     ///< of the blocks that the host-side process judges frames by
constexpr double BRIGHT_MIN_GRAY = 20; ///< the dialog's limits on an 8-bit scale
constexpr double BRIGHT_MAX_GRAY = 250;

STrouble LackMemory(const char *pFor)
{
  return {false, QStringLiteral("There is not enough memory for %1.").arg(QLatin1String(pFor))};
}

/// Makes one coefficient file. The steps stop at the first that fails.
class CFlatMaker {
public:
  CFlatMaker(const SOptions &stOptions, CReport &report)
    : m_stOptions(stOptions), m_report(report), m_strOut(QString::fromStdString(stOptions.strOut))
  {
  }

  std::optional<STrouble> Make()
  {
    using FnStep = std::optional<STrouble> (CFlatMaker::*)();
    for (const FnStep fnStep : {&CFlatMaker::CheckOutput, &CFlatMaker::ReadFrames, &CFlatMaker::DecideFormat,
                                &CFlatMaker::AverageFrames, &CFlatMaker::JudgeBright, &CFlatMaker::JudgeDark,
                                &CFlatMaker::WeightFrames, &CFlatMaker::Compute, &CFlatMaker::Save}) {
      std::optional<STrouble> stTrouble = (this->*fnStep)();
      if (stTrouble) {
        return stTrouble;
      }
    }
    return std::nullopt;
  }

  const frames::SSideFile &GetSide() const { return m_stSide; }
  const reference::SReferenceResult &GetWeighted() const { return m_stWeighted; }

private:
  std::optional<STrouble> CheckOutput()
  {
    if (!m_stOptions.bForce && QFileInfo::exists(m_strOut)) {
      return STrouble{false, MakeSentence(m_strOut, "is there already; replacing it takes --force.")};
    }
    return std::nullopt;
  }

  std::optional<STrouble> ReadFrames()
  {
    const bool bRaw = m_stOptions.raw.has_value();
    const Result<QStringList> listBright = ListFiles(m_stOptions.listBright, bRaw);
    const Result<QStringList> listDark = ListFiles(m_stOptions.listDark, bRaw);
    if (!listBright || !listDark) {
      return STrouble{false, QString::fromStdString((listBright ? listDark : listBright).GetError())};
    }
    if (m_stOptions.bWeighted) {
      m_bright.MeasureNoise();
      m_dark.MeasureNoise();
    }
    std::optional<STrouble> stTrouble = m_bright.Read(listBright.GetValue(), m_stOptions, nullptr);
    stTrouble = stTrouble ? stTrouble : m_dark.Read(listDark.GetValue(), m_stOptions, &m_bright.GetInfo());
    for (const QString &strRemark : m_bright.GetRemarks()) {
      m_report.Warn(strRemark);
    }
    return stTrouble;
  }

  std::optional<STrouble> DecideFormat()
  {
    const frames::SFrameInfo &stInfo = m_bright.GetInfo();
    const SSensorFormat *pStated =
      m_stOptions.strPixelFormat.empty() ? nullptr : FindSensorFormat(m_stOptions.strPixelFormat);
    if (pStated != nullptr && stInfo.eColors && *stInfo.eColors != pStated->eLayout) {
      return Refuse(QStringLiteral("The frames are %1, but --pixel-format is %2.")
                      .arg(QLatin1String(GetLayoutName(*stInfo.eColors)))
                      .arg(QString::fromStdString(m_stOptions.strPixelFormat)));
    }
    frames::SEvidence stEvidence = m_bright.GetEvidence();
    stEvidence.Add(m_dark.GetEvidence());
    const Result<frames::SDepth> depth =
      frames::DecideDepth(stEvidence, stInfo.stLayout,
                          {pStated != nullptr ? pStated->nBitDepth : stInfo.nBitDepth, m_stOptions.eAlignment});
    if (!depth) {
      return Refuse(QStringLiteral("One of the files ") + QString::fromStdString(depth.GetError()) +
                    QStringLiteral(" State --pixel-format and --align as the camera delivers them."));
    }
    m_stDepth = depth.GetValue();
    if (!m_stDepth.strReason.isEmpty()) {
      m_report.Warn(m_stDepth.strReason + QStringLiteral(" State --pixel-format and --align to be sure."));
    }
    const EColorLayout eColors = pStated != nullptr ? pStated->eLayout : stInfo.eColors.value_or(EColorLayout::Mono);
    return SetFormat(eColors, pStated != nullptr || stInfo.eColors);
  }

  std::optional<STrouble> SetFormat(EColorLayout eColors, bool bColorsKnown)
  {
    const frames::SLayout &stLayout = m_bright.GetInfo().stLayout;
    const std::string strName = GetLayoutName(eColors) + std::to_string(m_stDepth.nBitDepth);
    const SSensorFormat *pFormat = FindSensorFormat(strName);
    if (pFormat == nullptr) {
      return Refuse(
        QStringLiteral("There is no pixel format %1: state --pixel-format.").arg(QString::fromStdString(strName)));
    }
    if (!bColorsKnown) {
      m_report.Warn(
        QStringLiteral("The frames are taken as monochrome, because the files do not state a colour layout; state "
                       "--pixel-format for a Bayer camera."));
    }
    m_stFormat = {pFormat->nCode, stLayout.nWidth, stLayout.nHeight, stLayout.GetFrameSize()};
    m_nBayerType = static_cast<int32_t>(eColors);
    m_stSide.nWidth = stLayout.nWidth;
    m_stSide.nHeight = stLayout.nHeight;
    m_stSide.strPixelFormat = QString::fromStdString(strName);
    m_stSide.eAlignment = m_stDepth.eAlignment;
    return std::nullopt;
  }

  std::optional<STrouble> AverageFrames()
  {
    const bool bAveraged = (m_stOptions.bWeighted || m_bright.Average(m_stDepth, m_brightAverage)) &&
                           m_bright.TakeFirst(m_stDepth, m_firstBright) &&
                           (m_dark.GetFrameCount() == 0 || m_dark.Average(m_stDepth, m_darkAverage));
    return bAveraged ? std::nullopt : std::optional<STrouble>(LackMemory("the averaged frames"));
  }

  /// The dialog takes the expected grey from the first bright frame.
  std::optional<STrouble> JudgeBright()
  {
    SBlockMeanRange stRange;
    const int32_t nStatus =
      MeasureEightBitMeans(m_firstBright, m_stFormat, {BLOCK_SIDE, BLOCK_SIDE, m_nBayerType}, stRange);
    if (nStatus == PLUGIN_STATUS_OUT_OF_MEMORY) {
      return LackMemory("judging the bright frames");
    }
    if (nStatus != 0) {
      return Refuse(
        QStringLiteral("Frames of %1 x %2 pixels cannot be judged: both sides must be even and at least 32.")
          .arg(m_stFormat.nWidth)
          .arg(m_stFormat.nHeight));
    }
    if (stRange.dMax < BRIGHT_MIN_GRAY || stRange.dMax > BRIGHT_MAX_GRAY) {
      m_report.Warn(QStringLiteral("The bright frames are too %1: their brightest block is %2 of 255, and 20 to 250 is "
                                   "recommended.")
                      .arg(stRange.dMax < BRIGHT_MIN_GRAY ? QStringLiteral("dark") : QStringLiteral("bright"))
                      .arg(stRange.dMax));
    }
    m_stSide.nExpectGray = m_stOptions.nExpectGray.value_or(static_cast<uint32_t>(stRange.dMax));
    return JudgeLight(m_stOptions, m_bright, m_stDepth, m_firstBright, m_nBayerType != 0, m_report);
  }

  std::optional<STrouble> JudgeDark()
  {
    if (m_dark.GetFrameCount() == 0) {
      m_report.Warn(QStringLiteral("There are no dark frames: the dark level is taken as 0."));
      return std::nullopt;
    }
    SBlockMeanRange stRange;
    const int32_t nStatus =
      MeasureEightBitMeans(m_darkAverage, m_stFormat, {BLOCK_SIDE, BLOCK_SIDE, m_nBayerType}, stRange);
    if (nStatus == PLUGIN_STATUS_OUT_OF_MEMORY) {
      return LackMemory("judging the dark frames");
    }
    m_stSide.bDarkUsed = nStatus == 0 && stRange.IsDark();
    if (!m_stSide.bDarkUsed) {
      m_report.Warn(QStringLiteral("The dark frames are too bright or uneven and are not used, as in the dialog: their "
                                   "blocks reach from %1 to %2 of 255.")
                      .arg(stRange.dMin)
                      .arg(stRange.dMax));
    }
    return std::nullopt;
  }

  /// In place of the averages.
  std::optional<STrouble> WeightFrames()
  {
    m_stSide.strMethod = m_stOptions.bWeighted ? QStringLiteral("weighted") : QStringLiteral("average");
    if (!m_stOptions.bWeighted) {
      return std::nullopt;
    }
    flat::SAddedFrames stAdded{m_stFormat, m_nBayerType, m_bright.GetSums(m_stDepth), {}, {}, m_stOptions.nThreads};
    stAdded.stDark = m_stSide.bDarkUsed ? m_dark.GetSums(m_stDepth) : reference::SFrameSums{};
    if (m_stOptions.dSystemGain) {
      stAdded.stCamera = reference::SCameraNoise{*m_stOptions.dSystemGain, m_stOptions.dDarkNoise};
    }
    m_darkAverage.Release(); // before more is taken
    flat::SWeightedFrames stWeighted;
    if (flat::WeightFrames(stAdded, stWeighted) != reference::STATUS_SUCCESS) {
      return LackMemory("the weighted frames");
    }
    m_brightAverage = std::move(stWeighted.bright);
    m_darkAverage = std::move(stWeighted.dark);
    m_stFormat = stWeighted.stFormat;
    m_stWeighted = stWeighted.stResult;
    m_stSide.strNoise = reference::DescribeNoiseSource(m_stWeighted.eNoise);
    if (m_stWeighted.eNoise == reference::ENoiseSource::AllDetail ||
        m_stWeighted.eNoise == reference::ENoiseSource::HalfDetail) {
      m_report.Warn(
        QStringLiteral(
          "With one bright frame, noise and the pixels' own pattern cannot be separated: %1 counts as noise; "
          "give more frames, or --system-gain.")
          .arg(m_stSide.strNoise));
    }
    return std::nullopt;
  }

  std::optional<STrouble> Compute()
  {
    const SHostReference stReference = {m_brightAverage, m_stSide.bDarkUsed ? &m_darkAverage : nullptr, m_stFormat,
                                        m_nBayerType, m_stSide.nExpectGray};
    const int32_t nStatus = ComputeHostTable(stReference, m_pTable);
    if (nStatus == PLUGIN_STATUS_OUT_OF_MEMORY) {
      return LackMemory("the coefficients");
    }
    return nStatus == 0 ? std::nullopt
                        : std::optional<STrouble>(Refuse(
                            QStringLiteral("The image library does not compute coefficients of these frames (status "
                                           "%1).")
                              .arg(nStatus)));
  }

  std::optional<STrouble> Save()
  {
    DescribeOrigin();
    if (m_stOptions.bDryRun) {
      return std::nullopt;
    }
    frames::CPartialFile file(m_strOut);
    const Result<> result = RunUntilFailure(
      [&] { return file.Open(); }, [&] { return file.Write(m_pTable->data.GetData(), m_pTable->nSize); },
      [&] { return file.Commit(frames::ECommit::Durable); },
      [&] { return frames::SaveWholeFile(frames::GetSideFilePath(m_strOut), frames::MakeSideFile(m_stSide)); });
    return result ? std::nullopt : std::optional<STrouble>(STrouble{false, QString::fromStdString(result.GetError())});
  }

  void DescribeOrigin()
  {
    m_stSide.strSha256 = HashTable(m_pTable->data.GetData(), m_pTable->nSize);
    const SOrigin &stOrigin = m_stOptions.stOrigin;
    m_stSide.strCamera = QString::fromStdString(stOrigin.strCamera);
    m_stSide.strSerial = QString::fromStdString(stOrigin.strSerial);
    m_stSide.dExposureTime = stOrigin.dExposureTime;
    m_stSide.dGain = stOrigin.dGain;
    m_stSide.dBlackLevel = stOrigin.dBlackLevel;
    m_stSide.dTemperature = stOrigin.dTemperature;
    m_stSide.nDarkFrames = m_dark.GetFrameCount();
    m_stSide.nBrightFrames = m_bright.GetFrameCount();
    m_stSide.strCreated = QDateTime::currentDateTimeUtc().toString(Qt::ISODate);
    m_stSide.strTool = QStringLiteral("ffc " FFC_VERSION);
  }

  const SOptions &m_stOptions;
  CReport &m_report;
  QString m_strOut;
  CReferenceStack m_bright;
  CReferenceStack m_dark;
  frames::SDepth m_stDepth;
  SFrameFormat m_stFormat;
  int32_t m_nBayerType = 0;
  CFrameBuffer m_brightAverage;
  CFrameBuffer m_firstBright;
  CFrameBuffer m_darkAverage;
  reference::SReferenceResult m_stWeighted;
  HostTablePtr m_pTable;
  frames::SSideFile m_stSide;
};

} // namespace

EExitCode RunMake(const SOptions &stOptions, CReport &report)
{
  CFlatMaker maker(stOptions, report);
  const QString strOut = QString::fromStdString(stOptions.strOut);
  const std::optional<STrouble> stTrouble = maker.Make();
  if (stTrouble) {
    report.AddTrouble(strOut, *stTrouble);
    return report.Finish(QStringLiteral("make"));
  }
  const frames::SSideFile &stSide = maker.GetSide();
  QJsonObject object{{"status", stOptions.bDryRun ? "would be made" : "made"},
                     {"pixelFormat", stSide.strPixelFormat},
                     {"expectedGray", static_cast<int>(stSide.nExpectGray)},
                     {"brightFrames", static_cast<double>(stSide.nBrightFrames)},
                     {"darkFrames", static_cast<double>(stSide.nDarkFrames)},
                     {"darkUsed", stSide.bDarkUsed},
                     {"method", stSide.strMethod},
                     {"sha256", stSide.strSha256}};
  QString strText = QStringLiteral("%1: %2 x %3 %4, expected grey %5, from %6 bright and %7 dark frames, %8")
                      .arg(strOut)
                      .arg(stSide.nWidth)
                      .arg(stSide.nHeight)
                      .arg(stSide.strPixelFormat)
                      .arg(stSide.nExpectGray)
                      .arg(stSide.nBrightFrames)
                      .arg(stSide.bDarkUsed ? stSide.nDarkFrames : 0)
                      .arg(stSide.strMethod);
  if (stOptions.bWeighted) {
    const reference::SReferenceResult &stWeighted = maker.GetWeighted();
    object[QStringLiteral("noise")] = stSide.strNoise;
    object[QStringLiteral("noiseDn")] = stWeighted.dNoise;
    object[QStringLiteral("detailWeight")] = stWeighted.dDetailWeight;
    strText += QStringLiteral("\n  noise %1 DN, from %2; weight of the finest detail %3")
                 .arg(stWeighted.dNoise, 0, 'f', 2)
                 .arg(stSide.strNoise)
                 .arg(stWeighted.dDetailWeight, 0, 'f', 3);
  }
  report.AddDone(strOut, object, strText);
  return report.Finish(QStringLiteral("make"));
}

} // namespace ffc::tool

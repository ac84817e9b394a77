#include <cstdlib>

#include <QJsonArray>

#include "quality/uniformity.h"
#include "tools/ffc/belonging.h"
#include "tools/ffc/commands.h"
#include "tools/ffc/flat.h"
#include "tools/ffc/inputs.h"

namespace ffc::tool {

using genapi::EColorLayout;

namespace {

constexpr uint32_t MAX_FRAMES = 256; ///< of the sums of the figures

/// Highest figures that pass; below 0: any.
struct SLimits {
  double dShading = -1; ///< percent
  double dPrnu = -1;    ///< percent
  double dDsnu = -1;    ///< DN
};

Result<SLimits> ParseLimits(const std::string &strLimits)
{
  SLimits stLimits;
  for (const QString &strLimit : QString::fromStdString(strLimits).split(',', Qt::SkipEmptyParts)) {
    const QString strName = strLimit.section('=', 0, 0).trimmed();
    bool bNumber = false;
    const double dLimit = strLimit.section('=', 1).toDouble(&bNumber);
    double *pdLimit = strName == "shading" ? &stLimits.dShading
                      : strName == "prnu"  ? &stLimits.dPrnu
                      : strName == "dsnu"  ? &stLimits.dDsnu
                                           : nullptr;
    if (pdLimit == nullptr || !bNumber || !(dLimit >= 0)) {
      return Failure("--limit takes shading, prnu and dsnu with numbers, such as shading=1.0,prnu=0.5; not \"" +
                     strLimit.toStdString() + "\".");
    }
    *pdLimit = dLimit;
  }
  return stLimits;
}

/// Frames before and after the correction.
struct SStacks {
  quality::CFrameStack stackRaw;
  quality::CFrameStack stackCorrected;
};

class CCheck {
public:
  CCheck(const SOptions &stOptions, const CFlat &flat) : m_stOptions(stOptions), m_flat(flat) {}

  std::optional<STrouble> Read(const std::vector<std::string> &listNames, SStacks &stStacks)
  {
    const Result<QStringList> listFiles = ListFiles(listNames, m_stOptions.raw.has_value());
    if (!listFiles) {
      return STrouble{false, QString::fromStdString(listFiles.GetError())};
    }
    std::optional<STrouble> stTrouble;
    for (const QString &strFile : listFiles.GetValue()) {
      stTrouble = stTrouble ? stTrouble : ReadFile(strFile, stStacks);
    }
    return stTrouble;
  }

  EColorLayout GetColors() const { return m_eColors; }

private:
  std::optional<STrouble> ReadFile(const QString &strFile, SStacks &stStacks)
  {
    auto reader = OpenFrames(strFile, m_stOptions);
    if (!reader) {
      return STrouble{false, QString::fromStdString(reader.GetError())};
    }
    const frames::SFrameInfo &stInfo = reader.GetValue()->GetInfo();
    std::optional<STrouble> stTrouble = m_flat.CheckFits(strFile, stInfo);
    if (!stTrouble && !FindCorrection(strFile, stInfo).isEmpty()) {
      stTrouble = STrouble{true, MakeSentence(strFile, "is corrected already; the check takes frames as they came.")};
    }
    std::vector<uint8_t> listFrame(stInfo.stLayout.GetFrameSize());
    for (uint64_t n = 0; !stTrouble && n < stInfo.nFrames; ++n) {
      const Result<> read = reader.GetValue()->Read(listFrame.data());
      stTrouble =
        read ? AddFrame(strFile, stInfo, listFrame, stStacks) : STrouble{false, MakeSentence(strFile, read.GetError())};
    }
    return stTrouble;
  }

  std::optional<STrouble> AddFrame(const QString &strFile, const frames::SFrameInfo &stInfo,
                                   std::vector<uint8_t> &listFrame, SStacks &stStacks)
  {
    if (stStacks.stackRaw.GetFrameCount() == MAX_FRAMES) {
      return std::nullopt;
    }
    frames::SEvidence stEvidence;
    stEvidence.Add(listFrame.data(), stInfo.stLayout);
    const Result<frames::SDepth> depth = m_flat.DecideDepth(stEvidence, stInfo);
    if (!depth) {
      return STrouble{true, MakeSentence(strFile, depth.GetError())};
    }
    const uint32_t nBitDepth = depth.GetValue().nBitDepth;
    const uint32_t nShift = depth.GetValue().GetShift(stInfo.stLayout);
    if (nShift > 0) {
      frames::ShiftRight(listFrame.data(), stInfo.stLayout, nShift);
    }
    if (stStacks.stackRaw.GetFrameCount() == 0) {
      m_eColors = m_flat.GetColors().value_or(stInfo.eColors.value_or(EColorLayout::Mono));
      if (!stStacks.stackRaw.Prepare(stInfo.stLayout.nWidth, stInfo.stLayout.nHeight, nBitDepth) ||
          !stStacks.stackCorrected.Prepare(stInfo.stLayout.nWidth, stInfo.stLayout.nHeight, nBitDepth)) {
        return STrouble{false, QStringLiteral("There is not enough memory for the figures.")};
      }
    }
    const bool bAdded = stStacks.stackRaw.Add(listFrame.data(), listFrame.size()) &&
                        m_flat.Apply(listFrame.data(), stInfo.stLayout, nBitDepth) &&
                        stStacks.stackCorrected.Add(listFrame.data(), listFrame.size());
    return bAdded ? std::nullopt
                  : std::optional<STrouble>(STrouble{true, MakeSentence(strFile, "is unlike the frames before.")});
  }

  const SOptions &m_stOptions;
  const CFlat &m_flat;
  EColorLayout m_eColors = EColorLayout::Mono;
};

/// Shading alone where there are no dark frames.
quality::SUniformityFigures Measure(const quality::CFrameStack &stackBright, const quality::CFrameStack &stackDark,
                                    EColorLayout eColors)
{
  if (stackDark.GetFrameCount() > 0) {
    return quality::MeasureUniformity(stackBright, stackDark, eColors).stOverall;
  }
  quality::SUniformityFigures stFigures;
  stFigures.dShadingPercent = quality::MeasureShading(stackBright, eColors);
  return stFigures;
}

QJsonObject MakeJson(const quality::SUniformityFigures &stFigures, bool bDark)
{
  QJsonObject object{{"shadingPercent", stFigures.dShadingPercent}};
  if (bDark) {
    object[QStringLiteral("prnuPercent")] = stFigures.dPrnuPercent;
    object[QStringLiteral("dsnuDn")] = stFigures.dDsnuDn;
    object[QStringLiteral("meanGray")] = stFigures.dMeanGray;
  }
  return object;
}

QString MakeText(const quality::SUniformityFigures &stFigures, bool bDark)
{
  QString strText = QStringLiteral("shading %1 %").arg(stFigures.dShadingPercent, 0, 'f', 2);
  if (bDark) {
    strText += QStringLiteral(", PRNU %1 %, DSNU %2 DN")
                 .arg(stFigures.dPrnuPercent, 0, 'f', 2)
                 .arg(stFigures.dDsnuDn, 0, 'f', 2);
  }
  return strText;
}

QStringList FindMissed(const SLimits &stLimits, const quality::SUniformityFigures &stAfter)
{
  QStringList listMissed;
  const auto fnJudge = [&listMissed](const char *pName, double dLimit, double dFigure) {
    if (dLimit >= 0 && !(dFigure <= dLimit)) {
      listMissed
        << QStringLiteral("%1 is %2, above the limit %3").arg(QLatin1String(pName)).arg(dFigure, 0, 'f', 3).arg(dLimit);
    }
  };
  fnJudge("shading", stLimits.dShading, stAfter.dShadingPercent);
  fnJudge("prnu", stLimits.dPrnu, stAfter.dPrnuPercent);
  fnJudge("dsnu", stLimits.dDsnu, stAfter.dDsnuDn);
  return listMissed;
}

QString DescribeBelonging(EBelonging eBelonging)
{
  return eBelonging == EBelonging::Yes  ? QStringLiteral("the coefficients belong to this camera")
         : eBelonging == EBelonging::No ? QStringLiteral("these are another camera's coefficients")
                                        : QStringLiteral("whether the coefficients belong to this camera cannot be "
                                                         "told from these frames");
}

} // namespace

EExitCode RunCheck(const SOptions &stOptions, CReport &report)
{
  const Result<SLimits> limits = ParseLimits(stOptions.strLimits);
  if (!limits) {
    report.Warn(QString::fromStdString(limits.GetError()));
    return EXIT_USAGE;
  }
  const SLimits &stLimits = limits.GetValue();
  if (stOptions.listDark.empty() && (stLimits.dPrnu >= 0 || stLimits.dDsnu >= 0)) {
    report.Warn(QStringLiteral("PRNU and DSNU take dark frames: add --dark."));
    return EXIT_USAGE;
  }
  CFlat flat;
  const QString strFlat = QString::fromStdString(stOptions.strFlat);
  std::optional<STrouble> stTrouble = flat.Load(strFlat, stOptions);
  SStacks stBright;
  SStacks stDark;
  CCheck check(stOptions, flat);
  stTrouble = stTrouble ? stTrouble : check.Read(stOptions.listFrames, stBright);
  stTrouble = stTrouble || stOptions.listDark.empty() ? stTrouble : check.Read(stOptions.listDark, stDark);
  if (stTrouble) {
    report.AddTrouble(strFlat, *stTrouble);
    return report.Finish(QStringLiteral("check"));
  }
  const bool bDark = stDark.stackRaw.GetFrameCount() > 0;
  const auto stBefore = Measure(stBright.stackRaw, stDark.stackRaw, check.GetColors());
  const auto stAfter = Measure(stBright.stackCorrected, stDark.stackCorrected, check.GetColors());
  const SBelonging stBelonging = JudgeBelonging(stBright.stackRaw, flat.GetTable());
  const QStringList listMissed = FindMissed(stLimits, stAfter);
  const QString strBelonging = DescribeBelonging(stBelonging.eBelonging);
  report.AddDone(strFlat,
                 {{"frames", static_cast<double>(stBright.stackRaw.GetFrameCount())},
                  {"before", MakeJson(stBefore, bDark)},
                  {"after", MakeJson(stAfter, bDark)},
                  {"correlation", stBelonging.dCorrelation},
                  {"belonging", strBelonging},
                  {"missed", QJsonArray::fromStringList(listMissed)}},
                 QStringLiteral("%1: %2 frames\n  before: %3\n  after:  %4\n  %5 (correlation %6)")
                   .arg(strFlat)
                   .arg(stBright.stackRaw.GetFrameCount())
                   .arg(MakeText(stBefore, bDark), MakeText(stAfter, bDark), strBelonging)
                   .arg(stBelonging.dCorrelation, 0, 'f', 3));
  for (const QString &strMissed : listMissed) {
    report.Warn(strMissed + QStringLiteral("."));
  }
  if (stBelonging.eBelonging == EBelonging::No) {
    report.Warn(QStringLiteral("The pattern of the frames is not that of \"%1\": %2.").arg(strFlat, strBelonging));
    return report.Finish(QStringLiteral("check"), EXIT_REFUSED);
  }
  return report.Finish(QStringLiteral("check"), listMissed.isEmpty() ? EXIT_DONE : EXIT_VERDICT);
}

} // namespace ffc::tool

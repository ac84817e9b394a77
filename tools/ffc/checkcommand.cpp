#include <algorithm>

#include <QJsonArray>

#include "quality/belonging.h"
#include "quality/deviationhistogram.h"
#include "quality/limits.h"
#include "quality/nonuniformityreport.h"
#include "quality/referenceadvice.h"
#include "tools/ffc/commands.h"
#include "tools/ffc/figurefiles.h"
#include "tools/ffc/inputs.h"
#include "tools/ffc/levels.h"

namespace ffc::tool {

using genapi::EColorLayout;

namespace {

QJsonObject MakeJson(const quality::SUniformity &stUniformity, bool bDark)
{
  const quality::SUniformityFigures &stFigures = stUniformity.stOverall;
  QJsonObject object{{"shadingPercent", stFigures.dShadingPercent}};
  if (bDark) {
    const quality::SWorstParts stWorst = quality::TakeWorst(stUniformity.listHighPass);
    object[QStringLiteral("prnuPercent")] = stFigures.dPrnuPercent;
    object[QStringLiteral("dsnuDn")] = stFigures.dDsnuDn;
    object[QStringLiteral("prnuHighPassPercent")] = stWorst.stPrnu.dTotal;
    object[QStringLiteral("dsnuHighPassDn")] = stWorst.stDsnu.dTotal;
    object[QStringLiteral("meanGray")] = stFigures.dMeanGray;
    object[QStringLiteral("emva1288")] = quality::MakeNonuniformityJson(stUniformity);
  }
  return object;
}

QString MakeText(const quality::SUniformity &stUniformity, bool bDark)
{
  QString strText = QStringLiteral("shading %1 %").arg(stUniformity.stOverall.dShadingPercent, 0, 'f', 2);
  if (bDark) {
    const quality::SWorstParts stPlain = quality::TakeWorst(stUniformity.listPlain);
    const quality::SWorstParts stHighPass = quality::TakeWorst(stUniformity.listHighPass);
    const QString strPercent = QStringLiteral("%");
    const QString strDn = QStringLiteral("DN");
    strText +=
      QStringLiteral("\n    PRNU with shading %1\n    PRNU high-pass    %2\n    DSNU with shading %3\n    DSNU "
                     "high-pass    %4")
        .arg(quality::DescribeParts(stPlain.stPrnu, strPercent), quality::DescribeParts(stHighPass.stPrnu, strPercent),
             quality::DescribeParts(stPlain.stDsnu, strDn), quality::DescribeParts(stHighPass.stDsnu, strDn));
  }
  return strText;
}

/// Pixels that deviate by more than five standard deviations, after the high-pass where the image is large enough.
uint64_t CountOutliers(const SStacks &stBright, const SStacks &stDark, EColorLayout eColors)
{
  uint64_t nOutliers = 0;
  const quality::EHighPass eHighPass = stBright.stackRaw.GetHighPass();
  for (const quality::SChannel &stChannel : quality::GetChannels(eColors)) {
    const quality::SDeviationImage stImage =
      quality::MakeDeviationImage(stBright.stackCorrected, &stDark.stackCorrected, stChannel, &eHighPass);
    nOutliers += quality::CountOutliers(stImage, 5 * quality::GetDeviation(stImage));
  }
  return nOutliers;
}

QStringList FindMissed(const quality::SLimits &stLimits, const quality::SUniformity &stAfter)
{
  QStringList listMissed;
  for (const quality::SLimitedFigure &stFigure : quality::GetLimitedFigures()) {
    const double dLimit = stLimits.*stFigure.pLimit;
    const double dFigure = stFigure.fnOverall(stAfter);
    if (dLimit >= 0 && !(dFigure <= dLimit)) {
      listMissed << QStringLiteral("%1 is %2, above the limit %3")
                      .arg(QLatin1String(stFigure.pKey))
                      .arg(dFigure, 0, 'f', 3)
                      .arg(dLimit);
    }
  }
  return listMissed;
}

QString DescribeBelonging(quality::EBelonging eBelonging)
{
  return eBelonging == quality::EBelonging::Yes ? QStringLiteral("the coefficients belong to this camera")
         : eBelonging == quality::EBelonging::No
           ? QStringLiteral("these are another camera's coefficients")
           : QStringLiteral("these frames do not show whether the coefficients belong to this camera");
}

/// Figures of all bright frames together.
class CCheck {
public:
  CCheck(const SOptions &stOptions, const quality::SLimits &stLimits, const CFlat &flat, CReport &report)
    : m_stOptions(stOptions), m_stLimits(stLimits), m_flat(flat), m_report(report),
      m_strFlat(QString::fromStdString(stOptions.strFlat)), m_reader(stOptions, flat)
  {
  }

  EExitCode Run()
  {
    std::optional<STrouble> stTrouble;
    if (!m_stOptions.listDark.empty()) {
      stTrouble = m_reader.Read(m_stOptions.listDark, m_stDark);
    }
    if (!stTrouble && m_stOptions.bLevels) {
      return RunLevels();
    }
    stTrouble = stTrouble ? stTrouble : m_reader.Read(m_stOptions.listFrames, m_stBright);
    stTrouble = stTrouble ? stTrouble : WriteFiles();
    return stTrouble ? Fail(*stTrouble) : Judge();
  }

private:
  EExitCode Fail(const STrouble &stTrouble)
  {
    m_report.AddTrouble(m_strFlat, stTrouble);
    return m_report.Finish(QStringLiteral("check"));
  }

  std::optional<STrouble> WriteFiles()
  {
    if (m_stOptions.strDetails.empty()) {
      return std::nullopt;
    }
    const Result<> written =
      WriteFigureFiles(QString::fromStdString(m_stOptions.strDetails), m_stBright, m_stDark, m_reader.GetColors());
    return written ? std::nullopt
                   : std::optional<STrouble>(STrouble{false, QString::fromStdString(written.GetError())});
  }

  EExitCode RunLevels()
  {
    const Result<QStringList> listFiles = ListFiles(m_stOptions.listFrames, m_stOptions.raw.has_value());
    if (!listFiles) {
      return Fail({false, QString::fromStdString(listFiles.GetError())});
    }
    SLevels stLevels;
    const std::optional<STrouble> stTrouble = MeasureLevels(SplitIntoLevels(listFiles.GetValue(), m_stOptions),
                                                            m_reader, m_stDark, m_stLimits.dPrnuHighPass, stLevels);
    if (stTrouble) {
      return Fail(*stTrouble);
    }
    m_report.AddDone(m_strFlat, MakeLevelsJson(stLevels), m_strFlat + '\n' + MakeLevelsText(stLevels));
    const auto &listLevels = stLevels.listLevels;
    const bool bMissed = stLevels.bLimitGiven && std::any_of(listLevels.begin(), listLevels.end(),
                                                             [](const SLevel &stLevel) { return !stLevel.bGood; });
    return m_report.Finish(QStringLiteral("check"), bMissed ? EXIT_VERDICT : EXIT_DONE);
  }

  /// From the frames' noise, and what the side file tells of the flat. Of one frame nothing.
  QStringList Advise() const
  {
    quality::SReferenceFacts stFacts;
    stFacts.nBitDepth = m_stBright.stackRaw.GetBitDepth();
    if (m_flat.GetSide()) {
      stFacts.nFrames = static_cast<int>(m_flat.GetSide()->nBrightFrames);
      stFacts.bWeighted = m_flat.GetSide()->strMethod == QStringLiteral("weighted");
    }
    return m_stBright.stackRaw.GetFrameCount() < 2
             ? QStringList()
             : quality::AdviseReference(quality::MeasureNoise(m_stBright.stackRaw, m_reader.GetColors()), stFacts);
  }

  EExitCode Judge()
  {
    const bool bDark = m_stDark.stackRaw.GetFrameCount() > 0;
    const auto stBefore = quality::MeasureUniformity(m_stBright.stackRaw, m_stDark.stackRaw, m_reader.GetColors());
    const auto stAfter =
      quality::MeasureUniformity(m_stBright.stackCorrected, m_stDark.stackCorrected, m_reader.GetColors());
    const quality::SBelonging stBelonging =
      quality::JudgeBelonging(m_stBright.stackRaw, reinterpret_cast<const uint16_t *>(m_flat.GetTable().GetData()));
    const QStringList listMissed = FindMissed(m_stLimits, stAfter);
    const QString strBelonging = DescribeBelonging(stBelonging.eBelonging);
    QJsonObject object{{"frames", static_cast<double>(m_stBright.stackRaw.GetFrameCount())},
                       {"before", MakeJson(stBefore, bDark)},
                       {"after", MakeJson(stAfter, bDark)},
                       {"correlation", stBelonging.dCorrelation},
                       {"belonging", strBelonging},
                       {"missed", QJsonArray::fromStringList(listMissed)}};
    QString strOutliers;
    if (bDark) {
      const uint64_t nOutliers = CountOutliers(m_stBright, m_stDark, m_reader.GetColors());
      object[QStringLiteral("highPass")] = QLatin1String(GetHighPassName(m_stBright.stackRaw.GetHighPass()));
      object[QStringLiteral("outliers5Sigma")] = static_cast<double>(nOutliers);
      strOutliers = QStringLiteral("\n  outliers beyond 5 standard deviations after the correction: %1").arg(nOutliers);
    }
    const QStringList listAdvice = Advise();
    object[QStringLiteral("advice")] = QJsonArray::fromStringList(listAdvice);
    m_report.AddDone(m_strFlat, object,
                     QStringLiteral("%1: %2 frames\n  before: %3\n  after:  %4\n  %5 (correlation %6)%7")
                       .arg(m_strFlat)
                       .arg(m_stBright.stackRaw.GetFrameCount())
                       .arg(MakeText(stBefore, bDark), MakeText(stAfter, bDark), strBelonging)
                       .arg(stBelonging.dCorrelation, 0, 'f', 3)
                       .arg(strOutliers + (listAdvice.isEmpty() ? QString() : QStringLiteral("\n  ")) +
                            listAdvice.join(QStringLiteral("\n  "))));
    for (const QString &strMissed : listMissed) {
      m_report.Warn(strMissed + QStringLiteral("."));
    }
    if (stBelonging.eBelonging == quality::EBelonging::No) {
      m_report.Warn(
        QStringLiteral("The pattern of the frames is not that of \"%1\": %2.").arg(m_strFlat, strBelonging));
      return m_report.Finish(QStringLiteral("check"), EXIT_REFUSED);
    }
    return m_report.Finish(QStringLiteral("check"), listMissed.isEmpty() ? EXIT_DONE : EXIT_VERDICT);
  }

  const SOptions &m_stOptions;
  const quality::SLimits &m_stLimits;
  const CFlat &m_flat;
  CReport &m_report;
  const QString m_strFlat;
  CStackReader m_reader;
  SStacks m_stBright;
  SStacks m_stDark;
};

} // namespace

EExitCode RunCheck(const SOptions &stOptions, CReport &report)
{
  const Result<quality::SLimits> limits = quality::ParseLimits(QString::fromStdString(stOptions.strLimits));
  if (!limits) {
    report.Warn(QStringLiteral("--limit ") + QString::fromStdString(limits.GetError()));
    return EXIT_USAGE;
  }
  if (stOptions.listDark.empty() &&
      (limits.GetValue().NeedDark() || stOptions.bLevels || !stOptions.strDetails.empty())) {
    report.Warn(QStringLiteral("PRNU and DSNU need dark frames: add --dark."));
    return EXIT_USAGE;
  }
  CFlat flat;
  const std::optional<STrouble> stTrouble = flat.Load(QString::fromStdString(stOptions.strFlat), stOptions);
  if (stTrouble) {
    report.AddTrouble(QString::fromStdString(stOptions.strFlat), *stTrouble);
    return report.Finish(QStringLiteral("check"));
  }
  return CCheck(stOptions, limits.GetValue(), flat, report).Run();
}

} // namespace ffc::tool

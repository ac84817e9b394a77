#include "tools/ffc/levels.h"

#include <algorithm>

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>

#include "quality/uniformity.h"
#include "tools/ffc/inputs.h"

namespace ffc::tool {

using genapi::EColorLayout;

namespace {

constexpr double SMALLEST_LIMIT = 0.1; ///< percent
constexpr double GROWN = 2.0;          ///< times the smallest residual

bool HasSeveralFrames(const QString &strFile, const SOptions &stOptions)
{
  const auto reader = OpenFrames(strFile, stOptions);
  return reader && reader.GetValue()->GetInfo().nFrames > 1;
}

SLevel Measure(const SStacks &stBright, const SStacks &stDark, EColorLayout eColors)
{
  const quality::SUniformity stBefore = quality::MeasureUniformity(stBright.stackRaw, stDark.stackRaw, eColors);
  const quality::SUniformity stAfter =
    quality::MeasureUniformity(stBright.stackCorrected, stDark.stackCorrected, eColors);
  SLevel stLevel;
  stLevel.nFrames = stBright.stackRaw.GetFrameCount();
  stLevel.dLevelPercent = 100.0 * stBefore.stOverall.dMeanGray / stBright.stackRaw.GetMaximum();
  for (const quality::SNonuniformity &stChannel : stBefore.listPlain) {
    stLevel.dSignal += stChannel.dSignal / static_cast<double>(stBefore.listPlain.size());
  }
  stLevel.dBefore = quality::TakeWorst(stBefore.listHighPass).stPrnu.dTotal;
  stLevel.dAfter = quality::TakeWorst(stAfter.listHighPass).stPrnu.dTotal;
  stLevel.dShadingAfter = stAfter.stOverall.dShadingPercent;
  stLevel.dClipped = stBefore.stOverall.dClippedPercent;
  return stLevel;
}

} // namespace

std::vector<QStringList> SplitIntoLevels(const QStringList &listFiles, const SOptions &stOptions)
{
  std::vector<QStringList> listLevels;
  QStringList listFolders;
  for (const QString &strFile : listFiles) {
    const QString strFolder =
      HasSeveralFrames(strFile, stOptions) ? strFile : QFileInfo(strFile).absoluteDir().absolutePath();
    const int nFolder = listFolders.indexOf(strFolder);
    if (nFolder < 0) {
      listFolders << strFolder;
      listLevels.push_back({strFile});
    } else {
      listLevels[static_cast<std::size_t>(nFolder)] << strFile;
    }
  }
  return listLevels;
}

std::optional<STrouble> MeasureLevels(const std::vector<QStringList> &listLevels, CStackReader &reader,
                                      const SStacks &stDark, double dLimit, SLevels &stLevels)
{
  for (const QStringList &listFiles : listLevels) {
    SStacks stBright;
    std::optional<STrouble> stTrouble = reader.Read(listFiles, stBright);
    if (stTrouble) {
      return stTrouble;
    }
    SLevel stLevel = Measure(stBright, stDark, reader.GetColors());
    const QFileInfo info(listFiles.front());
    stLevel.strName = listFiles.size() > 1 ? info.absoluteDir().dirName() : info.fileName();
    stLevels.listLevels.push_back(stLevel);
  }
  stLevels.bLimitGiven = dLimit >= 0;
  stLevels.dLimit = dLimit;
  JudgeLevels(stLevels);
  return std::nullopt;
}

void JudgeLevels(SLevels &stLevels)
{
  std::vector<SLevel> &listLevels = stLevels.listLevels;
  std::sort(listLevels.begin(), listLevels.end(),
            [](const SLevel &stOne, const SLevel &stOther) { return stOne.dLevelPercent < stOther.dLevelPercent; });
  const auto itBest =
    std::min_element(listLevels.begin(), listLevels.end(),
                     [](const SLevel &stOne, const SLevel &stOther) { return stOne.dAfter < stOther.dAfter; });
  if (itBest == listLevels.end()) {
    return;
  }
  stLevels.nBest = static_cast<std::size_t>(itBest - listLevels.begin());
  if (!stLevels.bLimitGiven) {
    stLevels.dLimit = std::max(SMALLEST_LIMIT, GROWN * itBest->dAfter);
  }
  for (SLevel &stLevel : listLevels) {
    stLevel.bGood = stLevel.dAfter <= stLevels.dLimit;
  }
}

QJsonObject MakeLevelsJson(const SLevels &stLevels)
{
  QJsonArray jsonLevels;
  for (const SLevel &stLevel : stLevels.listLevels) {
    jsonLevels.append(QJsonObject{{"name", stLevel.strName},
                                  {"frames", static_cast<int>(stLevel.nFrames)},
                                  {"signalDn", stLevel.dSignal},
                                  {"levelPercent", stLevel.dLevelPercent},
                                  {"prnuHighPassBeforePercent", stLevel.dBefore},
                                  {"prnuHighPassAfterPercent", stLevel.dAfter},
                                  {"shadingAfterPercent", stLevel.dShadingAfter},
                                  {"clippedPercent", stLevel.dClipped},
                                  {"good", stLevel.bGood}});
  }
  return {{"levels", jsonLevels}, {"limitPercent", stLevels.dLimit}, {"advice", AdviseLevel(stLevels)}};
}

QString MakeLevelsText(const SLevels &stLevels)
{
  QString strText = QStringLiteral("  level, %   signal, DN   PRNU before, %   after, %   shading after, %");
  for (const SLevel &stLevel : stLevels.listLevels) {
    strText += QStringLiteral("\n  %1 %2 %3 %4 %5   %6: %7%8")
                 .arg(stLevel.dLevelPercent, 8, 'f', 1)
                 .arg(stLevel.dSignal, 12, 'f', 1)
                 .arg(stLevel.dBefore, 16, 'f', 3)
                 .arg(stLevel.dAfter, 10, 'f', 3)
                 .arg(stLevel.dShadingAfter, 18, 'f', 2)
                 .arg(stLevel.strName)
                 .arg(CountFrames(stLevel.nFrames))
                 .arg(stLevel.bGood ? QString() : QStringLiteral(", not good enough"));
  }
  return strText + QStringLiteral("\n  PRNU is after the high-pass; good enough is up to %1 % (%2)\n  %3")
                     .arg(stLevels.dLimit, 0, 'f', 3)
                     .arg(stLevels.bLimitGiven ? QStringLiteral("--limit prnu-high-pass")
                                               : QStringLiteral("twice the smallest, at least 0.1"),
                          AdviseLevel(stLevels));
}

QString AdviseLevel(const SLevels &stLevels)
{
  const std::vector<SLevel> &listLevels = stLevels.listLevels;
  const auto fnIsBad = [](const SLevel &stLevel) { return !stLevel.bGood; };
  if (listLevels.size() < 2) {
    return QStringLiteral(
      "A single level does not show how others are corrected: add frames of other exposures, one folder for each.");
  }
  const QString strLowest = QString::number(listLevels.front().dLevelPercent, 'f', 0);
  const QString strHighest = QString::number(listLevels.back().dLevelPercent, 'f', 0);
  if (std::none_of(listLevels.begin(), listLevels.end(), fnIsBad)) {
    return QStringLiteral("One flat is good enough for all levels from %1 to %2 % of full scale.")
      .arg(strLowest, strHighest);
  }
  // The levels around the best one without a bad one between.
  std::size_t nFirst = stLevels.nBest;
  std::size_t nLast = stLevels.nBest;
  for (; nFirst > 0 && listLevels[nFirst - 1].bGood; --nFirst) {
  }
  for (; nLast + 1 < listLevels.size() && listLevels[nLast + 1].bGood; ++nLast) {
  }
  const QString strMiddle =
    QString::number((listLevels.front().dLevelPercent + listLevels.back().dLevelPercent) / 2, 'f', 0);
  const auto fnPercent = [&](std::size_t nLevel) { return QString::number(listLevels[nLevel].dLevelPercent, 'f', 0); };
  const QString strRange =
    !listLevels[stLevels.nBest].bGood ? QStringLiteral("This flat is good enough at none of the levels.")
    : fnPercent(nFirst) == fnPercent(nLast)
      ? QStringLiteral("This flat is good enough at %1 % of full scale alone.").arg(fnPercent(nFirst))
      : QStringLiteral("This flat is good enough from %1 to %2 % of full scale and best at %3 %; beyond, one gain per "
                       "pixel is not.")
          .arg(fnPercent(nFirst), fnPercent(nLast), fnPercent(stLevels.nBest));
  return strRange + QStringLiteral(" A coefficient file has no place for a table by level: make the flat at the level "
                                   "of the images that count, or near %1 % for all of %2 to %3 %, or one flat per "
                                   "exposure (ffc library).")
                      .arg(strMiddle, strLowest, strHighest);
}

} // namespace ffc::tool

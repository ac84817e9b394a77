#include "tools/ffc/levels.h"

#include <QDir>
#include <QJsonArray>

#include <gtest/gtest.h>

#include "tests/tools/ffc/toolrun.h"

using namespace ffc::test;
using namespace ffc::tool;

namespace {

SLevels MakeLevels(const std::vector<std::pair<double, double>> &listLevels)
{
  SLevels stLevels;
  for (const auto &[dLevel, dAfter] : listLevels) {
    SLevel stLevel;
    stLevel.dLevelPercent = dLevel;
    stLevel.dAfter = dAfter;
    stLevels.listLevels.push_back(stLevel);
  }
  JudgeLevels(stLevels);
  return stLevels;
}

} // namespace

TEST(Levels, BeyondTheGoodOnesThereIsARangeAndAnAdvice)
{
  const SLevels stLevels = MakeLevels({{93, 0.7}, {50, 0.02}, {70, 0.09}, {20, 0.05}, {5, 0.3}});
  ASSERT_EQ(stLevels.nBest, 2U);
  EXPECT_DOUBLE_EQ(stLevels.dLimit, 0.1);
  const QString strAdvice = AdviseLevel(stLevels);
  EXPECT_TRUE(strAdvice.contains("from 20 to 70 %")) << strAdvice.toStdString();
  EXPECT_TRUE(strAdvice.contains("best at 50 %")) << strAdvice.toStdString();
  EXPECT_TRUE(strAdvice.contains("near 49 %")) << strAdvice.toStdString();
  EXPECT_TRUE(strAdvice.contains("no place for a table by level")) << strAdvice.toStdString();
}

TEST(Levels, AFlatThatIsGoodAtOneLevelAloneIsNotGivenARange)
{
  const QString strAdvice = AdviseLevel(MakeLevels({{20, 0.5}, {48, 0.02}, {93, 0.7}}));
  EXPECT_TRUE(strAdvice.contains("good enough at 48 % of full scale alone.")) << strAdvice.toStdString();
  EXPECT_FALSE(strAdvice.contains("from 48")) << strAdvice.toStdString();
}

TEST(Levels, AFlatThatIsGoodEverywhereNeedsNoAdvice)
{
  EXPECT_TRUE(AdviseLevel(MakeLevels({{10, 0.3}, {90, 0.5}})).contains("good enough for all levels from 10 to 90 %"));
  EXPECT_TRUE(AdviseLevel(MakeLevels({{10, 0.3}})).contains("other exposures"));
}

TEST(Levels, FramesOfOneFolderAreOneLevelAndAResponseThatBendsIsFound)
{
  const CRecording recording;
  recording.Write(4, 6);
  // The same frames of a darker exposure, of pixels whose response bends each in its own way.
  ASSERT_TRUE(QDir(recording.GetFolder()).mkdir("low"));
  for (uint32_t nFrame = 0; nFrame < 4; ++nFrame) {
    std::vector<uint8_t> listFrame = recording.MakeBright(50 + nFrame);
    auto *pSamples = reinterpret_cast<uint16_t *>(listFrame.data());
    for (std::size_t n = 0; n < listFrame.size() / 2; ++n) {
      pSamples[n] = static_cast<uint16_t>(pSamples[n] / 4 * (100 + n * 7919 % 11) / 100);
    }
    WriteBytes(recording.Path(QStringLiteral("low/low_%1.raw").arg(nFrame)),
               QByteArray(reinterpret_cast<const char *>(listFrame.data()), static_cast<int>(listFrame.size())));
  }
  const QStringList listFormat = {"--raw", "64x48:Mono12"};
  for (const char *pFolder : {"dark", "bright"}) {
    ASSERT_EQ(
      RunTool({"convert", recording.Path(pFolder), "--to", "raw", "-o", recording.Path(pFolder) + "_raw"}).nExitCode,
      0);
  }
  ASSERT_EQ(RunTool(QStringList{"make", "--dark", recording.Path("dark_raw"), "--bright", recording.Path("bright_raw"),
                                "-o", recording.Path("flat.ffc")} +
                    listFormat)
              .nExitCode,
            0);
  const QStringList listCheck = QStringList{"check",
                                            recording.Path("flat.ffc"),
                                            recording.Path("bright_raw"),
                                            recording.Path("low"),
                                            "--dark",
                                            recording.Path("dark_raw"),
                                            "--levels",
                                            "--json"} +
                                listFormat;
  const SToolResult stResult = RunTool(listCheck);
  ASSERT_EQ(stResult.nExitCode, 0) << stResult.byteErrors.constData();
  const QJsonArray listLevels = stResult.GetObjects().front()["levels"].toArray();
  ASSERT_EQ(listLevels.size(), 2);
  EXPECT_EQ(listLevels[0].toObject()["name"].toString(), "low");
  EXPECT_EQ(listLevels[0].toObject()["frames"].toInt(), 4);
  EXPECT_FALSE(listLevels[0].toObject()["good"].toBool());
  EXPECT_TRUE(listLevels[1].toObject()["good"].toBool());
  EXPECT_EQ(RunTool(listCheck + QStringList{"--limit", "prnu-high-pass=0.01"}).nExitCode, 4);
}

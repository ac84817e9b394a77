#include "quality/nonuniformity.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include <gtest/gtest.h>

#include "quality/deviationhistogram.h"
#include "quality/nonuniformityreport.h"
#include "quality/spectrogram.h"
#include "tests/quality/slownonuniformity.h"
#include "tests/quality/syntheticscene.h"

using namespace ffc::quality;
using ffc::genapi::EColorLayout;

namespace {

constexpr double RELATIVE = 1e-9;

/// Pattern of rows, columns, pixels and shading.
double GetLevel(uint32_t nColumn, uint32_t nLine)
{
  const double dPixel = static_cast<double>((nColumn * 7919U + nLine * 104729U + nColumn * nLine * 31U) % 1009U) / 50.0;
  return 800.0 + 3.0 * nColumn + 0.2 * nLine * nLine + (nColumn % 3U) * 9.0 + (nLine % 5U) * 6.0 + dPixel;
}

struct SSample {
  SSyntheticScene stScene;
  std::vector<TestFrame> listBright;
  std::vector<TestFrame> listDark;

  SSample(uint32_t nWidth, uint32_t nHeight)
  {
    stScene.nWidth = nWidth;
    stScene.nHeight = nHeight;
    stScene.dNoise = 8;
    stScene.fnLevel = GetLevel;
    listBright = stScene.MakeFrames(4, 1);
    stScene.dNoise = 3;
    stScene.fnLevel = [](uint32_t nColumn, uint32_t nLine) { return 60 + GetLevel(nLine, nColumn) / 40; };
    listDark = stScene.MakeFrames(3, 2);
  }

  CFrameStack MakeStack(const std::vector<TestFrame> &listFrames, EColorLayout eLayout,
                        EHighPass eHighPass = EHighPass::Release4) const
  {
    CFrameStack stack;
    stack.Prepare(stScene.nWidth, stScene.nHeight, stScene.nBitDepth);
    stack.AlsoFilter(eLayout, eHighPass);
    for (const TestFrame &frame : listFrames) {
      const std::vector<uint8_t> listBytes = PackFrame(frame, stScene.nBitDepth);
      EXPECT_TRUE(stack.Add(listBytes.data(), listBytes.size()));
    }
    return stack;
  }

  /// The pixels of one channel.
  std::vector<SlowImage> Cut(const std::vector<TestFrame> &listFrames, const SChannel &stChannel) const
  {
    std::vector<SlowImage> listImages;
    for (const TestFrame &frame : listFrames) {
      SlowImage image;
      for (uint32_t nLine = stChannel.nFirstLine; nLine < stScene.nHeight; nLine += stChannel.nStep) {
        image.emplace_back();
        for (uint32_t nColumn = stChannel.nFirstColumn; nColumn < stScene.nWidth; nColumn += stChannel.nStep) {
          image.back().push_back(frame[nLine * stScene.nWidth + nColumn]);
        }
      }
      listImages.push_back(image);
    }
    return listImages;
  }
};

void ExpectEqual(const SSpatialVariances &stFast, const SSlowVariances &stSlow)
{
  const double dTolerance = RELATIVE * stSlow.dMeasured;
  EXPECT_NEAR(stFast.dTemporal, stSlow.dTemporal, RELATIVE * stSlow.dTemporal);
  EXPECT_NEAR(stFast.dMeasured, stSlow.dMeasured, dTolerance);
  EXPECT_NEAR(stFast.dTotal, stSlow.dTotal, dTolerance);
  EXPECT_NEAR(stFast.dRow, stSlow.dRow, dTolerance);
  EXPECT_NEAR(stFast.dColumn, stSlow.dColumn, dTolerance);
  EXPECT_NEAR(stFast.dPixel, stSlow.dPixel, dTolerance);
}

double GetRoot(double dBright, double dDark = 0)
{
  return std::sqrt(std::max(0.0, dBright - dDark));
}

void ExpectFigures(const SNonuniformity &stFast, const SSlowVariances &stBright, const SSlowVariances &stDark,
                   double dSignal)
{
  ExpectEqual(stFast.stBright, stBright);
  ExpectEqual(stFast.stDark, stDark);
  EXPECT_NEAR(stFast.dSignal, dSignal, RELATIVE * dSignal);
  EXPECT_NEAR(stFast.stDsnu.dTotal, GetRoot(stDark.dTotal), 1e-6);
  EXPECT_NEAR(stFast.stPrnu.dTotal, 100 * GetRoot(stBright.dTotal, stDark.dTotal) / dSignal, 1e-6);
  EXPECT_NEAR(stFast.stPrnu.dRow, 100 * GetRoot(stBright.dRow, stDark.dRow) / dSignal, 1e-6);
  EXPECT_NEAR(stFast.stPrnu.dColumn, 100 * GetRoot(stBright.dColumn, stDark.dColumn) / dSignal, 1e-6);
  EXPECT_NEAR(stFast.stPrnu.dPixel, 100 * GetRoot(stBright.dPixel, stDark.dPixel) / dSignal, 1e-6);
}

std::vector<SlowImage> Filter(std::vector<SlowImage> listFrames, EHighPass eKind)
{
  for (SlowImage &frame : listFrames) {
    frame = eKind == EHighPass::Release3 ? FilterAsInRelease3Slowly(frame) : FilterSlowly(frame);
    frame = eKind == EHighPass::Release4Inner ? Crop(frame, 9) : frame;
  }
  return listFrames;
}

void ExpectSpectrogram(const std::vector<double> &listFast, const SlowImage &image)
{
  const std::vector<double> listSlow = MakeSpectrogramSlowly(image);
  ASSERT_EQ(listFast.size(), listSlow.size());
  const double dLargest = *std::max_element(listSlow.begin(), listSlow.end());
  for (std::size_t n = 0; n < listFast.size(); ++n) {
    EXPECT_NEAR(listFast[n], listSlow[n], RELATIVE * dLargest) << n;
  }
}

} // namespace

TEST(Nonuniformity, EqualsTheSlowTwinInEveryChannelWithAndWithoutTheHighPass)
{
  const SSample stSample(46, 42);
  for (const EColorLayout eLayout : {EColorLayout::Mono, EColorLayout::BayerRG, EColorLayout::BayerGB}) {
    const CFrameStack stackBright = stSample.MakeStack(stSample.listBright, eLayout);
    const CFrameStack stackDark = stSample.MakeStack(stSample.listDark, eLayout);
    const auto listPlain = MeasureNonuniformity(stackBright, stackDark, eLayout, false);
    const auto listFiltered = MeasureNonuniformity(stackBright, stackDark, eLayout, true);
    const std::vector<SChannel> listChannels = GetChannels(eLayout);
    ASSERT_EQ(listPlain.size(), eLayout == EColorLayout::Mono ? 1U : 4U);
    ASSERT_EQ(listFiltered.size(), listPlain.size());
    for (std::size_t n = 0; n < listChannels.size(); ++n) {
      SCOPED_TRACE(listPlain[n].strName);
      const auto listBright = stSample.Cut(stSample.listBright, listChannels[n]);
      const auto listDark = stSample.Cut(stSample.listDark, listChannels[n]);
      const SSlowVariances stBright = MeasureVariancesSlowly(listBright);
      const SSlowVariances stDark = MeasureVariancesSlowly(listDark);
      ExpectFigures(listPlain[n], stBright, stDark, stBright.dMean - stDark.dMean);
      ExpectFigures(listFiltered[n], MeasureVariancesSlowly(Filter(listBright, EHighPass::Release4)),
                    MeasureVariancesSlowly(Filter(listDark, EHighPass::Release4)), stBright.dMean - stDark.dMean);
    }
  }
}

TEST(Nonuniformity, EqualsTheSlowTwinWithEveryKindOfHighPass)
{
  const SSample stSample(31, 26);
  for (const EHighPass eKind : {EHighPass::Release4, EHighPass::Release4Inner, EHighPass::Release3}) {
    SCOPED_TRACE(GetHighPassName(eKind));
    const auto listFigures =
      MeasureNonuniformity(stSample.MakeStack(stSample.listBright, EColorLayout::Mono, eKind),
                           stSample.MakeStack(stSample.listDark, EColorLayout::Mono, eKind), EColorLayout::Mono, true);
    ASSERT_EQ(listFigures.size(), 1U);
    const SChannel stChannel = GetChannels(EColorLayout::Mono)[0];
    ExpectEqual(listFigures[0].stBright,
                MeasureVariancesSlowly(Filter(stSample.Cut(stSample.listBright, stChannel), eKind)));
  }
}

TEST(Nonuniformity, RunningSumsDriftNowhereFromTheDirectFormula)
{
  // Large and small values, with fractions, over many steps of each sum.
  constexpr uint32_t WIDTH = 400;
  constexpr uint32_t HEIGHT = 61;
  SlowImage image(HEIGHT, std::vector<double>(WIDTH));
  for (uint32_t nLine = 0; nLine < HEIGHT; ++nLine) {
    for (uint32_t nColumn = 0; nColumn < WIDTH; ++nColumn) {
      image[nLine][nColumn] = GetLevel(nColumn, nLine) / 7 + (nColumn > 20 && nColumn < 30 ? 60000.1 : 0);
    }
  }
  const SlowImage slow = FilterSlowly(image);
  CHighPass highPass(EHighPass::Release4, WIDTH, HEIGHT);
  const auto fnRead = [&](uint32_t nLine, double *pLine) {
    std::copy(image[nLine].begin(), image[nLine].end(), pLine);
  };
  for (int nRun = 0; nRun < 2; ++nRun) {
    uint32_t nLines = 0;
    highPass.Run(fnRead, [&](uint32_t nLine, const double *pLine) {
      EXPECT_EQ(nLine, nLines++);
      for (uint32_t nColumn = 0; nColumn < WIDTH; ++nColumn) {
        ASSERT_NEAR(pLine[nColumn], slow[nLine][nColumn], 1e-8) << nLine << ", " << nColumn;
      }
    });
    EXPECT_EQ(nLines, HEIGHT);
  }
}

TEST(Nonuniformity, AnImageSmallerThanTheFilterIsMirroredAsOftenAsItTakes)
{
  const SSample stSample(5, 4);
  const auto listFigures =
    MeasureNonuniformity(stSample.MakeStack(stSample.listBright, EColorLayout::Mono),
                         stSample.MakeStack(stSample.listDark, EColorLayout::Mono), EColorLayout::Mono, true);
  ASSERT_EQ(listFigures.size(), 1U);
  ExpectEqual(listFigures[0].stBright,
              MeasureVariancesSlowly(
                Filter(stSample.Cut(stSample.listBright, GetChannels(EColorLayout::Mono)[0]), EHighPass::Release4)));
}

TEST(Nonuniformity, NothingIsFilteredThatIsTooSmallOrWasNotPreparedForIt)
{
  const SSample stSample(18, 40);
  const auto fnMeasure = [&](const CFrameStack &stackBright, const CFrameStack &stackDark) {
    return MeasureNonuniformity(stackBright, stackDark, EColorLayout::Mono, true).size();
  };
  EXPECT_EQ(fnMeasure(stSample.MakeStack(stSample.listBright, EColorLayout::Mono, EHighPass::Release4Inner),
                      stSample.MakeStack(stSample.listDark, EColorLayout::Mono, EHighPass::Release4Inner)),
            0U);
  EXPECT_EQ(fnMeasure(stSample.stScene.MakeStack(stSample.listBright), stSample.stScene.MakeStack(stSample.listDark)),
            0U);
}

TEST(Nonuniformity, ShadingIsPartOfThePlainFigureAlone)
{
  SSyntheticScene stScene;
  stScene.nWidth = 64;
  stScene.nHeight = 48;
  stScene.fnLevel = [](uint32_t nColumn, uint32_t) { return 1000.0 + 8.0 * nColumn; };
  const std::vector<TestFrame> listBright = stScene.MakeFrames(2, 1);
  stScene.fnLevel = [](uint32_t, uint32_t) { return 10.0; };
  const std::vector<TestFrame> listDark = stScene.MakeFrames(2, 1);
  CFrameStack stackBright = stScene.MakeStack({});
  CFrameStack stackDark = stScene.MakeStack({});
  for (auto [pStack, pFrames] : {std::pair(&stackBright, &listBright), std::pair(&stackDark, &listDark)}) {
    pStack->AlsoFilter(EColorLayout::Mono, EHighPass::Release4Inner);
    for (const TestFrame &frame : *pFrames) {
      const std::vector<uint8_t> listBytes = PackFrame(frame, stScene.nBitDepth);
      pStack->Add(listBytes.data(), listBytes.size());
    }
  }
  EXPECT_GT(MeasureNonuniformity(stackBright, stackDark, EColorLayout::Mono, false)[0].stPrnu.dTotal, 10.0);
  EXPECT_NEAR(MeasureNonuniformity(stackBright, stackDark, EColorLayout::Mono, true)[0].stPrnu.dTotal, 0.0, 1e-6);
}

TEST(Nonuniformity, SpectrogramsOfAnyLengthAreThoseOfTheDefinition)
{
  for (const auto &[nWidth, nHeight] : {std::pair(16U, 12U), std::pair(17U, 9U), std::pair(1U, 5U)}) {
    const SSample stSample(nWidth, nHeight);
    const SChannel stChannel = GetChannels(EColorLayout::Mono)[0];
    const SDeviationImage stImage =
      MakeDeviationImage(stSample.MakeStack(stSample.listBright, EColorLayout::Mono), nullptr, stChannel, nullptr);
    const SlowImage mean = AverageSlowly(stSample.Cut(stSample.listBright, stChannel));
    ExpectSpectrogram(MakeHorizontalSpectrogram(stImage), mean);
    ExpectSpectrogram(MakeVerticalSpectrogram(stImage), Transpose(mean));
  }
}

TEST(Nonuniformity, SpectrogramsOfPrnuAreThoseOfTheDefinitionInEveryChannelWithTheHighPass)
{
  const SSample stSample(34, 26);
  const EHighPass eHighPass = EHighPass::Release4;
  for (const EColorLayout eLayout : {EColorLayout::Mono, EColorLayout::BayerGR}) {
    const CFrameStack stackBright = stSample.MakeStack(stSample.listBright, eLayout);
    const CFrameStack stackDark = stSample.MakeStack(stSample.listDark, eLayout);
    for (const SChannel &stChannel : GetChannels(eLayout)) {
      const SDeviationImage stImage = MakeDeviationImage(stackBright, &stackDark, stChannel, &eHighPass);
      SlowImage image = AverageSlowly(stSample.Cut(stSample.listBright, stChannel));
      const SlowImage dark = AverageSlowly(stSample.Cut(stSample.listDark, stChannel));
      for (std::size_t nRow = 0; nRow < image.size(); ++nRow) {
        std::transform(image[nRow].begin(), image[nRow].end(), dark[nRow].begin(), image[nRow].begin(), std::minus<>());
      }
      image = FilterSlowly(image);
      ExpectSpectrogram(MakeHorizontalSpectrogram(stImage), image);
      ExpectSpectrogram(MakeVerticalSpectrogram(stImage), Transpose(image));
    }
  }
}

TEST(Nonuniformity, InWordsAPartThatTheNoiseHidesIsNoFigure)
{
  EXPECT_EQ(DescribeParts({0.43, 0.02, 0.05, 0.42}, QStringLiteral("%")),
            QStringLiteral("0.430 % (rows 0.020, columns 0.050, pixels 0.420)"));
  // A row part greater than the total, as the others' variances are negative.
  EXPECT_EQ(DescribeParts({0.01, 0.03, 0, 0}, QStringLiteral("DN")),
            QStringLiteral("0.010 DN (rows 0.030, columns below noise, pixels below noise)"));
  EXPECT_EQ(DescribeParts({0, 0, 0, 0.1}, QStringLiteral("DN")),
            QStringLiteral("below noise (rows below noise, columns below noise, pixels 0.100)"));
}

TEST(DeviationHistogram, EqualsTheSlowTwinThatCountsInWholeNumbers)
{
  SSample stSample(29, 23);
  const SChannel stChannel = GetChannels(EColorLayout::Mono)[0];
  for (uint32_t nFrames = 1; nFrames <= 7; ++nFrames) {
    SCOPED_TRACE(nFrames);
    stSample.stScene.dNoise = 5;
    const std::vector<TestFrame> listFrames = stSample.stScene.MakeFrames(nFrames, nFrames);
    const CFrameStack stack = stSample.MakeStack(listFrames, EColorLayout::Mono);
    const SDeviationImage stImage = MakeDeviationImage(stack, nullptr, stChannel, nullptr);
    const SDeviationHistogram stFast = MakeLogarithmicHistogram(stImage);
    const SSlowHistogram stSlow = MakeHistogramSlowly(stSample.Cut(listFrames, stChannel));
    EXPECT_NEAR(stFast.dFirst, stSlow.dFirst, RELATIVE * std::abs(stSlow.dFirst));
    EXPECT_NEAR(stFast.dWidth, stSlow.dWidth, RELATIVE * stSlow.dWidth);
    EXPECT_EQ(stFast.listCounts, stSlow.listCounts);
    ASSERT_EQ(stFast.listNormal.size(), stSlow.listNormal.size());
    for (std::size_t n = 0; n < stSlow.listNormal.size(); ++n) {
      EXPECT_NEAR(stFast.listNormal[n], stSlow.listNormal[n], 1e-6 * stSlow.listNormal[n]) << n;
    }
    const SDeviationHistogram stAccumulated = MakeAccumulatedHistogram(stImage);
    for (std::size_t n = 0; n < stAccumulated.listCounts.size(); ++n) {
      const double dLeast = stAccumulated.dFirst + static_cast<double>(n) * stAccumulated.dWidth;
      EXPECT_EQ(stAccumulated.listCounts[n],
                std::count_if(stImage.listValues.begin(), stImage.listValues.end(),
                              [&](double dValue) { return std::abs(dValue) >= dLeast - 1e-9; }))
        << n;
    }
  }
}

TEST(DeviationHistogram, CountsEachPixelOnceAndKeepsOutliersInSight)
{
  SDeviationImage stImage{40, 25, 4, std::vector<double>(1000, 0.0)};
  for (std::size_t n = 0; n < stImage.listValues.size(); ++n) {
    stImage.listValues[n] = (static_cast<double>(n % 41) - 20) / 4;
  }
  stImage.listValues[500] = 300;
  const SDeviationHistogram stLogarithmic = MakeLogarithmicHistogram(stImage);
  EXPECT_LE(stLogarithmic.listCounts.size(), 257U);
  EXPECT_EQ(std::accumulate(stLogarithmic.listCounts.begin(), stLogarithmic.listCounts.end(), uint64_t{0}), 1000U);
  EXPECT_EQ(stLogarithmic.listCounts.back(), 1U);
  // 1220 steps of a quarter in bins of 5.
  EXPECT_DOUBLE_EQ(stLogarithmic.dWidth, 1.25);
  const SDeviationHistogram stAccumulated = MakeAccumulatedHistogram(stImage);
  EXPECT_EQ(stAccumulated.listCounts.front(), 1000U);
  EXPECT_EQ(stAccumulated.listCounts.back(), 1U);
  EXPECT_TRUE(std::is_sorted(stAccumulated.listCounts.rbegin(), stAccumulated.listCounts.rend()));
  EXPECT_EQ(CountOutliers(stImage, 5.5), 1U);
}

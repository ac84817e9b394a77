// What holds for the weighted reference of any frames.
#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "tests/reference/failingallocations.h"
#include "tests/reference/sensor.h"

using namespace ffc::test;
using namespace ffc::reference;

namespace {

/// 100 DN in the mean, each pixel its own.
Field MakeDarkLevels(SSensor stSensor, double dPattern)
{
  stSensor.dLevel = 100;
  stSensor.dPattern = dPattern;
  stSensor.nSeed = 9;
  return stSensor.MakeField();
}

/// One frame without light.
CSums MakeLoneDark(SSensor stSensor, const Field &levels)
{
  stSensor.dSystemGain = 0;
  stSensor.nSeed = 20;
  return CSums(stSensor, levels, 1);
}

Field Add(Field field, const Field &levels)
{
  std::transform(field.begin(), field.end(), levels.begin(), field.begin(), std::plus<>());
  return field;
}

} // namespace

TEST(WeightedReference, OneFrameHasAtMostHalfTheErrorOfTheAverage)
{
  const SSensor stSensor;
  const Field field = stSensor.MakeField();
  const CSums bright(stSensor, field, 1);
  const CSums dark(stSensor, Field(field.size()), 4);
  const SMade stMade = MakeReference(stSensor, bright, &dark);
  ASSERT_EQ(stMade.nStatus, STATUS_SUCCESS);
  EXPECT_LT(GetError(stSensor, stMade.GetSignal(stSensor), field),
            0.5 * GetError(stSensor, GetAverage(stSensor, bright), field));
  EXPECT_EQ(stMade.stResult.eNoise, ENoiseSource::AllDetail);
  EXPECT_NEAR(stMade.stResult.dNoise, 23.9, 1.5) << "of the light and of the camera, and the pattern's 6 DN";
}

TEST(WeightedReference, NoiseIsTakenAwayWhereItIsWideToo)
{
  SSensor stSensor;
  stSensor.dPattern = 0;
  const Field field(stSensor.GetPixelCount(), stSensor.dLevel);
  const CSums bright(stSensor, field, 1);
  const CSums dark(stSensor, Field(field.size()), 4);
  const Field signal = MakeReference(stSensor, bright, &dark).GetSignal(stSensor);
  const Field average = GetAverage(stSensor, bright);
  // Blocks of 16 x 16: what the finer scales take away does not show in them.
  SSensor stBlocks = stSensor;
  stBlocks.nWidth /= 16;
  stBlocks.nHeight /= 16;
  const auto averageBlocks = [&](const Field &from) {
    Field blocks(stBlocks.GetPixelCount());
    for (std::size_t n = 0; n < from.size(); ++n) {
      blocks[n / stSensor.nWidth / 16 * stBlocks.nWidth + n % stSensor.nWidth / 16] += from[n] / 256;
    }
    return blocks;
  };
  const double dBefore = GetError(stBlocks, averageBlocks(average), averageBlocks(field));
  const double dAfter = GetError(stBlocks, averageBlocks(signal), averageBlocks(field));
  EXPECT_LT(dAfter, 0.5 * dBefore) << dAfter << " of " << dBefore;
}

TEST(WeightedReference, FewFramesAreNeverWorseThanTheAverageWhateverThePattern)
{
  for (const double dPattern : {0.0, 0.002, 0.01, 0.03}) {
    SSensor stSensor;
    stSensor.dPattern = dPattern;
    const Field field = stSensor.MakeField();
    const CSums dark(stSensor, Field(field.size()), 4);
    for (const uint32_t nFrames : {2U, 6U}) {
      const CSums bright(stSensor, field, nFrames);
      const SMade stMade = MakeReference(stSensor, bright, &dark);
      EXPECT_LT(GetError(stSensor, stMade.GetSignal(stSensor), field),
                1.01 * GetError(stSensor, GetAverage(stSensor, bright), field))
        << dPattern << ", " << nFrames << " frames";
      EXPECT_EQ(stMade.stResult.eNoise, ENoiseSource::Differences);
      EXPECT_NEAR(stMade.stResult.dNoise, 23.2, 0.8);
    }
  }
}

TEST(WeightedReference, ManyFramesGiveTheAverage)
{
  SSensor stSensor;
  stSensor.nWidth = 64;
  stSensor.nHeight = 48;
  stSensor.dSystemGain = 0.02;
  stSensor.dPattern = 0.01;
  const Field field = stSensor.MakeField();
  const CSums bright(stSensor, field, 200);
  const SMade stMade = MakeReference(stSensor, bright, nullptr);
  double dLargest = 0;
  for (std::size_t n = 0; n < field.size(); ++n) {
    dLargest = std::max(dLargest, std::abs(stMade.listBright[n] / 16.0 - bright.GetValues()[n] / 200.0));
  }
  EXPECT_LT(dLargest, 1.0) << "DN, of a pattern that reaches 60";
  EXPECT_GT(stMade.stResult.dDetailWeight, 0.98);
}

TEST(WeightedReference, AConstantFieldStaysWhatItIs)
{
  SSensor stSensor;
  stSensor.nWidth = 70;
  stSensor.nHeight = 41;
  for (const uint32_t nBitDepth : {8U, 12U, 16U}) {
    stSensor.nBitDepth = nBitDepth;
    const std::vector<uint32_t> listSums(stSensor.GetPixelCount(), 3 * 200);
    std::vector<uint16_t> listBright(listSums.size());
    SReferenceInput stInput;
    stInput.nWidth = stSensor.nWidth;
    stInput.nHeight = stSensor.nHeight;
    stInput.nBitDepth = nBitDepth;
    stInput.stBright = {listSums.data(), 3, 0, nullptr};
    SReferenceResult stResult;
    ASSERT_EQ(MakeWeightedReference(stInput, listBright.data(), nullptr, stResult), STATUS_SUCCESS);
    const std::vector<uint16_t> listExpected(listSums.size(), static_cast<uint16_t>(200U << (16 - nBitDepth)));
    EXPECT_EQ(listBright, listExpected);
    // Averages of which smoothing leaves a rest too small for a detail.
    std::vector<uint16_t> listDark(listSums.size());
    stInput.stDark = {listSums.data(), 3, 0, nullptr};
    ASSERT_EQ(MakeWeightedReference(stInput, listBright.data(), listDark.data(), stResult), STATUS_SUCCESS);
    EXPECT_EQ(listDark, listExpected);
    EXPECT_EQ(listBright, listExpected);
  }
}

TEST(WeightedReference, TheEndsOfTheScaleStayWhatTheyAre)
{
  SSensor stSensor;
  stSensor.nWidth = 40;
  stSensor.nHeight = 30;
  stSensor.nBitDepth = 16;
  stSensor.dDark = 0;
  stSensor.dReadNoise = 0;
  stSensor.dSystemGain = 0;
  for (const double dLight : {0.0, 65535.0}) {
    for (const uint32_t nFrames : {1U, 2U}) {
      const SMade stMade =
        MakeReference(stSensor, CSums(stSensor, Field(stSensor.GetPixelCount(), dLight), nFrames), nullptr);
      ASSERT_EQ(stMade.nStatus, STATUS_SUCCESS);
      EXPECT_EQ(stMade.listBright, std::vector<uint16_t>(stSensor.GetPixelCount(), static_cast<uint16_t>(dLight)));
      EXPECT_EQ(stMade.stResult.dNoise, 0);
    }
  }
}

TEST(WeightedReference, FramesWithoutLightAreAllNoise)
{
  SSensor stSensor;
  const CSums dark(stSensor, Field(stSensor.GetPixelCount()), 4);
  stSensor.nSeed = 2;
  stSensor.dDark = 95; // brighter frames would have a level above the dark one
  for (const uint32_t nFrames : {1U, 2U}) {
    const SMade stMade = MakeReference(stSensor, CSums(stSensor, Field(stSensor.GetPixelCount()), nFrames), &dark);
    ASSERT_EQ(stMade.nStatus, STATUS_SUCCESS);
    EXPECT_NEAR(stMade.stResult.dNoise, 3, 0.3);
    EXPECT_LT(stMade.stResult.dDetailWeight, 0.2);
  }
}

TEST(WeightedReference, SaturatedFramesStaySaturated)
{
  SSensor stSensor;
  stSensor.dLevel = 6000;
  const Field field = stSensor.MakeField();
  const SMade stMade = MakeReference(stSensor, CSums(stSensor, field, 2), nullptr);
  ASSERT_EQ(stMade.nStatus, STATUS_SUCCESS);
  EXPECT_EQ(stMade.listBright, std::vector<uint16_t>(field.size(), 4095U * 16));
}

TEST(WeightedReference, EveryNumberOfThreadsGivesTheSame)
{
  SSensor stSensor;
  stSensor.nWidth = 600;
  stSensor.nHeight = 300;
  // Each tile has edges, and not where another one has them: nothing of a tile is left for the next.
  stSensor.fnStructure = [](uint32_t nX, uint32_t nY) {
    return std::hypot(nX % 70 - 35.0, nY % 70 - 35.0) < 9 ? 0.9 : 1.0;
  };
  const Field field = stSensor.MakeField();
  const CSums bright(stSensor, field, 2);
  const CSums dark(stSensor, Field(field.size()), 1);
  const SMade stOne = MakeReference(stSensor, bright, &dark, 1);
  const SMade stFive = MakeReference(stSensor, bright, &dark, 5);
  EXPECT_EQ(stOne.listBright, stFive.listBright);
  EXPECT_EQ(stOne.listDark, stFive.listDark);
  EXPECT_EQ(stOne.stResult.dDetailWeight, stFive.stResult.dDetailWeight);
}

TEST(WeightedReference, TilesLeaveNoSeamsAndAStructureMayLieAnywhere)
{
  SSensor stSensor;
  stSensor.nWidth = 520;
  stSensor.nHeight = 280;
  const auto fnDistance = [](uint32_t nX, uint32_t nY, double dX) { return std::hypot(nX - dX, nY - 130.0); };
  // Two equal spots, the second one across two tiles.
  stSensor.fnStructure = [&](uint32_t nX, uint32_t nY) {
    const double dDistance = std::min(fnDistance(nX, nY, 128), fnDistance(nX, nY, 256));
    return 1 - 0.08 * std::exp(-dDistance * dDistance / 50);
  };
  const Field field = stSensor.MakeField();
  const CSums bright(stSensor, field, 2);
  const CSums dark(stSensor, Field(field.size()), 4);
  const Field signal = MakeReference(stSensor, bright, &dark).GetSignal(stSensor);
  const double dError = GetError(stSensor, signal, field);
  const auto fnAtSeam = [](uint32_t nX, uint32_t nY) { return nY > 160 && nY < 250 && nX >= 252 && nX < 260; };
  EXPECT_NEAR(GetError(stSensor, signal, field, fnAtSeam) / dError, 1, 0.2);
  const double dWithin =
    GetError(stSensor, signal, field, [&](uint32_t nX, uint32_t nY) { return fnDistance(nX, nY, 128) < 10; });
  const double dAcross =
    GetError(stSensor, signal, field, [&](uint32_t nX, uint32_t nY) { return fnDistance(nX, nY, 256) < 10; });
  EXPECT_NEAR(dAcross / dWithin, 1, 0.3);
}

TEST(WeightedReference, SamplesThatStandFurtherLeftGiveTheSame)
{
  const SSensor stSensor;
  const Field field = stSensor.MakeField();
  const Field dark(field.size());
  const CSums rightDark(stSensor, dark, 3);
  const CSums leftDark(stSensor, dark, 3, 4);
  const SMade stRight = MakeReference(stSensor, CSums(stSensor, field, 2), &rightDark);
  const SMade stLeft = MakeReference(stSensor, CSums(stSensor, field, 2, 4), &leftDark);
  EXPECT_EQ(stRight.listBright, stLeft.listBright);
  EXPECT_EQ(stRight.listDark, stLeft.listDark);
  EXPECT_EQ(stRight.stResult.dNoise, stLeft.stResult.dNoise);
}

TEST(WeightedReference, NoiseOfLinesThatStandsFurtherLeftIsTheSameToo)
{
  constexpr uint32_t WIDTH = 64;
  constexpr uint32_t HEIGHT = 48;
  std::vector<std::vector<uint16_t>> listResults;
  for (const uint32_t nShift : {0U, 4U}) {
    std::vector<uint32_t> listSums(std::size_t{WIDTH} * HEIGHT);
    CNoiseMeter meter;
    std::vector<uint16_t> listFormer;
    for (uint32_t nFrame = 0; nFrame < 3; ++nFrame) {
      std::vector<uint16_t> listFrame(listSums.size());
      for (uint32_t n = 0; n < listFrame.size(); ++n) {
        const uint32_t nLineNoise = (n / WIDTH * 7 + nFrame * 11) % 23;
        listFrame[n] = static_cast<uint16_t>((100 + nLineNoise + (n * 2654435761U >> 16U) % 5) << nShift);
        listSums[n] += listFrame[n];
      }
      if (nFrame > 0) {
        meter.Add(listFormer.data(), listFrame.data(), WIDTH, HEIGHT, 2);
      }
      listFormer = listFrame;
    }
    SReferenceInput stInput;
    stInput.nWidth = WIDTH;
    stInput.nHeight = HEIGHT;
    stInput.nBitDepth = 12;
    stInput.stBright = stInput.stDark = {listSums.data(), 3, nShift, &meter};
    std::vector<uint16_t> listBright(listSums.size());
    std::vector<uint16_t> listDark(listSums.size());
    SReferenceResult stResult;
    ASSERT_EQ(MakeWeightedReference(stInput, listBright.data(), listDark.data(), stResult), STATUS_SUCCESS);
    listResults.push_back(listBright);
    listResults.push_back(listDark);
  }
  EXPECT_EQ(listResults[0], listResults[2]);
  EXPECT_EQ(listResults[1], listResults[3]);
}

TEST(WeightedReference, PlanesOfAMosaicDoNotMix)
{
  SSensor stSensor;
  stSensor.bMosaic = true;
  stSensor.fnStructure = [](uint32_t nX, uint32_t nY) { return nX % 2 == 1 && nY % 2 == 0 ? 0.5 : 1.0; };
  const Field field = stSensor.MakeField();
  const CSums bright(stSensor, field, 1);
  const CSums dark(stSensor, Field(field.size()), 2);
  const SMade stMade = MakeReference(stSensor, bright, &dark);
  const auto fnDim = [](uint32_t nX, uint32_t nY) { return nX % 2 == 1 && nY % 2 == 0; };
  EXPECT_LT(GetError(stSensor, stMade.GetSignal(stSensor), field, fnDim),
            0.5 * GetError(stSensor, GetAverage(stSensor, bright), field, fnDim));
}

TEST(WeightedReference, TwoLevelsInOneFrameTellNoiseFromPattern)
{
  SSensor stSensor;
  stSensor.nWidth = 512;
  stSensor.nHeight = 384;
  stSensor.dPattern = 0.01;
  stSensor.dSystemGain = 0.05;
  stSensor.bMosaic = true;
  stSensor.fnStructure = [](uint32_t nX, uint32_t nY) { return (nX + nY) % 2 == 1 ? 0.4 : 1.0; };
  const Field field = stSensor.MakeField();
  const CSums bright(stSensor, field, 1);
  const CSums dark(stSensor, Field(field.size()), 4);
  const SMade stMade = MakeReference(stSensor, bright, &dark);
  EXPECT_EQ(stMade.stResult.eNoise, ENoiseSource::PhotonTransfer);
  EXPECT_NEAR(stMade.stResult.dNoise, 10.4, 1);
  EXPECT_LT(GetError(stSensor, stMade.GetSignal(stSensor), field),
            GetError(stSensor, GetAverage(stSensor, bright), field));
}

TEST(WeightedReference, OneFrameKeepsThePatternOfASensorThatHasMoreOfItThanNoiseWhereShadingTellsThemApart)
{
  SSensor stSensor;
  stSensor.nWidth = 400;
  stSensor.nHeight = 300;
  stSensor.dSystemGain = 0.027;
  stSensor.fnStructure = [](uint32_t nX, uint32_t nY) {
    return 1 - 0.4 * (std::pow(nX / 400.0 - 0.5, 2) + std::pow(nY / 300.0 - 0.5, 2));
  };
  for (const double dPattern : {0.01, 0.02}) {
    stSensor.dPattern = dPattern;
    const Field field = stSensor.MakeField();
    const CSums bright(stSensor, field, 1);
    const CSums dark(stSensor, Field(field.size()), 2);
    const SMade stMade = MakeReference(stSensor, bright, &dark);
    EXPECT_EQ(stMade.stResult.eNoise, ENoiseSource::PhotonTransfer) << dPattern;
    EXPECT_LT(GetError(stSensor, stMade.GetSignal(stSensor), field),
              1.01 * GetError(stSensor, GetAverage(stSensor, bright), field))
      << dPattern;
  }
}

TEST(WeightedReference, PixelsFarOffAreNoLevelThatTellsNoiseFromPattern)
{
  SSensor stSensor;
  stSensor.fnStructure = [](uint32_t nX, uint32_t nY) { return nX % 32 == 13 && nY % 32 == 17 ? 1.36 : 1.0; };
  const Field field = stSensor.MakeField();
  const CSums bright(stSensor, field, 1);
  const CSums dark(stSensor, Field(field.size()), 2);
  EXPECT_EQ(MakeReference(stSensor, bright, &dark).stResult.eNoise, ENoiseSource::AllDetail);
}

TEST(WeightedReference, OneFrameWithLessDetailThanLightHasNoiseKeepsHalfOfIt)
{
  SSensor stSensor;
  stSensor.dReadNoise = 1;
  stSensor.fnStructure = [](uint32_t nX, uint32_t nY) { // no shading at all
    return 1 / (1 - 0.1 * (std::pow(nX / 128.0 - 0.5, 2) + std::pow(nY / 96.0 - 0.5, 2)));
  };
  for (const auto &[dPattern, dSystemGain] : {std::pair{0.0032, 0.0005}, std::pair{0.0001, 0.018}}) {
    stSensor.dPattern = dPattern;
    stSensor.dSystemGain = dSystemGain;
    const Field field = stSensor.MakeField();
    const CSums bright(stSensor, field, 1);
    const CSums dark(stSensor, Field(field.size()), 2);
    const SMade stMade = MakeReference(stSensor, bright, &dark);
    EXPECT_EQ(stMade.stResult.eNoise, ENoiseSource::HalfDetail) << dPattern;
    EXPECT_LT(GetError(stSensor, stMade.GetSignal(stSensor), field), 0.0018) << "pattern and noise are 0.32 % together";
  }
}

TEST(WeightedReference, StatedCameraDataTellNoiseFromPatternToo)
{
  SSensor stSensor;
  stSensor.dPattern = 0.02;
  const Field field = stSensor.MakeField();
  const CSums bright(stSensor, field, 1);
  SReferenceInput stInput = MakeInput(stSensor, bright);
  stInput.stCamera = SCameraNoise{0.27, 3};
  SMade stMade;
  stMade.listBright.resize(field.size());
  ASSERT_EQ(MakeWeightedReference(stInput, stMade.listBright.data(), nullptr, stMade.stResult), STATUS_SUCCESS);
  EXPECT_EQ(stMade.stResult.eNoise, ENoiseSource::Camera);
  EXPECT_GT(stMade.stResult.dDetailWeight, 0.6) << "without them it would be next to nothing";
  EXPECT_NEAR(stMade.stResult.dNoise, 23.8, 0.2) << "the dark level counts as light";

  // They also tell the noise of a dark frame that is alone.
  const CSums loneDark(stSensor, Field(field.size()), 1);
  stInput.stDark = loneDark.Get();
  stMade.listDark.resize(field.size());
  ASSERT_EQ(MakeWeightedReference(stInput, stMade.listBright.data(), stMade.listDark.data(), stMade.stResult),
            STATUS_SUCCESS);
  EXPECT_LT(GetError(stSensor, stMade.GetSignal(stSensor), field),
            GetError(stSensor, GetAverage(stSensor, bright), field));

  // The dark noise, unless told, is that of the dark frames.
  stInput.stCamera = SCameraNoise{0.27};
  ASSERT_EQ(MakeWeightedReference(stInput, stMade.listBright.data(), stMade.listDark.data(), stMade.stResult),
            STATUS_SUCCESS);
  EXPECT_NEAR(stMade.stResult.dNoise, 23.4, 0.5) << "even of one";
  const CSums dark(stSensor, Field(field.size()), 4);
  stInput.stDark = dark.Get();
  ASSERT_EQ(MakeWeightedReference(stInput, stMade.listBright.data(), stMade.listDark.data(), stMade.stResult),
            STATUS_SUCCESS);
  EXPECT_NEAR(stMade.stResult.dNoise, 23.4, 0.3);
}

TEST(WeightedReference, EightBitsAreFinerThanTheirNumbers)
{
  SSensor stSensor;
  stSensor.nBitDepth = 8;
  stSensor.dLevel = 140;
  stSensor.dDark = 5;
  stSensor.dSystemGain = 0.02;
  stSensor.dReadNoise = 0.3;
  const Field field = stSensor.MakeField();
  const CSums bright(stSensor, field, 16);
  const CSums dark(stSensor, Field(field.size()), 8);
  Field rounded = GetAverage(stSensor, bright);
  for (double &dValue : rounded) {
    dValue = std::floor(dValue);
  }
  const SMade stMade = MakeReference(stSensor, bright, &dark);
  EXPECT_LT(GetError(stSensor, stMade.GetSignal(stSensor), field), 0.7 * GetError(stSensor, rounded, field));
}

TEST(WeightedReference, ALoneDarkFrameKeepsThePatternThatTheBrightFramesHaveToo)
{
  SSensor stSensor;
  stSensor.nWidth = 256;
  stSensor.nHeight = 256;
  const Field levels = MakeDarkLevels(stSensor, 0.1);
  const CSums dark = MakeLoneDark(stSensor, levels);
  const SMade stMade = MakeReference(stSensor, CSums(stSensor, Add(stSensor.MakeField(), levels), 4), &dark);
  double dSum = 0;
  for (std::size_t n = 0; n < levels.size(); ++n) {
    dSum += std::pow(stMade.listDark[n] / 16.0 - stSensor.dDark - levels[n], 2) / static_cast<double>(levels.size());
  }
  EXPECT_LT(std::sqrt(dSum), 5) << "DN, of a pattern of 10";
}

TEST(WeightedReference, ALoneDarkFrameOfManyDarkLevelsIsNoWorseThanItself)
{
  SSensor stSensor;
  stSensor.nWidth = 192;
  stSensor.nHeight = 160;
  Field levels = MakeDarkLevels(stSensor, 0.6);
  for (double &dLevel : levels) {
    dLevel = std::max(dLevel - 80, -90.0); // skewed, as dark levels are
  }
  const CSums dark = MakeLoneDark(stSensor, levels);
  const Field field = stSensor.MakeField();
  for (const uint32_t nFrames : {1U, 16U}) {
    const CSums bright(stSensor, Add(field, levels), nFrames);
    Field average(field.size());
    for (std::size_t n = 0; n < average.size(); ++n) {
      average[n] = static_cast<double>(bright.GetValues()[n]) / nFrames - dark.GetValues()[n];
    }
    const SMade stMade = MakeReference(stSensor, bright, &dark);
    EXPECT_LT(GetError(stSensor, stMade.GetSignal(stSensor), field), 0.9 * GetError(stSensor, average, field))
      << nFrames << " frames";
  }
}

TEST(WeightedReference, AnyShapeIsWorkedOn)
{
  for (const auto &[nWidth, nHeight] :
       {std::pair{1U, 1U}, std::pair{3U, 500U}, std::pair{300U, 2U}, std::pair{257U, 5U}}) {
    for (const bool bMosaic : {false, true}) {
      SSensor stSensor;
      stSensor.nWidth = nWidth;
      stSensor.nHeight = nHeight;
      stSensor.bMosaic = bMosaic;
      const Field field = stSensor.MakeField();
      const CSums bright(stSensor, field, 2);
      const CSums dark(stSensor, Field(field.size()), 1);
      const SMade stMade = MakeReference(stSensor, bright, &dark);
      ASSERT_EQ(stMade.nStatus, STATUS_SUCCESS);
      EXPECT_LT(GetError(stSensor, stMade.GetSignal(stSensor), field), 0.05) << nWidth << " x " << nHeight;
    }
  }
}

TEST(WeightedReference, WhatIsNoInputIsRefused)
{
  const SSensor stSensor;
  const CSums bright(stSensor, stSensor.MakeField(), 1);
  const SReferenceInput stGood = MakeInput(stSensor, bright);
  std::vector<uint16_t> listBright(stSensor.GetPixelCount());
  const auto fnStatus = [&](const std::function<void(SReferenceInput &)> &fnSpoil) {
    SReferenceInput stInput = stGood;
    fnSpoil(stInput);
    SReferenceResult stResult;
    return MakeWeightedReference(stInput, listBright.data(), nullptr, stResult);
  };
  EXPECT_EQ(fnStatus([](SReferenceInput &) {}), STATUS_SUCCESS);
  EXPECT_EQ(fnStatus([](SReferenceInput &stInput) { stInput.nWidth = 0; }), STATUS_INVALID_PARAM);
  EXPECT_EQ(fnStatus([](SReferenceInput &stInput) { stInput.nHeight = 1U << 30; }), STATUS_INVALID_PARAM);
  EXPECT_EQ(fnStatus([](SReferenceInput &stInput) { stInput.nBitDepth = 7; }), STATUS_INVALID_PARAM);
  EXPECT_EQ(fnStatus([](SReferenceInput &stInput) { stInput.nBitDepth = 17; }), STATUS_INVALID_PARAM);
  EXPECT_EQ(fnStatus([](SReferenceInput &stInput) { stInput.stBright.nFrames = 0; }), STATUS_INVALID_PARAM);
  EXPECT_EQ(fnStatus([](SReferenceInput &stInput) { stInput.stBright.pSums = nullptr; }), STATUS_INVALID_PARAM);
  EXPECT_EQ(fnStatus([](SReferenceInput &stInput) { stInput.stBright.nShift = 5; }), STATUS_INVALID_PARAM);
  EXPECT_EQ(fnStatus([](SReferenceInput &stInput) { stInput.stDark.nFrames = 1; }), STATUS_INVALID_PARAM);
  EXPECT_EQ(fnStatus([](SReferenceInput &stInput) { stInput.stDark = stInput.stBright; }), STATUS_INVALID_PARAM)
    << "no place for the dark reference";
  SReferenceResult stResult;
  EXPECT_EQ(MakeWeightedReference(stGood, nullptr, nullptr, stResult), STATUS_INVALID_PARAM);
}

TEST(WeightedReference, WhereTheNoiseIsKnownFromIsSaidInWords)
{
  EXPECT_STREQ(DescribeNoiseSource(ENoiseSource::Differences), "differences of the frames");
  EXPECT_STREQ(DescribeNoiseSource(ENoiseSource::Camera), "camera data");
  EXPECT_STREQ(DescribeNoiseSource(ENoiseSource::PhotonTransfer), "photon transfer within the frame");
  EXPECT_STREQ(DescribeNoiseSource(ENoiseSource::HalfDetail), "half of the fine detail of the one frame");
  EXPECT_STREQ(DescribeNoiseSource(ENoiseSource::AllDetail), "all fine detail of the one frame");
}

TEST(WeightedReference, OnlyMemoryLimitsImagesOfUpToAMillionColumnsOrLines)
{
  const SSensor stSensor;
  const CSums bright(stSensor, stSensor.MakeField(), 1);
  uint16_t nBright = 0;
  SReferenceInput stInput = MakeInput(stSensor, bright);
  stInput.nHeight = 1;
  // None of them has the memory to begin with: what is refused is refused before.
  for (const uint32_t nSide : {1U << 20, (1U << 20) + 1}) {
    stInput.nWidth = nSide;
    SReferenceResult stResult;
    int32_t nStatus = 0;
    {
      const CFailingAllocations failing(1);
      nStatus = MakeWeightedReference(stInput, &nBright, nullptr, stResult);
    }
    EXPECT_EQ(nStatus, nSide == 1U << 20 ? STATUS_OUT_OF_MEMORY : STATUS_INVALID_PARAM) << nSide;
  }
}

TEST(WeightedReference, WithoutMemoryItSaysSo)
{
  SSensor stSensor;
  stSensor.nWidth = 20;
  stSensor.nHeight = 10;
  const CSums bright(stSensor, stSensor.MakeField(), 1);
  const CSums dark(stSensor, Field(stSensor.GetPixelCount()), 1);
  const SReferenceInput stInput = MakeInput(stSensor, bright, &dark);
  std::vector<uint16_t> listBright(stSensor.GetPixelCount());
  std::vector<uint16_t> listDark(stSensor.GetPixelCount());
  bool bFailed = true;
  for (int32_t nFailing = 1; bFailed; nFailing += 4 + nFailing / 4) {
    SReferenceResult stResult;
    int32_t nStatus = 0;
    {
      const CFailingAllocations failing(nFailing);
      nStatus = MakeWeightedReference(stInput, listBright.data(), listDark.data(), stResult);
      bFailed = failing.HasFailed();
    }
    ASSERT_EQ(nStatus, bFailed ? STATUS_OUT_OF_MEMORY : STATUS_SUCCESS) << nFailing;
  }
}

namespace {

/// A scene, and the figures of its references. They are no requirement: who means to change the estimate looks at
/// docs/reference.md first, and then writes the new ones here.
struct SKnownFrames {
  const char *pName;
  uint32_t nWidth, nHeight;
  bool bMosaic;
  double dPattern, dSystemGain;
  uint32_t nBright, nDark;
  double dError, dSpotError, dDarkMean, dNoise, dDetailWeight;
};

void PrintTo(const SKnownFrames &stFrames, std::ostream *pStream)
{
  *pStream << stFrames.pName;
}

/// Shading, dust with a hard edge, a column and a pixel that stand out, a faint pattern of lines; in a mosaic of two
/// levels.
double GetKnownResponse(const SKnownFrames &stFrames, uint32_t nX, uint32_t nY)
{
  const double dShading = 1 - 0.3 * std::pow(static_cast<double>(nX) / stFrames.nWidth - 0.4, 2);
  const double dDust = std::hypot(nX - 40.0, nY - 30.0) < 9 ? 0.93 : 1;
  const double dOdd = nX == 80 ? 1.1 : nX % 37 == 11 && nY % 23 == 5 ? 1.2 : 1;
  const double dColour = stFrames.bMosaic && (nX + nY) % 2 == 1 ? 0.5 : 1;
  return dShading * dDust * dOdd * dColour * (1 + 0.004 * std::sin(nY * 2.4));
}

class KnownFrames : public testing::TestWithParam<SKnownFrames> {};

} // namespace

TEST_P(KnownFrames, GiveTheFiguresThatTheyGave)
{
  const SKnownFrames &stFrames = GetParam();
  SSensor stSensor;
  stSensor.nWidth = stFrames.nWidth;
  stSensor.nHeight = stFrames.nHeight;
  stSensor.bMosaic = stFrames.bMosaic;
  stSensor.dPattern = stFrames.dPattern;
  stSensor.dSystemGain = stFrames.dSystemGain;
  stSensor.fnStructure = [&](uint32_t nX, uint32_t nY) { return GetKnownResponse(stFrames, nX, nY); };
  const Field field = stSensor.MakeField();
  const Field levels = MakeDarkLevels(stSensor, 0.04);
  SSensor stClosed = stSensor;
  stClosed.dSystemGain = 0;
  stClosed.nSeed = 20;
  const CSums dark(stClosed, levels, stFrames.nDark);
  const CSums bright(stSensor, Add(field, levels), stFrames.nBright);
  const SMade stMade = MakeReference(stSensor, bright, &dark);
  ASSERT_EQ(stMade.nStatus, STATUS_SUCCESS);

  const Field signal = stMade.GetSignal(stSensor);
  const auto fnInSpot = [](uint32_t nX, uint32_t nY) { return std::hypot(nX - 40.0, nY - 30.0) < 12; };
  double dDark = 0;
  for (std::size_t n = 0; n < levels.size(); ++n) {
    dDark += std::pow(stMade.listDark[n] / 16.0 - stSensor.dDark - levels[n], 2) / static_cast<double>(levels.size());
  }
  constexpr double SHARE = 2e-4;
  const auto fnExpect = [](double dFound, double dKnown, const char *pWhat) {
    EXPECT_NEAR(dFound, dKnown, SHARE * dKnown) << pWhat << ": " << testing::PrintToString(dFound);
  };
  fnExpect(GetError(stSensor, signal, field), stFrames.dError, "error");
  fnExpect(GetError(stSensor, signal, field, fnInSpot), stFrames.dSpotError, "at the dust");
  fnExpect(std::sqrt(dDark), stFrames.dDarkMean, "dark, DN");
  fnExpect(stMade.stResult.dNoise, stFrames.dNoise, "noise, DN");
  fnExpect(stMade.stResult.dDetailWeight, stFrames.dDetailWeight, "weight");
}

INSTANTIATE_TEST_SUITE_P(Scenes, KnownFrames,
                         testing::Values(SKnownFrames{"OneOfTwoTiles", 300, 100, false, 0.003, 0.27, 1, 4, 0.00337006,
                                                      0.00373092, 1.4207, 24.951, 0.00793989},
                                         SKnownFrames{"Four", 128, 96, false, 0.003, 0.27, 4, 4, 0.00297533, 0.00303303,
                                                      1.42117, 23.3464, 0.204935},
                                         SKnownFrames{"TwoAndALoneDark", 128, 96, false, 0.002, 0.1, 2, 1, 0.00225968,
                                                      0.0024488, 2.67343, 14.4024, 0.189848},
                                         SKnownFrames{"OneOfALargePattern", 160, 120, false, 0.02, 0.027, 1, 2,
                                                      0.00426998, 0.0042715, 1.91013, 2.99587, 0.993772},
                                         SKnownFrames{"OneOfAMosaic", 200, 120, true, 0.005, 0.1, 1, 2, 0.00484486,
                                                      0.00713238, 1.6956, 14.4431, 0.234711},
                                         SKnownFrames{"OneOfAMosaicWithoutPattern", 200, 120, true, 0.0, 0.4, 1, 4,
                                                      0.00352227, 0.00847185, 1.33019, 28.6982, 0.0165175},
                                         SKnownFrames{"ThreeOfAMosaic", 130, 74, true, 0.005, 0.1, 3, 1, 0.00405231,
                                                      0.00471263, 2.31557, 14.581, 0.520843}),
                         [](const auto &stInfo) { return std::string(stInfo.param.pName); });

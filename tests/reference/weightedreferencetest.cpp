// What holds for the weighted reference of any frames.
#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "tests/reference/sensor.h"

using namespace ffc::test;
using namespace ffc::reference;

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
  const Field levels = stSensor.MakeDarkLevels(0.1);
  const CSums dark = MakeDark(stSensor, levels, 1);
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
  Field levels = stSensor.MakeDarkLevels(0.6);
  for (double &dLevel : levels) {
    dLevel = std::max(dLevel - 80, -90.0); // skewed, as dark levels are
  }
  const CSums dark = MakeDark(stSensor, levels, 1);
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

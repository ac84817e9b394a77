#include "flat/weightedflat.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>

#include <gtest/gtest.h>

#include "flat/weightedframes.h"
#include "tests/flat/toolflat.h"

using namespace ffc::flat;

namespace {

constexpr uint32_t SMALL_SIDE = 64;
constexpr uint32_t LARGE_SIDE = 112; ///< enough pixels for figures

/// A sensor with shading, a pattern of its pixels and noise, in parts of the format's range.
class CMadeSensor {
public:
  CMadeSensor(const char *pFormat, uint32_t nSide) : m_pFormat(ffc::genapi::FindSensorFormat(pFormat)), m_nSide(nSide)
  {
    std::normal_distribution<double> pattern(0, 0.003);
    for (uint32_t n = 0; n < nSide * nSide; ++n) {
      const double dX = (n % nSide) / static_cast<double>(nSide) - 0.5;
      const double dY = (n / nSide) / static_cast<double>(nSide) - 0.5;
      m_listField.push_back((0.6 - 0.5 * (dX * dX + dY * dY)) * (1 + pattern(m_random)));
    }
  }

  std::shared_ptr<const SFrameSet> Take(uint32_t nFrames, double dLight)
  {
    auto pSet = std::make_shared<SFrameSet>();
    pSet->pFormat = m_pFormat;
    pSet->nWidth = m_nSide;
    pSet->nHeight = m_nSide;
    const double dMax = (1U << m_pFormat->nBitDepth) - 1;
    std::normal_distribution<double> noise(0, 0.005);
    for (uint32_t nFrame = 0; nFrame < nFrames; ++nFrame) {
      std::vector<uint8_t> listFrame;
      for (const double dField : m_listField) {
        const double dLevel = 0.02 + dLight * dField + noise(m_random) * (0.1 + dLight);
        const auto nSample = static_cast<uint32_t>(std::lround(std::clamp(dLevel, 0.0, 1.0) * dMax));
        listFrame.push_back(static_cast<uint8_t>(nSample));
        if (m_pFormat->GetBytesPerPixel() == 2) {
          listFrame.push_back(static_cast<uint8_t>(nSample >> 8U));
        }
      }
      pSet->listFrames.push_back(std::move(listFrame));
    }
    return pSet;
  }

  const std::vector<double> &GetField() const { return m_listField; }

private:
  const ffc::genapi::SSensorFormat *m_pFormat;
  uint32_t m_nSide;
  std::mt19937 m_random{7};
  std::vector<double> m_listField;
};

QByteArray GetBytes(const SWeightedFlat &stFlat)
{
  return {reinterpret_cast<const char *>(stFlat.pTable->data.GetData()), static_cast<int>(stFlat.pTable->nSize)};
}

const std::atomic<bool> GO_ON{false};

struct SCase {
  const char *pFormat;
  uint32_t nBright;
  double dDarkLight; ///< negative: no dark frames
  uint32_t nDarkUsed;
};

class WeightedFlat : public testing::TestWithParam<SCase> {};

} // namespace

TEST_P(WeightedFlat, IsWhatTheToolMakesOfTheSameFrames)
{
  const SCase &stCase = GetParam();
  CMadeSensor sensor(stCase.pFormat, SMALL_SIDE);
  const SFlatFrames stFrames{sensor.Take(stCase.nBright, 1),
                             stCase.dDarkLight < 0 ? nullptr : sensor.Take(1, stCase.dDarkLight), 120, 2};
  const auto made = MakeWeightedFlat(stFrames, GO_ON);
  ASSERT_EQ(made.GetError(), "");
  EXPECT_EQ(made.GetValue().nFrames, stCase.nBright);
  EXPECT_EQ(made.GetValue().nDarkFrames, stCase.nDarkUsed);
  const QTemporaryDir folder;
  EXPECT_TRUE(GetBytes(made.GetValue()) == MakeWithTool(stFrames, folder));
  EXPECT_LE(made.GetValue().dNoise, made.GetValue().dPlainNoise);
}

INSTANTIATE_TEST_SUITE_P(Formats, WeightedFlat,
                         testing::Values(SCase{"Mono8", 4, 0, 1}, SCase{"Mono12", 1, -1, 0},
                                         SCase{"BayerRG10", 2, 0, 1}, SCase{"BayerGB16", 4, 0.3, 0}),
                         [](const testing::TestParamInfo<SCase> &stInfo) { return std::string(stInfo.param.pFormat); });

TEST(WeightedFlatFigures, AreTheErrorsThatTheReferencesReallyHave)
{
  constexpr uint32_t FRAMES = 4;
  CMadeSensor sensor("Mono12", LARGE_SIDE);
  const SFlatFrames stFrames{sensor.Take(FRAMES, 1), sensor.Take(16, 0), 128, 1};
  const auto made = MakeWeightedFlat(stFrames, GO_ON);
  ASSERT_EQ(made.GetError(), "");
  const SWeightedFlat &stFlat = made.GetValue();
  const auto *pGains = reinterpret_cast<const uint16_t *>(stFlat.pTable->data.GetData());
  double dSum = 0;
  double dSquares = 0;
  for (std::size_t n = 0; n < sensor.GetField().size(); ++n) {
    const double dFlat = pGains[n] * sensor.GetField()[n];
    dSum += dFlat;
    dSquares += dFlat * dFlat;
  }
  const double dPixels = LARGE_SIDE * LARGE_SIDE;
  const double dMean = dSum / dPixels;
  const double dError = 100 * std::sqrt(dSquares / dPixels - dMean * dMean) / dMean;
  EXPECT_NEAR(stFlat.dPlainNoise, 100 * 0.0055 / std::sqrt(FRAMES) / 0.52, 0.02);
  EXPECT_NEAR(stFlat.dNoise / dError, 1, 0.2) << dError;
  EXPECT_LT(dError, 0.8 * stFlat.dPlainNoise);
  EXPECT_GT(stFlat.GetWorth(), 1.5 * FRAMES);
}

TEST(WeightedFlatFigures, NothingIsMadeAfterItWasCancelled)
{
  const std::atomic<bool> bStop{true};
  CMadeSensor sensor("Mono8", SMALL_SIDE);
  EXPECT_FALSE(MakeWeightedFlat({sensor.Take(1, 1), nullptr, 128, 1}, bStop));
  EXPECT_EQ(MakeWeightedFlat({sensor.Take(0, 1), nullptr, 128, 1}, bStop).GetError(), "It was cancelled.");
}

TEST(WeightedFlatFigures, DarkFramesOfAnotherKindAreNotTaken)
{
  const auto pBright = CMadeSensor("Mono8", SMALL_SIDE).Take(2, 1);
  const auto pDark = CMadeSensor("Mono8", SMALL_SIDE).Take(1, 0);
  const auto fnCount = [&](const std::function<void(SFrameSet &)> &fnChange) {
    auto pOther = std::make_shared<SFrameSet>(*pDark);
    fnChange(*pOther);
    const auto made = MakeWeightedFlat({pBright, pOther, 128, 1}, GO_ON);
    EXPECT_EQ(made.GetError(), "");
    return made ? made.GetValue().nDarkFrames : 99;
  };
  EXPECT_EQ(fnCount([](SFrameSet &) {}), 1U);
  EXPECT_EQ(fnCount([](SFrameSet &stSet) { stSet.pFormat = ffc::genapi::FindSensorFormat("BayerRG8"); }), 0U);
  EXPECT_EQ(fnCount([](SFrameSet &stSet) { stSet.nWidth /= 2; }), 0U);
  EXPECT_EQ(fnCount([](SFrameSet &stSet) { stSet.nHeight /= 2; }), 0U);
}

TEST(WeightedFlatFigures, FramesWithoutLightHaveNoFigures)
{
  auto pBlack = std::make_shared<SFrameSet>(*CMadeSensor("Mono8", SMALL_SIDE).Take(2, 0));
  for (std::vector<uint8_t> &listFrame : pBlack->listFrames) {
    std::fill(listFrame.begin(), listFrame.end(), uint8_t{0});
  }
  const auto made = MakeWeightedFlat({pBlack, nullptr, 128, 1}, GO_ON);
  if (made) {
    EXPECT_EQ(made.GetValue().dPlainNoise, 0);
    EXPECT_EQ(made.GetValue().GetWorth(), 0) << "no number of frames";
  } else {
    EXPECT_NE(made.GetError().find("does not compute coefficients"), std::string::npos) << made.GetError();
  }
}

TEST(WeightedFlatFigures, FramesTooLargeForAnyMemoryAreTold)
{
  auto pHuge = std::make_shared<SFrameSet>();
  pHuge->pFormat = ffc::genapi::FindSensorFormat("Mono8");
  pHuge->nWidth = 1U << 31U;
  pHuge->nHeight = 1U << 30U;
  EXPECT_EQ(MakeWeightedFlat({pHuge, nullptr, 128, 1}, GO_ON).GetError(), "There is not enough memory.");
}

TEST(WeightedFlatFigures, FormatsThatNobodyKnowsAndSizesWithoutMemoryAreRefused)
{
  SWeightedFrames stWeighted;
  SAddedFrames stAdded{{0, 64, 64, 4096}, 0, {}, {}, {}, 1};
  EXPECT_EQ(WeightFrames(stAdded, stWeighted), ffc::reference::STATUS_INVALID_PARAM);
  stAdded.stFormat = {ffc::genapi::FindSensorFormat("Mono8")->nCode, 1U << 31U, 1U << 30U, 0};
  EXPECT_EQ(WeightFrames(stAdded, stWeighted), ffc::reference::STATUS_OUT_OF_MEMORY);
}

TEST(WeightedFlatFigures, WhatCannotBeJudgedOrComputedIsNotUsed)
{
  CMadeSensor small("Mono8", 16); // less than a block
  const auto made = MakeWeightedFlat({small.Take(2, 1), small.Take(1, 0), 128, 1}, GO_ON);
  ASSERT_EQ(made.GetError(), "");
  EXPECT_EQ(made.GetValue().nDarkFrames, 0U) << "nobody knows whether it is dark";
  EXPECT_FALSE(MakeWeightedFlat({small.Take(0, 1), nullptr, 128, 1}, GO_ON)) << "there are no frames";
  const auto withoutDark = MakeWeightedFlat({small.Take(1, 1), small.Take(0, 0), 128, 1}, GO_ON);
  ASSERT_EQ(withoutDark.GetError(), "");
  EXPECT_EQ(withoutDark.GetValue().nDarkFrames, 0U);
  EXPECT_EQ(MakeWeightedFlat({small.Take(2, 1), nullptr, 256, 1}, GO_ON).GetError(),
            "The image library does not compute coefficients of these frames.");
}

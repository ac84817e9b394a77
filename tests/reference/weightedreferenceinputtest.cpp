// What a weighted reference is made of at all, and what it takes.
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/reference/failingallocations.h"
#include "tests/reference/sensor.h"

using namespace ffc::test;
using namespace ffc::reference;

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

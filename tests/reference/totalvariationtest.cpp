// Smoothing that leaves edges.
#include <cmath>
#include <cstdint>
#include <numeric>
#include <vector>

#include <gtest/gtest.h>

#include "reference/totalvariation.h"
#include "tests/reference/noisesamples.h"

using namespace ffc::reference;
using namespace ffc::test;

TEST(ReferenceVariation, ALowStepIsFoundInNoiseAndStaysWhereItIs)
{
  constexpr uint32_t WIDTH = 60;
  constexpr uint32_t HEIGHT = 40;
  constexpr float STEP = 3;
  const auto fnTruth = [](std::size_t n) { return n % WIDTH < WIDTH / 2 ? 100.0F : 100.0F + STEP; };
  std::vector<float> listSamples = MakeNoise(std::size_t{WIDTH} * HEIGHT);
  for (std::size_t n = 0; n < listSamples.size(); ++n) {
    listSamples[n] += fnTruth(n);
  }
  std::vector<float> listErrors(listSamples.size());
  CTotalVariation variation(listSamples.size());
  // An image before it leaves nothing behind.
  for (const float fWeight : {5.0F, 1.2F}) {
    variation.Smooth({listSamples.data(), WIDTH, HEIGHT}, {0, 0, WIDTH, HEIGHT}, fWeight,
                     {listErrors.data(), WIDTH, HEIGHT});
  }
  const double dSum = std::accumulate(listErrors.begin(), listErrors.end(), 0.0);
  EXPECT_NEAR(dSum, std::accumulate(listSamples.begin(), listSamples.end(), 0.0), 1) << "nothing is added";
  std::size_t nWrong = 0;
  for (std::size_t n = 0; n < listErrors.size(); ++n) {
    nWrong += (listErrors[n] > 100 + STEP / 2) != (fnTruth(n) > 100) ? 1U : 0U;
    listErrors[n] -= fnTruth(n);
  }
  EXPECT_LT(GetMeanSquare(listErrors), 0.12) << "of a noise of 1";
  EXPECT_LT(nWrong, listErrors.size() / 100);
}

TEST(ReferenceVariation, AnEvenImageAndOneOfASinglePixelStayWhatTheyAre)
{
  std::vector<float> listEven(35, 12.5F);
  std::vector<float> listResult(35);
  CTotalVariation variation(35);
  variation.Smooth({listEven.data(), 7, 5}, {0, 0, 7, 5}, 2, {listResult.data(), 7, 5});
  EXPECT_EQ(listResult, listEven);
  variation.Smooth({listEven.data(), 1, 1}, {0, 0, 1, 1}, 2, {listResult.data(), 1, 1});
  EXPECT_EQ(listResult[0], 12.5F);
}

TEST(ReferenceVariation, WhatIsAlikeAlongAnAxisStaysSoUpToTheEdge)
{
  constexpr uint32_t SIDE = 12;
  const std::vector<float> listNoise = MakeNoise(SIDE, 5);
  std::vector<float> listLines;
  for (const float fValue : listNoise) {
    listLines.insert(listLines.end(), SIDE, fValue);
  }
  std::vector<float> listColumns;
  for (uint32_t n = 0; n < SIDE; ++n) {
    listColumns.insert(listColumns.end(), listNoise.begin(), listNoise.end());
  }
  CTotalVariation variation(std::size_t{SIDE} * SIDE);
  for (std::vector<float> *pList : {&listLines, &listColumns}) {
    std::vector<float> listSamples = *pList;
    variation.Smooth({listSamples.data(), SIDE, SIDE}, {0, 0, SIDE, SIDE}, 2, {pList->data(), SIDE, SIDE});
  }
  EXPECT_GT(std::abs(listLines[0] - listNoise[0]), 0.1F);
  for (uint32_t nY = 0; nY < SIDE; ++nY) {
    for (uint32_t nX = 0; nX < SIDE; ++nX) {
      EXPECT_NEAR(listLines[nY * SIDE + nX], listLines[nY * SIDE], 1e-3) << nX << ", " << nY;
      EXPECT_NEAR(listColumns[nY * SIDE + nX], listLines[nX * SIDE], 1e-3) << nX << ", " << nY;
    }
  }
}

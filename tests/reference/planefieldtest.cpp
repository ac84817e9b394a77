// The planes of a frame and their fields.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include <gtest/gtest.h>

#include "reference/planefield.h"
#include "reference/planesource.h"
#include "tests/reference/noisesamples.h"

using namespace ffc::reference;
using namespace ffc::test;

namespace {

/// The field of a monochrome plane, written DN by DN.
std::vector<uint16_t> MakeField(uint32_t nWidth, uint32_t nHeight, const std::vector<uint32_t> &listSums,
                                float fVariance, float fScale)
{
  CPlaneField field({GetPlanes(nWidth, nHeight, false).front(), listSums.data(), 1, nullptr, 1}, {fVariance, 0, 0}, 1);
  field.FindProfiles();
  field.WeightCoarseScales();
  field.LearnFineScales();
  std::vector<uint16_t> listField(listSums.size());
  field.Write({listField.data(), fScale, nullptr});
  return listField;
}

} // namespace

TEST(ReferencePlanes, TheFourSitesOfAMosaicMakeUpTheImage)
{
  const auto listPlanes = GetPlanes(5, 3, true);
  ASSERT_EQ(listPlanes.size(), 4U);
  std::vector<int> listSeen(15);
  for (const SPlane &stPlane : listPlanes) {
    for (uint32_t nY = 0; nY < stPlane.nHeight; ++nY) {
      for (uint32_t nX = 0; nX < stPlane.nWidth; ++nX) {
        ++listSeen.at(stPlane.GetIndex(nX, nY));
      }
    }
  }
  EXPECT_EQ(listSeen, std::vector<int>(15, 1));
  EXPECT_EQ(GetPlanes(5, 3, false).size(), 1U);
}

TEST(ReferencePlanes, ALineBeyondTheEdgesIsReflected)
{
  const std::vector<uint32_t> listSums = {10, 20, 30, 40, 50, 60, 70, 80};
  const std::vector<uint16_t> listDark = {1, 1, 1, 1, 1, 1, 1, 1};
  const CPlaneSource source(GetPlanes(4, 2, false).front(), listSums.data(), 0.5F, listDark.data(), 1);
  std::vector<float> listLine(8);
  source.ReadLine(-1, -2, 8, listLine.data());
  EXPECT_EQ(listLine, (std::vector<float>{34, 29, 24, 29, 34, 39, 34, 29}));
}

TEST(ReferencePlanes, AFieldBeyondTheScaleIsWrittenAsItsEnd)
{
  EXPECT_EQ(MakeField(20, 12, std::vector<uint32_t>(20 * 12, 5000), 4, 16), std::vector<uint16_t>(20 * 12, 65535));
}

TEST(ReferencePlanes, AMirroredFrameHasTheMirroredField)
{
  constexpr uint32_t WIDTH = 69; // what is taken of the smooth image lies alike from both sides
  constexpr uint32_t HEIGHT = 45;
  std::vector<uint32_t> listSums;
  for (const float fNoise : MakeNoise(std::size_t{WIDTH} * HEIGHT, 2000)) {
    listSums.push_back(static_cast<uint32_t>(std::lround(30000 + fNoise)));
  }
  const auto fnMirror = [](auto list, bool bColumns) {
    const auto listFrom = list;
    for (uint32_t n = 0; n < list.size(); ++n) {
      const uint32_t nX = n % WIDTH;
      const uint32_t nY = n / WIDTH;
      list[n] = bColumns ? listFrom[nY * WIDTH + WIDTH - 1 - nX] : listFrom[(HEIGHT - 1 - nY) * WIDTH + nX];
    }
    return list;
  };
  constexpr float VARIANCE = 1e7F; // more than it has: edges in it would be probed pixel by pixel, as places decide
  const auto listField = MakeField(WIDTH, HEIGHT, listSums, VARIANCE, 1);
  for (const bool bColumns : {false, true}) {
    const auto listMirrored = fnMirror(MakeField(WIDTH, HEIGHT, fnMirror(listSums, bColumns), VARIANCE, 1), bColumns);
    int nLargest = 0;
    for (std::size_t n = 0; n < listField.size(); ++n) {
      nLargest = std::max(nLargest, std::abs(listField[n] - listMirrored[n]));
    }
    EXPECT_LE(nLargest, 1) << "rounding, of a noise of 2000";
  }
}

TEST(ReferencePlanes, AFieldBelowZeroIsWrittenAsZero)
{
  constexpr uint32_t WIDTH = 20;
  constexpr uint32_t HEIGHT = 12;
  const std::vector<uint32_t> listSums(WIDTH * HEIGHT, 90);
  const std::vector<uint16_t> listDark(WIDTH * HEIGHT, 100);
  CPlaneField field({GetPlanes(WIDTH, HEIGHT, false).front(), listSums.data(), 1, listDark.data(), 1}, {4, 0, 0}, 1);
  field.FindProfiles();
  field.WeightCoarseScales();
  field.LearnFineScales();
  std::vector<uint16_t> listField(listSums.size(), 7);
  field.Write({listField.data(), 16, nullptr});
  EXPECT_EQ(listField, std::vector<uint16_t>(listSums.size(), 0));
  field.Write({listField.data(), 1, listDark.data()});
  EXPECT_EQ(listField, std::vector<uint16_t>(listSums.size(), 90));
}

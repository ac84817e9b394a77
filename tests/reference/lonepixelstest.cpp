// Which pixels stand out alone, and what it costs.
#include <algorithm>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "reference/lonepixels.h"
#include "reference/planesource.h"
#include "reference/tile.h"
#include "tests/reference/failingallocations.h"

using namespace ffc::reference;

namespace {

constexpr uint32_t PART_WIDTH = 50;
constexpr uint32_t PART_HEIGHT = 40;
constexpr std::size_t PART_COUNT = std::size_t{PART_WIDTH} * PART_HEIGHT;

/// An even image, in which so many pixels stand out alone, 80 at most.
std::vector<float> MakeImage(float fLevel, float fOff, uint32_t nOdd)
{
  std::vector<float> listImage(PART_COUNT, fLevel);
  for (uint32_t n = 0; n < nOdd; ++n) {
    listImage[std::size_t{n / 10 * 5 + 2} * PART_WIDTH + n % 10 * 5 + 2] += fOff;
  }
  return listImage;
}

/// \return how many are taken out
std::size_t TakeOut(CLonePixels &pixels, std::vector<float> &listFine, const SFieldNoise &stNoise)
{
  std::vector<float> listWide(PART_COUNT);
  std::vector<float> listLine(PART_WIDTH + 4);
  const SImage fine = {listFine.data(), PART_WIDTH, PART_HEIGHT};
  const SImage wide = {listWide.data(), PART_WIDTH, PART_HEIGHT};
  Smooth(fine, wide, 1, listLine.data());
  const ffc::test::CFailingAllocations failing(1); // what it needs it has
  pixels.TakeOut(fine, wide, stNoise);
  return pixels.GetAll().size();
}

} // namespace

TEST(ReferenceLonePixels, UpToAFiftiethOfAllAreTakenOutAndMoreAreAPattern)
{
  CLonePixels pixels(PART_COUNT);
  constexpr auto MOST = static_cast<uint32_t>(PART_COUNT / 50);
  std::vector<float> listFine = MakeImage(1000, 10, MOST);
  EXPECT_EQ(TakeOut(pixels, listFine, {1, 0, 0}), MOST);
  EXPECT_EQ(listFine, MakeImage(1000, 0, 0)) << "each is what is around it";
  const std::vector<float> listPattern = MakeImage(1000, 10, MOST + 1);
  listFine = listPattern;
  EXPECT_EQ(TakeOut(pixels, listFine, {1, 0, 0}), 0U);
  EXPECT_EQ(listFine, listPattern);
}

TEST(ReferenceLonePixels, BelowTheDarkLevelTheLightHidesNone)
{
  CLonePixels pixels(PART_COUNT);
  // In the light of a single DN 10 would be little.
  const SFieldNoise stNoise = {1, 100, 0};
  std::vector<float> listFine = MakeImage(-20, 10, 5);
  EXPECT_EQ(TakeOut(pixels, listFine, stNoise), 5U);
  listFine = MakeImage(1, 10, 5);
  EXPECT_EQ(TakeOut(pixels, listFine, stNoise), 0U);
}

TEST(ReferenceLonePixels, ATileThatIsMadeNeedsNoMoreMemoryForThem)
{
  constexpr uint32_t SIDE = TILE_SIDE + 2 * TILE_HALO;
  std::vector<uint32_t> listSums(std::size_t{SIDE} * SIDE, 1000);
  std::size_t nOdd = 0;
  for (uint32_t nY = 3; nY < TILE_SIDE; nY += 7) {
    for (uint32_t nX = 3; nX < TILE_SIDE; nX += 8) {
      listSums[std::size_t{nY} * SIDE + nX] = 2000;
      ++nOdd;
    }
  }
  const CPlaneSource source(GetPlanes(SIDE, SIDE, false).front(), listSums.data(), 1, nullptr, 1);
  const SFieldNoise stNoise = {10000, 0, 0};
  CTile tile;
  bool bFailed = true;
  {
    const ffc::test::CFailingAllocations failing(1);
    tile.Load(source, 0, nullptr, &stNoise);
    bFailed = failing.HasFailed();
  }
  EXPECT_FALSE(bFailed);
  EXPECT_GE(tile.GetLonePixels().size(), nOdd);
}

#include "quality/tableshape.h"

#include <cmath>
#include <random>
#include <vector>

#include <gtest/gtest.h>

using namespace ffc::quality;

namespace {

/// Gains of a lens that gets darker towards the corners, over pixels that differ.
/// \param dFalloff of the light, from the centre to the corners
std::vector<uint16_t> MakeGains(uint32_t nWidth, uint32_t nHeight, double dFalloff, double dPattern)
{
  std::mt19937 generator(7);
  std::normal_distribution<double> pattern(1.0, dPattern);
  std::vector<uint16_t> listGains;
  for (uint32_t nY = 0; nY < nHeight; ++nY) {
    for (uint32_t nX = 0; nX < nWidth; ++nX) {
      const double dX = 2.0 * nX / nWidth - 1;
      const double dY = 2.0 * nY / nHeight - 1;
      const double dLight = (1 - dFalloff * (dX * dX + dY * dY) / 2) * pattern(generator);
      listGains.push_back(static_cast<uint16_t>(std::min(65535.0, 4096 / dLight)));
    }
  }
  return listGains;
}

bool IsShape(const std::optional<STableShape> &stShape, uint32_t nWidth, uint32_t nHeight)
{
  return stShape && stShape->nWidth == nWidth && stShape->nHeight == nHeight;
}

} // namespace

TEST(TableShape, ATableReadInAnotherShapeIsToldByItsOwnLines)
{
  const std::vector<uint16_t> listGains = MakeGains(256, 192, 0.4, 0.008);
  EXPECT_FALSE(FindOtherShape(listGains.data(), 256, 192)) << "its own";
  EXPECT_TRUE(IsShape(FindOtherShape(listGains.data(), 192, 256), 256, 192));
  EXPECT_TRUE(IsShape(FindOtherShape(listGains.data(), 96, 512), 256, 192));
}

TEST(TableShape, WeakShadingIsSeenThroughThePixelsOwnPattern)
{
  const std::vector<uint16_t> listGains = MakeGains(640, 480, 0.02, 0.004);
  EXPECT_FALSE(FindOtherShape(listGains.data(), 640, 480));
  EXPECT_TRUE(IsShape(FindOtherShape(listGains.data(), 480, 640), 640, 480));
}

TEST(TableShape, DeadPixelsMosaicsAndRowsOfTwoAmplifiersRaiseNoAlarm)
{
  std::vector<uint16_t> listGains = MakeGains(256, 192, 0.3, 0.008);
  for (std::size_t n = 0; n < listGains.size(); ++n) {
    const std::size_t nLine = n / 256;
    const double dColour = (n + nLine) % 2 == 0 ? 1.0 : nLine % 2 == 0 ? 1.9 : 1.4;
    listGains[n] = n % 501 == 0 ? uint16_t{65535} : static_cast<uint16_t>(listGains[n] * dColour);
  }
  EXPECT_FALSE(FindOtherShape(listGains.data(), 256, 192));
  EXPECT_TRUE(IsShape(FindOtherShape(listGains.data(), 192, 256), 256, 192));
  for (std::size_t n = 0; n < listGains.size(); ++n) {
    listGains[n] = n / 256 % 2 == 0 ? 4096 : 4300;
  }
  EXPECT_FALSE(FindOtherShape(listGains.data(), 256, 192));
}

TEST(TableShape, NothingIsSaidOfEvenGainsAndOfTinyTables)
{
  const std::vector<uint16_t> listEven(256 * 192, 4096);
  EXPECT_FALSE(FindOtherShape(listEven.data(), 192, 256));
  const std::vector<uint16_t> listTiny = MakeGains(8, 64, 0.4, 0);
  EXPECT_FALSE(FindOtherShape(listTiny.data(), 8, 64));
}

#include "flat/weightedflat.h"

#include <gtest/gtest.h>

#include "tests/pluginobject/shadingcorrection/imagecalc/failingnew.h"

using ffc::flat::MakeWeightedFlat;
using ffc::flat::SFlatFrames;
using ffc::flat::SFrameSet;

namespace {

constexpr uint32_t SIDE = 64;

/// Frames of one level, but for a pixel that is another in each.
std::shared_ptr<SFrameSet> MakeFrames(uint32_t nFrames, uint8_t nLevel)
{
  auto pSet = std::make_shared<SFrameSet>();
  pSet->pFormat = ffc::genapi::FindSensorFormat("Mono8");
  pSet->nWidth = SIDE;
  pSet->nHeight = SIDE;
  pSet->listFrames.assign(nFrames, std::vector<uint8_t>(SIDE * SIDE, nLevel));
  for (uint32_t nFrame = 0; nFrame < nFrames; ++nFrame) {
    ++pSet->listFrames[nFrame][nFrame];
  }
  return pSet;
}

} // namespace

TEST(WeightedFlatMemory, WhereverMemoryEndsThereIsNoTableAndNoTableOfHalfTheFrames)
{
  const SFlatFrames stFrames{MakeFrames(2, 100), MakeFrames(2, 2), 128, 1};
  const std::atomic<bool> bStop{false};
  const int64_t nLive = CountLiveAllocations();
  int32_t nSuccesses = 0;
  for (bool bMade = false; !bMade; ++nSuccesses) {
    ASSERT_LT(nSuccesses, 1000);
    const CFailingNew failing(nSuccesses);
    const auto made = MakeWeightedFlat(stFrames, bStop);
    bMade = made.IsOk();
    if (bMade) {
      EXPECT_EQ(made.GetValue().nFrames, 2U);
      EXPECT_EQ(made.GetValue().nDarkFrames, 2U);
    } else {
      EXPECT_EQ(made.GetError(), "There is not enough memory.") << nSuccesses;
    }
  }
  EXPECT_GT(nSuccesses, 5);
  EXPECT_EQ(CountLiveAllocations(), nLive);
}

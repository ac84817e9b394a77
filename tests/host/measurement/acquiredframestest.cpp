#include "host/measurement/acquiredframes.h"

#include <gtest/gtest.h>

using namespace ffc::flat;
using namespace ffc::host;

namespace {

constexpr uint32_t MONO8 = 0x01080001;
constexpr uint32_t BAYER_RG8 = 0x01080009;

/// Frames of 2 x 1 pixels, each told apart by its first one.
void Take(CAcquiredFrames &acquired, uint8_t nFirst, uint32_t nPixelFormat = MONO8)
{
  const uint8_t listPixels[2] = {nFirst, 0};
  ffc::camera::SCameraFrame stFrame;
  stFrame.pBuffer = listPixels;
  stFrame.nSize = 2;
  stFrame.nWidth = 2;
  stFrame.nHeight = 1;
  stFrame.nPixelFormat = nPixelFormat;
  acquired.Take(stFrame);
}

std::vector<int> ListFirst(const std::shared_ptr<const SFrameSet> &pSet)
{
  std::vector<int> listFirst;
  for (const std::vector<uint8_t> &listFrame :
       pSet == nullptr ? std::vector<std::vector<uint8_t>>() : pSet->listFrames) {
    listFirst.push_back(listFrame.front());
  }
  return listFirst;
}

} // namespace

TEST(AcquiredFrames, AsManyAreKeptAsThePlugInTakesAndNothingOfWhatPassesBesides)
{
  CAcquiredFrames acquired;
  Take(acquired, 1);
  acquired.Begin(CAcquiredFrames::EKind::Bright, 2, false);
  Take(acquired, 2);
  Take(acquired, 3);
  Take(acquired, 4);
  EXPECT_EQ(acquired.GetBright(), nullptr) << "not before it has succeeded";
  acquired.End();
  acquired.Begin(CAcquiredFrames::EKind::Bright, 2, false); // for the user, who looks at the stream
  Take(acquired, 5);
  acquired.Finish(true);
  Take(acquired, 6);
  EXPECT_EQ(ListFirst(acquired.GetBright()), (std::vector<int>{2, 3}));
  EXPECT_EQ(acquired.GetBright()->pFormat->nCode, MONO8);
  EXPECT_EQ(acquired.GetDark(), nullptr);
}

TEST(AcquiredFrames, FramesBeforeTheWhiteIsBalancedDoNotCount)
{
  CAcquiredFrames acquired;
  acquired.Begin(CAcquiredFrames::EKind::Bright, 2, true);
  Take(acquired, 1, BAYER_RG8);
  Take(acquired, 2, BAYER_RG8);
  acquired.Count(); // of the latest, or of the next
  Take(acquired, 3, BAYER_RG8);
  acquired.Count();
  Take(acquired, 4, BAYER_RG8);
  acquired.End();
  acquired.Finish(true);
  EXPECT_EQ(ListFirst(acquired.GetBright()), (std::vector<int>{2, 3}));
}

TEST(AcquiredFrames, ANewAcquisitionDropsTheFormerOneOfItsKindAtOnceAlsoWhereItFails)
{
  CAcquiredFrames acquired;
  for (const auto eKind : {CAcquiredFrames::EKind::Dark, CAcquiredFrames::EKind::Bright}) {
    acquired.Begin(eKind, 1, false);
    Take(acquired, 1);
    acquired.Finish(true);
  }
  acquired.Begin(CAcquiredFrames::EKind::Bright, 1, false);
  EXPECT_EQ(acquired.GetBright(), nullptr);
  Take(acquired, 2);
  acquired.Finish(false);
  EXPECT_EQ(acquired.GetBright(), nullptr);
  EXPECT_EQ(ListFirst(acquired.GetDark()), std::vector<int>{1});
  acquired.Reset();
  EXPECT_EQ(acquired.GetDark(), nullptr);
}

TEST(AcquiredFrames, TheyAreOfOneFormatAndNoMoreThanTheLimit)
{
  CAcquiredFrames acquired(5);
  acquired.Begin(CAcquiredFrames::EKind::Bright, 4, false);
  Take(acquired, 1);
  for (const uint8_t nFirst : std::vector<uint8_t>{2, 3, 4}) {
    Take(acquired, nFirst, BAYER_RG8);
  }
  Take(acquired, 5, 0); // a format that no table is for
  acquired.Finish(true);
  EXPECT_EQ(ListFirst(acquired.GetBright()), (std::vector<int>{2, 3})) << "five bytes";
  EXPECT_EQ(acquired.GetBright()->pFormat->nCode, BAYER_RG8);
}

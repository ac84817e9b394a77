// What holds alike for the processes that take a dark frame, and balance a colour camera before the bright ones.
#include <string>
#include <utility>
#include <vector>

#include "tests/pluginobject/shadingcorrection/process/processkinds.h"

using namespace ffc::test;
using ffc::genapi::SNodeAccess;

namespace {

constexpr uint32_t BRIGHT_GRAY = 120;
constexpr int FRAME_COUNT = 4;

} // namespace

template <class TKind>
class DarkFrame : public testing::Test {
protected:
  using Rig = typename TKind::Rig;

  static bool IsUsed(Rig &rig, CProcessRig::FnFrame fnDark) { return IsDarkUsed<TKind>(rig, std::move(fnDark)); }
  static bool IsUsed(Rig &rig, uint32_t nGray)
  {
    return IsUsed(rig, [&rig, nGray](int) { return rig.Camera().MakeFrame(nGray); });
  }
  // Of 64 x 64 pixels, the first block of another value.
  static bool IsUnevenUsed(Rig &rig, uint8_t nGray, uint8_t nBlockGray)
  {
    return IsUsed(rig, [=](int) { return MakeUneven(nGray, nBlockGray); });
  }
};

using Kinds = testing::Types<SHost, SDevice>;
TYPED_TEST_SUITE(DarkFrame, Kinds, SKindName);

TYPED_TEST(DarkFrame, IsOneFrame)
{
  typename TypeParam::Rig rig;
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.GetFrameCount(), 1);
  EXPECT_EQ(rig.Process().WaitImageRequest(), NOT_REQUESTED);
}

TYPED_TEST(DarkFrame, UpToGreyTwentyIsUsedAndABrighterOneNot)
{
  typename TypeParam::Rig rig;
  EXPECT_TRUE(this->IsUsed(rig, 1));
  EXPECT_TRUE(this->IsUsed(rig, 20));
  EXPECT_FALSE(this->IsUsed(rig, 21));
  EXPECT_FALSE(this->IsUsed(rig, 255));
  EXPECT_TRUE(this->IsUsed(rig, 20));
}

TYPED_TEST(DarkFrame, ThatIsUnevenByFiveIsKeptButNotUsed)
{
  typename TypeParam::Rig rig("Mono8", 64, 64);
  EXPECT_TRUE(this->IsUnevenUsed(rig, 16, 20));
  EXPECT_FALSE(this->IsUnevenUsed(rig, 15, 20));
  EXPECT_FALSE(this->IsUnevenUsed(rig, 5, 0));
  EXPECT_TRUE(this->IsUnevenUsed(rig, 4, 0));
}

TYPED_TEST(DarkFrame, OfABayerCameraIsJudgedColourByColour)
{
  // Red 20, blue 15: the colours differ by 5 although all blocks are alike.
  const auto cells = [](int) {
    std::vector<uint8_t> listFrame(64 * 64, 17);
    for (std::size_t y = 0; y < 64; y += 2) {
      for (std::size_t x = 0; x < 64; x += 2) {
        listFrame[y * 64 + x] = 20;
        listFrame[(y + 1) * 64 + x + 1] = 15;
      }
    }
    return listFrame;
  };
  typename TypeParam::Rig colourRig("BayerRG8", 64, 64);
  EXPECT_FALSE(this->IsUsed(colourRig, cells));
  EXPECT_TRUE(this->IsUsed(colourRig, [](int) { return std::vector<uint8_t>(64 * 64, 17); }));
  typename TypeParam::Rig rig("Mono8", 64, 64);
  EXPECT_TRUE(this->IsUsed(rig, cells));
}

TYPED_TEST(DarkFrame, ThatFailedIsNotUsedAndTheBrightOneStays)
{
  typename TypeParam::Rig rig;
  EXPECT_TRUE(this->IsUsed(rig, [&rig](int) { return rig.Camera().MakeFrame(10); }));
  rig.ShowNothing();
  EXPECT_EQ(rig.Process().AcquireDarkImage(), PLUGIN_STATUS_BUFFER_TIMEOUT);
  EXPECT_EQ(rig.Process().IsBlackLevelDefault(), TypeParam::BLACK_LEVEL_DEFAULT);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_FALSE(TypeParam::IsDarkInForce(rig));
}

TYPED_TEST(DarkFrame, OfALargerPayloadIsUsed)
{
  typename TypeParam::Rig rig;
  const int64_t nLarger = rig.Camera().GetPayloadSize() + 100;
  rig.Camera().Integer("PayloadSize").OnRead([nLarger] { return nLarger; });
  EXPECT_TRUE(
    this->IsUsed(rig, [nLarger](int) { return std::vector<uint8_t>(static_cast<std::size_t>(nLarger), 10); }));
}

template <class TKind>
class ColourCamera : public testing::Test {
protected:
  ColourCamera() { SetFrameCount(m_rig, FRAME_COUNT); }

  typename TKind::Rig m_rig{"BayerRG8", 64, 64};
};

TYPED_TEST_SUITE(ColourCamera, Kinds, SKindName);

TYPED_TEST(ColourCamera, TakesFrameCountFramesBehindThoseOfTheBalance)
{
  auto &rig = this->m_rig;
  for (const int nReads : {1, 2, 3, 4, 5}) {
    rig.Camera().SetWhiteBalanceReads(nReads);
    EXPECT_EQ(rig.AcquireBright(BRIGHT_GRAY), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.GetFrameCount(), nReads + TypeParam::SETTLING_FRAMES + FRAME_COUNT);
    EXPECT_EQ(rig.Process().WaitImageRequest(), NOT_REQUESTED);
  }
}

TYPED_TEST(ColourCamera, ThatNeverEndsItsBalanceIsGivenFiveFramesAndIsNoFailure)
{
  auto &rig = this->m_rig;
  rig.Camera().SetWhiteBalanceReads(-1);
  EXPECT_EQ(rig.AcquireBright(BRIGHT_GRAY), PLUGIN_STATUS_SUCCESS);
  // A sixth frame may have been on its way when the last request was withdrawn.
  EXPECT_GE(rig.GetFrameCount(), 5 + TypeParam::SETTLING_FRAMES + FRAME_COUNT);
  EXPECT_LE(rig.GetFrameCount(), 6 + TypeParam::SETTLING_FRAMES + FRAME_COUNT);
}

TYPED_TEST(ColourCamera, ThatDoesNotTellWhetherItIsBalancedIsGivenFiveFrames)
{
  auto &rig = this->m_rig;
  bool bWritten = false;
  rig.SetHook([&bWritten](const SNodeAccess &stAccess) {
    const bool bBalance = stAccess.strNode == "BalanceWhiteAuto";
    if (bBalance && bWritten && stAccess.eKind == SNodeAccess::EKind::CurrentEntry) {
      throw GenICam::AccessException("refused", __FILE__, __LINE__);
    }
    bWritten = bWritten || (bBalance && stAccess.eKind == SNodeAccess::EKind::Write);
  });
  EXPECT_EQ(rig.AcquireBright(BRIGHT_GRAY), PLUGIN_STATUS_SUCCESS);
  EXPECT_GE(rig.GetFrameCount(), 5 + TypeParam::SETTLING_FRAMES + FRAME_COUNT);
}

TYPED_TEST(ColourCamera, DoesNotAverageTheFramesBeforeItsBrightOnes)
{
  auto &rig = this->m_rig;
  TypeParam::PutIntoForce(rig);
  const std::vector<uint8_t> listInForce = TypeParam::GetInForce(rig);
  rig.Camera().SetWhiteBalanceReads(3);
  rig.Show([&rig](int nFrame) { return rig.Camera().MakeFrame(nFrame < 3 + TypeParam::SETTLING_FRAMES ? 250 : 120); });
  EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().GetImageMaxGray(), 120.0);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(TypeParam::GetInForce(rig), listInForce);
}

TYPED_TEST(ColourCamera, ThatSendsNoFramesTimesOutAndHasItsSettingsBack)
{
  auto &rig = this->m_rig;
  rig.ShowNothing();
  const Settings mapBefore = rig.TakeSnapshot();
  rig.Camera().SetWhiteBalanceReads(-1);
  EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_BUFFER_TIMEOUT);
  EXPECT_EQ(DescribeChanges(mapBefore, rig.TakeSnapshot()), "");
}

TYPED_TEST(ColourCamera, HasTheFramesOfItsBalanceWipedFromTheBuffer)
{
  auto &rig = this->m_rig;
  rig.Show(
    [](int nFrame) { return nFrame == 0 ? std::vector<uint8_t>(64 * 64, 250) : std::vector<uint8_t>(64 * 32, 100); });
  EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().GetImageMaxGray(), 100.0);
  EXPECT_EQ(rig.Process().GetImageGrayDiff(), 100.0);
}

TYPED_TEST(ColourCamera, BalancesInAdaptiveLightDuringTheAcquisition)
{
  auto &rig = this->m_rig;
  for (const char *pLampHouse : {"Fluorescence", "D65"}) {
    std::string strLampHouse;
    rig.Show([&](int nFrame) {
      if (nFrame == 0) {
        strLampHouse = rig.Camera().Enumeration("AWBLampHouse").PeekSymbolic();
      }
      return rig.Camera().MakeFrame(BRIGHT_GRAY);
    });
    rig.Camera().Enumeration("AWBLampHouse").Select(pLampHouse);
    EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(strLampHouse, "Adaptive");
    EXPECT_EQ(rig.Camera().Enumeration("AWBLampHouse").PeekSymbolic(), pLampHouse);
  }
}

TYPED_TEST(ColourCamera, NeedsNoBalanceForADarkFrame)
{
  auto &rig = this->m_rig;
  rig.SetHook([](const SNodeAccess &stAccess) {
    EXPECT_EQ(stAccess.strNode.find("Balance"), std::string::npos);
    EXPECT_NE(stAccess.strNode, "AWBLampHouse");
  });
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.GetFrameCount(), 1);
}

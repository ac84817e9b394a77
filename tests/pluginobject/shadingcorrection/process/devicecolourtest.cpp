#include <gtest/gtest.h>

#include "tests/pluginobject/shadingcorrection/process/devicerig.h"

using namespace ffc::test;

namespace {

constexpr int FRAME_COUNT = 4;

class DeviceColour : public testing::Test {
protected:
  DeviceColour() { EXPECT_EQ(0, m_rig.Process().SetFrameCount("FFCFrameCount_4")); }

  CDeviceRig m_rig{"BayerRG8"};
};

} // namespace

TEST_F(DeviceColour, TakesFrameCountFramesAfterThoseOfTheBalance)
{
  for (const int nReads : {1, 2, 3, 4, 5}) {
    m_rig.Camera().SetWhiteBalanceReads(nReads);
    EXPECT_EQ(0, m_rig.AcquireBright(120));
    EXPECT_EQ(nReads + FRAME_COUNT, m_rig.GetFrameCount());
    EXPECT_EQ(258U, m_rig.Process().WaitImageRequest());
  }
}

TEST_F(DeviceColour, ABalanceThatNeverEndsIsGivenFiveFramesAndIsNoFailure)
{
  m_rig.Camera().SetWhiteBalanceReads(-1);
  EXPECT_EQ(0, m_rig.AcquireBright(120));
  // A sixth frame may have been on its way when the last request was withdrawn.
  EXPECT_GE(m_rig.GetFrameCount(), 5 + FRAME_COUNT);
  EXPECT_LE(m_rig.GetFrameCount(), 6 + FRAME_COUNT);
}

TEST_F(DeviceColour, TheFramesOfTheBalanceAreNotAveraged)
{
  m_rig.Camera().SetWhiteBalanceReads(3);
  m_rig.Show([](int nFrame) { return std::vector<uint8_t>(64 * 64, nFrame < 3 ? 250 : 100); });
  EXPECT_EQ(0, m_rig.Process().AcquireBrightImage());
  EXPECT_EQ(100.0, m_rig.Process().GetImageMaxGray());
  EXPECT_EQ(0, m_rig.Process().ExecuteCorrection());
  const std::vector<uint8_t> listBytes = m_rig.Camera().Correction().GetWritten();
  EXPECT_EQ(65280 / 100, listBytes[2] + 256 * listBytes[3]);
}

TEST_F(DeviceColour, TheFramesOfTheBalanceAreWipedFromTheBuffer)
{
  m_rig.Show(
    [](int nFrame) { return nFrame == 0 ? std::vector<uint8_t>(64 * 64, 250) : std::vector<uint8_t>(64 * 32, 100); });
  EXPECT_EQ(0, m_rig.Process().AcquireBrightImage());
  EXPECT_EQ(100.0, m_rig.Process().GetImageMaxGray());
  EXPECT_EQ(100.0, m_rig.Process().GetImageGrayDiff());
}

TEST_F(DeviceColour, TheCameraBalancesInAdaptiveLightDuringTheAcquisition)
{
  std::string strLampHouse;
  m_rig.Show([&](int nFrame) {
    if (nFrame == 0) {
      strLampHouse = m_rig.Camera().Enumeration("AWBLampHouse").PeekSymbolic();
    }
    return m_rig.Camera().MakeFrame(120);
  });
  m_rig.Camera().Enumeration("AWBLampHouse").Select("Fluorescence");
  EXPECT_EQ(0, m_rig.Process().AcquireBrightImage());
  EXPECT_EQ("Adaptive", strLampHouse);
  EXPECT_EQ("Fluorescence", m_rig.Camera().Enumeration("AWBLampHouse").PeekSymbolic());
}

TEST_F(DeviceColour, ModeAndRatiosOfTheUserAreBackAfterwards)
{
  CCorrectingCamera &camera = m_rig.Camera();
  camera.Enumeration("BalanceWhiteAuto").SetIntValue(2);
  camera.Enumeration("BalanceRatioSelector").Select("Blue");
  const auto mapBefore = m_rig.TakeSettings();
  m_rig.Show([&](int) {
    const auto lock = camera.Device().Lock();
    camera.m_adBalanceRatio = {9.0, 9.0, 9.0}; // what the balance found
    return camera.MakeFrame(120);
  });
  EXPECT_EQ(0, m_rig.Process().AcquireBrightImage());
  EXPECT_EQ("", DescribeChanges(mapBefore, m_rig.TakeSettings()));
}

TEST_F(DeviceColour, AWhiteBalanceFeatureThatIsRefusedIsReported)
{
  for (const char *pFeature : {"AWBLampHouse", "BalanceWhiteAuto"}) {
    for (const GenApi::EAccessMode eMode : {GenApi::NI, GenApi::NA, GenApi::RO}) {
      CDeviceRig rig("BayerRG8");
      rig.Camera().Enumeration(pFeature).Access(eMode);
      const auto mapBefore = rig.TakeSettings();
      EXPECT_EQ(-1018, rig.AcquireBright(120)) << pFeature;
      EXPECT_EQ(0, rig.GetFrameCount()) << pFeature;
      EXPECT_EQ((std::vector<int32_t>{11}), rig.TakeSignals()) << pFeature; // the stream never started
      EXPECT_EQ("", DescribeChanges(mapBefore, rig.TakeSettings())) << pFeature;
      EXPECT_EQ(-3, rig.Process().ExecuteCorrection()) << pFeature;
    }
  }
}

TEST_F(DeviceColour, AWhiteBalanceFeatureThatIsMissingIsInvalid)
{
  // Only a refusal has a code of its own.
  CCorrectingCamera camera("Mono8");
  camera.Device().AddEnumeration("PixelColorFilter").Entry("BayerRG", 1);
  CShadingCorrectionPro_Dev process{CFeatureAccess(&camera.Device())};
  EXPECT_EQ(0, process.InitProcess());
  EXPECT_TRUE(process.IsColorCamera());
  EXPECT_EQ(-3, process.AcquireBrightImage());
}

TEST_F(DeviceColour, ACameraThatDoesNotTellWhetherItIsBalancedIsGivenFiveFrames)
{
  m_rig.SetHook([](const SNodeAccess &stAccess) {
    if (stAccess.strNode == "BalanceWhiteAuto" && stAccess.eKind == SNodeAccess::EKind::CurrentEntry) {
      throw GenICam::AccessException("refused", __FILE__, __LINE__);
    }
  });
  EXPECT_EQ(0, m_rig.AcquireBright(120));
  EXPECT_GE(m_rig.GetFrameCount(), 5 + FRAME_COUNT);
}

TEST_F(DeviceColour, WithoutFramesTheBalanceEndsAndTheAcquisitionTimesOut)
{
  m_rig.ShowNothing();
  m_rig.Camera().SetWhiteBalanceReads(-1);
  EXPECT_EQ(-1009, m_rig.Process().AcquireBrightImage());
  EXPECT_EQ("Off", m_rig.Camera().Enumeration("BalanceWhiteAuto").PeekSymbolic());
}

TEST_F(DeviceColour, AStopDuringTheBalanceStopsAtTheFirstFrame)
{
  m_rig.Show([this](int nFrame) {
    m_rig.Process().SetStopFlag(nFrame == 0);
    return m_rig.Camera().MakeFrame(120);
  });
  // The balance does not look at the flag; the first frame has it cleared again.
  EXPECT_EQ(0, m_rig.Process().AcquireBrightImage());
  m_rig.Show([this](int) {
    m_rig.Process().SetStopFlag(true);
    return m_rig.Camera().MakeFrame(120);
  });
  EXPECT_EQ(-1017, m_rig.Process().AcquireBrightImage());
  EXPECT_EQ(2, m_rig.GetFrameCount());
}

TEST_F(DeviceColour, ADarkFrameNeedsNoBalance)
{
  m_rig.SetHook([](const SNodeAccess &stAccess) {
    EXPECT_EQ(std::string::npos, stAccess.strNode.find("Balance"));
    EXPECT_NE("AWBLampHouse", stAccess.strNode);
  });
  EXPECT_EQ(0, m_rig.AcquireDark(10));
  EXPECT_EQ(1, m_rig.GetFrameCount());
}

TEST_F(DeviceColour, EachColourHasItsOwnGains)
{
  // Green 100, red 200, blue 50, in the order of a camera whose first row is red and green.
  m_rig.Show([](int) {
    std::vector<uint8_t> listFrame(64 * 64, 100);
    for (std::size_t y = 0; y < 64; y += 2) {
      for (std::size_t x = 0; x < 64; x += 2) {
        listFrame[y * 64 + x] = 200;
        listFrame[(y + 1) * 64 + x + 1] = 50;
      }
    }
    return listFrame;
  });
  EXPECT_EQ(0, m_rig.Process().AcquireBrightImage());
  EXPECT_EQ(0, m_rig.Process().ExecuteCorrection());
  const std::vector<uint8_t> listBytes = m_rig.Camera().Correction().GetWritten();
  const auto fnWord = [&listBytes](std::size_t i) { return listBytes[2 * i] + 256 * listBytes[2 * i + 1]; };
  EXPECT_EQ((std::vector<int>{0, 65280 / 50, 65280 / 100, 65280 / 200}),
            (std::vector<int>{fnWord(0), fnWord(1), fnWord(2), fnWord(3)}));
}

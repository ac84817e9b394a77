#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/devicerig.h"

using ffc::pluginobject::CFeatureAccess;
using namespace ffc::test;

namespace {

class DeviceColour : public testing::Test {
protected:
  DeviceColour() { EXPECT_EQ(m_rig.Process().SetFrameCount("FFCFrameCount_4"), PLUGIN_STATUS_SUCCESS); }

  CDeviceRig m_rig{"BayerRG8"};
};

} // namespace

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
  EXPECT_EQ(m_rig.Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(DescribeChanges(mapBefore, m_rig.TakeSettings()), "");
}

TEST_F(DeviceColour, AWhiteBalanceFeatureThatIsRefusedIsReported)
{
  for (const char *pFeature : {"AWBLampHouse", "BalanceWhiteAuto"}) {
    for (const GenApi::EAccessMode eMode : {GenApi::NI, GenApi::NA, GenApi::RO}) {
      CDeviceRig rig("BayerRG8");
      rig.Camera().Enumeration(pFeature).Access(eMode);
      const auto mapBefore = rig.TakeSettings();
      EXPECT_EQ(rig.AcquireBright(120), PLUGIN_STATUS_PIXEL_FORMAT_NOT_IMPLEMENTED) << pFeature;
      EXPECT_EQ(rig.GetFrameCount(), 0) << pFeature;
      EXPECT_EQ(rig.TakeSignals(), (std::vector<int32_t>{11})) << pFeature; // the stream never started
      EXPECT_EQ(DescribeChanges(mapBefore, rig.TakeSettings()), "") << pFeature;
      EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM) << pFeature;
    }
  }
}

TEST_F(DeviceColour, AWhiteBalanceFeatureThatIsMissingIsInvalid)
{
  // Only a refusal has a code of its own.
  CCorrectingCamera camera("Mono8");
  camera.Device().AddEnumeration("PixelColorFilter").Entry("BayerRG", 1);
  CShadingCorrectionPro_Dev process{CFeatureAccess(&camera.Device())};
  EXPECT_EQ(process.InitProcess(), PLUGIN_STATUS_SUCCESS);
  EXPECT_TRUE(process.IsColorCamera());
  EXPECT_EQ(process.AcquireBrightImage(), PLUGIN_STATUS_INVALID_PARAM);
}

TEST_F(DeviceColour, AStopDuringTheBalanceStopsAtTheFirstFrame)
{
  m_rig.Show([this](int nFrame) {
    m_rig.Process().SetStopFlag(nFrame == 0);
    return m_rig.Camera().MakeFrame(120);
  });
  // The balance does not look at the flag; the first frame has it cleared again.
  EXPECT_EQ(m_rig.Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
  m_rig.Show([this](int) {
    m_rig.Process().SetStopFlag(true);
    return m_rig.Camera().MakeFrame(120);
  });
  EXPECT_EQ(m_rig.Process().AcquireBrightImage(), PLUGIN_STATUS_NEED_BAYER_FORMAT);
  EXPECT_EQ(m_rig.GetFrameCount(), 2);
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
  EXPECT_EQ(m_rig.Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  const std::vector<uint8_t> listBytes = m_rig.Camera().Correction().GetWritten();
  const auto word = [&listBytes](std::size_t i) { return listBytes[2 * i] + 256 * listBytes[2 * i + 1]; };
  EXPECT_EQ((std::vector<int>{0, 65280 / 50, 65280 / 100, 65280 / 200}),
            (std::vector<int>{word(0), word(1), word(2), word(3)}));
}

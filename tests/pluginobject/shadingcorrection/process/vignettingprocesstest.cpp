#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/vignettingrig.h"

using ffc::genapi::CObservedNodeMap;
using ffc::genapi::SNodeAccess;
using ffc::pluginobject::CFeatureAccess;
using namespace ffc::test;

namespace {

using Words = std::vector<uint32_t>;

void SetSize(CVignettingRig &rig, int64_t nSize)
{
  rig.Camera().Integer("FFCCoefficientsSize").OnRead([nSize] { return nSize; });
}

} // namespace

TEST(VignettingProcess, StartsWithARecordOfItsMode)
{
  const CFeatureAccess features(nullptr);
  const FFCInfo stInfo = CVignettingCorrectionPro_Dev(features).GetCorrectionInfo();
  EXPECT_EQ(stInfo.nMode, 2U);
  EXPECT_EQ(stInfo.nValid + stInfo.nFrameCount + stInfo.nBlockSizeCode + stInfo.nCoefficientsSize + stInfo.nExpectGray,
            0U);
}

TEST(VignettingProcess, TakesItsSettingsFromTheCamera)
{
  CVignettingRig rig("Mono8", 640, 480);
  rig.Camera().Enumeration("FFCFrameCount").Select("FFCFrameCount_8");
  EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.GetInfo(), (Words{0, 2, 8, 2, 240 + 24, 0}));
  rig.Camera().Enumeration("FFCBlockSize").Select("BlockSize_16384");
  EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.GetInfo(), (Words{0, 2, 8, 3, 8 * 6 * 2 + 24, 0}));
  CVignettingRig colourRig("BayerRG8", 640, 480);
  EXPECT_EQ(colourRig.GetInfo(), (Words{0, 2, 1, 2, 720 + 24, 0}));
}

TEST(VignettingProcess, AnUnknownBlockSizeOrFrameCountLeavesTheFormerOne)
{
  CVignettingRig rig;
  rig.Camera().Enumeration("FFCBlockSize").Select("BlockSize_16384").Entry("BlockSize_1024", 0).Entry("BlockSize_1", 9);
  rig.Camera().Enumeration("FFCFrameCount").Select("FFCFrameCount_4").Entry("FFCFrameCount_3", 9);
  EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_SUCCESS);
  for (const char *pBlockSize : {"BlockSize_1024", "BlockSize_1"}) { // the first one is a flat-field camera's
    rig.Camera().Enumeration("FFCBlockSize").Select(pBlockSize);
    rig.Camera().Enumeration("FFCFrameCount").Select("FFCFrameCount_3");
    EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.Process().GetCorrectionInfo().nBlockSizeCode, 3U) << pBlockSize;
    EXPECT_EQ(rig.Process().GetCorrectionInfo().nFrameCount, 4U) << pBlockSize;
  }
  // The blocks themselves are the former ones too.
  rig.Camera().Enumeration("FFCBlockSize").Select("BlockSize_16384");
  EXPECT_EQ(rig.Correct(100), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.GetWritten().size(), 56U);
}

TEST(VignettingProcess, WithABlockSizeOrAFrameCountThatWasNeverKnownNothingIsAcquired)
{
  for (const char *pName : {"FFCBlockSize", "FFCFrameCount"}) {
    CCorrectingCamera camera("Mono8", 192, 128, {}, ECoefficients::Vignetting);
    camera.Enumeration(pName).Entry("Foreign_1", 9).Select("Foreign_1");
    CVignettingCorrectionPro_Dev process{CFeatureAccess(&camera.Device())};
    EXPECT_EQ(process.InitProcess(), PLUGIN_STATUS_SUCCESS) << pName;
    const CFramePump pump([](std::vector<uint8_t> &listFrame, uint64_t) { listFrame.assign(192 * 128, 100); },
                          [&process](const std::vector<uint8_t> &listFrame) {
                            if (process.WaitImageRequest() == 0) {
                              process.ReceiveImage(listFrame.data(), static_cast<uint32_t>(listFrame.size()));
                              process.SetImageReady();
                            }
                          });
    EXPECT_EQ(process.AcquireBrightImage(), PLUGIN_STATUS_INVALID_PARAM) << pName;
    EXPECT_EQ(process.ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM) << pName;
  }
}

TEST(VignettingProcess, ASizeThatCannotBeAllocatedIsOutOfMemory)
{
  for (const int64_t nSize : {int64_t{-1}, INT64_MIN, INT64_MAX, int64_t{1} << 32, int64_t{1} << 40}) {
    CVignettingRig rig;
    SetSize(rig, nSize);
    EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_OUT_OF_MEMORY) << nSize;
    EXPECT_EQ(rig.Process().LoadFromFlash(), PLUGIN_STATUS_OUT_OF_MEMORY) << nSize;
    EXPECT_EQ(rig.Process().SaveToFile(), PLUGIN_STATUS_OUT_OF_MEMORY) << nSize;
    CVignettingCorrectionPro_Dev process{CFeatureAccess(&rig.Camera().Device())};
    EXPECT_EQ(process.InitProcess(), PLUGIN_STATUS_OUT_OF_MEMORY) << nSize;
    EXPECT_EQ(process.ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM) << nSize;
  }
}

TEST(VignettingProcess, InitStopsAtTheFirstFeatureThatCannotBeRead)
{
  for (const char *pName : {"PixelColorFilter", "FFCBlockSize", "FFCFrameCount", "FFCCoefficientsSize"}) {
    CCorrectingCamera camera("BayerGR8", 192, 128, {}, ECoefficients::Vignetting);
    CObservedNodeMap map(camera.Device());
    std::vector<std::string> listRead;
    map.AddHook([&listRead, pName](const SNodeAccess &stAccess) {
      if (stAccess.eKind == SNodeAccess::EKind::LookUp) {
        listRead.push_back(stAccess.strNode);
      } else if (stAccess.strNode == pName && stAccess.eKind != SNodeAccess::EKind::AccessMode) {
        throw GenICam::TimeoutException("no answer", __FILE__, __LINE__);
      }
    });
    CVignettingCorrectionPro_Dev process{CFeatureAccess(&map)};
    EXPECT_EQ(process.InitProcess(), PLUGIN_STATUS_FEATURE_ERROR) << pName;
    EXPECT_EQ(listRead.back(), pName);
    EXPECT_TRUE(process.IsColorCamera()) << pName;
    EXPECT_EQ(process.ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM) << pName;
  }
}

TEST(VignettingProcess, TakesTheBlackLevelForTheDefaultOneWhateverHappens)
{
  CVignettingRig rig;
  EXPECT_TRUE(rig.Process().IsBlackLevelDefault());
  rig.Camera().Float("BlackLevel").Poke(9.0);
  EXPECT_EQ(rig.Process().AcquireDarkImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_TRUE(rig.Process().IsBlackLevelDefault());
  EXPECT_EQ(rig.Correct(100), PLUGIN_STATUS_SUCCESS);
  EXPECT_TRUE(rig.Process().IsBlackLevelDefault());
  rig.Refuse("ExposureTime");
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_TRUE(rig.Process().IsBlackLevelDefault());
}

TEST(VignettingProcess, TheExpectedGreyIsIgnored)
{
  CVignettingRig rig;
  EXPECT_EQ(rig.Process().SetExpectGray(137), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().SetExpectGray(INT64_MIN), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().GetCorrectionInfo().nExpectGray, 0U);
}

TEST(VignettingProcess, WithoutACameraIsInvalidButForWhatNeedsNone)
{
  CVignettingCorrectionPro_Dev process{CFeatureAccess(nullptr)};
  int nMessages = 0;
  QObject::connect(&process, &IShadingCorrectionProcess::SigAcquisitionStatusChanged,
                   [&nMessages](const PLUGIN_MSG &) { ++nMessages; });
  EXPECT_EQ(process.InitProcess(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.PrepareDeviceParam(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.AcquireBrightImage(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.SetFrameCount("FFCFrameCount_4"), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.LoadFromFlash(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.SaveToFlash(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.LoadFromFile(), PLUGIN_STATUS_INVALID_PARAM); // neither asks for a file
  EXPECT_EQ(process.SaveToFile(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.AcquireDarkImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(process.SetExpectGray(100), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(process.CorrectImage(nullptr, nullptr, 0, 0, 0), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(nMessages, 0);
  EXPECT_EQ(process.RestoreDeviceParam(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(process.GetCorrectionInfo().nFrameCount, 0U);
  EXPECT_FALSE(process.IsColorCamera());
  EXPECT_TRUE(process.IsPixelFormatSupported());
  EXPECT_TRUE(process.IsBlackLevelDefault());
}

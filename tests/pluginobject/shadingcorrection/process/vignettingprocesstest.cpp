#include <gtest/gtest.h>

#include "tests/pluginobject/shadingcorrection/process/vignettingrig.h"

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
  EXPECT_EQ(2U, stInfo.nMode);
  EXPECT_EQ(0U,
            stInfo.nValid + stInfo.nFrameCount + stInfo.nBlockSizeCode + stInfo.nCoefficientsSize + stInfo.nExpectGray);
}

TEST(VignettingProcess, TakesItsSettingsFromTheCamera)
{
  CVignettingRig rig("Mono8", 640, 480);
  rig.Camera().Enumeration("FFCFrameCount").Select("FFCFrameCount_8");
  EXPECT_EQ(0, rig.Process().InitProcess());
  EXPECT_EQ((Words{0, 2, 8, 2, 240 + 24, 0}), rig.GetInfo());
  rig.Camera().Enumeration("FFCBlockSize").Select("BlockSize_16384");
  EXPECT_EQ(0, rig.Process().InitProcess());
  EXPECT_EQ((Words{0, 2, 8, 3, 8 * 6 * 2 + 24, 0}), rig.GetInfo());
  CVignettingRig colourRig("BayerRG8", 640, 480);
  EXPECT_EQ((Words{0, 2, 1, 2, 720 + 24, 0}), colourRig.GetInfo());
}

TEST(VignettingProcess, AnUnknownBlockSizeOrFrameCountLeavesTheFormerOne)
{
  CVignettingRig rig;
  rig.Camera().Enumeration("FFCBlockSize").Select("BlockSize_16384").Entry("BlockSize_1024", 0).Entry("BlockSize_1", 9);
  rig.Camera().Enumeration("FFCFrameCount").Select("FFCFrameCount_4").Entry("FFCFrameCount_3", 9);
  EXPECT_EQ(0, rig.Process().InitProcess());
  for (const char *pBlockSize : {"BlockSize_1024", "BlockSize_1"}) { // the first one is a flat-field camera's
    rig.Camera().Enumeration("FFCBlockSize").Select(pBlockSize);
    rig.Camera().Enumeration("FFCFrameCount").Select("FFCFrameCount_3");
    EXPECT_EQ(0, rig.Process().InitProcess());
    EXPECT_EQ(3U, rig.Process().GetCorrectionInfo().nBlockSizeCode) << pBlockSize;
    EXPECT_EQ(4U, rig.Process().GetCorrectionInfo().nFrameCount) << pBlockSize;
  }
  // The blocks themselves are the former ones too.
  rig.Camera().Enumeration("FFCBlockSize").Select("BlockSize_16384");
  EXPECT_EQ(0, rig.Correct(100));
  EXPECT_EQ(56U, rig.GetWritten().size());
}

TEST(VignettingProcess, WithABlockSizeOrAFrameCountThatWasNeverKnownNothingIsAcquired)
{
  for (const char *pName : {"FFCBlockSize", "FFCFrameCount"}) {
    CCorrectingCamera camera("Mono8", 192, 128, {}, ECoefficients::Vignetting);
    camera.Enumeration(pName).Entry("Foreign_1", 9).Select("Foreign_1");
    CVignettingCorrectionPro_Dev process{CFeatureAccess(&camera.Device())};
    EXPECT_EQ(0, process.InitProcess()) << pName;
    const CFramePump pump([](std::vector<uint8_t> &listFrame, uint64_t) { listFrame.assign(192 * 128, 100); },
                          [&process](const std::vector<uint8_t> &listFrame) {
                            if (process.WaitImageRequest() == 0) {
                              process.ReceiveImage(listFrame.data(), static_cast<uint32_t>(listFrame.size()));
                              process.SetImageReady();
                            }
                          });
    EXPECT_EQ(-3, process.AcquireBrightImage()) << pName;
    EXPECT_EQ(-3, process.ExecuteCorrection()) << pName;
  }
}

TEST(VignettingProcess, ASizeThatCannotBeAllocatedIsOutOfMemory)
{
  for (const int64_t nSize : {int64_t{-1}, INT64_MIN, INT64_MAX, int64_t{1} << 32, int64_t{1} << 40}) {
    CVignettingRig rig;
    SetSize(rig, nSize);
    EXPECT_EQ(-2, rig.Process().InitProcess()) << nSize;
    EXPECT_EQ(-2, rig.Process().LoadFromFlash()) << nSize;
    EXPECT_EQ(-2, rig.Process().SaveToFile()) << nSize;
    CVignettingCorrectionPro_Dev process{CFeatureAccess(&rig.Camera().Device())};
    EXPECT_EQ(-2, process.InitProcess()) << nSize;
    EXPECT_EQ(-3, process.ExecuteCorrection()) << nSize;
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
    EXPECT_EQ(-1002, process.InitProcess()) << pName;
    EXPECT_EQ(pName, listRead.back());
    EXPECT_TRUE(process.IsColorCamera()) << pName;
    EXPECT_EQ(-3, process.ExecuteCorrection()) << pName;
  }
}

TEST(VignettingProcess, AFrameCountThatTheCameraRefusesIsNotTaken)
{
  CVignettingRig rig;
  for (const uint32_t nCount : {1U, 2U, 4U, 8U, 16U}) {
    const std::string strEntry = "FFCFrameCount_" + std::to_string(nCount);
    EXPECT_EQ(0, rig.Process().SetFrameCount(strEntry));
    EXPECT_EQ(nCount, rig.Process().GetCorrectionInfo().nFrameCount);
    EXPECT_EQ(strEntry, rig.Camera().Enumeration("FFCFrameCount").PeekSymbolic());
  }
  EXPECT_EQ(-1002, rig.Process().SetFrameCount("FFCFrameCount_3"));
  rig.Camera().Enumeration("FFCFrameCount").Access(GenApi::RO);
  EXPECT_EQ(-1002, rig.Process().SetFrameCount("FFCFrameCount_2"));
  EXPECT_EQ(16U, rig.Process().GetCorrectionInfo().nFrameCount);
}

TEST(VignettingProcess, HasNoFrameBeforeTheFirstAcquisition)
{
  CVignettingRig rig;
  EXPECT_EQ(258U, rig.Process().WaitImageRequest());
  const std::vector<uint8_t> listFrame = rig.Camera().MakeFrame(100);
  rig.Process().ReceiveImage(listFrame.data(), static_cast<uint32_t>(listFrame.size())); // nobody asked
  rig.Process().SetImageReady();
  EXPECT_EQ(0.0, rig.Process().GetImageMaxGray());
  EXPECT_EQ(0.0, rig.Process().GetImageGrayDiff());
  EXPECT_EQ(-3, rig.Process().ExecuteCorrection());
  EXPECT_EQ(0U, rig.Process().GetCorrectionInfo().nValid);
}

TEST(VignettingProcess, TakesTheBlackLevelForTheDefaultOneWhateverHappens)
{
  CVignettingRig rig;
  EXPECT_TRUE(rig.Process().IsBlackLevelDefault());
  rig.Camera().Float("BlackLevel").Poke(9.0);
  EXPECT_EQ(0, rig.Process().AcquireDarkImage());
  EXPECT_TRUE(rig.Process().IsBlackLevelDefault());
  EXPECT_EQ(0, rig.Correct(100));
  EXPECT_TRUE(rig.Process().IsBlackLevelDefault());
  rig.Refuse("ExposureTime");
  EXPECT_EQ(-1002, rig.AcquireBright(100));
  EXPECT_TRUE(rig.Process().IsBlackLevelDefault());
}

TEST(VignettingProcess, TheExpectedGreyIsIgnored)
{
  CVignettingRig rig;
  EXPECT_EQ(0, rig.Process().SetExpectGray(137));
  EXPECT_EQ(0, rig.Process().SetExpectGray(INT64_MIN));
  EXPECT_EQ(0U, rig.Process().GetCorrectionInfo().nExpectGray);
}

TEST(VignettingProcess, TakesACameraWithAColourFilterForAColourCameraThatNeedsABayerFormat)
{
  EXPECT_FALSE(CVignettingRig("Mono12").Process().IsColorCamera());
  EXPECT_TRUE(CVignettingRig("Mono12").Process().IsPixelFormatSupported());
  CVignettingRig rig("BayerBG12");
  EXPECT_TRUE(rig.Process().IsColorCamera());
  EXPECT_TRUE(rig.Process().IsPixelFormatSupported());
  rig.Camera().Enumeration("PixelFormat").Entry("RGB8", 0x02180014).Select("RGB8");
  EXPECT_FALSE(rig.Process().IsPixelFormatSupported());
}

TEST(VignettingProcess, WithoutACameraIsInvalidButForWhatNeedsNone)
{
  CVignettingCorrectionPro_Dev process{CFeatureAccess(nullptr)};
  int nMessages = 0;
  QObject::connect(&process, &IShadingCorrectionProcess::SigAcquisitionStatusChanged,
                   [&nMessages](const PLUGIN_MSG &) { ++nMessages; });
  EXPECT_EQ(-3, process.InitProcess());
  EXPECT_EQ(-3, process.PrepareDeviceParam());
  EXPECT_EQ(-3, process.AcquireBrightImage());
  EXPECT_EQ(-3, process.ExecuteCorrection());
  EXPECT_EQ(-3, process.SetFrameCount("FFCFrameCount_4"));
  EXPECT_EQ(-3, process.LoadFromFlash());
  EXPECT_EQ(-3, process.SaveToFlash());
  EXPECT_EQ(-3, process.LoadFromFile()); // neither asks for a file
  EXPECT_EQ(-3, process.SaveToFile());
  EXPECT_EQ(0, process.AcquireDarkImage());
  EXPECT_EQ(0, process.SetExpectGray(100));
  EXPECT_EQ(0, process.CorrectImage(nullptr, nullptr, 0, 0, 0));
  EXPECT_EQ(0, nMessages);
  EXPECT_EQ(0, process.RestoreDeviceParam());
  EXPECT_EQ(0U, process.GetCorrectionInfo().nFrameCount);
  EXPECT_FALSE(process.IsColorCamera());
  EXPECT_TRUE(process.IsPixelFormatSupported());
  EXPECT_TRUE(process.IsBlackLevelDefault());
}

TEST(VignettingProcess, HasAMetaObjectOfItsOwn)
{
  const CVignettingCorrectionPro_Dev process{CFeatureAccess(nullptr)};
  EXPECT_STREQ("CVignettingCorrectionPro_Dev", process.metaObject()->className());
  EXPECT_STREQ("IShadingCorrectionProcess", process.metaObject()->superClass()->className());
}

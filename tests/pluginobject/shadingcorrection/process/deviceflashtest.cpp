#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/devicerig.h"

using namespace ffc::test;
using ffc::genapi::CSoftwareRegister;
using ffc::genapi::SNodeAccess;

namespace {

using Bytes = std::vector<uint8_t>;

// An image of 152 bytes, every byte another one, whose record has the given words as the camera keeps them.
Bytes MakeImage(const std::vector<uint32_t> &listWords)
{
  Bytes listImage(128);
  for (std::size_t i = 0; i < listImage.size(); ++i) {
    listImage[i] = static_cast<uint8_t>(i + 1);
  }
  const Bytes listRecord = MakeRecord(listWords);
  listImage.insert(listImage.end(), listRecord.begin(), listRecord.end());
  return listImage;
}

} // namespace

TEST(DeviceFlash, TheRecordOfTheFlashIsTakenWithItsBytePairsExchanged)
{
  CDeviceRig rig;
  rig.Camera().Correction().SetFlash(MakeImage({1, 1, 8, 1, 152, 0x01020304}));
  EXPECT_EQ(rig.Process().LoadFromFlash(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.GetInfo(), (std::vector<uint32_t>{1, 1, 8, 1, 152, 0x01020304}));
  EXPECT_EQ(rig.Camera().Enumeration("FlatFieldCorrection").PeekSymbolic(), "On");
  // A camera that hands the record out in plain order: the exchange shows.
  rig.Camera().Correction().SetRecordExchanged(false);
  EXPECT_EQ(rig.Process().LoadFromFlash(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.GetInfo(), (std::vector<uint32_t>{0x0100, 0x0100, 0x0800, 0x0100, 152 << 8, 0x02010403}));
}

TEST(DeviceFlash, LoadingLeavesTheCoefficientsAsTheFlashHasThem)
{
  CDeviceRig rig;
  const Bytes listFlash = MakeImage({1, 0, 4, 0, 152, 100});
  rig.Camera().Correction().SetFlash(listFlash);
  EXPECT_EQ(rig.Process().LoadFromFlash(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Camera().Correction().GetWritten(), listFlash);
}

TEST(DeviceFlash, SavingKeepsTheCoefficientsAndTheCameraStartsWithThem)
{
  CDeviceRig rig;
  EXPECT_EQ(rig.Correct(10, 120), PLUGIN_STATUS_SUCCESS);
  rig.Camera().Enumeration("FlatFieldCorrection").Select("Off");
  EXPECT_EQ(rig.Process().SaveToFlash(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Camera().Correction().GetWritten(), rig.Camera().Correction().GetFlash());
  EXPECT_EQ(rig.Camera().Enumeration("UserSetDefault").PeekSymbolic(), "UserSet0");
  rig.Camera().UserSets().Load("Default");
  EXPECT_EQ(rig.Camera().Enumeration("FlatFieldCorrection").PeekSymbolic(), "Off");
  rig.Camera().UserSets().Load("UserSet0");
  EXPECT_EQ(rig.Camera().Enumeration("FlatFieldCorrection").PeekSymbolic(), "On");
}

TEST(DeviceFlash, AFailedLoadKeepsTheRecord)
{
  for (const char *pName : {"FFCFlashLoad", "FFCValueAll", "FlatFieldCorrection"}) {
    CDeviceRig rig;
    rig.Camera().Correction().SetFlash(MakeImage({1, 1, 8, 1, 152, 7}));
    rig.SetHook([pName](const SNodeAccess &stAccess) {
      if (stAccess.strNode == pName) {
        throw GenICam::TimeoutException("no answer", __FILE__, __LINE__);
      }
    });
    EXPECT_EQ(rig.Process().LoadFromFlash(), PLUGIN_STATUS_FEATURE_ERROR) << pName;
    EXPECT_EQ(rig.GetInfo(), (std::vector<uint32_t>{0, 0, 1, 0, 152, 200}));
    EXPECT_EQ(rig.Camera().Enumeration("FlatFieldCorrection").PeekSymbolic(), "Off") << pName;
  }
}

TEST(DeviceFlash, ARegisterOfAnotherLengthIsRefusedAndKeepsTheRecord)
{
  CDeviceRig rig;
  for (const int64_t nLength : {151, 153, 0}) {
    rig.Camera().Device().Find<CSoftwareRegister>("FFCValueAll")->Length(nLength);
    EXPECT_EQ(rig.Process().LoadFromFlash(), PLUGIN_STATUS_ROI_MISMATCH) << nLength;
    EXPECT_EQ(rig.GetInfo(), (std::vector<uint32_t>{0, 0, 1, 0, 152, 200}));
    EXPECT_EQ(rig.Camera().Enumeration("FlatFieldCorrection").PeekSymbolic(), "Off") << nLength;
  }
}

TEST(DeviceFlash, ARegisterTooShortForARecordHasNone)
{
  for (const int64_t nSize : {0, 1, 23}) {
    CDeviceRig rig;
    rig.Camera().Integer("FFCCoefficientsSize").OnRead([nSize] { return nSize; });
    EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_SUCCESS) << nSize;
    const FFCInfo stInfo = rig.Process().GetCorrectionInfo();
    (void)rig.Process().LoadFromFlash();
    EXPECT_EQ(rig.Process().GetCorrectionInfo().nFrameCount, stInfo.nFrameCount) << nSize;
    EXPECT_EQ(rig.Process().GetCorrectionInfo().nExpectGray, stInfo.nExpectGray) << nSize;
  }
}

TEST(DeviceFlash, ARecordAloneIsTaken)
{
  CDeviceRig rig;
  rig.Camera().Integer("FFCCoefficientsSize").OnRead([] { return 24; });
  EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_SUCCESS);
  const Bytes listImage = MakeImage({1, 1, 8, 1, 24, 7});
  rig.Camera().Correction().SetFlash(Bytes(listImage.end() - 24, listImage.end()));
  EXPECT_EQ(rig.Process().LoadFromFlash(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.GetInfo(), (std::vector<uint32_t>{1, 1, 8, 1, 24, 7}));
}

TEST(DeviceFlash, AnExecutionAfterALoadWritesTheRealSizeWhateverTheLoadedRecordSays)
{
  for (const uint32_t nSize : {0U, 24U, 151U, 153U, 100000U, 0xFFFFFFFFU}) {
    CDeviceRig rig;
    EXPECT_EQ(rig.AcquireBright(120), PLUGIN_STATUS_SUCCESS);
    rig.Camera().Correction().SetFlash(MakeImage({1, 1, 8, 1, nSize, 7}));
    EXPECT_EQ(rig.Process().LoadFromFlash(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.Process().GetCorrectionInfo().nCoefficientsSize, nSize);
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.Camera().Correction().GetWritten().size(), 152U) << nSize;
    EXPECT_EQ(rig.GetInfo(), (std::vector<uint32_t>{1, 1, 8, 1, 152, 7})); // the mode stays that of the record
  }
}

TEST(DeviceFlash, ASaveThatTheCameraRefusesIsReported)
{
  for (const char *pName :
       {"FFCFlashSave", "FlatFieldCorrection", "UserSetSelector", "UserSetSave", "UserSetDefault"}) {
    CDeviceRig rig;
    rig.SetHook([pName](const SNodeAccess &stAccess) {
      if (stAccess.strNode == pName) {
        throw GenICam::TimeoutException("no answer", __FILE__, __LINE__);
      }
    });
    EXPECT_EQ(rig.Process().SaveToFlash(), PLUGIN_STATUS_FEATURE_ERROR) << pName;
    EXPECT_EQ(rig.Camera().Enumeration("UserSetDefault").PeekSymbolic(), "Default") << pName;
  }
}

TEST(DeviceFlash, WhileTheStreamRunsTheUserSetIsNotSaved)
{
  CDeviceRig rig;
  rig.SetStreaming(true);
  EXPECT_EQ(rig.Process().SaveToFlash(), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_EQ(rig.Camera().Enumeration("UserSetDefault").PeekSymbolic(), "Default");
  EXPECT_TRUE(rig.TakeSignals().empty());
}

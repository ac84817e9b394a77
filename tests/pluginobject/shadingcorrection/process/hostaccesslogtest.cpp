#include <algorithm>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/hostrig.h"
#include "tests/pluginobject/shadingcorrection/process/operationlog.h"

using namespace ffc::test;
using ffc::genapi::CSoftwareEnumeration;

namespace {

const Log SIZE_CHECK = {"get PayloadSize", "get PixelFormat", "get Width", "get Height"};
const Log SAVE = {"get ExposureTime", "get Gain",   "get TLParamsLocked", "get PayloadSize",
                  "get Width",        "get Height", "get PixelFormat",    "get TriggerMode"};
const Log SAVE_STREAM_MODE = {"get StreamBufferHandlingMode"};
const Log PREPARE_STREAM_MODE = {"set StreamBufferHandlingMode = NewestOnly"};
const Log START = {"start stream"};
const Log STOP = {"stop stream"};
// Only while the stream stands still.
const Log RESTORE = {"stop stream", "set TriggerMode = Off", "set StreamBufferHandlingMode = OldestFirst"};

Log RecordDark(CHostRig &rig)
{
  return RecordOperation(rig, [&rig] { return rig.AcquireDark(10); });
}

// Of one frame.
Log RecordBright(CHostRig &rig)
{
  rig.Process().SetFrameCount("FFCFrameCount_1");
  return RecordOperation(rig, [&rig] { return rig.AcquireBright(100); });
}

// A colour camera whose stream and trigger need no change.
std::unique_ptr<CHostRig> MakeColourRig(const char *pBalance)
{
  auto pRig = std::make_unique<CHostRig>("BayerGB8");
  CTestCamera &camera = pRig->Camera();
  camera.Stream().Find<CSoftwareEnumeration>("StreamBufferHandlingMode")->Select("NewestOnly");
  camera.Enumeration("BalanceWhiteAuto").FromString(pBalance);
  camera.Enumeration("BalanceRatioSelector").Select("Green");
  return pRig;
}

// After what is kept of the balance.
const Log BALANCE_ONCE = {"implemented? AWBLampHouse",   "get AWBLampHouse", "set AWBLampHouse = Adaptive",
                          "set BalanceWhiteAuto = Once", "start stream",     "get BalanceWhiteAuto"};
const Log PUT_BACK = {"stop stream", "set TriggerMode = Off", "set StreamBufferHandlingMode = NewestOnly"};

} // namespace

TEST(HostAccessLog, OfADarkAcquisition)
{
  CHostRig rig;
  EXPECT_EQ(Join({SIZE_CHECK, SAVE, SAVE_STREAM_MODE, PREPARE_STREAM_MODE, START, RESTORE}), RecordDark(rig));
  EXPECT_EQ(rig.TakeSignals(), (std::vector<int32_t>{10, 11}));
  EXPECT_TRUE(rig.AreSignalsPlain());
}

TEST(HostAccessLog, OfADarkAcquisitionWhileTheStreamRuns)
{
  CHostRig rig;
  rig.SetStreaming(true);
  EXPECT_EQ(Join({SIZE_CHECK, SAVE, SAVE_STREAM_MODE, STOP, PREPARE_STREAM_MODE, START, RESTORE, START}),
            RecordDark(rig));
  EXPECT_EQ(rig.TakeSignals(), (std::vector<int32_t>{11, 10, 11, 10}));
  EXPECT_TRUE(rig.AreSignalsPlain());
  EXPECT_TRUE(rig.IsStreaming());
}

TEST(HostAccessLog, OfABrightAcquisition)
{
  CHostRig rig;
  EXPECT_EQ(Join({SIZE_CHECK, SAVE, SAVE_STREAM_MODE, PREPARE_STREAM_MODE, START, SIZE_CHECK, RESTORE}),
            RecordBright(rig));
  EXPECT_EQ(rig.TakeSignals(), (std::vector<int32_t>{10, 11}));
}

TEST(HostAccessLog, OfABrightAcquisitionChecksTheSizeForEveryFrame)
{
  CHostRig rig;
  rig.Process().SetFrameCount("FFCFrameCount_2");
  EXPECT_EQ(Join({SIZE_CHECK, SAVE, SAVE_STREAM_MODE, PREPARE_STREAM_MODE, START, SIZE_CHECK, SIZE_CHECK, RESTORE}),
            RecordOperation(rig, [&rig] { return rig.AcquireBright(100); }));
}

TEST(HostAccessLog, OfABrightAcquisitionWhileTheStreamRuns)
{
  for (const char *pFormat : {"Mono8", "BayerGB8"}) {
    CHostRig rig(pFormat);
    rig.SetStreaming(true);
    const Log listLog = RecordBright(rig);
    const auto itStop = std::find(listLog.begin(), listLog.end(), STOP[0]);
    EXPECT_TRUE(KeepWrites(Log(listLog.begin(), itStop)).empty()) << pFormat;
    EXPECT_EQ(listLog.back(), START[0]) << pFormat;
    EXPECT_EQ(rig.TakeSignals(), (std::vector<int32_t>{11, 10, 11, 10})) << pFormat;
    EXPECT_TRUE(rig.IsStreaming()) << pFormat;
  }
}

TEST(HostAccessLog, TheTriggerIsSwitchedOffWhenItIsOnAndPutBack)
{
  CHostRig rig;
  rig.Camera().Enumeration("TriggerMode").Select("On");
  const Log listLog = RecordDark(rig);
  EXPECT_EQ(KeepWrites(listLog), (Log{"set TriggerMode = Off", "set StreamBufferHandlingMode = NewestOnly",
                                      "set TriggerMode = On", "set StreamBufferHandlingMode = OldestFirst"}));
  EXPECT_EQ(rig.Camera().Enumeration("TriggerMode").PeekSymbolic(), "On");
}

TEST(HostAccessLog, AStreamThatKeepsTheNewestFrameOnlyIsNotPrepared)
{
  CHostRig rig;
  rig.Camera().Stream().Find<CSoftwareEnumeration>("StreamBufferHandlingMode")->Select("NewestOnly");
  EXPECT_EQ(KeepWrites(RecordDark(rig)), KeepWrites(PUT_BACK));
}

TEST(HostAccessLog, AStreamWithoutBufferHandlingIsLeftAlone)
{
  CHostRig rig;
  rig.Camera().Stream().Find<CSoftwareEnumeration>("StreamBufferHandlingMode")->Access(GenApi::NI);
  EXPECT_EQ(KeepWrites(RecordDark(rig)), (Log{"set TriggerMode = Off"}));
}

TEST(HostAccessLog, AStreamThatHadABufferHandlingOnceIsLeftAloneToo)
{
  CHostRig rig;
  EXPECT_NE(KeepWrites(RecordDark(rig)), (Log{"set TriggerMode = Off"}));
  rig.Camera().Stream().Find<CSoftwareEnumeration>("StreamBufferHandlingMode")->Access(GenApi::NI);
  EXPECT_EQ(KeepWrites(RecordDark(rig)), (Log{"set TriggerMode = Off"}));
}

TEST(HostAccessLog, OfABrightAcquisitionOfAColourCamera)
{
  const auto pRig = MakeColourRig("Off");
  const Log listBalance = {"implemented? BalanceWhiteAuto", "get BalanceRatioSelector", "get BalanceWhiteAuto"};
  const Log listRestore = {"implemented? AWBLampHouse", "set AWBLampHouse = D65", "set BalanceWhiteAuto = Off"};
  EXPECT_EQ(Join({SIZE_CHECK, SAVE, SAVE_STREAM_MODE, listBalance, BALANCE_ONCE, SIZE_CHECK, listRestore, PUT_BACK}),
            RecordBright(*pRig));
  EXPECT_EQ(pRig->TakeSignals(), (std::vector<int32_t>{10, 11}));
}

TEST(HostAccessLog, OfABrightAcquisitionOfAColourCameraThatBalancesContinuously)
{
  const auto pRig = MakeColourRig("Continuous");
  const Log listBalance = {"implemented? BalanceWhiteAuto",
                           "get BalanceRatioSelector",
                           "get BalanceWhiteAuto",
                           "set BalanceRatioSelector = Red",
                           "get BalanceRatio",
                           "set BalanceRatioSelector = Green",
                           "get BalanceRatio",
                           "set BalanceRatioSelector = Blue",
                           "get BalanceRatio"};
  const Log listRestore = {
    "implemented? AWBLampHouse",       "set AWBLampHouse = D65",           "set BalanceRatioSelector = Red",
    "set BalanceRatio = 1.5",          "set BalanceRatioSelector = Green", "set BalanceRatio = 1",
    "set BalanceRatioSelector = Blue", "set BalanceRatio = 1.75",          "set BalanceRatioSelector = Green"};
  EXPECT_EQ(Join({SIZE_CHECK, SAVE, SAVE_STREAM_MODE, listBalance, BALANCE_ONCE, SIZE_CHECK, listRestore, PUT_BACK}),
            RecordBright(*pRig));
}

TEST(HostAccessLog, ABalanceThatWasUnderWayIsStartedAgainAfterwards)
{
  const auto pRig = MakeColourRig("Once");
  pRig->Camera().SetWhiteBalanceReads(2);
  pRig->Camera().Enumeration("BalanceWhiteAuto").FromString("Once");
  EXPECT_EQ(Join({{"set AWBLampHouse = Adaptive", "set BalanceWhiteAuto = Once", "set AWBLampHouse = D65",
                   "set BalanceWhiteAuto = Once"},
                  KeepWrites(PUT_BACK)}),
            KeepWrites(RecordBright(*pRig)));
}

TEST(HostAccessLog, WithoutLampHouseOnlyTheBalanceIsWritten)
{
  const auto pRig = MakeColourRig("Off");
  pRig->Camera().Enumeration("AWBLampHouse").Access(GenApi::NI);
  EXPECT_EQ(Join({{"set BalanceWhiteAuto = Once", "set BalanceWhiteAuto = Off"}, KeepWrites(PUT_BACK)}),
            KeepWrites(RecordBright(*pRig)));
}

TEST(HostAccessLog, WithoutAutomaticWhiteBalanceNothingOfItIsTouched)
{
  const auto pRig = MakeColourRig("Off");
  pRig->Camera().Enumeration("BalanceWhiteAuto").Access(GenApi::NI);
  EXPECT_EQ(Join({SIZE_CHECK, SAVE, SAVE_STREAM_MODE, {"implemented? BalanceWhiteAuto"}, START, SIZE_CHECK, PUT_BACK}),
            RecordBright(*pRig));
  EXPECT_EQ(pRig->TakeSignals(), (std::vector<int32_t>{10, 11}));
}

TEST(HostAccessLog, OfAnExecutionIsOneSizeCheck)
{
  CHostRig rig;
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(RecordOperation(rig, [&rig] { return rig.Process().ExecuteCorrection(); }), SIZE_CHECK);
}

TEST(HostAccessLog, OfACorrectionIsEmpty)
{
  CHostRig rig;
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  std::vector<uint8_t> listCorrected;
  const std::vector<uint8_t> listFrame = rig.Camera().MakeFrame(50);
  EXPECT_EQ(Log(), RecordOperation(rig, [&] { return rig.Correct(listFrame, listCorrected); }));
}

TEST(HostAccessLog, OfTheInitialisation)
{
  CHostRig rig;
  EXPECT_EQ((Log()), RecordOperation(rig, [&rig] { return rig.Process().InitProcess(); }))
    << "a camera without the feature";
  CHostRig colourRig("BayerGB8");
  EXPECT_EQ(RecordOperation(colourRig, [&colourRig] { return colourRig.Process().InitProcess(); }),
            (Log{"implemented? PixelColorFilter", "entries PixelFormat", "get PixelColorFilter"}));
}

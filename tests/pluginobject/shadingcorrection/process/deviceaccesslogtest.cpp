#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/devicerig.h"
#include "tests/pluginobject/shadingcorrection/process/operationlog.h"

using namespace ffc::test;

namespace {

const Log SAVE_BASE = {"get UserSetSelector", "get ExposureTime", "get TLParamsLocked", "get Gain",
                       "get BlackLevel",      "get DigitalShift"};
const Log SAVE_OPTIONAL = {"implemented? FixedPatternNoiseCorrectMode",
                           "get FixedPatternNoiseCorrectMode",
                           "implemented? DeadPixelCorrect",
                           "get DeadPixelCorrect",
                           "implemented? RemoveParameterLimit",
                           "get RemoveParameterLimit"};
const Log SAVE = Join({SAVE_BASE, SAVE_OPTIONAL});
const Log SWITCH = {"set UserSetSelector = UserSet0",
                    "execute UserSetSave",
                    "set UserSetSelector = Default",
                    "execute UserSetLoad",
                    "get BlackLevel",
                    "get PayloadSize",
                    "get PixelFormat",
                    "get Width",
                    "get Height"};
const Log REMOVE_LIMIT = {"implemented? RemoveParameterLimit", "set RemoveParameterLimit = On"};
const Log WRITE_BASE = {"set ExposureTime = 20000", "set Gain = 7.5", "set BlackLevel = 0.5", "set DigitalShift = 3"};
const Log WRITE_CORRECTIONS = {"implemented? FixedPatternNoiseCorrectMode", "set FixedPatternNoiseCorrectMode = On",
                               "implemented? DeadPixelCorrect", "set DeadPixelCorrect = On"};
const Log PREPARE = Join({SWITCH, REMOVE_LIMIT, WRITE_BASE, WRITE_CORRECTIONS});
const Log TRIGGER = {"set TriggerMode = On", "set TriggerSource = Software", "start stream", "execute TriggerSoftware"};
const Log SIZE_CHECK = {"get PayloadSize", "get PixelFormat", "get Width", "get Height"};
const Log RESTORE = {"stop stream", "set UserSetSelector = UserSet0", "execute UserSetLoad",
                     "set UserSetSelector = Default"};
const Log START = {"start stream"};
const Log STOP = {"stop stream"};

// A camera with the user's settings.
std::unique_ptr<CDeviceRig> MakeRig(const char *pPixelFormat = "Mono8", const std::set<std::string> &setAbsent = {})
{
  auto pRig = std::make_unique<CDeviceRig>(pPixelFormat, 64, 64, setAbsent);
  pRig->ChangeSettings();
  pRig->Camera().Integer("DigitalShift").Poke(3);
  pRig->TakeSignals();
  return pRig;
}

Log RecordDark(CDeviceRig &rig)
{
  return RecordOperation(rig, [&rig] { return rig.AcquireDark(10); });
}

Log RecordBright(CDeviceRig &rig)
{
  return RecordOperation(rig, [&rig] { return rig.AcquireBright(120); });
}

} // namespace

TEST(DeviceAccessLog, OfSavingTheUsersParameters)
{
  const auto pRig = MakeRig();
  EXPECT_EQ(RecordOperation(*pRig, [&] { return pRig->Process().SaveUserParam(); }), SAVE);
}

TEST(DeviceAccessLog, OfPreparingAndRestoring)
{
  const auto pRig = MakeRig();
  EXPECT_EQ(pRig->Process().SaveUserParam(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(RecordOperation(*pRig, [&] { return pRig->Process().PrepareDeviceParam(); }), PREPARE);
  EXPECT_EQ(RecordOperation(*pRig, [&] { return pRig->Process().RestoreDeviceParam(); }), RESTORE);
  EXPECT_TRUE(pRig->AreSignalsPlain());
}

TEST(DeviceAccessLog, OfPreparingAndRestoringWhileTheStreamRuns)
{
  const auto pRig = MakeRig();
  pRig->SetStreaming(true);
  EXPECT_EQ(pRig->Process().SaveUserParam(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(Join({STOP, PREPARE}), RecordOperation(*pRig, [&] { return pRig->Process().PrepareDeviceParam(); }));
  EXPECT_EQ(Join({RESTORE, START}), RecordOperation(*pRig, [&] { return pRig->Process().RestoreDeviceParam(); }));
  EXPECT_TRUE(pRig->AreSignalsPlain());
  EXPECT_TRUE(pRig->IsStreaming());
}

TEST(DeviceAccessLog, OfADarkAcquisition)
{
  for (const char *pFormat : {"Mono8", "BayerGB8"}) {
    const auto pRig = MakeRig(pFormat);
    EXPECT_EQ(Join({SAVE, PREPARE, TRIGGER, SIZE_CHECK, RESTORE}), RecordDark(*pRig)) << pFormat;
    EXPECT_EQ(pRig->TakeSignals(), (std::vector<int32_t>{10, 11})) << pFormat;
    EXPECT_TRUE(pRig->AreSignalsPlain()) << pFormat;
    EXPECT_FALSE(pRig->IsStreaming()) << pFormat;
  }
}

TEST(DeviceAccessLog, OfADarkAcquisitionWhileTheStreamRuns)
{
  for (const char *pFormat : {"Mono8", "BayerGB8"}) {
    const auto pRig = MakeRig(pFormat);
    pRig->SetStreaming(true);
    EXPECT_EQ(Join({SAVE, STOP, PREPARE, TRIGGER, SIZE_CHECK, RESTORE, START}), RecordDark(*pRig)) << pFormat;
    EXPECT_EQ(pRig->TakeSignals(), (std::vector<int32_t>{11, 10, 11, 10})) << pFormat;
    EXPECT_TRUE(pRig->AreSignalsPlain()) << pFormat;
    EXPECT_TRUE(pRig->IsStreaming()) << pFormat;
  }
}

TEST(DeviceAccessLog, OfABrightAcquisition)
{
  const auto pRig = MakeRig();
  EXPECT_EQ(Join({SAVE, PREPARE, START, SIZE_CHECK, RESTORE}), RecordBright(*pRig));
  EXPECT_EQ(pRig->TakeSignals(), (std::vector<int32_t>{10, 11}));
  pRig->SetStreaming(true);
  EXPECT_EQ(Join({SAVE, STOP, PREPARE, START, SIZE_CHECK, RESTORE, START}), RecordBright(*pRig));
  EXPECT_EQ(pRig->TakeSignals(), (std::vector<int32_t>{11, 10, 11, 10}));
  EXPECT_TRUE(pRig->AreSignalsPlain());
}

TEST(DeviceAccessLog, OfABrightAcquisitionChecksTheSizeForEveryFrame)
{
  const auto pRig = MakeRig();
  EXPECT_EQ(pRig->Process().SetFrameCount("FFCFrameCount_4"), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(Join({SAVE, PREPARE, START, SIZE_CHECK, SIZE_CHECK, SIZE_CHECK, SIZE_CHECK, RESTORE}), RecordBright(*pRig));
}

TEST(DeviceAccessLog, OfABrightAcquisitionOfAColourCamera)
{
  const auto pRig = MakeRig("BayerGB8");
  pRig->Camera().SetWhiteBalanceReads(2);
  const Log listBalance = {"set AWBLampHouse = Adaptive", "set BalanceWhiteAuto = Once", "start stream",
                           "get BalanceWhiteAuto", "get BalanceWhiteAuto"};
  EXPECT_EQ(Join({SAVE, PREPARE, listBalance, SIZE_CHECK, RESTORE}), RecordBright(*pRig));
  EXPECT_EQ(pRig->TakeSignals(), (std::vector<int32_t>{10, 11}));
  pRig->SetStreaming(true);
  EXPECT_EQ(Join({SAVE, STOP, PREPARE, listBalance, SIZE_CHECK, RESTORE, START}), RecordBright(*pRig));
  EXPECT_EQ(pRig->TakeSignals(), (std::vector<int32_t>{11, 10, 11, 10}));
  EXPECT_TRUE(pRig->AreSignalsPlain());
}

TEST(DeviceAccessLog, ACameraWithoutTheOptionalFeaturesIsNotAskedForTheirValues)
{
  const auto pRig = MakeRig("Mono8", {"FixedPatternNoiseCorrectMode", "DeadPixelCorrect", "RemoveParameterLimit"});
  EXPECT_EQ(Join({SAVE_BASE, SWITCH, WRITE_BASE, TRIGGER, SIZE_CHECK, RESTORE}), RecordDark(*pRig));
  EXPECT_EQ(Join({SAVE_BASE, SWITCH, WRITE_BASE, START, SIZE_CHECK, RESTORE}), RecordBright(*pRig));
}

TEST(DeviceAccessLog, FeaturesThatAreNotImplementedAreLeftAlone)
{
  const auto pRig = MakeRig();
  for (const char *pName : {"FixedPatternNoiseCorrectMode", "DeadPixelCorrect", "RemoveParameterLimit"}) {
    pRig->Camera().Enumeration(pName).Access(GenApi::NI);
  }
  EXPECT_EQ(Join({SAVE_BASE,
                  {"implemented? FixedPatternNoiseCorrectMode", "implemented? DeadPixelCorrect",
                   "implemented? RemoveParameterLimit"},
                  SWITCH,
                  {"implemented? RemoveParameterLimit"},
                  WRITE_BASE,
                  {"implemented? FixedPatternNoiseCorrectMode", "implemented? DeadPixelCorrect"},
                  TRIGGER,
                  SIZE_CHECK,
                  RESTORE}),
            RecordDark(*pRig));
}

TEST(DeviceAccessLog, OfTheInitialisation)
{
  const Log listSettings = {"get FFCBlockSize", "get FFCFrameCount", "get FFCExpectGray", "get FFCCoefficientsSize"};
  CDeviceRig rig;
  EXPECT_EQ(RecordOperation(rig, [&rig] { return rig.Process().InitProcess(); }), listSettings)
    << "a camera without the colour filter";
  CDeviceRig colourRig("BayerGB8");
  EXPECT_EQ(Join({{"implemented? PixelColorFilter", "get PixelColorFilter"}, listSettings}),
            RecordOperation(colourRig, [&colourRig] { return colourRig.Process().InitProcess(); }));
}

TEST(DeviceAccessLog, OfWhatNeedsNoFrameHasNoWordToTheHost)
{
  for (const auto &[pFormat, bStreaming] : {std::pair{"Mono8", false}, {"Mono8", true}, {"BayerGB8", true}}) {
    const auto pRig = MakeRig(pFormat);
    CShadingCorrectionPro_Dev &process = pRig->Process();
    EXPECT_EQ(pRig->AcquireBright(120), PLUGIN_STATUS_SUCCESS);
    pRig->Camera().UserSets().SetSaveLocked(false);
    pRig->SetStreaming(bStreaming);
    const auto record = [&](const std::function<int32_t()> &fnRun) { return RecordOperation(*pRig, fnRun); };
    EXPECT_EQ(record([&] { return process.ExecuteCorrection(); }),
              (Log{"write FFCValueAll 152", "set FlatFieldCorrection = On"}));
    EXPECT_EQ(record([&] { return process.SetFrameCount("FFCFrameCount_8"); }),
              (Log{"set FFCFrameCount = FFCFrameCount_8"}));
    EXPECT_EQ(record([&] { return process.SetExpectGray(137); }), (Log{"set FFCExpectGray = 137"}));
    EXPECT_EQ(record([&] { return process.LoadFromFlash(); }),
              (Log{"execute FFCFlashLoad", "read FFCValueAll 152", "set FlatFieldCorrection = On"}));
    EXPECT_EQ(record([&] { return process.SaveToFlash(); }),
              (Log{"execute FFCFlashSave", "set FlatFieldCorrection = On", "set UserSetSelector = UserSet0",
                   "execute UserSetSave", "set UserSetDefault = UserSet0"}));
    EXPECT_EQ(pRig->IsStreaming(), bStreaming) << pFormat;
  }
}

TEST(DeviceAccessLog, OfACorrectedFrameAndTheAnswersIsEmpty)
{
  const auto pRig = MakeRig("BayerGB8");
  const std::vector<uint8_t> listSource(64 * 64, 9);
  std::vector<uint8_t> listDestination(64 * 64, 1);
  EXPECT_EQ(Log(), RecordOperation(*pRig, [&] {
              (void)pRig->Process().GetCorrectionInfo();
              (void)pRig->Process().GetImageMaxGray();
              (void)pRig->Process().GetImageGrayDiff();
              (void)pRig->Process().IsBlackLevelDefault();
              (void)pRig->Process().IsColorCamera();
              return pRig->Process().CorrectImage(listSource.data(), listDestination.data(), 64, 64, 0x01080001);
            }));
}

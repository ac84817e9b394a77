#include <functional>
#include <string>
#include <tuple>
#include <utility>

#include <gtest/gtest.h>

#include "tests/pluginobject/shadingcorrection/process/operationlog.h"
#include "tests/pluginobject/shadingcorrection/process/vignettingrig.h"

using namespace ffc::test;

namespace {

void RefuseReads(CVignettingRig &rig, const std::string &strNode)
{
  rig.SetHook([strNode](const SNodeAccess &stAccess) {
    const bool bRead = stAccess.eKind == SNodeAccess::EKind::Read || stAccess.eKind == SNodeAccess::EKind::CurrentEntry;
    if (bRead && stAccess.strNode == strNode) {
      throw GenICam::TimeoutException("no answer", __FILE__, __LINE__);
    }
  });
}

void RefuseWrite(CVignettingRig &rig, const std::string &strNode, const std::string &strValue)
{
  rig.SetHook([strNode, strValue](const SNodeAccess &stAccess) {
    if (stAccess.strNode == strNode && stAccess.strValue == strValue) {
      throw GenICam::AccessException("refused", __FILE__, __LINE__);
    }
  });
}

// Why an acquisition ends.
struct SCause {
  const char *pName;
  std::function<void(CVignettingRig &rig)> fnArrange;
  int32_t nStatus;
};

const SCause CAUSES[] = {
  {"Success", [](CVignettingRig &) {}, 0},
  {"NoFrame", [](CVignettingRig &rig) { rig.Show(nullptr); }, -1009},
  {"Stop", [](CVignettingRig &rig) { rig.Process().SetStopFlag(true); }, -1017},
  {"Analysis", [](CVignettingRig &rig) { rig.Camera().Integer("Height").Poke(129); }, -3},
  {"NoExposure", [](CVignettingRig &rig) { RefuseReads(rig, "ExposureTime"); }, -1002},
  {"NoPayload", [](CVignettingRig &rig) { RefuseReads(rig, "PayloadSize"); }, -1002},
  {"NoWidth", [](CVignettingRig &rig) { RefuseReads(rig, "Width"); }, -1002},
  {"NoHeight", [](CVignettingRig &rig) { RefuseReads(rig, "Height"); }, -1002},
  {"NoTriggerMode", [](CVignettingRig &rig) { RefuseReads(rig, "TriggerMode"); }, -1002},
  {"NoPixelFormat", [](CVignettingRig &rig) { RefuseReads(rig, "PixelFormat"); }, -1002},
  {"CorrectionStaysOn", [](CVignettingRig &rig) { RefuseWrite(rig, "FlatFieldCorrection", "Off"); }, -1002},
};

using Case = std::tuple<SCause, const char *, bool, const char *>; // format, streaming, trigger mode

class VignettingRestore : public testing::TestWithParam<Case> {};

} // namespace

TEST_P(VignettingRestore, TriggerModeAndStreamAreAsBefore)
{
  const auto &[stCause, pFormat, bStreaming, pTriggerMode] = GetParam();
  CVignettingRig rig(pFormat);
  EXPECT_EQ(0, rig.AcquireBright(100));
  rig.Camera().Enumeration("TriggerMode").Select(pTriggerMode);
  rig.Camera().Float("ExposureTime").Poke(stCause.nStatus == -1009 ? -970000.0 : 10000.0);
  rig.SetStreaming(bStreaming);
  rig.TakeSignals();
  stCause.fnArrange(rig);
  const Settings mapBefore = rig.TakeSettings();
  EXPECT_EQ(stCause.nStatus, rig.Process().AcquireBrightImage());
  rig.SetHook(nullptr);
  EXPECT_EQ("", DescribeChanges(mapBefore, rig.TakeSettings()));
  EXPECT_EQ(bStreaming, rig.IsStreaming());
  EXPECT_TRUE(rig.AreSignalsPlain());
  EXPECT_EQ(258U, rig.Process().WaitImageRequest());
  EXPECT_EQ(stCause.nStatus == 0 ? 0 : -3, rig.Process().ExecuteCorrection());
}

INSTANTIATE_TEST_SUITE_P(Causes, VignettingRestore,
                         testing::Combine(testing::ValuesIn(CAUSES), testing::Values("Mono12", "BayerGB8"),
                                          testing::Bool(), testing::Values("Off", "On")),
                         [](const auto &stInfo) {
                           return std::string(std::get<0>(stInfo.param).pName) + std::get<1>(stInfo.param) +
                                  (std::get<2>(stInfo.param) ? "Streaming" : "Idle") + "Trigger" +
                                  std::get<3>(stInfo.param);
                         });

TEST(VignettingRestoreParts, AnEarlierTriggerModeIsNotWrittenBackWhenTheModeWasNotRead)
{
  for (const char *pName : {"ExposureTime", "TLParamsLocked", "PayloadSize", "Width", "Height", "TriggerMode"}) {
    CVignettingRig rig;
    rig.Camera().Enumeration("TriggerMode").Select("On");
    EXPECT_EQ(0, rig.AcquireBright(100));
    rig.Camera().Enumeration("TriggerMode").Select("Off");
    RefuseReads(rig, pName);
    EXPECT_EQ(-1002, rig.AcquireBright(100)) << pName;
    EXPECT_EQ("Off", rig.Camera().Enumeration("TriggerMode").PeekSymbolic()) << pName;
  }
}

TEST(VignettingRestoreParts, ARunningStreamIsNotTouchedWhenItsStateWasNotReadInTime)
{
  CVignettingRig rig;
  rig.SetStreaming(true);
  RefuseReads(rig, "ExposureTime"); // fails before the stream's state is read
  EXPECT_EQ(-1002, rig.AcquireBright(100));
  EXPECT_TRUE(rig.IsStreaming());
  EXPECT_EQ(std::vector<int32_t>(), rig.TakeSignals());
}

TEST(VignettingRestoreParts, ARunningStreamThatIsToldAtTheSecondQuestionIsNotTouched)
{
  CVignettingRig rig;
  rig.SetStreaming(true);
  bool bAsked = false;
  rig.SetHook([&bAsked](const SNodeAccess &stAccess) {
    if (stAccess.strNode == "TLParamsLocked" && !std::exchange(bAsked, true)) {
      throw GenICam::TimeoutException("no answer", __FILE__, __LINE__);
    }
  });
  EXPECT_EQ(-1002, rig.AcquireBright(100));
  EXPECT_TRUE(rig.IsStreaming());
  EXPECT_EQ(std::vector<int32_t>(), rig.TakeSignals());
}

TEST(VignettingRestoreParts, AStreamThatNeverTellsItsStateIsTakenForAnIdleOne)
{
  CVignettingRig rig;
  rig.SetStreaming(true);
  RefuseReads(rig, "TLParamsLocked");
  EXPECT_EQ(-1002, rig.AcquireBright(100));
  EXPECT_EQ((std::vector<int32_t>{11}), rig.TakeSignals());
}

TEST(VignettingRestoreParts, AnIdleStreamIsNotTakenForARunningOneThatAnEarlierAcquisitionSaw)
{
  CVignettingRig rig;
  rig.SetStreaming(true);
  EXPECT_EQ(0, rig.AcquireBright(100));
  rig.SetStreaming(false);
  RefuseReads(rig, "ExposureTime");
  EXPECT_EQ(-1002, rig.AcquireBright(100));
  EXPECT_EQ((std::vector<int32_t>{11}), rig.TakeSignals());
}

TEST(VignettingRestoreParts, WhenTheTriggerCannotBeSwitchedOffTheCorrectionStaysAndNoStreamStarts)
{
  CVignettingRig rig;
  EXPECT_EQ(0, rig.Correct(100));
  rig.TakeSignals();
  rig.Camera().Enumeration("TriggerMode").Select("On");
  RefuseWrite(rig, "TriggerMode", "Off");
  EXPECT_EQ(-1002, rig.AcquireBright(100));
  EXPECT_EQ("On", rig.GetCorrection());
  EXPECT_EQ((std::vector<int32_t>{11}), rig.TakeSignals());
  EXPECT_EQ(0, rig.GetFrameCount());
}

TEST(VignettingRestoreParts, WhenTheCorrectionCannotBeSwitchedOffNoStreamStarts)
{
  CVignettingRig rig;
  rig.Camera().Enumeration("TriggerMode").Select("On");
  RefuseWrite(rig, "FlatFieldCorrection", "Off");
  EXPECT_EQ(-1002, rig.AcquireBright(100));
  EXPECT_EQ("On", rig.Camera().Enumeration("TriggerMode").PeekSymbolic());
  EXPECT_EQ((std::vector<int32_t>{11}), rig.TakeSignals());
}

TEST(VignettingRestoreParts, ATriggerThatCannotBeSwitchedOnAgainIsNoFailure)
{
  CVignettingRig rig;
  rig.Camera().Enumeration("TriggerMode").Select("On");
  RefuseWrite(rig, "TriggerMode", "On");
  EXPECT_EQ(0, rig.AcquireBright(100));
  EXPECT_EQ("Off", rig.Camera().Enumeration("TriggerMode").PeekSymbolic());
  EXPECT_FALSE(rig.IsStreaming());
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
}

TEST(VignettingRestoreParts, AnAcquisitionLeavesTheUserSetsAlone)
{
  CVignettingRig rig("BayerRG8");
  for (const std::string &strLine : RecordOperation(rig, [&rig] { return rig.AcquireBright(100); })) {
    EXPECT_EQ(std::string::npos, strLine.find("UserSet")) << strLine;
    EXPECT_EQ(std::string::npos, strLine.find("Balance")) << strLine;
    EXPECT_EQ(std::string::npos, strLine.find("TriggerSo")) << strLine;
  }
}

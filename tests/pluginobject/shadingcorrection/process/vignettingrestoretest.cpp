#include <functional>
#include <string>
#include <tuple>
#include <utility>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/operationlog.h"
#include "tests/pluginobject/shadingcorrection/process/vignettingrig.h"

using namespace ffc::test;
using ffc::genapi::SNodeAccess;

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
  {"NoFrame", [](CVignettingRig &rig) { rig.Show(nullptr); }, PLUGIN_STATUS_BUFFER_TIMEOUT},
  {"Stop", [](CVignettingRig &rig) { rig.Process().SetStopFlag(true); }, PLUGIN_STATUS_NEED_BAYER_FORMAT},
  {"Analysis", [](CVignettingRig &rig) { rig.Camera().Integer("Height").Poke(129); }, -3},
  {"NoExposure", [](CVignettingRig &rig) { RefuseReads(rig, "ExposureTime"); }, PLUGIN_STATUS_FEATURE_ERROR},
  {"NoPayload", [](CVignettingRig &rig) { RefuseReads(rig, "PayloadSize"); }, PLUGIN_STATUS_FEATURE_ERROR},
  {"NoWidth", [](CVignettingRig &rig) { RefuseReads(rig, "Width"); }, PLUGIN_STATUS_FEATURE_ERROR},
  {"NoHeight", [](CVignettingRig &rig) { RefuseReads(rig, "Height"); }, PLUGIN_STATUS_FEATURE_ERROR},
  {"NoTriggerMode", [](CVignettingRig &rig) { RefuseReads(rig, "TriggerMode"); }, PLUGIN_STATUS_FEATURE_ERROR},
  {"NoPixelFormat", [](CVignettingRig &rig) { RefuseReads(rig, "PixelFormat"); }, PLUGIN_STATUS_FEATURE_ERROR},
  {"CorrectionStaysOn", [](CVignettingRig &rig) { RefuseWrite(rig, "FlatFieldCorrection", "Off"); },
   PLUGIN_STATUS_FEATURE_ERROR},
};

using Case = std::tuple<SCause, const char *, bool, const char *>; // format, streaming, trigger mode

class VignettingRestore : public testing::TestWithParam<Case> {};

} // namespace

TEST_P(VignettingRestore, TriggerModeAndStreamAreAsBefore)
{
  const auto &[stCause, pFormat, bStreaming, pTriggerMode] = GetParam();
  CVignettingRig rig(pFormat);
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  rig.Camera().Enumeration("TriggerMode").Select(pTriggerMode);
  rig.Camera().Float("ExposureTime").Poke(stCause.nStatus == PLUGIN_STATUS_BUFFER_TIMEOUT ? -970000.0 : 10000.0);
  rig.SetStreaming(bStreaming);
  rig.TakeSignals();
  stCause.fnArrange(rig);
  const Settings mapBefore = rig.TakeSettings();
  EXPECT_EQ(rig.Process().AcquireBrightImage(), stCause.nStatus);
  rig.SetHook(nullptr);
  EXPECT_EQ(DescribeChanges(mapBefore, rig.TakeSettings()), "");
  EXPECT_EQ(rig.IsStreaming(), bStreaming);
  EXPECT_TRUE(rig.AreSignalsPlain());
  EXPECT_EQ(rig.Process().WaitImageRequest(), 258U);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), stCause.nStatus == 0 ? 0 : -3);
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
    EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
    rig.Camera().Enumeration("TriggerMode").Select("Off");
    RefuseReads(rig, pName);
    EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_FEATURE_ERROR) << pName;
    EXPECT_EQ(rig.Camera().Enumeration("TriggerMode").PeekSymbolic(), "Off") << pName;
  }
}

TEST(VignettingRestoreParts, ARunningStreamIsNotTouchedWhenItsStateWasNotReadInTime)
{
  CVignettingRig rig;
  rig.SetStreaming(true);
  RefuseReads(rig, "ExposureTime"); // fails before the stream's state is read
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_TRUE(rig.IsStreaming());
  EXPECT_EQ(rig.TakeSignals(), std::vector<int32_t>());
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
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_TRUE(rig.IsStreaming());
  EXPECT_EQ(rig.TakeSignals(), std::vector<int32_t>());
}

TEST(VignettingRestoreParts, AStreamThatNeverTellsItsStateIsTakenForAnIdleOne)
{
  CVignettingRig rig;
  rig.SetStreaming(true);
  RefuseReads(rig, "TLParamsLocked");
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_EQ(rig.TakeSignals(), (std::vector<int32_t>{11}));
}

TEST(VignettingRestoreParts, AnIdleStreamIsNotTakenForARunningOneThatAnEarlierAcquisitionSaw)
{
  CVignettingRig rig;
  rig.SetStreaming(true);
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  rig.SetStreaming(false);
  RefuseReads(rig, "ExposureTime");
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_EQ(rig.TakeSignals(), (std::vector<int32_t>{11}));
}

TEST(VignettingRestoreParts, WhenTheTriggerCannotBeSwitchedOffTheCorrectionStaysAndNoStreamStarts)
{
  CVignettingRig rig;
  EXPECT_EQ(rig.Correct(100), PLUGIN_STATUS_SUCCESS);
  rig.TakeSignals();
  rig.Camera().Enumeration("TriggerMode").Select("On");
  RefuseWrite(rig, "TriggerMode", "Off");
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_EQ(rig.GetCorrection(), "On");
  EXPECT_EQ(rig.TakeSignals(), (std::vector<int32_t>{11}));
  EXPECT_EQ(rig.GetFrameCount(), 0);
}

TEST(VignettingRestoreParts, WhenTheCorrectionCannotBeSwitchedOffNoStreamStarts)
{
  CVignettingRig rig;
  rig.Camera().Enumeration("TriggerMode").Select("On");
  RefuseWrite(rig, "FlatFieldCorrection", "Off");
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_EQ(rig.Camera().Enumeration("TriggerMode").PeekSymbolic(), "On");
  EXPECT_EQ(rig.TakeSignals(), (std::vector<int32_t>{11}));
}

TEST(VignettingRestoreParts, ATriggerThatCannotBeSwitchedOnAgainIsNoFailure)
{
  CVignettingRig rig;
  rig.Camera().Enumeration("TriggerMode").Select("On");
  RefuseWrite(rig, "TriggerMode", "On");
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Camera().Enumeration("TriggerMode").PeekSymbolic(), "Off");
  EXPECT_FALSE(rig.IsStreaming());
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
}

TEST(VignettingRestoreParts, AnAcquisitionLeavesTheUserSetsAlone)
{
  CVignettingRig rig("BayerRG8");
  for (const std::string &strLine : RecordOperation(rig, [&rig] { return rig.AcquireBright(100); })) {
    EXPECT_EQ(strLine.find("UserSet"), std::string::npos) << strLine;
    EXPECT_EQ(strLine.find("Balance"), std::string::npos) << strLine;
    EXPECT_EQ(strLine.find("TriggerSo"), std::string::npos) << strLine;
  }
}

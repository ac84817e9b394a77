#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/operationlog.h"
#include "tests/pluginobject/shadingcorrection/process/vignettingrig.h"

using namespace ffc::test;

namespace {

const Log SIZE_CHECK = {"get PayloadSize", "get PixelFormat", "get Width", "get Height"};
const Log SAVE = {"get ExposureTime", "get TLParamsLocked", "get PayloadSize", "get Width",
                  "get Height",       "get TriggerMode",    "get PixelFormat"};
const Log TRIGGER_OFF = {"set TriggerMode = Off"};
const Log CORRECTION_OFF = {"set FlatFieldCorrection = Off"};
const Log START = {"start stream"};
const Log STOP = {"stop stream"};
const Log SETTINGS = {"get FFCBlockSize", "get FFCFrameCount", "get FFCCoefficientsSize"};

// Pixel format, frames, whether the stream runs, the user's trigger mode.
using Acquisition = std::tuple<const char *, int, bool, const char *>;

class VignettingAcquisitionLog : public testing::TestWithParam<Acquisition> {};

Log RecordBright(CVignettingRig &rig)
{
  return RecordOperation(rig, [&rig] { return rig.AcquireBright(100); });
}

} // namespace

TEST_P(VignettingAcquisitionLog, IsThis)
{
  const auto [pFormat, nFrames, bStreaming, pTriggerMode] = GetParam();
  CVignettingRig rig(pFormat);
  EXPECT_EQ(rig.Process().SetFrameCount("FFCFrameCount_" + std::to_string(nFrames)), PLUGIN_STATUS_SUCCESS);
  rig.Camera().Enumeration("TriggerMode").Select(pTriggerMode);
  rig.SetStreaming(bStreaming);
  Log listExpected = Join({SIZE_CHECK, SAVE});
  if (pTriggerMode == std::string("On")) {
    listExpected = Join({listExpected, TRIGGER_OFF});
  }
  listExpected = Join({listExpected, CORRECTION_OFF, bStreaming ? Log() : START});
  for (int i = 0; i < nFrames; ++i) {
    listExpected = Join({listExpected, SIZE_CHECK});
  }
  const Log listTriggerBack = {std::string("set TriggerMode = ") + pTriggerMode};
  EXPECT_EQ(Join({listExpected, listTriggerBack, bStreaming ? Log() : STOP}), RecordBright(rig));
  EXPECT_EQ(bStreaming ? std::vector<int32_t>() : (std::vector<int32_t>{10, 11}), rig.TakeSignals());
  EXPECT_TRUE(rig.AreSignalsPlain());
  EXPECT_EQ(rig.IsStreaming(), bStreaming);
}

INSTANTIATE_TEST_SUITE_P(Cameras, VignettingAcquisitionLog,
                         testing::Combine(testing::Values("Mono8", "BayerGB12"), testing::Values(1, 4), testing::Bool(),
                                          testing::Values("Off", "On")),
                         [](const auto &stInfo) {
                           return std::string(std::get<0>(stInfo.param)) + "Frames" +
                                  std::to_string(std::get<1>(stInfo.param)) +
                                  (std::get<2>(stInfo.param) ? "Streaming" : "Idle") + "Trigger" +
                                  std::get<3>(stInfo.param);
                         });

TEST(VignettingAccessLog, OfPreparingAndRestoringBeforeAnythingWasSaved)
{
  CVignettingRig rig;
  rig.Camera().Enumeration("TriggerMode").Select("On");
  EXPECT_EQ(Join({CORRECTION_OFF, START}), RecordOperation(rig, [&] { return rig.Process().PrepareDeviceParam(); }));
  EXPECT_EQ(RecordOperation(rig, [&] { return rig.Process().RestoreDeviceParam(); }), STOP);
  EXPECT_EQ(rig.Camera().Enumeration("TriggerMode").PeekSymbolic(), "On");
  EXPECT_TRUE(rig.AreSignalsPlain());
}

TEST(VignettingAccessLog, OfPreparingAndRestoringWithWhatTheLastAcquisitionSaved)
{
  for (const bool bStreaming : {false, true}) {
    CVignettingRig rig;
    rig.Camera().Enumeration("TriggerMode").Select("On");
    rig.SetStreaming(bStreaming);
    EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
    const auto prepare = [&rig] { return rig.Process().PrepareDeviceParam(); };
    const auto restore = [&rig] { return rig.Process().RestoreDeviceParam(); };
    const Log listTriggerOn = {"set TriggerMode = On"};
    EXPECT_EQ(Join({TRIGGER_OFF, CORRECTION_OFF, bStreaming ? Log() : START}), RecordOperation(rig, prepare));
    EXPECT_EQ(Join({listTriggerOn, bStreaming ? Log() : STOP}), RecordOperation(rig, restore));
    EXPECT_EQ(rig.IsStreaming(), bStreaming);
  }
}

TEST(VignettingAccessLog, OfTheInitialisation)
{
  CVignettingRig rig;
  EXPECT_EQ(RecordOperation(rig, [&rig] { return rig.Process().InitProcess(); }), SETTINGS);
  CVignettingRig colourRig("BayerGR8");
  const auto init = [&colourRig] { return colourRig.Process().InitProcess(); };
  const Log listAsked = {"implemented? PixelColorFilter"};
  EXPECT_EQ(Join({listAsked, {"get PixelColorFilter"}, SETTINGS}), RecordOperation(colourRig, init));
  colourRig.Camera().Enumeration("PixelColorFilter").Access(GenApi::NI);
  EXPECT_EQ(Join({listAsked, SETTINGS}), RecordOperation(colourRig, init));
}

TEST(VignettingAccessLog, OfAnExecution)
{
  CVignettingRig rig("BayerRG10");
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(RecordOperation(rig, [&rig] { return rig.Process().ExecuteCorrection(); }),
            (Log{"write FFCValueAll 168", "set FlatFieldCorrection = On"}));
}

TEST(VignettingAccessLog, OfTheFrameCount)
{
  CVignettingRig rig;
  EXPECT_EQ(RecordOperation(rig, [&rig] { return rig.Process().SetFrameCount("FFCFrameCount_16"); }),
            (Log{"set FFCFrameCount = FFCFrameCount_16"}));
}

TEST(VignettingAccessLog, OfTheFlash)
{
  CVignettingRig rig;
  EXPECT_EQ(rig.Correct(100), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(RecordOperation(rig, [&rig] { return rig.Process().SaveToFlash(); }),
            (Log{"execute FFCFlashSave", "set FlatFieldCorrection = On", "set UserSetSelector = UserSet0",
                 "execute UserSetSave", "set UserSetDefault = UserSet0"}));
  EXPECT_EQ(
    RecordOperation(rig, [&rig] { return rig.Process().LoadFromFlash(); }),
    (Log{"get FFCCoefficientsSize", "execute FFCFlashLoad", "read FFCValueAll 72", "set FlatFieldCorrection = On"}));
}

TEST(VignettingAccessLog, OfWhatACameraThatCorrectsVignettingNeedsNotIsEmpty)
{
  CVignettingRig rig("BayerGB12");
  rig.TakeSignals();
  const std::vector<uint8_t> listSource(100, 9);
  std::vector<uint8_t> listDestination(100, 1);
  EXPECT_EQ(Log(), RecordOperation(rig, [&rig] { return rig.Process().AcquireDarkImage(); }));
  EXPECT_EQ(Log(), RecordOperation(rig, [&rig] { return rig.Process().SetExpectGray(100); }));
  EXPECT_EQ(Log(), RecordOperation(rig, [&] {
              return rig.Process().CorrectImage(listSource.data(), listDestination.data(), 10, 10, 0x01080001);
            }));
  EXPECT_EQ(listDestination, std::vector<uint8_t>(100, 1));
  EXPECT_EQ(Log(), RecordOperation(rig, [&rig] {
              return rig.Process().IsBlackLevelDefault() && rig.Process().IsColorCamera() &&
                         rig.Process().GetImageMaxGray() == 0.0 && rig.Process().GetImageGrayDiff() == 0.0 &&
                         rig.Process().GetCorrectionInfo().nMode == 2
                       ? 0
                       : -1;
            }));
}

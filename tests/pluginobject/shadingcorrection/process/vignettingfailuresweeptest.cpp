#include <iterator>
#include <map>
#include <tuple>

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/failuresweep.h"
#include "tests/pluginobject/shadingcorrection/process/scriptedchooser.h"
#include "tests/pluginobject/shadingcorrection/process/vignettingrig.h"

using namespace ffc::test;

namespace {

struct SOperation {
  const char *pName;
  int32_t (*fnRun)(CVignettingRig &rig);
};

const SOperation OPERATIONS[] = {
  {"Init", [](CVignettingRig &rig) { return rig.Process().InitProcess(); }},
  {"Bright", [](CVignettingRig &rig) { return rig.AcquireBright(100); }},
  {"Execute", [](CVignettingRig &rig) { return rig.Process().ExecuteCorrection(); }},
  {"FrameCount", [](CVignettingRig &rig) { return rig.Process().SetFrameCount("FFCFrameCount_4"); }},
  {"LoadFlash", [](CVignettingRig &rig) { return rig.Process().LoadFromFlash(); }},
  {"SaveFlash", [](CVignettingRig &rig) { return rig.Process().SaveToFlash(); }},
  {"LoadFile", [](CVignettingRig &rig) { return rig.Process().LoadFromFile(); }},
  {"SaveFile", [](CVignettingRig &rig) { return rig.Process().SaveToFile(); }},
};

// Operation, colour, streaming, the user's trigger mode.
using Sweep = std::tuple<SOperation, bool, bool, const char *>;

// By look-up. The first check of the frame size only tells whether the former frame is still of use.
SMeaning GetMeaning(const SFeatureAccess &stAccess, const char *pTriggerMode)
{
  static const std::map<std::string, std::vector<SMeaning>> MAP_MEANINGS = {
    {"PayloadSize", {IGNORED, FAILS}}, {"PixelFormat", {IGNORED, FAILS}},      {"Width", {IGNORED, FAILS}},
    {"Height", {IGNORED, FAILS}},      {"PixelColorFilter", {IGNORED, FAILS}},
  };
  if (stAccess.strNode == "TriggerMode") {
    const bool bOn = pTriggerMode == std::string("On");
    return PickMeaning(bOn ? std::vector<SMeaning>{FAILS, FAILS, RESTORES} : std::vector<SMeaning>{FAILS, IGNORED},
                       stAccess);
  }
  const auto it = MAP_MEANINGS.find(stAccess.strNode);
  return it == MAP_MEANINGS.end() ? FAILS : PickMeaning(it->second, stAccess);
}

class VignettingFailureSweep : public testing::TestWithParam<Sweep> {
protected:
  VignettingFailureSweep() : m_rig(std::get<1>(GetParam()) ? "BayerRG12" : "Mono12")
  {
    InstallChooser(m_rig.Process(), m_folder.filePath("a.ffc"));
    EXPECT_EQ(m_rig.Process().SetFrameCount("FFCFrameCount_2"), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(m_rig.Correct(100), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(m_rig.Process().SaveToFile(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(m_rig.Process().SaveToFlash(), PLUGIN_STATUS_SUCCESS);
    m_rig.Camera().UserSets().SetSaveLocked(false);
  }

  static const char *GetTriggerMode() { return std::get<3>(GetParam()); }
  int32_t Run() { return std::get<0>(GetParam()).fnRun(m_rig); }

  // The user's state again.
  void Arrange()
  {
    CCorrectingCamera &camera = m_rig.Camera();
    camera.Enumeration("TriggerMode").Select(GetTriggerMode());
    camera.Enumeration("UserSetSelector").Select("UserSet0");
    camera.Enumeration("UserSetDefault").Select("UserSet0");
    m_rig.SetStreaming(std::get<2>(GetParam()));
    EXPECT_EQ(m_rig.Process().SetFrameCount("FFCFrameCount_2"), PLUGIN_STATUS_SUCCESS);
  }

  void Fail(std::size_t nAccess, EAccessFailure eFailure, const SMeaning &stMeaning)
  {
    Arrange();
    const Settings mapBefore = m_rig.TakeSettings();
    EXPECT_EQ(RunWithFailure(m_rig, nAccess, eFailure, [this] { return Run(); }), stMeaning.nStatus);
    if (!stMeaning.bRestoring) {
      EXPECT_EQ(DescribeChanges(mapBefore, m_rig.TakeSettings()), "");
    }
    EXPECT_EQ(std::get<2>(GetParam()), m_rig.IsStreaming());
    EXPECT_TRUE(m_rig.AreSignalsPlain());
    EXPECT_EQ(m_rig.Process().WaitImageRequest(), 258U);
    if (stMeaning.nStatus != 0 && std::get<0>(GetParam()).pName == std::string("Bright")) {
      EXPECT_EQ(m_rig.Process().ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM);
    }
    EXPECT_EQ(Run(), 0);
  }

  QTemporaryDir m_folder;
  CVignettingRig m_rig;
};

} // namespace

TEST_P(VignettingFailureSweep, EveryFailingAccessGivesItsCodeAndLeavesTheCameraAsItWas)
{
  Arrange();
  SweepAccesses(
    m_rig, 2, [this] { return Run(); },
    [this](std::size_t nAccess, const SFeatureAccess &stAccess) {
      for (const EAccessFailure eFailure : ALL_ACCESS_FAILURES) {
        Fail(nAccess, eFailure, GetMeaning(stAccess, GetTriggerMode()));
      }
    });
}

INSTANTIATE_TEST_SUITE_P(Operations, VignettingFailureSweep,
                         testing::Combine(testing::ValuesIn(OPERATIONS), testing::Bool(), testing::Bool(),
                                          testing::Values("Off", "On")),
                         [](const auto &stInfo) {
                           return std::string(std::get<0>(stInfo.param).pName) +
                                  (std::get<1>(stInfo.param) ? "Colour" : "Mono") +
                                  (std::get<2>(stInfo.param) ? "Streaming" : "Idle") + "Trigger" +
                                  std::get<3>(stInfo.param);
                         });

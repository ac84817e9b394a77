#include <iterator>
#include <map>
#include <tuple>

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/devicerig.h"
#include "tests/pluginobject/shadingcorrection/process/failuresweep.h"
#include "tests/pluginobject/shadingcorrection/process/scriptedchooser.h"

using namespace ffc::test;

namespace {

struct SOperation {
  const char *pName;
  std::function<int32_t(CDeviceRig &)> fnRun;
  // What the camera is left with when a later step fails, besides the coefficients.
  std::vector<const char *> listLeft;
};

const SOperation OPERATIONS[] = {
  {"Init", [](CDeviceRig &rig) { return rig.Process().InitProcess(); }, {}},
  {"Dark", [](CDeviceRig &rig) { return rig.AcquireDark(10); }, {}},
  {"Bright", [](CDeviceRig &rig) { return rig.AcquireBright(120); }, {}},
  {"Execute", [](CDeviceRig &rig) { return rig.Process().ExecuteCorrection(); }, {"FlatFieldCorrection"}},
  {"FrameCount", [](CDeviceRig &rig) { return rig.Process().SetFrameCount("FFCFrameCount_2"); }, {}},
  {"ExpectGray", [](CDeviceRig &rig) { return rig.Process().SetExpectGray(190); }, {}},
  {"LoadFlash", [](CDeviceRig &rig) { return rig.Process().LoadFromFlash(); }, {"FlatFieldCorrection"}},
  {"SaveFlash",
   [](CDeviceRig &rig) { return rig.Process().SaveToFlash(); },
   {"FlatFieldCorrection", "UserSetSelector", "UserSetDefault"}},
  {"LoadFile", [](CDeviceRig &rig) { return rig.Process().LoadFromFile(); }, {"FlatFieldCorrection"}},
  {"SaveFile", [](CDeviceRig &rig) { return rig.Process().SaveToFile(); }, {"FlatFieldCorrection"}},
};

using Sweep = std::tuple<int, bool, bool>; // index of the operation, colour, streaming

std::string Describe(const Sweep &sweep)
{
  const auto [nOperation, bColour, bStreaming] = sweep;
  return std::string(OPERATIONS[nOperation].pName) + (bColour ? "Colour" : "Mono") +
         (bStreaming ? "Streaming" : "Idle");
}

// By look-up. A query that fails while the settings are saved hides the feature, whose write then has no entry.
std::vector<SMeaning> GetMeanings(const std::string &strNode)
{
  static const std::vector<SMeaning> LIST_OPTIONAL = {FAILS, FAILS, FAILS, FAILS};
  static const std::map<std::string, std::vector<SMeaning>> MAP_MEANINGS = {
    {"PixelColorFilter", {IGNORED, FAILS}},
    {"FixedPatternNoiseCorrectMode", LIST_OPTIONAL},
    {"DeadPixelCorrect", LIST_OPTIONAL},
    {"RemoveParameterLimit", {FAILS, FAILS, IGNORED, FAILS}},
    {"UserSetSelector", {FAILS, FAILS, FAILS, RESTORES, RESTORES}},
    {"UserSetLoad", {FAILS, RESTORES}},
    {"AWBLampHouse", {BALANCE_FAILS}},
    {"BalanceWhiteAuto", {BALANCE_FAILS, IGNORED}},
  };
  const auto it = MAP_MEANINGS.find(strNode);
  return it == MAP_MEANINGS.end() ? std::vector<SMeaning>{FAILS} : it->second;
}

class DeviceFailureSweep : public testing::TestWithParam<Sweep> {
protected:
  DeviceFailureSweep() : m_operation(OPERATIONS[std::get<0>(GetParam())]) {}

  static bool IsStreaming() { return std::get<2>(GetParam()); }

  // A camera with coefficients, frames and settings of the user, with another state in "UserSet0".
  void MakeRig()
  {
    m_pRig = std::make_unique<CDeviceRig>(std::get<1>(GetParam()) ? "BayerRG8" : "Mono8");
    InstallChooser(m_pRig->Process(), m_folder.filePath("a.ffc"));
    EXPECT_EQ(m_pRig->Process().SetFrameCount("FFCFrameCount_2"), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(m_pRig->Correct(10, 120), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(m_pRig->Process().SaveToFlash(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(m_pRig->Process().SaveToFile(), PLUGIN_STATUS_SUCCESS);
    m_pRig->Camera().UserSets().SetSaveLocked(m_operation.pName != std::string("SaveFlash"));
    Reset();
  }

  void Reset()
  {
    m_pRig->ChangeSettings();
    m_pRig->SetStreaming(IsStreaming());
    m_pRig->TakeSignals();
  }

  int32_t Run() { return m_operation.fnRun(*m_pRig); }

  // The camera's settings that have to be as before.
  Settings TakeSettings(bool bSelectorLeft)
  {
    Settings mapSettings = m_pRig->TakeSettings();
    for (const char *pName : m_operation.listLeft) {
      mapSettings.erase(pName);
    }
    if (bSelectorLeft) {
      mapSettings.erase("UserSetSelector");
    }
    return mapSettings;
  }

  void FailAccess(std::size_t nAccess, EAccessFailure eFailure, const SMeaning &stMeaning, bool bSelectorLeft)
  {
    Reset();
    const Settings mapBefore = TakeSettings(bSelectorLeft);
    EXPECT_EQ(RunWithFailure(*m_pRig, nAccess, eFailure, [this] { return Run(); }), stMeaning.nStatus);
    if (!stMeaning.bRestoring || bSelectorLeft) {
      EXPECT_EQ(DescribeChanges(mapBefore, TakeSettings(bSelectorLeft)), "");
    }
    EXPECT_EQ(IsStreaming(), m_pRig->IsStreaming());
    EXPECT_EQ(m_pRig->Process().WaitImageRequest(), 258U);
    EXPECT_TRUE(m_pRig->AreSignalsPlain());
  }

  void FailAccessInEveryWay(std::size_t nAccess, const SFeatureAccess &stAccess)
  {
    const SMeaning stMeaning = PickMeaning(GetMeanings(stAccess.strNode), stAccess);
    const bool bSelectorLeft = stAccess.strNode == "UserSetSelector" && stAccess.nLookUp == 4;
    for (const EAccessFailure eFailure : ALL_ACCESS_FAILURES) {
      FailAccess(nAccess, eFailure, stMeaning, bSelectorLeft);
    }
    EXPECT_EQ(Run(), 0);
  }

  const SOperation &m_operation;
  QTemporaryDir m_folder;
  std::unique_ptr<CDeviceRig> m_pRig;
};

} // namespace

TEST_P(DeviceFailureSweep, EveryFailingAccessGivesItsCodeAndLeavesTheCameraAsItWas)
{
  MakeRig();
  SweepAccesses(
    *m_pRig, 2, [this] { return Run(); },
    [this](std::size_t nAccess, const SFeatureAccess &stAccess) { FailAccessInEveryWay(nAccess, stAccess); });
}

INSTANTIATE_TEST_SUITE_P(Operations, DeviceFailureSweep,
                         testing::Combine(testing::Range(0, static_cast<int>(std::size(OPERATIONS))), testing::Bool(),
                                          testing::Bool()),
                         [](const auto &stInfo) { return Describe(stInfo.param); });

#include <iterator>
#include <map>
#include <ostream>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/failuresweep.h"
#include "tests/pluginobject/shadingcorrection/process/hostrig.h"

using namespace ffc::test;

namespace {

// A camera, and which of the two acquisitions runs on it.
struct SSweep {
  const char *pPixelFormat;
  const char *pBalance; // null: a monochrome camera
  bool bStreaming;
  bool bBright;
};

std::ostream &operator<<(std::ostream &stream, const SSweep &stSweep)
{
  return stream << stSweep.pPixelFormat << (stSweep.pBalance == nullptr ? "" : stSweep.pBalance)
                << (stSweep.bStreaming ? "Streaming" : "Idle") << (stSweep.bBright ? "Bright" : "Dark");
}

// By look-up.
std::vector<SMeaning> GetMeanings(const std::string &strNode, const SSweep &stSweep)
{
  if (strNode == "BalanceRatioSelector") {
    return {BALANCE_FAILS, BALANCE_FAILS, BALANCE_FAILS, BALANCE_FAILS, RESTORES};
  }
  if (strNode == "BalanceWhiteAuto") {
    const bool bPutBack = std::string(stSweep.pBalance) != "Continuous";
    return {BALANCE_FAILS, BALANCE_FAILS, BALANCE_FAILS, IGNORED, bPutBack ? RESTORES : IGNORED};
  }
  static const std::map<std::string, std::vector<SMeaning>> MAP_MEANINGS = {
    {"PayloadSize", {IGNORED, FAILS}},
    {"PixelFormat", {IGNORED, FAILS}},
    {"Width", {IGNORED, FAILS}},
    {"Height", {IGNORED, FAILS}},
    {"ExposureTime", {FAILS}},
    {"Gain", {FAILS}},
    {"TLParamsLocked", {FAILS}},
    {"TriggerMode", {FAILS, FAILS, RESTORES}},
    {"StreamBufferHandlingMode", {IGNORED, FAILS, RESTORES}},
    {"AWBLampHouse", {BALANCE_FAILS, BALANCE_FAILS, BALANCE_FAILS, RESTORES, RESTORES}},
    {"BalanceRatio", {BALANCE_FAILS, BALANCE_FAILS, BALANCE_FAILS, RESTORES}},
  };
  return MAP_MEANINGS.at(strNode);
}

std::unique_ptr<CHostRig> MakeRig(const SSweep &stSweep)
{
  auto pRig = std::make_unique<CHostRig>(stSweep.pPixelFormat);
  pRig->Process().SetFrameCount("FFCFrameCount_1");
  CTestCamera &camera = pRig->Camera();
  camera.Enumeration("TriggerMode").Select("On");
  pRig->SetStreaming(stSweep.bStreaming);
  EXPECT_EQ(pRig->AcquireDark(10), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(pRig->AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  if (stSweep.pBalance != nullptr) {
    camera.Enumeration("BalanceWhiteAuto").FromString(stSweep.pBalance);
    camera.Enumeration("BalanceRatioSelector").Select("Green");
  }
  return pRig;
}

int32_t Acquire(CHostRig &rig, const SSweep &stSweep)
{
  return stSweep.bBright ? rig.AcquireBright(100) : rig.AcquireDark(10);
}

// The camera as it has to be afterwards. After "Continuous" the mode is not written back.
std::map<std::string, std::string> TakeSnapshot(CHostRig &rig, const SSweep &stSweep)
{
  auto mapValues = rig.TakeSnapshot();
  if (stSweep.pBalance != nullptr && std::string(stSweep.pBalance) == "Continuous") {
    mapValues.erase("BalanceWhiteAuto");
  }
  return mapValues;
}

void FailAccess(const SSweep &stSweep, std::size_t nAccess, const SMeaning &stMeaning)
{
  const auto pRig = MakeRig(stSweep);
  const auto mapBefore = TakeSnapshot(*pRig, stSweep);
  const EAccessFailure eFailure = ALL_ACCESS_FAILURES[nAccess % std::size(ALL_ACCESS_FAILURES)];
  EXPECT_EQ(RunWithFailure(*pRig, nAccess, eFailure, [&] { return Acquire(*pRig, stSweep); }), stMeaning.nStatus);
  EXPECT_EQ(pRig->IsStreaming(), stSweep.bStreaming);
  if (!stMeaning.bRestoring) {
    EXPECT_EQ(TakeSnapshot(*pRig, stSweep), mapBefore);
  }
  EXPECT_EQ(pRig->Process().WaitImageRequest(), 258U);
  if (stMeaning.nStatus != 0) {
    // Without a bright frame nothing is computed; without a dark one it is left out.
    EXPECT_EQ(pRig->Process().ExecuteCorrection(), stSweep.bBright ? -3 : 0);
    EXPECT_EQ(pRig->GetTableBytesPerPixel(), stSweep.bBright ? 0U : 2U);
  }
  EXPECT_EQ(Acquire(*pRig, stSweep), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(pRig->AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(pRig->Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
}

class HostFailureSweep : public testing::TestWithParam<SSweep> {};

} // namespace

TEST_P(HostFailureSweep, EveryFailingAccessGivesItsCodeAndLeavesTheCameraAsItWas)
{
  const SSweep &stSweep = GetParam();
  const auto pRig = MakeRig(stSweep);
  SweepAccesses(
    *pRig, 21, [&] { return Acquire(*pRig, stSweep); },
    [&](std::size_t nAccess, const SFeatureAccess &stAccess) {
      FailAccess(stSweep, nAccess, PickMeaning(GetMeanings(stAccess.strNode, stSweep), stAccess));
    });
}

INSTANTIATE_TEST_SUITE_P(Cameras, HostFailureSweep,
                         testing::Values(SSweep{"Mono12", nullptr, false, false},
                                         SSweep{"Mono12", nullptr, true, false}, SSweep{"Mono12", nullptr, false, true},
                                         SSweep{"Mono12", nullptr, true, true}, SSweep{"BayerRG8", "Off", false, false},
                                         SSweep{"BayerRG8", "Off", false, true}, SSweep{"BayerRG8", "Off", true, true},
                                         SSweep{"BayerRG8", "Continuous", false, true},
                                         SSweep{"BayerRG8", "Continuous", true, true}),
                         testing::PrintToStringParamName());

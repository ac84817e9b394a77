#include <algorithm>
#include <iterator>
#include <map>
#include <ostream>

#include <gtest/gtest.h>

#include "genapi/softwarenodemap/failnthaccess.h"
#include "tests/pluginobject/shadingcorrection/process/hostrig.h"

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

// The n-th look-up of a feature, counted from 0, and what its failure means.
struct SAccess {
  std::string strNode;
  std::size_t nLookUp = 0;
};

struct SMeaning {
  int32_t nStatus;
  bool bRestoring; // its failure leaves something as the acquisition set it
};

constexpr SMeaning IGNORED = {0, false};
constexpr SMeaning FAILS = {-1002, false};
constexpr SMeaning BALANCE_FAILS = {-1018, false};
constexpr SMeaning RESTORES = {0, true};

// By look-up; the last one stands for all that follow.
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
    {"AWBLampHouse", {BALANCE_FAILS, BALANCE_FAILS, BALANCE_FAILS, RESTORES}},
    {"BalanceRatio", {BALANCE_FAILS, BALANCE_FAILS, BALANCE_FAILS, RESTORES}},
  };
  return MAP_MEANINGS.at(strNode);
}

SMeaning GetMeaning(const SAccess &stAccess, const SSweep &stSweep)
{
  const std::vector<SMeaning> listMeanings = GetMeanings(stAccess.strNode, stSweep);
  return listMeanings[std::min(stAccess.nLookUp, listMeanings.size() - 1)];
}

std::unique_ptr<CHostRig> MakeRig(const SSweep &stSweep)
{
  auto pRig = std::make_unique<CHostRig>(stSweep.pPixelFormat);
  pRig->Process().SetFrameCount("FFCFrameCount_1");
  CTestCamera &camera = pRig->Camera();
  camera.Enumeration("TriggerMode").Select("On");
  pRig->SetStreaming(stSweep.bStreaming);
  EXPECT_EQ(0, pRig->AcquireDark(10));
  EXPECT_EQ(0, pRig->AcquireBright(100));
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

// All accesses of an acquisition that succeeds, in order.
std::vector<SAccess> ListAccesses(const SSweep &stSweep)
{
  const auto pRig = MakeRig(stSweep);
  std::map<std::string, std::size_t> mapLookUps;
  std::vector<SAccess> listAccesses;
  pRig->SetHook([&](const SNodeAccess &stAccess) {
    const std::string strNode = stAccess.strNode.substr(0, stAccess.strNode.find('.'));
    mapLookUps[strNode] += stAccess.eKind == SNodeAccess::EKind::LookUp ? 1U : 0U;
    listAccesses.push_back({strNode, mapLookUps[strNode] - 1});
  });
  EXPECT_EQ(0, Acquire(*pRig, stSweep));
  return listAccesses;
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
  CFailNthAccess fail(nAccess + 1, ALL_ACCESS_FAILURES[nAccess % std::size(ALL_ACCESS_FAILURES)]);
  pRig->SetHook(std::ref(fail));
  EXPECT_EQ(stMeaning.nStatus, Acquire(*pRig, stSweep));
  pRig->SetHook(nullptr);
  EXPECT_GT(fail.GetCount(), nAccess);
  EXPECT_EQ(stSweep.bStreaming, pRig->IsStreaming());
  if (!stMeaning.bRestoring) {
    EXPECT_EQ(mapBefore, TakeSnapshot(*pRig, stSweep));
  }
  EXPECT_EQ(258U, pRig->Process().WaitImageRequest());
  if (stMeaning.nStatus != 0) {
    // Without a bright frame nothing is computed; without a dark one it is left out.
    EXPECT_EQ(stSweep.bBright ? -3 : 0, pRig->Process().ExecuteCorrection());
    EXPECT_EQ(stSweep.bBright ? 0U : 2U, pRig->GetTableBytesPerPixel());
  }
  EXPECT_EQ(0, Acquire(*pRig, stSweep));
  EXPECT_EQ(0, pRig->AcquireBright(100));
  EXPECT_EQ(0, pRig->Process().ExecuteCorrection());
}

class HostFailureSweep : public testing::TestWithParam<SSweep> {};

} // namespace

TEST_P(HostFailureSweep, EveryFailingAccessGivesItsCodeAndLeavesTheCameraAsItWas)
{
  const std::vector<SAccess> listAccesses = ListAccesses(GetParam());
  EXPECT_GT(listAccesses.size(), 20U);
  for (std::size_t i = 0; i < listAccesses.size(); ++i) {
    SCOPED_TRACE("access " + std::to_string(i) + ": " + listAccesses[i].strNode + " for the " +
                 std::to_string(listAccesses[i].nLookUp + 1) + ". time");
    FailAccess(GetParam(), i, GetMeaning(listAccesses[i], GetParam()));
  }
}

INSTANTIATE_TEST_SUITE_P(Cameras, HostFailureSweep,
                         testing::Values(SSweep{"Mono12", nullptr, false, false},
                                         SSweep{"Mono12", nullptr, true, false}, SSweep{"Mono12", nullptr, false, true},
                                         SSweep{"Mono12", nullptr, true, true}, SSweep{"BayerRG8", "Off", false, false},
                                         SSweep{"BayerRG8", "Off", false, true}, SSweep{"BayerRG8", "Off", true, true},
                                         SSweep{"BayerRG8", "Continuous", false, true},
                                         SSweep{"BayerRG8", "Continuous", true, true}),
                         testing::PrintToStringParamName());

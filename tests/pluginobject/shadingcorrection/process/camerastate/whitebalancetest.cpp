#include "pluginobject/shadingcorrection/process/camerastate/whitebalance.h"

#include <array>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "genapi/softwarenodemap/observednodemap.h"
#include "pluginobject/statuscode.h"
#include "tests/support/accessrecorder.h"
#include "tests/support/failnthaccess.h"
#include "tests/support/refusals.h"
#include "tests/support/testcamera.h"

using ffc::genapi::CObservedNodeMap;
using ffc::genapi::CSoftwareNodeMap;
using ffc::pluginobject::CFeatureAccess;
using namespace ffc::process;
using namespace ffc::test;

namespace {

// A camera that balances; its frames come whenever its state is read, the first one with the stream.
class BalanceRun : public testing::Test {
protected:
  BalanceRun()
  {
    m_map.AddEnumeration("BalanceWhiteAuto").Entry("Off", 0).Entry("Once", 1).OnRead([this] { return Read(); });
  }

  int64_t Read()
  {
    ++m_nReads;
    m_listRequests.push_back(m_exchange.PollRequest());
    if (m_nReads < m_nFrames) {
      m_exchange.SetFrameReady();
    }
    return m_nReads == m_nOffAt ? 0 : 1;
  }

  void Run()
  {
    ffc::process::RunWhiteBalance(CFeatureAccess(&m_map), m_exchange, 0, [this] {
      ++m_nStarts;
      if (m_nFrames > 0) {
        m_exchange.SetFrameReady();
      }
    });
    EXPECT_EQ(m_nStarts, 1);
    EXPECT_EQ(m_exchange.PollRequest(), 258U);
  }

  CSoftwareNodeMap m_map;
  CFrameExchange m_exchange;
  int m_nFrames = 99;
  int m_nOffAt = -1;
  int m_nReads = 0;
  int m_nStarts = 0;
  std::vector<uint32_t> m_listRequests;
};

// A camera whose balance of three ratios is under way as long as no frame comes.
class RestoredBalance : public testing::Test {
protected:
  RestoredBalance()
  {
    m_map.AddHook(std::ref(m_recorder)).AddHook(std::ref(m_refusals));
    m_camera.SetWhiteBalanceReads(-1);
    Select("BalanceRatioSelector", "Blue");
    Select("AWBLampHouse", "Fluorescence");
  }

  void Select(const char *pName, const char *pEntry) { m_camera.Enumeration(pName).FromString(pEntry); }
  std::string GetEntry(const char *pName) { return m_camera.Enumeration(pName).PeekSymbolic(); }
  CFeatureAccess Features() { return CFeatureAccess(&m_map); }
  int32_t Balance()
  {
    const int32_t nStatus = m_balance.BalanceOnce(Features(), m_exchange, 0, [] {});
    m_camera.m_adBalanceRatio = {9.0, 9.0, 9.0}; // what the balance finds
    m_recorder.Clear();
    return nStatus;
  }
  std::vector<std::string> Restore()
  {
    m_balance.Restore(Features());
    return m_recorder.GetLog();
  }

  CTestCamera m_camera{"BayerRG8"};
  CObservedNodeMap m_map{m_camera.Device()};
  CAccessRecorder m_recorder;
  CRefusals m_refusals;
  CFrameExchange m_exchange;
  ffc::process::CWhiteBalance m_balance;
  const std::array<double, 3> m_adUser = m_camera.m_adBalanceRatio;
};

// A node map in which one node is missing for one look-up.
class CGap final : public GenApi::INodeMap {
public:
  CGap(GenApi::INodeMap &inner, const char *pMissing) : m_inner(inner), m_pMissing(pMissing) {}

  GenApi::INode *GetNode(const GenICam::gcstring &strName) const override
  {
    return strName == m_pMissing && !std::exchange(m_bMissed, true) ? nullptr : m_inner.GetNode(strName);
  }
  void GetNodes(GenApi::NodeList_t &listNodes) const override { m_inner.GetNodes(listNodes); }

private:
  GenApi::INodeMap &m_inner;
  const char *m_pMissing;
  mutable bool m_bMissed = false;
};

} // namespace

TEST_F(RestoredBalance, PutsALampHouseBackWhoseNodeIsMissingForOneLookUp)
{
  EXPECT_EQ(Balance(), 0);
  CGap gap(m_map, "AWBLampHouse");
  m_balance.Restore(CFeatureAccess(&gap));
  EXPECT_EQ(GetEntry("AWBLampHouse"), "Fluorescence");
}

TEST_F(RestoredBalance, EndsABalanceThatLocksTheRatios)
{
  Select("BalanceWhiteAuto", "Continuous");
  EXPECT_EQ(Balance(), 0);
  EXPECT_EQ(GetEntry("BalanceWhiteAuto"), "Once");
  (void)Restore();
  EXPECT_EQ(GetEntry("BalanceWhiteAuto"), "Off");
  EXPECT_EQ(m_adUser, m_camera.m_adBalanceRatio);
  EXPECT_EQ(GetEntry("BalanceRatioSelector"), "Blue");
  EXPECT_EQ(GetEntry("AWBLampHouse"), "Fluorescence");
}

TEST_F(RestoredBalance, WritesNoRatioWhenOnceWasNotTried)
{
  Select("BalanceWhiteAuto", "Continuous");
  m_refusals.Refuse("AWBLampHouse", "Adaptive");
  EXPECT_EQ(Balance(), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_EQ(Restore(), (std::vector<std::string>{"implemented? AWBLampHouse", "set AWBLampHouse = Fluorescence",
                                                 "set BalanceRatioSelector = Blue"}));
  EXPECT_EQ(GetEntry("BalanceWhiteAuto"), "Continuous");
  Select("BalanceWhiteAuto", "Off");
  EXPECT_EQ(Balance(), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_EQ(Restore(), (std::vector<std::string>{"implemented? AWBLampHouse", "set AWBLampHouse = Fluorescence"}));
}

TEST_F(RestoredBalance, DoesNotEndTheContinuousBalanceOfACameraThatRefusesOnce)
{
  Select("BalanceWhiteAuto", "Continuous");
  m_refusals.Refuse("BalanceWhiteAuto", "Once");
  EXPECT_EQ(Balance(), PLUGIN_STATUS_FEATURE_ERROR);
  (void)Restore();
  EXPECT_EQ(GetEntry("BalanceWhiteAuto"), "Continuous");
  EXPECT_EQ(GetEntry("BalanceRatioSelector"), "Blue");
}

TEST_F(RestoredBalance, TriesTheSelectorWhateverElseIsRefused)
{
  Select("BalanceWhiteAuto", "Continuous");
  EXPECT_EQ(Balance(), 0);
  m_refusals.Refuse("BalanceRatio");
  m_refusals.Refuse("AWBLampHouse");
  m_refusals.Refuse("BalanceWhiteAuto");
  (void)Restore();
  EXPECT_EQ(GetEntry("BalanceRatioSelector"), "Blue");
}

TEST_F(RestoredBalance, IsTriedTwiceAndForgotten)
{
  EXPECT_EQ(Balance(), 0);
  m_refusals.Refuse("BalanceWhiteAuto");
  m_refusals.Refuse("AWBLampHouse");
  (void)Restore();
  EXPECT_EQ(m_refusals.TakeCount(), 4);
  m_refusals.Permit();
  m_recorder.Clear();
  EXPECT_TRUE(Restore().empty());
  EXPECT_EQ(GetEntry("BalanceWhiteAuto"), "Once");
}

TEST_F(BalanceRun, EndsWhenTheCameraSaysOff)
{
  for (const int nOffAt : {1, 2, 5}) {
    m_nOffAt = nOffAt;
    m_nReads = 0;
    m_nStarts = 0;
    Run();
    EXPECT_EQ(nOffAt, m_nReads);
  }
}

TEST_F(BalanceRun, EndsAfterFiveFrames)
{
  Run();
  EXPECT_EQ(m_nReads, 5);
}

TEST_F(BalanceRun, AsksForEveryFrame)
{
  m_nOffAt = 3;
  Run();
  EXPECT_EQ(m_listRequests, (std::vector<uint32_t>{0, 0, 0}));
}

TEST_F(BalanceRun, EndsWhenAFrameDoesNotCome)
{
  for (const int nFrames : {0, 1, 3}) {
    m_exchange.SetFrameReady(); // what the former run asked for, too late
    m_nFrames = nFrames;
    m_nReads = 0;
    m_nStarts = 0;
    Run();
    EXPECT_EQ(nFrames, m_nReads);
  }
}

TEST_F(BalanceRun, ForgetsAFrameThatCameBeforeTheStreamWasStarted)
{
  m_exchange.SetFrameReady();
  m_nFrames = 0;
  Run();
  EXPECT_EQ(m_nReads, 0);
}

TEST_F(BalanceRun, DoesNotLookAtTheStopFlag)
{
  m_exchange.SetStopFlag(true);
  m_nOffAt = 2;
  Run();
  EXPECT_EQ(m_nReads, 2);
}

TEST_F(RestoredBalance, PutsALampHouseBackThatCannotBeAskedAbout)
{
  EXPECT_EQ(Balance(), 0);
  // Two accesses fail, one after the other.
  CFailNthAccess first(1, EAccessFailure::Generic);
  CFailNthAccess second(1, EAccessFailure::Generic);
  m_map.AddHook(std::ref(first)).AddHook(std::ref(second));
  (void)Restore();
  EXPECT_EQ(GetEntry("AWBLampHouse"), "Fluorescence");
}

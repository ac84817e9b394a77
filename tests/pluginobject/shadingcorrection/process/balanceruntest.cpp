#include "pluginobject/shadingcorrection/process/camerastate/balancerun.h"

#include <gtest/gtest.h>

#include "genapi/softwarenodemap/softwarenodemap.h"

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
    RunWhiteBalance(CFeatureAccess(&m_map), m_exchange, 0, [this] {
      ++m_nStarts;
      if (m_nFrames > 0) {
        m_exchange.SetFrameReady();
      }
    });
    EXPECT_EQ(1, m_nStarts);
    EXPECT_EQ(258U, m_exchange.PollRequest());
  }

  CSoftwareNodeMap m_map;
  CFrameExchange m_exchange;
  int m_nFrames = 99;
  int m_nOffAt = -1;
  int m_nReads = 0;
  int m_nStarts = 0;
  std::vector<uint32_t> m_listRequests;
};

} // namespace

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
  EXPECT_EQ(5, m_nReads);
}

TEST_F(BalanceRun, AsksForEveryFrame)
{
  m_nOffAt = 3;
  Run();
  EXPECT_EQ((std::vector<uint32_t>{0, 0, 0}), m_listRequests);
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
  EXPECT_EQ(0, m_nReads);
}

TEST_F(BalanceRun, DoesNotLookAtTheStopFlag)
{
  m_exchange.SetStopFlag(true);
  m_nOffAt = 2;
  Run();
  EXPECT_EQ(2, m_nReads);
}

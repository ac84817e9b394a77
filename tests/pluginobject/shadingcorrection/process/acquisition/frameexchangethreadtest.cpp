#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/process/acquisition/frameexchange.h"
#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/testimage.h"

using namespace ffc::process;
using namespace ffc::test;

namespace {

constexpr uint32_t BUFFER_SIZE = 512;

// A host that keeps to the protocol now and then only: frames come late, unasked, long, short and null.
class CUnorderlyFrameThread {
public:
  explicit CUnorderlyFrameThread(CFrameExchange &exchange) : m_exchange(exchange), m_thread([this] { Run(); }) {}
  ~CUnorderlyFrameThread()
  {
    m_bStop = true;
    m_thread.join();
  }

  int GetFrameCount() const { return m_nFrames; }

private:
  void Run()
  {
    CTestRandom random(11);
    while (!m_bStop) {
      const bool bRequested = m_exchange.PollRequest() == 0;
      if (bRequested || random.Between(0, 9) == 0) {
        const std::vector<uint8_t> listFrame(static_cast<std::size_t>(random.Between(0, 2 * BUFFER_SIZE)),
                                             static_cast<uint8_t>(random.Between(1, 255)));
        m_exchange.ReceiveFrame(random.Between(0, 9) == 0 ? nullptr : listFrame.data(),
                                static_cast<uint32_t>(listFrame.size()));
        m_exchange.SetFrameReady();
        ++m_nFrames;
      }
      if (random.Between(0, 99) == 0) {
        m_exchange.SetStopFlag(random.Between(0, 1) == 0);
      }
    }
    m_exchange.SetStopFlag(false);
  }

  CFrameExchange &m_exchange;
  std::atomic<bool> m_bStop{false};
  std::atomic<int> m_nFrames{0};
  std::thread m_thread;
};

// One random operation of the user-interface thread.
void OperateOnce(CFrameExchange &exchange, CTestRandom &random)
{
  switch (random.Between(0, 5)) {
  case 0: EXPECT_TRUE(exchange.AllocateBuffer(static_cast<uint64_t>(random.Between(0, BUFFER_SIZE)))); break;
  case 1: exchange.ReleaseBuffer(); break;
  case 2: exchange.ZeroBuffer(); break;
  case 3: exchange.BeginRequests(); break;
  case 4: exchange.RequestFrame(); break;
  default: {
    const int32_t nStatus = exchange.WaitFrame(0);
    EXPECT_TRUE(nStatus == 0 || nStatus == PLUGIN_STATUS_BUFFER_TIMEOUT || nStatus == PLUGIN_STATUS_NEED_BAYER_FORMAT)
      << nStatus;
  }
  }
}

} // namespace

TEST(FrameExchangeThreads, AFrameStaysAsItIsWhileItIsUsed)
{
  CFrameExchange exchange;
  const CUnorderlyFrameThread frameThread(exchange);
  CTestRandom random(5);
  bool bSteady = true;
  while (frameThread.GetFrameCount() < 3000) {
    OperateOnce(exchange, random);
    exchange.UseFrame([&bSteady](const CFrameBuffer &buffer) {
      const std::vector<uint8_t> listBefore(buffer.GetData(), buffer.GetData() + buffer.GetSize());
      std::this_thread::yield();
      bSteady = bSteady && std::equal(listBefore.begin(), listBefore.end(), buffer.GetData());
    });
  }
  EXPECT_TRUE(bSteady);
}

TEST(FrameExchangeThreads, EveryRequestedFrameOfAnOrderlyHostArrivesOnce)
{
  constexpr int FRAMES = 300;
  CFrameExchange exchange;
  ASSERT_TRUE(exchange.AllocateBuffer(BUFFER_SIZE));
  std::atomic<bool> bStop{false};
  int nDelivered = 0;
  std::thread frameThread([&] {
    while (!bStop) {
      if (exchange.PollRequest() == 0) {
        const std::vector<uint8_t> listFrame(BUFFER_SIZE, static_cast<uint8_t>(++nDelivered));
        exchange.ReceiveFrame(listFrame.data(), BUFFER_SIZE);
        exchange.SetFrameReady();
      }
    }
  });
  exchange.BeginRequests();
  for (int i = 1; i <= FRAMES; ++i) {
    EXPECT_EQ(exchange.WaitFrame(60000), PLUGIN_STATUS_SUCCESS);
    const bool bWhole = exchange.UseFrame([i](const CFrameBuffer &buffer) {
      return std::all_of(buffer.GetData(), buffer.GetData() + buffer.GetSize(),
                         [i](uint8_t n) { return n == static_cast<uint8_t>(i); });
    });
    EXPECT_TRUE(bWhole) << i;
    if (i < FRAMES) {
      exchange.RequestFrame();
    }
  }
  bStop = true;
  frameThread.join();
  EXPECT_EQ(nDelivered, FRAMES);
}

TEST(FrameExchangeThreads, AnAcquisitionGetsNoFrameThatAnEarlierOneAskedFor)
{
  constexpr uint8_t ROUNDS = 200;
  CFrameExchange exchange;
  std::atomic<bool> bStop{false};
  std::atomic<uint8_t> nRound{0};
  // Takes its time between poll and hand-over; a frame shows the round in which it was asked for.
  std::thread frameThread([&] {
    CTestRandom random(3);
    while (!bStop) {
      if (exchange.PollRequest() == 0) {
        const std::vector<uint8_t> listFrame(BUFFER_SIZE, nRound);
        std::this_thread::sleep_for(std::chrono::microseconds(random.Between(0, 300)));
        exchange.ReceiveFrame(listFrame.data(), BUFFER_SIZE);
        std::this_thread::sleep_for(std::chrono::microseconds(random.Between(0, 300)));
        exchange.SetFrameReady();
      }
    }
  });
  CTestRandom random(8);
  int nArrived = 0;
  for (uint8_t n = 1; n <= ROUNDS; ++n) {
    nRound = n;
    ASSERT_TRUE(exchange.AllocateBuffer(BUFFER_SIZE));
    exchange.BeginRequests();
    // Most give up while a frame is on its way.
    if (exchange.WaitFrame(random.Between(0, 3) == 0 ? 60000U : 0U) == 0) {
      ++nArrived;
      exchange.UseFrame([n](const CFrameBuffer &buffer) {
        EXPECT_EQ(std::count(buffer.GetData(), buffer.GetData() + buffer.GetSize(), n), BUFFER_SIZE) << int{n};
      });
    }
    exchange.ReleaseBuffer();
  }
  bStop = true;
  frameThread.join();
  EXPECT_GT(nArrived, 20);
}

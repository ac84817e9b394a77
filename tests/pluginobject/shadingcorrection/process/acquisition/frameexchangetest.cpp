#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/process/acquisition/frameexchange.h"
#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/failingnew.h"

using namespace ffc::process;

namespace {

constexpr uint32_t REQUESTED = 0;
constexpr uint32_t NOT_REQUESTED = 258;

std::vector<uint8_t> GetBytes(CFrameExchange &exchange)
{
  return exchange.UseFrame([](const CFrameBuffer &buffer) {
    return std::vector<uint8_t>(buffer.GetData(), buffer.GetData() + buffer.GetSize());
  });
}

void Receive(CFrameExchange &exchange, const std::vector<uint8_t> &listBytes)
{
  exchange.ReceiveFrame(listBytes.data(), static_cast<uint32_t>(listBytes.size()));
}

} // namespace

TEST(FrameExchange, WithoutARequestTellsThatNoFrameIsWanted)
{
  CFrameExchange exchange;
  EXPECT_EQ(exchange.PollRequest(), NOT_REQUESTED);
}

TEST(FrameExchange, ARequestIsConsumedByTheFirstPoll)
{
  CFrameExchange exchange;
  exchange.RequestFrame();
  EXPECT_EQ(exchange.PollRequest(), REQUESTED);
  EXPECT_EQ(exchange.PollRequest(), NOT_REQUESTED);
}

TEST(FrameExchange, TwoRequestsWithoutAPollAreOne)
{
  CFrameExchange exchange;
  exchange.RequestFrame();
  exchange.RequestFrame();
  EXPECT_EQ(exchange.PollRequest(), REQUESTED);
  EXPECT_EQ(exchange.PollRequest(), NOT_REQUESTED);
}

TEST(FrameExchange, AWithdrawnRequestIsNotSeen)
{
  CFrameExchange exchange;
  exchange.RequestFrame();
  exchange.WithdrawRequest();
  EXPECT_EQ(exchange.PollRequest(), NOT_REQUESTED);
}

TEST(FrameExchange, ReleasingTheBufferWithdrawsTheRequest)
{
  CFrameExchange exchange;
  ASSERT_TRUE(exchange.AllocateBuffer(4));
  exchange.RequestFrame();
  exchange.ReleaseBuffer();
  EXPECT_EQ(exchange.PollRequest(), NOT_REQUESTED);
}

TEST(FrameExchange, BeginningForgetsAnEarlierFrameAndAsksForOne)
{
  CFrameExchange exchange;
  exchange.SetFrameReady();
  exchange.BeginRequests();
  EXPECT_EQ(exchange.PollRequest(), REQUESTED);
  EXPECT_EQ(exchange.WaitFrame(0), PLUGIN_STATUS_BUFFER_TIMEOUT);
}

TEST(FrameExchange, AReceivedFrameIsInTheBuffer)
{
  CFrameExchange exchange;
  ASSERT_TRUE(exchange.AllocateBuffer(4));
  Receive(exchange, {1, 2, 3, 4});
  exchange.SetFrameReady();
  EXPECT_EQ(exchange.WaitFrame(0), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(GetBytes(exchange), (std::vector<uint8_t>{1, 2, 3, 4}));
}

TEST(FrameExchange, AFrameWithoutABufferIsDropped)
{
  CFrameExchange exchange;
  Receive(exchange, {1, 2, 3, 4});
  EXPECT_TRUE(GetBytes(exchange).empty());
}

TEST(FrameExchange, ALateFrameAfterReleaseIsDropped)
{
  CFrameExchange exchange;
  ASSERT_TRUE(exchange.AllocateBuffer(4));
  exchange.RequestFrame();
  EXPECT_EQ(exchange.PollRequest(), REQUESTED);
  exchange.ReleaseBuffer();
  Receive(exchange, {1, 2, 3, 4});
  EXPECT_TRUE(GetBytes(exchange).empty());
}

TEST(FrameExchange, AFrameForTheRequestOfAnAcquisitionThatGaveUpIsNotTheNextOnes)
{
  CFrameExchange exchange;
  ASSERT_TRUE(exchange.AllocateBuffer(4));
  exchange.BeginRequests();
  ASSERT_EQ(exchange.PollRequest(), REQUESTED);
  EXPECT_EQ(exchange.WaitFrame(0), PLUGIN_STATUS_BUFFER_TIMEOUT);
  exchange.ReleaseBuffer();
  ASSERT_TRUE(exchange.AllocateBuffer(4));
  exchange.BeginRequests();
  Receive(exchange, {1, 2, 3, 4});
  exchange.SetFrameReady();
  EXPECT_EQ(exchange.WaitFrame(0), PLUGIN_STATUS_BUFFER_TIMEOUT);
  EXPECT_EQ(GetBytes(exchange), std::vector<uint8_t>(4));
  ASSERT_EQ(exchange.PollRequest(), REQUESTED);
  Receive(exchange, {5, 6, 7, 8});
  exchange.SetFrameReady();
  EXPECT_EQ(exchange.WaitFrame(0), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(GetBytes(exchange), (std::vector<uint8_t>{5, 6, 7, 8}));
}

TEST(FrameExchange, AFrameForAnEarlierRequestDoesNotReachTheBufferOfTheNextAcquisitionBeforeItsOwn)
{
  CFrameExchange exchange;
  exchange.BeginRequests();
  ASSERT_EQ(exchange.PollRequest(), REQUESTED);
  exchange.ReleaseBuffer();
  ASSERT_TRUE(exchange.AllocateBuffer(2));
  Receive(exchange, {1, 2});
  EXPECT_EQ(GetBytes(exchange), std::vector<uint8_t>(2));
}

TEST(FrameExchange, FramesThatDoNotCountPutOffNoTimeout)
{
  constexpr int ENOUGH = 300;
  CFrameExchange exchange;
  std::atomic<bool> bEnded{false};
  int nFrames = 0;
  std::thread host([&] {
    for (; nFrames < ENOUGH && !bEnded; ++nFrames) {
      exchange.RequestFrame();
      (void)exchange.PollRequest();
      exchange.WithdrawRequest();
      exchange.SetFrameReady();
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
  });
  EXPECT_FALSE(exchange.WaitFrameReady(30));
  bEnded = true;
  host.join();
  EXPECT_LT(nFrames, ENOUGH) << "it did not wait for the last of them";
}

TEST(FrameExchange, AFrameThatWasAskedForBeforeItsRequestWasWithdrawnDoesNotCount)
{
  CFrameExchange exchange;
  exchange.RequestFrame();
  ASSERT_EQ(exchange.PollRequest(), REQUESTED);
  exchange.WithdrawRequest();
  exchange.SetFrameReady();
  EXPECT_FALSE(exchange.WaitFrameReady(0));
}

TEST(FrameExchange, AnOutdatedFrameDoesNotMakeAWaitLonger)
{
  CFrameExchange exchange;
  exchange.RequestFrame();
  ASSERT_EQ(exchange.PollRequest(), REQUESTED);
  exchange.BeginRequests();
  exchange.SetFrameReady();
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(exchange.WaitFrame(20), PLUGIN_STATUS_BUFFER_TIMEOUT);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
}

TEST(FrameExchange, ALongerFrameIsCutToTheBuffer)
{
  CFrameExchange exchange;
  ASSERT_TRUE(exchange.AllocateBuffer(3));
  Receive(exchange, {1, 2, 3, 4, 5, 6, 7, 8});
  EXPECT_EQ(GetBytes(exchange), (std::vector<uint8_t>{1, 2, 3}));
}

TEST(FrameExchange, AShorterFrameLeavesTheRestOfTheBuffer)
{
  CFrameExchange exchange;
  ASSERT_TRUE(exchange.AllocateBuffer(4));
  Receive(exchange, {1, 2, 3, 4});
  Receive(exchange, {9, 8});
  EXPECT_EQ(GetBytes(exchange), (std::vector<uint8_t>{9, 8, 3, 4}));
  Receive(exchange, {});
  EXPECT_EQ(GetBytes(exchange), (std::vector<uint8_t>{9, 8, 3, 4}));
}

TEST(FrameExchange, ANullFrameIsDropped)
{
  CFrameExchange exchange;
  ASSERT_TRUE(exchange.AllocateBuffer(2));
  Receive(exchange, {1, 2});
  exchange.ReceiveFrame(nullptr, 2);
  EXPECT_EQ(GetBytes(exchange), (std::vector<uint8_t>{1, 2}));
}

TEST(FrameExchange, ABufferForFramesThatNoHostCanCountIsRefused)
{
  CFrameExchange exchange;
  EXPECT_FALSE(exchange.AllocateBuffer(uint64_t{1} << 32));
  EXPECT_FALSE(exchange.AllocateBuffer(UINT64_MAX));
}

TEST(FrameExchange, ABufferIsZeroedAsFarAsTheLongestFrameReached)
{
  CFrameExchange exchange;
  ASSERT_TRUE(exchange.AllocateBuffer(4));
  const std::vector<uint8_t> listFrame = {1, 2, 3, 4, 5};
  for (const uint32_t nSize : {3U, 1U, 5U, 0U}) {
    exchange.ReceiveFrame(listFrame.data(), nSize);
    exchange.ReceiveFrame(listFrame.data(), 1);
    exchange.ZeroBuffer();
    exchange.UseFrame([](const CFrameBuffer &frame) {
      EXPECT_EQ(std::vector<uint8_t>(frame.GetData(), frame.GetData() + frame.GetSize()), std::vector<uint8_t>(4));
    });
  }
}

TEST(FrameExchange, ABufferIsZeroedAtAllocationAndOnDemand)
{
  CFrameExchange exchange;
  ASSERT_TRUE(exchange.AllocateBuffer(2));
  EXPECT_EQ(GetBytes(exchange), (std::vector<uint8_t>{0, 0}));
  Receive(exchange, {1, 2});
  exchange.ZeroBuffer();
  EXPECT_EQ(GetBytes(exchange), (std::vector<uint8_t>{0, 0}));
  Receive(exchange, {1, 2});
  ASSERT_TRUE(exchange.AllocateBuffer(2));
  EXPECT_EQ(GetBytes(exchange), (std::vector<uint8_t>{0, 0}));
}

TEST(FrameExchange, WithoutMemoryHasNoBuffer)
{
  CFrameExchange exchange;
  ASSERT_TRUE(exchange.AllocateBuffer(2));
  EXPECT_FALSE(exchange.AllocateBuffer(uint64_t{1} << 62));
  Receive(exchange, {1, 2});
  EXPECT_TRUE(GetBytes(exchange).empty());
  const CFailingNew failing;
  EXPECT_FALSE(exchange.AllocateBuffer(2));
}

TEST(FrameExchange, WithoutAFrameTheWaitTimesOut)
{
  CFrameExchange exchange;
  EXPECT_EQ(exchange.WaitFrame(0), PLUGIN_STATUS_BUFFER_TIMEOUT);
  EXPECT_EQ(exchange.WaitFrame(5), PLUGIN_STATUS_BUFFER_TIMEOUT);
  EXPECT_FALSE(exchange.WaitFrameReady(0));
}

TEST(FrameExchange, AReadySignalLetsOneWaitPass)
{
  CFrameExchange exchange;
  exchange.SetFrameReady();
  EXPECT_EQ(exchange.WaitFrame(0), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(exchange.WaitFrame(0), PLUGIN_STATUS_BUFFER_TIMEOUT);
}

TEST(FrameExchange, TheStopFlagBeatsAFrameThatArrived)
{
  CFrameExchange exchange;
  exchange.SetFrameReady();
  exchange.SetStopFlag(true);
  EXPECT_EQ(exchange.WaitFrame(0), PLUGIN_STATUS_NEED_BAYER_FORMAT);
}

TEST(FrameExchange, TheStopFlagBeatsATimeout)
{
  CFrameExchange exchange;
  exchange.SetStopFlag(true);
  EXPECT_EQ(exchange.WaitFrame(0), PLUGIN_STATUS_NEED_BAYER_FORMAT);
  exchange.SetStopFlag(false);
  EXPECT_EQ(exchange.WaitFrame(0), PLUGIN_STATUS_BUFFER_TIMEOUT);
}

TEST(FrameExchange, AWaitWhateverTheStopFlagSeesTheFrame)
{
  CFrameExchange exchange;
  exchange.SetStopFlag(true);
  exchange.SetFrameReady();
  EXPECT_TRUE(exchange.WaitFrameReady(0));
}

TEST(FrameExchange, AFrameOfAnotherThreadWakesTheWait)
{
  CFrameExchange exchange;
  ASSERT_TRUE(exchange.AllocateBuffer(2));
  exchange.BeginRequests();
  std::thread frameThread([&exchange] {
    while (exchange.PollRequest() != REQUESTED) {
      std::this_thread::yield();
    }
    Receive(exchange, {7, 8});
    exchange.SetFrameReady();
  });
  EXPECT_EQ(exchange.WaitFrame(60000), PLUGIN_STATUS_SUCCESS);
  frameThread.join();
  EXPECT_EQ(GetBytes(exchange), (std::vector<uint8_t>{7, 8}));
}

TEST(FrameExchange, ANewBufferHasBeenTouchedByNoFrame)
{
  CFrameExchange exchange;
  ASSERT_TRUE(exchange.AllocateBuffer(4));
  Receive(exchange, {1, 2, 3});
  ASSERT_TRUE(exchange.AllocateBuffer(2));
  CFrameBuffer other;
  EXPECT_EQ(exchange.SwapBuffer(other), 0U);
  EXPECT_EQ(exchange.SwapBuffer(other), 0U) << "nor has the one that it got";
}

#include "pluginobject/shadingcorrection/process/acquisition/frameexchange.h"

#include <atomic>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

using namespace ffc::process;

namespace {

constexpr uint32_t REQUESTED = 0;
constexpr uint32_t NOT_REQUESTED = 258;
constexpr uint32_t LONG = 60000; // milliseconds

// Answers each request with a frame, on a thread of its own, until it has answered so many.
class CAnsweringHost {
public:
  CAnsweringHost(CFrameExchange &exchange, int nAnswers, int nStopAt = -1)
    : m_thread([&exchange, nAnswers, nStopAt] {
        for (int nAnswered = 0; nAnswered < nAnswers;) {
          if (exchange.PollRequest() == REQUESTED) {
            exchange.SetStopFlag(nAnswered == nStopAt);
            exchange.SetFrameReady();
            ++nAnswered;
          }
          std::this_thread::yield();
        }
      })
  {
  }
  ~CAnsweringHost() { m_thread.join(); }

private:
  std::thread m_thread;
};

// Takes nCount frames of a host that has nAnswers; using the one of index nFailing fails.
int32_t Take(uint32_t nCount, int nAnswers, std::vector<uint32_t> &listTaken, uint32_t nFailing = 99)
{
  CFrameExchange exchange;
  const CAnsweringHost host(exchange, nAnswers);
  return exchange.TakeFrames(LONG, nCount, [&](uint32_t nFrame) {
    listTaken.push_back(nFrame);
    return nFrame == nFailing ? -1012 : 0;
  });
}

} // namespace

TEST(FrameSeries, TakesItsFramesInOrder)
{
  for (const uint32_t nCount : {1U, 2U, 4U, 16U}) {
    std::vector<uint32_t> listTaken;
    EXPECT_EQ(0, Take(nCount, static_cast<int>(nCount), listTaken));
    ASSERT_EQ(nCount, listTaken.size());
    EXPECT_EQ(0U, listTaken.front());
    EXPECT_EQ(nCount - 1, listTaken.back());
  }
}

TEST(FrameSeries, OfOneFrameAsksOnce)
{
  CFrameExchange exchange;
  {
    const CAnsweringHost host(exchange, 1);
    EXPECT_EQ(0, exchange.TakeFrames(LONG, 1, [](uint32_t) { return 0; }));
  }
  EXPECT_EQ(NOT_REQUESTED, exchange.PollRequest());
}

TEST(FrameSeries, OfNoFrameTakesNone)
{
  CFrameExchange exchange;
  EXPECT_EQ(0, exchange.TakeFrames(0, 0, [](uint32_t) { return -1; }));
}

TEST(FrameSeries, AsksForTheNextFrameOnlyAfterTheLastOneWasUsed)
{
  CFrameExchange exchange;
  std::vector<uint32_t> listPending;
  const CAnsweringHost host(exchange, 1);
  EXPECT_EQ(-1, exchange.TakeFrames(LONG, 3, [&](uint32_t nFrame) {
    listPending.push_back(exchange.PollRequest());
    exchange.SetFrameReady(); // the next one is there before it is asked for
    return nFrame == 2 ? -1 : 0;
  }));
  // The request for the second frame is made between the uses of the first two; nobody else polls by then.
  EXPECT_EQ((std::vector<uint32_t>{NOT_REQUESTED, REQUESTED, REQUESTED}), listPending);
}

TEST(FrameSeries, ForgetsAFrameThatCameBeforeItBegan)
{
  CFrameExchange exchange;
  exchange.SetFrameReady();
  EXPECT_EQ(-1009, exchange.TakeFrames(0, 1, [](uint32_t) { return 0; }));
  EXPECT_EQ(REQUESTED, exchange.PollRequest());
}

TEST(FrameSeries, StopsAtTheFirstFrameThatCannotBeUsed)
{
  for (const uint32_t nFailing : {0U, 1U, 3U}) {
    std::vector<uint32_t> listTaken;
    EXPECT_EQ(-1012, Take(4, static_cast<int>(nFailing) + 1, listTaken, nFailing));
    EXPECT_EQ(nFailing + 1, listTaken.size());
  }
}

TEST(FrameSeries, IsStoppedByTheFlagBeforeTheFrameIsUsed)
{
  CFrameExchange exchange;
  const CAnsweringHost host(exchange, 2, 1);
  int nTaken = 0;
  EXPECT_EQ(-1017, exchange.TakeFrames(LONG, 4, [&](uint32_t) {
    ++nTaken;
    return 0;
  }));
  EXPECT_EQ(1, nTaken);
}

#include "pluginobject/shadingcorrection/process/acquisition/frameexchange.h"

#include <atomic>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"

using namespace ffc::process;

namespace {

constexpr uint32_t REQUEST = 0;
constexpr uint32_t NO_REQUEST = 258;
constexpr uint32_t LONG = 60000; // milliseconds

// Answers each request with a frame, on a thread of its own, until it has answered so many.
class CAnsweringHost {
public:
  CAnsweringHost(CFrameExchange &exchange, int nAnswers, int nStopAt = -1)
    : m_thread([&exchange, nAnswers, nStopAt] {
        for (int nAnswered = 0; nAnswered < nAnswers;) {
          if (exchange.PollRequest() == REQUEST) {
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
    return nFrame == nFailing ? PLUGIN_STATUS_BUFFER_SIZE_ERROR : 0;
  });
}

} // namespace

TEST(FrameSeries, TakesItsFramesInOrder)
{
  for (const uint32_t nCount : {1U, 2U, 4U, 16U}) {
    std::vector<uint32_t> listTaken;
    EXPECT_EQ(Take(nCount, static_cast<int>(nCount), listTaken), 0);
    ASSERT_EQ(listTaken.size(), nCount);
    EXPECT_EQ(listTaken.front(), 0U);
    EXPECT_EQ(listTaken.back(), nCount - 1);
  }
}

TEST(FrameSeries, OfOneFrameAsksOnce)
{
  CFrameExchange exchange;
  {
    const CAnsweringHost host(exchange, 1);
    EXPECT_EQ(exchange.TakeFrames(LONG, 1, [](uint32_t) { return 0; }), PLUGIN_STATUS_SUCCESS);
  }
  EXPECT_EQ(exchange.PollRequest(), NO_REQUEST);
}

TEST(FrameSeries, OfNoFrameTakesNone)
{
  CFrameExchange exchange;
  EXPECT_EQ(exchange.TakeFrames(0, 0, [](uint32_t) { return -1; }), PLUGIN_STATUS_SUCCESS);
}

TEST(FrameSeries, AsksForTheNextFrameOnlyAfterTheLastOneWasUsed)
{
  CFrameExchange exchange;
  std::vector<uint32_t> listPending;
  const CAnsweringHost host(exchange, 1);
  EXPECT_EQ(exchange.TakeFrames(LONG, 3,
                                [&](uint32_t nFrame) {
                                  listPending.push_back(exchange.PollRequest());
                                  exchange.SetFrameReady(); // the next one is there before it is asked for
                                  return nFrame == 2 ? -1 : 0;
                                }),
            PLUGIN_STATUS_UNKNOWN_ERROR);
  // The request for the second frame is made between the uses of the first two; nobody else polls by then.
  EXPECT_EQ(listPending, (std::vector<uint32_t>{NO_REQUEST, REQUEST, REQUEST}));
}

TEST(FrameSeries, ForgetsAFrameThatCameBeforeItBegan)
{
  CFrameExchange exchange;
  exchange.SetFrameReady();
  EXPECT_EQ(exchange.TakeFrames(0, 1, [](uint32_t) { return 0; }), PLUGIN_STATUS_BUFFER_TIMEOUT);
  EXPECT_EQ(exchange.PollRequest(), REQUEST);
}

TEST(FrameSeries, StopsAtTheFirstFrameThatCannotBeUsed)
{
  for (const uint32_t nFailing : {0U, 1U, 3U}) {
    std::vector<uint32_t> listTaken;
    EXPECT_EQ(Take(4, static_cast<int>(nFailing) + 1, listTaken, nFailing), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
    EXPECT_EQ(listTaken.size(), nFailing + 1);
  }
}

TEST(FrameSeries, IsStoppedByTheFlagBeforeTheFrameIsUsed)
{
  CFrameExchange exchange;
  const CAnsweringHost host(exchange, 2, 1);
  int nTaken = 0;
  EXPECT_EQ(exchange.TakeFrames(LONG, 4,
                                [&](uint32_t) {
                                  ++nTaken;
                                  return 0;
                                }),
            PLUGIN_STATUS_NEED_BAYER_FORMAT);
  EXPECT_EQ(nTaken, 1);
}

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include <gtest/gtest.h>

#include "camera/software/framestreamer.h"

using ffc::camera::CFrameStreamer;

namespace {

using namespace std::chrono_literals;

// Counts deliveries and waits for them.
class CDeliveryCounter {
public:
  void Count()
  {
    const std::lock_guard lock(m_mutex);
    ++m_nCount;
    m_condition.notify_all();
  }
  int Get() const
  {
    const std::lock_guard lock(m_mutex);
    return m_nCount;
  }
  bool WaitFor(int nCount)
  {
    std::unique_lock lock(m_mutex);
    return m_condition.wait_for(lock, 10s, [&] { return m_nCount >= nCount; });
  }

private:
  mutable std::mutex m_mutex;
  std::condition_variable m_condition;
  int m_nCount = 0;
};

class FrameStreamer : public testing::Test {
protected:
  FrameStreamer() : m_streamer([this] { return GetTiming(); }, [this] { m_counter.Count(); }) {}

  CFrameStreamer::STiming GetTiming() const { return {m_nPeriod.load(), m_bTriggered.load()}; }

  std::atomic<std::chrono::nanoseconds> m_nPeriod{1ms};
  std::atomic<bool> m_bTriggered{false};
  CDeliveryCounter m_counter;
  CFrameStreamer m_streamer;
};

} // namespace

TEST_F(FrameStreamer, AFreeStreamDeliversUntilItIsStopped)
{
  EXPECT_FALSE(m_streamer.IsStreaming());
  ASSERT_EQ(m_streamer.Start().GetError(), "");
  EXPECT_TRUE(m_streamer.IsStreaming());
  EXPECT_TRUE(m_counter.WaitFor(5));
  m_streamer.Stop();
  EXPECT_FALSE(m_streamer.IsStreaming());
  const int nDelivered = m_counter.Get();
  std::this_thread::sleep_for(20ms);
  EXPECT_EQ(m_counter.Get(), nDelivered);
}

TEST_F(FrameStreamer, FramesKeepTheirDistance)
{
  m_nPeriod = 20ms;
  const auto tStart = std::chrono::steady_clock::now();
  ASSERT_EQ(m_streamer.Start().GetError(), "");
  ASSERT_TRUE(m_counter.WaitFor(6));
  EXPECT_GE(std::chrono::steady_clock::now() - tStart, 100ms) << "five periods lie between six frames";
}

TEST_F(FrameStreamer, ATriggeredStreamDeliversOncePerTrigger)
{
  m_bTriggered = true;
  m_streamer.Trigger(); // before the start: forgotten
  ASSERT_EQ(m_streamer.Start().GetError(), "");
  std::this_thread::sleep_for(20ms);
  EXPECT_EQ(m_counter.Get(), 0);
  m_streamer.Trigger();
  m_streamer.Trigger();
  EXPECT_TRUE(m_counter.WaitFor(2));
  std::this_thread::sleep_for(20ms);
  EXPECT_EQ(m_counter.Get(), 2);
}

TEST_F(FrameStreamer, AChangedTimingTakesEffectAtOnce)
{
  m_nPeriod = 1h;
  ASSERT_EQ(m_streamer.Start().GetError(), "");
  ASSERT_TRUE(m_counter.WaitFor(1)); // the next one is an hour away
  m_bTriggered = true;
  m_streamer.Wake();
  m_streamer.Trigger();
  EXPECT_TRUE(m_counter.WaitFor(2));
}

TEST_F(FrameStreamer, StopEndsALongWait)
{
  m_nPeriod = 1h;
  ASSERT_EQ(m_streamer.Start().GetError(), "");
  ASSERT_TRUE(m_counter.WaitFor(1));
  m_streamer.Stop();
  EXPECT_FALSE(m_streamer.IsStreaming());
}

TEST_F(FrameStreamer, StartAndStopMayBeRepeated)
{
  m_nPeriod = 0ms;
  m_streamer.Stop();
  for (int nRound = 0; nRound < 100; ++nRound) {
    ASSERT_EQ(m_streamer.Start().GetError(), "");
    ASSERT_EQ(m_streamer.Start().GetError(), "");
    if (nRound % 3 == 0) {
      ASSERT_TRUE(m_counter.WaitFor(m_counter.Get() + 1));
    }
    m_streamer.Stop();
    const int nDelivered = m_counter.Get();
    std::this_thread::yield();
    ASSERT_EQ(m_counter.Get(), nDelivered);
    m_streamer.Stop();
  }
}

TEST(FrameStreamerStop, WaitsForARunningDelivery)
{
  std::atomic<bool> bInside{false};
  std::atomic<bool> bDone{false};
  CFrameStreamer streamer([] { return CFrameStreamer::STiming{}; },
                          [&] {
                            bDone = false;
                            bInside = true;
                            std::this_thread::sleep_for(5ms);
                            bDone = true;
                          });
  ASSERT_EQ(streamer.Start().GetError(), "");
  while (!bInside) {
    std::this_thread::yield();
  }
  streamer.Stop();
  EXPECT_TRUE(bDone);
}

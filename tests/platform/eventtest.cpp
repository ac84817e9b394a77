#include "platform/event.h"

#include <atomic>
#include <chrono>
#include <optional>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/reference/failingallocations.h"

using ffc::platform::CEvent;

namespace {

constexpr uint32_t FOR_EVER = 0xFFFFFFFF;
constexpr uint32_t A_LONG_TIME = 60000;

} // namespace

TEST(Event, IsNotSignalledAtFirst)
{
  CEvent event;
  EXPECT_EQ(event.Wait(0), 258U);
}

TEST(Event, OneSetLetsOneWaitPass)
{
  CEvent event;
  event.Set();
  EXPECT_EQ(event.Wait(0), 0U);
  EXPECT_EQ(event.Wait(0), 258U);
}

TEST(Event, SettingASignalledEventCountsOnce)
{
  CEvent event;
  event.Set();
  event.Set();
  EXPECT_EQ(event.Wait(0), 0U);
  EXPECT_EQ(event.Wait(0), 258U);
}

TEST(Event, ResetTakesTheSignalBack)
{
  CEvent event;
  event.Set();
  event.Reset();
  EXPECT_EQ(event.Wait(0), 258U);
}

TEST(Event, ResettingAnUnsignalledEventChangesNothing)
{
  CEvent event;
  event.Reset();
  event.Set();
  EXPECT_EQ(event.Wait(0), 0U);
}

TEST(Event, CanBeSetAgainAfterAWait)
{
  CEvent event;
  for (int i = 0; i < 3; ++i) {
    event.Set();
    EXPECT_EQ(event.Wait(0), 0U);
  }
}

TEST(Event, ASignalledEventNeedsNoTime)
{
  CEvent event;
  event.Set();
  EXPECT_EQ(event.Wait(FOR_EVER), 0U);
  event.Set();
  EXPECT_EQ(event.Wait(A_LONG_TIME), 0U);
}

TEST(Event, AnUnheardWaitTakesAtLeastItsTime)
{
  constexpr std::chrono::milliseconds TIME(20);
  CEvent event;
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(event.Wait(static_cast<uint32_t>(TIME.count())), 258U);
  EXPECT_GE(std::chrono::steady_clock::now() - start, TIME);
}

TEST(Event, AnotherThreadEndsALimitedAndAnUnlimitedWait)
{
  for (const uint32_t nTimeout : {A_LONG_TIME, FOR_EVER}) {
    CEvent event;
    std::thread setter([&] { event.Set(); });
    EXPECT_EQ(event.Wait(nTimeout), 0U);
    setter.join();
    EXPECT_EQ(event.Wait(0), 258U);
  }
}

TEST(Event, OneSetWakesOneOfManyWaiters)
{
  constexpr int WAITERS = 4;
  CEvent event;
  CEvent eventWoken;
  std::atomic<int> nWoken{0};
  std::vector<std::thread> listWaiters;
  for (int i = 0; i < WAITERS; ++i) {
    listWaiters.emplace_back([&] {
      EXPECT_EQ(event.Wait(FOR_EVER), 0U);
      ++nWoken;
      eventWoken.Set();
    });
  }
  for (int i = 1; i <= WAITERS; ++i) {
    event.Set();
    EXPECT_EQ(eventWoken.Wait(FOR_EVER), 0U);
    EXPECT_EQ(nWoken, i);
  }
  for (std::thread &waiter : listWaiters) {
    waiter.join();
  }
}

TEST(Event, TwoThreadsHandWorkToAndFroWithoutALock)
{
  constexpr int ROUNDS = 2000;
  CEvent eventRequest;
  CEvent eventReady;
  int nShared = 0;
  std::thread worker([&] {
    for (int i = 0; i < ROUNDS; ++i) {
      ASSERT_EQ(eventRequest.Wait(FOR_EVER), 0U);
      ++nShared;
      eventReady.Set();
    }
  });
  for (int i = 1; i <= ROUNDS; ++i) {
    eventRequest.Set();
    ASSERT_EQ(eventReady.Wait(FOR_EVER), 0U);
    ASSERT_EQ(nShared, i);
  }
  worker.join();
}

TEST(Event, ThatTheSystemCouldNotGiveFailsEveryWait)
{
  std::optional<CEvent> event;
  {
    const ffc::test::CFailingAllocations failing(1);
    event.emplace();
  }
  event->Set();
  EXPECT_EQ(event->Wait(0), 0xFFFFFFFFU);
  event->Reset();
  EXPECT_EQ(event->Wait(FOR_EVER), 0xFFFFFFFFU);
}

TEST(Event, MayBeDestroyedByTheWaiterThatItWoke)
{
  for (int i = 0; i < 200; ++i) {
    auto pEvent = std::make_unique<CEvent>();
    std::thread setter([&event = *pEvent] { event.Set(); });
    EXPECT_EQ(pEvent->Wait(FOR_EVER), 0U);
    pEvent.reset();
    setter.join();
  }
}

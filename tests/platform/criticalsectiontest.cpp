#include "platform/criticalsection.h"

#include <mutex>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

using ffc::platform::CCriticalSection;

namespace {

// Whether a thread that holds nothing gets the section.
bool CanAnotherThreadEnter(CCriticalSection &section)
{
  bool bEntered = false;
  std::thread([&] {
    bEntered = section.try_lock();
    if (bEntered) {
      section.unlock();
    }
  }).join();
  return bEntered;
}

} // namespace

TEST(CriticalSection, AHeldSectionExcludesAnotherThread)
{
  CCriticalSection section;
  EXPECT_TRUE(CanAnotherThreadEnter(section));
  section.lock();
  EXPECT_FALSE(CanAnotherThreadEnter(section));
  section.unlock();
  EXPECT_TRUE(CanAnotherThreadEnter(section));
}

TEST(CriticalSection, ItsHolderMayEnterAgainAndMustLeaveAsOften)
{
  CCriticalSection section;
  section.lock();
  EXPECT_TRUE(section.try_lock());
  const std::lock_guard<CCriticalSection> guard(section);
  section.unlock();
  EXPECT_FALSE(CanAnotherThreadEnter(section));
  section.unlock();
  EXPECT_FALSE(CanAnotherThreadEnter(section));
}

TEST(CriticalSection, CountsOfManyThreadsAddUp)
{
  constexpr int THREADS = 4;
  constexpr int ROUNDS = 5000;
  CCriticalSection section;
  int nCount = 0;
  std::vector<std::thread> listThreads;
  for (int i = 0; i < THREADS; ++i) {
    listThreads.emplace_back([&] {
      for (int nRound = 0; nRound < ROUNDS; ++nRound) {
        const std::lock_guard<CCriticalSection> guard(section);
        ++nCount;
      }
    });
  }
  for (std::thread &thread : listThreads) {
    thread.join();
  }
  EXPECT_EQ(nCount, THREADS * ROUNDS);
}

#include "ombrix/bandpool.h"

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/workerthread.h"

using namespace ffc::ombrix;

namespace {

constexpr std::size_t LARGE = SMALLEST_SPLIT_PIXELS;

// How often each pixel was worked on, and by which thread.
struct SVisits {
  explicit SVisits(std::size_t nPixels) : listCounts(nPixels), listThreads(nPixels / BAND_PIXELS + 1) {}

  static void Work(const void *pContext, std::size_t nFirst, std::size_t nPixels)
  {
    auto &stVisits = **static_cast<SVisits *const *>(pContext);
    for (std::size_t i = nFirst; i < nFirst + nPixels; ++i) {
      ++stVisits.listCounts[i];
    }
    stVisits.listThreads[nFirst / BAND_PIXELS] = std::this_thread::get_id();
  }

  bool IsEachVisitedOnce() const { return listCounts == std::vector<uint8_t>(listCounts.size(), 1); }
  bool IsOwnWork() const
  {
    for (const std::thread::id &id : listThreads) {
      if (id != std::thread::id() && id != std::this_thread::get_id()) {
        return false;
      }
    }
    return true;
  }

  std::vector<uint8_t> listCounts;
  std::vector<std::thread::id> listThreads;
};

SVisits Visit(CBandPool &pool, std::size_t nPixels)
{
  SVisits stVisits(nPixels);
  SVisits *const pVisits = &stVisits;
  pool.Run(nPixels, SVisits::Work, &pVisits);
  return stVisits;
}

constexpr std::chrono::milliseconds NOTHING{0};

/// Has a frame worked on. \return whether the pool shared it: whoever works alone takes it as a whole
/// \param pause what its first pixels take
bool IsShared(CBandPool &pool, std::chrono::milliseconds pause = NOTHING, uintptr_t nKind = 0,
              std::size_t nPixels = LARGE)
{
  struct SFrame {
    std::chrono::milliseconds pause;
    std::size_t nPixels;
    std::atomic<bool> bWhole{false};
  } stFrame{pause, nPixels};
  SFrame *const pFrame = &stFrame;
  pool.Run(
    nPixels,
    [](const void *pContext, std::size_t nFirst, std::size_t nCount) {
      SFrame &stWork = **static_cast<SFrame *const *>(pContext);
      stWork.bWhole = stWork.bWhole || nCount == stWork.nPixels;
      if (nFirst == 0) {
        std::this_thread::sleep_for(stWork.pause);
      }
    },
    &pFrame, nKind);
  return !stFrame.bWhole;
}

} // namespace

TEST(BandPool, WorksOnEveryPixelOnceWithAnyNumberOfThreads)
{
  for (const uint32_t nThreads : {1U, 2U, 3U, MAX_THREADS}) {
    CBandPool pool(nThreads);
    for (const std::size_t nPixels : {std::size_t{1}, BAND_PIXELS + 1, LARGE - 1, LARGE, LARGE + 1, BAND_PIXELS * 62,
                                      BAND_PIXELS * 62 + 1, BAND_PIXELS * 63 - 1}) {
      EXPECT_TRUE(Visit(pool, nPixels).IsEachVisitedOnce()) << nThreads << " threads, " << nPixels << " pixels";
    }
  }
}

TEST(BandPool, LeavesSmallFramesToTheirCaller)
{
  CBandPool pool(4);
  EXPECT_TRUE(Visit(pool, LARGE - 1).IsOwnWork());
}

TEST(BandPool, SharesLargeFramesWithItsThreads)
{
  static const std::thread::id s_caller = std::this_thread::get_id();
  static std::atomic<bool> s_bHelped;
  CBandPool pool(2);
  for (const uintptr_t nKind : {1U, 2U}) { // the second time the other thread has to be woken
    s_bHelped = false;
    // The caller's first band lasts until the other thread has come.
    pool.Run(
      LARGE,
      [](const void *, std::size_t, std::size_t) {
        s_bHelped = s_bHelped || std::this_thread::get_id() != s_caller;
        const auto latest = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!s_bHelped && std::chrono::steady_clock::now() < latest) {
          std::this_thread::yield();
        }
      },
      nullptr, nKind);
    EXPECT_TRUE(s_bHelped) << nKind;
  }
}

TEST(BandPool, SharesNoFrameForAWhileAfterTwoThatSharingMadeSlower)
{
  CBandPool pool(2);
  EXPECT_TRUE(IsShared(pool));
  for (uint32_t n = 0; n < FRAMES_TO_LEARN; ++n) {
    EXPECT_FALSE(IsShared(pool));
  }
  EXPECT_TRUE(IsShared(pool, std::chrono::milliseconds(500)));
  EXPECT_TRUE(IsShared(pool, std::chrono::milliseconds(500)));
  for (uint32_t n = 0; n < FRAMES_ALONE; ++n) {
    EXPECT_FALSE(IsShared(pool)) << n;
  }
  EXPECT_TRUE(IsShared(pool));
}

TEST(BandPool, SharesOneFrameAfterTheOtherAsLongAsThatGains)
{
  CBandPool pool(2);
  EXPECT_TRUE(IsShared(pool));
  for (uint32_t n = 0; n < FRAMES_TO_LEARN; ++n) {
    EXPECT_FALSE(IsShared(pool, std::chrono::milliseconds(500)));
  }
  for (int n = 0; n < 20; ++n) {
    EXPECT_TRUE(IsShared(pool)) << n;
  }
}

TEST(BandPool, JudgesEachKindOfWorkAndSizeByItself)
{
  CBandPool pool(2);
  EXPECT_TRUE(IsShared(pool, NOTHING, 1));
  EXPECT_FALSE(IsShared(pool, NOTHING, 1));
  EXPECT_TRUE(IsShared(pool, NOTHING, 2));
  EXPECT_TRUE(IsShared(pool, NOTHING, 1, LARGE + 1));
  EXPECT_TRUE(IsShared(pool, NOTHING, 3));
  EXPECT_FALSE(IsShared(pool, NOTHING, 1)) << "four are remembered";
  EXPECT_FALSE(IsShared(pool, NOTHING, 2));
  EXPECT_TRUE(IsShared(pool, NOTHING, 4));
  EXPECT_TRUE(IsShared(pool, NOTHING, 1)) << "a fifth takes the place of the first";
  EXPECT_FALSE(IsShared(pool, NOTHING, 3));
}

TEST(BandPool, WhatTheSystemHasNoThreadsForTheOthersDo)
{
  static uint32_t s_nLeft;
  for (const uint32_t nThreads : {0U, 1U, 2U}) {
    s_nLeft = nThreads;
    CBandPool pool(4, [](ffc::platform::CWorkerThread &thread, void (*fnWork)(void *), void *pContext) {
      return s_nLeft-- > 0 && thread.Start(fnWork, pContext);
    });
    for (int n = 0; n < 2; ++n) {
      const SVisits stVisits = Visit(pool, LARGE);
      EXPECT_TRUE(stVisits.IsEachVisitedOnce()) << nThreads;
      EXPECT_TRUE(nThreads > 0 || stVisits.IsOwnWork());
    }
    EXPECT_EQ(s_nLeft, UINT32_MAX) << "asked again after the first refusal";
  }
}

TEST(BandPool, OneThreadIsTheCallers)
{
  CBandPool pool(1);
  EXPECT_TRUE(Visit(pool, LARGE).IsOwnWork());
}

TEST(BandPool, ServesCallersFromSeveralThreadsAtOnce)
{
  CBandPool pool(3);
  std::vector<std::thread> listCallers;
  std::vector<int> listRight(4);
  for (int &nRight : listRight) {
    listCallers.emplace_back([&pool, &nRight] {
      for (int n = 0; n < 10; ++n) {
        nRight += Visit(pool, LARGE + static_cast<std::size_t>(n)).IsEachVisitedOnce() ? 1 : 0;
      }
    });
  }
  for (std::thread &caller : listCallers) {
    caller.join();
  }
  EXPECT_EQ(listRight, std::vector<int>(4, 10));
}

TEST(BandPool, LeavesFramesToTheirCallersOnceItIsClosed)
{
  CBandPool pool(3);
  EXPECT_TRUE(Visit(pool, LARGE).IsEachVisitedOnce());
  pool.Close();
  const SVisits stVisits = Visit(pool, LARGE);
  EXPECT_TRUE(stVisits.IsEachVisitedOnce());
  EXPECT_TRUE(stVisits.IsOwnWork());
}

TEST(BandPool, ClosesWithoutEverHavingStartedAndStartsNoThreadAfterwards)
{
  static int s_nStarted;
  s_nStarted = 0;
  CBandPool pool(3, [](ffc::platform::CWorkerThread &thread, void (*fnWork)(void *), void *pContext) {
    ++s_nStarted;
    return thread.Start(fnWork, pContext);
  });
  pool.Close();
  EXPECT_TRUE(Visit(pool, LARGE).IsOwnWork());
  EXPECT_EQ(s_nStarted, 0);
}

TEST(BandPool, EndsAllOfItsThreadsWhenItIsClosed)
{
  static std::atomic<void (*)(void *)> s_fnWork;
  static std::atomic<int> s_nEnded;
  s_nEnded = 0;
  CBandPool pool(4, [](ffc::platform::CWorkerThread &thread, void (*fnWork)(void *), void *pContext) {
    s_fnWork = fnWork;
    return thread.Start(
      [](void *pWork) {
        s_fnWork.load()(pWork);
        ++s_nEnded;
      },
      pContext);
  });
  (void)Visit(pool, LARGE);
  EXPECT_EQ(s_nEnded, 0);
  pool.Close();
  EXPECT_EQ(s_nEnded, 3);
}

TEST(BandPool, PreparesOnceBeforeItsFirstThread)
{
  static int s_nPrepared = 0;
  CBandPool pool([] { ++s_nPrepared; });
  EXPECT_EQ(s_nPrepared, 0);
  (void)Visit(pool, LARGE);
  (void)Visit(pool, LARGE);
  EXPECT_EQ(s_nPrepared, 1); // OMBRIX_THREADS is set for this program
}

TEST(BandPool, TakesHalfTheProcessorsAndFourThreadsAtMostUnlessAskedForAnotherNumber)
{
  const uint32_t anExpected[][2] = {{1, 1}, {2, 1}, {3, 1}, {4, 2}, {6, 3}, {8, 4}, {9, 4}, {256, 4}};
  for (const auto &anPair : anExpected) {
    EXPECT_EQ(ChooseThreadCount(nullptr, anPair[0]), anPair[1]) << anPair[0] << " processors";
  }
  EXPECT_EQ(ChooseThreadCount("1", 8), 1U);
  EXPECT_EQ(ChooseThreadCount("2", 2), 2U);
  EXPECT_EQ(ChooseThreadCount("9", 2), 9U);
  EXPECT_EQ(ChooseThreadCount("03", 2), 3U);
  EXPECT_EQ(ChooseThreadCount("16", 2), 16U);
  for (const char *const pNoWish : {"", "0", "17", "-1", " 2", "2 ", "two", "4294967297", "99999999999999999999999"}) {
    EXPECT_EQ(ChooseThreadCount(pNoWish, 8), 4U) << pNoWish;
  }
}

TEST(WorkerThread, KnowsAtLeastOneProcessor)
{
  EXPECT_GE(ffc::platform::CountUsableProcessors(), 1U);
}

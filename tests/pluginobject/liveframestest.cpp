#include "pluginobject/shadingcorrection/liveframes.h"

#include <atomic>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

using ffc::dialog::CFrameGate;

TEST(FrameGate, IsClosedAtFirst)
{
  CFrameGate gate;
  EXPECT_FALSE(CFrameGate::CPass(gate).IsGranted());
}

TEST(FrameGate, LetsFramesInWhileItIsOpen)
{
  CFrameGate gate;
  gate.Open();
  EXPECT_TRUE(CFrameGate::CPass(gate).IsGranted());
  gate.Close();
  EXPECT_FALSE(CFrameGate::CPass(gate).IsGranted());
  gate.Open();
  EXPECT_TRUE(CFrameGate::CPass(gate).IsGranted());
}

TEST(FrameGate, MayBeClosedTwiceAndWithoutHavingBeenOpen)
{
  CFrameGate gate;
  gate.Close();
  gate.Close();
  EXPECT_FALSE(CFrameGate::CPass(gate).IsGranted());
}

TEST(FrameGate, ClosingWaitsForAFrameThatIsWithin)
{
  CFrameGate gate;
  gate.Open();
  std::optional<CFrameGate::CPass> pass(std::in_place, gate);
  ASSERT_TRUE(pass->IsGranted());
  std::atomic<bool> bClosed{false};
  std::thread closer([&] {
    gate.Close();
    bClosed = true;
  });
  // Closed to new frames as soon as the closer has begun.
  while (CFrameGate::CPass(gate).IsGranted()) {
    std::this_thread::yield();
  }
  EXPECT_FALSE(bClosed);
  pass.reset();
  closer.join();
  EXPECT_TRUE(bClosed);
}

TEST(FrameGate, NoFrameEverMeetsWhatItsOwnerHasTakenAway)
{
  constexpr int THREADS = 3;
  constexpr int ROUNDS = 300;
  CFrameGate gate;
  // Not atomic on purpose: the gate alone keeps the threads apart.
  std::unique_ptr<int> pServed;
  std::atomic<bool> bStop{false};
  std::atomic<int> nGranted{0};
  std::vector<std::thread> listThreads;
  for (int i = 0; i < THREADS; ++i) {
    listThreads.emplace_back([&] {
      while (!bStop) {
        const CFrameGate::CPass pass(gate);
        if (pass.IsGranted()) {
          EXPECT_EQ(*pServed, 42);
          ++nGranted;
        } else {
          std::this_thread::yield();
        }
      }
    });
  }
  for (int nRound = 0; nRound < ROUNDS; ++nRound) {
    const int nBefore = nGranted;
    pServed = std::make_unique<int>(42);
    gate.Open();
    while (nGranted == nBefore) {
      std::this_thread::yield();
    }
    gate.Close();
    pServed.reset();
  }
  bStop = true;
  for (std::thread &thread : listThreads) {
    thread.join();
  }
  EXPECT_GE(nGranted, ROUNDS);
}

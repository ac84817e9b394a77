#include "host/measurement/background.h"

#include <new>

#include <QTimer>

#include <gtest/gtest.h>

using namespace ffc::host;

TEST(Background, DoesOneThingAtATimeAndSaysSo)
{
  CBackground background;
  int nDone = 0;
  ASSERT_TRUE(background.Start([&]() -> std::function<void()> { return [&] { nDone += 1; }; }));
  EXPECT_FALSE(background.Start([&]() -> std::function<void()> { return [&] { nDone += 10; }; }));
  background.Wait();
  EXPECT_EQ(nDone, 1);
  EXPECT_FALSE(background.IsBusy());
}

TEST(Background, WorkWithoutAResultOrWithoutMemoryEndsAndTheNextIsDone)
{
  CBackground background;
  ASSERT_TRUE(background.Start([]() -> std::function<void()> { return nullptr; }));
  background.Wait();
  ASSERT_TRUE(background.Start([]() -> std::function<void()> { throw std::bad_alloc(); }));
  background.Wait();
  bool bDone = false;
  ASSERT_TRUE(background.Start([&]() -> std::function<void()> { return [&bDone] { bDone = true; }; }));
  background.Wait();
  EXPECT_TRUE(bDone);
}

TEST(Background, NoOtherEventIsNeededForTheEndOfTheWaiting)
{
  CBackground background;
  bool bWoken = false;
  QTimer::singleShot(10000, &background, [&] { bWoken = true; });
  int nDone = 0;
  for (int n = 0; n < 20 && !bWoken; ++n) {
    ASSERT_TRUE(background.Start([&]() -> std::function<void()> { return [&] { ++nDone; }; }));
    background.Wait();
  }
  EXPECT_FALSE(bWoken);
  EXPECT_EQ(nDone, 20);
}

#include "ombrix/sharingjudge.h"

#include <gtest/gtest.h>

using namespace ffc::ombrix;

namespace {

using TDuration = CSharingJudge::TDuration;

constexpr TDuration TYPICAL{800};
constexpr TDuration FASTER{799};

// Until the next one that is to be shared; no more than that many.
uint32_t CountFramesAlone(CSharingJudge &judge, TDuration time = TYPICAL, uint32_t nMost = 2 * MOST_FRAMES_ALONE)
{
  uint32_t nFrames = 0;
  for (; nFrames < nMost && !judge.SharesNext(); ++nFrames) {
    judge.CountAlone(time);
  }
  return nFrames;
}

void CountInVain(CSharingJudge &judge, TDuration time = TYPICAL)
{
  judge.CountShared(time);
  judge.CountShared(time);
}

CSharingJudge MakeTaught(TDuration time = TYPICAL)
{
  CSharingJudge judge;
  judge.CountShared(time);
  (void)CountFramesAlone(judge, time);
  return judge;
}

} // namespace

TEST(SharingJudge, SharesTheFirstFrameAndLearnsFromTheNextOnes)
{
  for (const TDuration first : {TDuration(1), 1000 * TYPICAL}) {
    CSharingJudge judge;
    EXPECT_TRUE(judge.SharesNext());
    judge.CountShared(first); // with memory that nobody used, and threads that were just started
    EXPECT_EQ(CountFramesAlone(judge), FRAMES_TO_LEARN);
    judge.CountShared(FASTER);
    EXPECT_TRUE(judge.SharesNext());
  }
}

TEST(SharingJudge, SharesFramesThatGainButForOneNowAndThen)
{
  CSharingJudge judge = MakeTaught();
  for (int nRound = 0; nRound < 3; ++nRound) {
    for (uint32_t n = 0; n < SHARED_FRAMES_IN_A_ROW; ++n) {
      ASSERT_TRUE(judge.SharesNext()) << n;
      judge.CountShared(FASTER);
    }
    EXPECT_EQ(CountFramesAlone(judge), 1U);
  }
}

TEST(SharingJudge, SharesNoFrameForAWhileAfterASecondOneInVainAmongEight)
{
  for (const TDuration late : {TYPICAL, 1000 * TYPICAL}) {
    for (uint32_t nBetween = 0; nBetween <= FRAMES_OF_ONE_IN_VAIN; ++nBetween) {
      CSharingJudge judge = MakeTaught();
      judge.CountShared(FASTER);
      judge.CountShared(late);
      EXPECT_EQ(CountFramesAlone(judge), 0U);
      for (uint32_t n = 0; n < nBetween; ++n) {
        judge.CountShared(FASTER);
      }
      judge.CountShared(late);
      EXPECT_EQ(CountFramesAlone(judge), nBetween < FRAMES_OF_ONE_IN_VAIN ? FRAMES_ALONE : 0U) << nBetween;
    }
  }
}

TEST(SharingJudge, SharesNoFrameForTwiceAsLongAfterEachTryThatIsInVain)
{
  CSharingJudge judge = MakeTaught();
  for (const uint32_t nAlone : {256U, 512U, 1024U, 2048U, 2048U}) {
    judge.CountShared(TYPICAL);
    EXPECT_EQ(CountFramesAlone(judge), 0U) << "each try begins without suspicion";
    judge.CountShared(TYPICAL);
    EXPECT_EQ(CountFramesAlone(judge), nAlone);
  }
}

TEST(SharingJudge, ForgetsFramesInVainSlowlyWhileSharingGains)
{
  CSharingJudge judge = MakeTaught();
  CountInVain(judge);
  EXPECT_EQ(CountFramesAlone(judge), 256U);
  judge.CountShared(FASTER); // 512 - 32
  CountInVain(judge);
  EXPECT_EQ(CountFramesAlone(judge), 480U);
  for (int n = 0; n < 100; ++n) {
    judge.CountShared(FASTER);
  }
  CountInVain(judge);
  EXPECT_EQ(CountFramesAlone(judge), FRAMES_ALONE);
}

TEST(SharingJudge, FollowsWhatAFrameOfOneThreadTakes)
{
  CSharingJudge judge = MakeTaught();
  CountInVain(judge);
  EXPECT_EQ(CountFramesAlone(judge, 2 * TYPICAL), FRAMES_ALONE);
  CountInVain(judge, 2 * TYPICAL - TDuration(4)); // but for what was cut
  EXPECT_EQ(CountFramesAlone(judge), 0U);
}

TEST(SharingJudge, TakesAFrameThatWasInterruptedForOneOfTwiceTheTime)
{
  for (const TDuration interrupted : {2 * TYPICAL, 1'000'000 * TYPICAL}) {
    CSharingJudge judge = MakeTaught();
    judge.CountAlone(interrupted); // a quarter of the difference: 1000
    CountInVain(judge, TDuration(999));
    EXPECT_EQ(CountFramesAlone(judge), 0U);
    CountInVain(judge, TDuration(1000));
    EXPECT_EQ(CountFramesAlone(judge), FRAMES_ALONE);
  }
}

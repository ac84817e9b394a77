#include "ombrix/sharingjudge.h"

#include <gtest/gtest.h>

using namespace ffc::ombrix;

namespace {

using TDuration = CSharingJudge::TDuration;

constexpr TDuration TYPICAL{800};
constexpr TDuration FASTER{799};
constexpr TDuration LATEST{900}; // an eighth more
constexpr TDuration LATE{901};

// Until the next one that is to be shared; no more than that many.
uint32_t CountFramesAlone(CSharingJudge &judge, TDuration time = TYPICAL, uint32_t nMost = 2 * MOST_FRAMES_ALONE)
{
  uint32_t nFrames = 0;
  for (; nFrames < nMost && !judge.SharesNext(); ++nFrames) {
    judge.CountAlone(time);
  }
  return nFrames;
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

TEST(SharingJudge, SharesNoFrameForAWhileAfterOneThatIsLaterByMoreThanAnEighth)
{
  CSharingJudge judge = MakeTaught();
  judge.CountShared(LATEST);
  EXPECT_EQ(CountFramesAlone(judge), 0U);
  judge.CountShared(FASTER);
  judge.CountShared(LATE);
  EXPECT_EQ(CountFramesAlone(judge), FRAMES_ALONE);
}

TEST(SharingJudge, SharesNoFrameForAWhileAfterTwoInARowThatAreNoFaster)
{
  CSharingJudge judge = MakeTaught();
  for (int n = 0; n < 10; ++n) {
    judge.CountShared(TYPICAL);
    EXPECT_EQ(CountFramesAlone(judge), 0U);
    judge.CountShared(FASTER);
  }
  judge.CountShared(TYPICAL);
  judge.CountShared(TYPICAL);
  EXPECT_EQ(CountFramesAlone(judge), FRAMES_ALONE);
}

TEST(SharingJudge, SharesNoFrameForTwiceAsLongAfterEachTryThatIsLate)
{
  CSharingJudge judge = MakeTaught();
  for (const uint32_t nAlone : {128U, 256U, 512U, 1024U, 1024U}) {
    judge.CountShared(LATE);
    EXPECT_EQ(CountFramesAlone(judge), nAlone);
  }
}

TEST(SharingJudge, ForgetsLateFramesSlowlyWhileSharingGains)
{
  CSharingJudge judge = MakeTaught();
  judge.CountShared(LATE);
  EXPECT_EQ(CountFramesAlone(judge), 128U);
  judge.CountShared(FASTER); // 256 - 16
  judge.CountShared(LATE);
  EXPECT_EQ(CountFramesAlone(judge), 240U);
  for (int n = 0; n < 100; ++n) {
    judge.CountShared(FASTER);
  }
  judge.CountShared(LATE);
  EXPECT_EQ(CountFramesAlone(judge), FRAMES_ALONE);
}

TEST(SharingJudge, FollowsWhatAFrameOfOneThreadTakes)
{
  CSharingJudge judge = MakeTaught();
  judge.CountShared(LATE);
  EXPECT_EQ(CountFramesAlone(judge, 2 * TYPICAL), FRAMES_ALONE);
  judge.CountShared(2 * TYPICAL - TDuration(4)); // but for what was cut
  judge.CountShared(2 * TYPICAL - TDuration(4));
  EXPECT_EQ(CountFramesAlone(judge), 0U);
}

TEST(SharingJudge, TakesAFrameThatWasInterruptedForOneOfTwiceTheTime)
{
  for (const TDuration interrupted : {2 * TYPICAL, 1'000'000 * TYPICAL}) {
    CSharingJudge judge = MakeTaught();
    judge.CountAlone(interrupted); // a quarter of the difference: 1000
    judge.CountShared(TDuration(1125));
    EXPECT_EQ(CountFramesAlone(judge), 0U);
    judge.CountShared(TDuration(999));
    judge.CountShared(TDuration(1126));
    EXPECT_EQ(CountFramesAlone(judge), FRAMES_ALONE);
  }
}

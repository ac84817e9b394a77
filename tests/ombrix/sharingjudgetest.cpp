#include "ombrix/sharingjudge.h"

#include <gtest/gtest.h>

using namespace ffc::ombrix;

namespace {

using TDuration = SPace::TDuration;

constexpr TDuration BAND{1000};
constexpr TDuration AT_ONCE{0};

// Bands of the same length, and the last of another.
SPace MakePace(std::size_t nBands, TDuration last = BAND)
{
  SPace stPace;
  for (std::size_t n = 1; n < nBands; ++n) {
    stPace.Count(BAND);
  }
  stPace.Count(last);
  return stPace;
}

void JudgeAsGain(CSharingJudge &judge)
{
  judge.Judge(MakePace(30), 32, AT_ONCE);
}

void JudgeAsLoss(CSharingJudge &judge)
{
  judge.Judge(MakePace(61), 1, BAND);
}

// Until the next one that is to be shared; no more than that many.
uint32_t CountFramesAlone(CSharingJudge &judge, uint32_t nMost = 2 * MOST_FRAMES_ALONE)
{
  uint32_t nFrames = 0;
  while (nFrames < nMost && !judge.SharesNext()) {
    ++nFrames;
  }
  return nFrames;
}

} // namespace

TEST(SharingJudge, ThePaceLeavesOutTheLongestBandUnlessItIsTheOnlyOne)
{
  EXPECT_EQ(SPace().GetMean(), AT_ONCE);
  EXPECT_EQ(MakePace(1, 7 * BAND).GetMean(), 7 * BAND);
  EXPECT_EQ(MakePace(2, 7 * BAND).GetMean(), BAND);
  EXPECT_EQ(MakePace(3, 7 * BAND).GetMean(), BAND);
  EXPECT_EQ(MakePace(3, 7 * BAND).longest, 7 * BAND);
}

TEST(SharingJudge, SharesEveryFrameAsLongAsThatGains)
{
  CSharingJudge judge;
  EXPECT_TRUE(judge.SharesNext());
  JudgeAsGain(judge);
  EXPECT_TRUE(judge.SharesNext());
  JudgeAsGain(judge);
  EXPECT_TRUE(judge.SharesNext());
}

TEST(SharingJudge, GainsWhenWaitAndDelayAreLessThanAnEighthOfTheOthersBands)
{
  struct SCase {
    TDuration wait;
    TDuration longest;
    uint32_t nAlone;
  };
  // The others' 16 bands are worth two.
  for (const SCase &stCase : {SCase{2 * BAND - TDuration{1}, BAND, 0}, SCase{2 * BAND, BAND, FRAMES_ALONE},
                              SCase{AT_ONCE, 3 * BAND - TDuration{1}, 0}, SCase{AT_ONCE, 3 * BAND, FRAMES_ALONE}}) {
    CSharingJudge judge;
    judge.Judge(MakePace(40, stCase.longest), 16, stCase.wait);
    EXPECT_EQ(CountFramesAlone(judge), stCase.nAlone) << stCase.wait.count() << ", " << stCase.longest.count();
  }
}

TEST(SharingJudge, SharesNoFrameForAWhileAfterALossAndForTwiceAsLongAfterEachOtherOne)
{
  CSharingJudge judge;
  for (const uint32_t nAlone : {128U, 256U, 512U, 1024U, 1024U}) {
    JudgeAsLoss(judge);
    EXPECT_EQ(CountFramesAlone(judge), nAlone);
  }
}

TEST(SharingJudge, ForgetsLossesSlowlyWhileSharingGains)
{
  CSharingJudge judge;
  JudgeAsLoss(judge);
  EXPECT_EQ(CountFramesAlone(judge), 128U);
  JudgeAsGain(judge); // 256 - 16
  JudgeAsLoss(judge);
  EXPECT_EQ(CountFramesAlone(judge), 240U);
  for (int n = 0; n < 100; ++n) {
    JudgeAsGain(judge);
  }
  JudgeAsLoss(judge);
  EXPECT_EQ(CountFramesAlone(judge), FRAMES_ALONE);
}

TEST(SharingJudge, ForgivesThreadsThatComeTooLateForTheFirstFrameOnly)
{
  CSharingJudge judge;
  judge.Judge(MakePace(62), 0, AT_ONCE);
  EXPECT_EQ(CountFramesAlone(judge), 0U);
  judge.Judge(MakePace(62), 0, AT_ONCE);
  EXPECT_EQ(CountFramesAlone(judge), FRAMES_ALONE);
  CSharingJudge other;
  JudgeAsLoss(other);
  EXPECT_EQ(CountFramesAlone(other), FRAMES_ALONE) << "the first frame counts when they came";
}

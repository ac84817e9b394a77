#include <new>
#include <vector>

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/process/featurechain.h"

namespace {

// Runs steps with the given results and tells which ones ran.
std::vector<int> RunSteps(const std::vector<int32_t> &listResults, int32_t *pnStatus)
{
  std::vector<int> listRan;
  CFeatureChain chain;
  for (std::size_t i = 0; i < listResults.size(); ++i) {
    chain.Then([&] {
      listRan.push_back(static_cast<int>(i));
      return listResults[i];
    });
  }
  *pnStatus = chain.Status();
  return listRan;
}

} // namespace

TEST(FeatureChain, WithoutStepsSucceeds)
{
  EXPECT_EQ(0, CFeatureChain().Status());
}

TEST(FeatureChain, RunsAllStepsInOrderWhenAllSucceed)
{
  int32_t nStatus = 1;
  EXPECT_EQ((std::vector<int>{0, 1, 2}), RunSteps({0, 0, 0}, &nStatus));
  EXPECT_EQ(0, nStatus);
}

TEST(FeatureChain, StopsAtTheFirstFailingStepAndKeepsItsStatus)
{
  int32_t nStatus = 1;
  EXPECT_EQ((std::vector<int>{0, 1}), RunSteps({0, -1002, -3, 0}, &nStatus));
  EXPECT_EQ(-1002, nStatus);
  EXPECT_EQ((std::vector<int>{0}), RunSteps({-3, 0}, &nStatus));
  EXPECT_EQ(-3, nStatus);
}

TEST(FeatureChain, TakesAPositiveStatusForAFailureToo)
{
  int32_t nStatus = 0;
  EXPECT_EQ((std::vector<int>{0}), RunSteps({5, 0}, &nStatus));
  EXPECT_EQ(5, nStatus);
}

TEST(FeatureChain, AStepWithoutMemoryIsOutOfMemory)
{
  int nRuns = 0;
  EXPECT_EQ(-2, CFeatureChain()
                  .Then([]() -> int32_t { throw std::bad_alloc(); })
                  .Then([&]() -> int32_t { return ++nRuns; })
                  .Status());
  EXPECT_EQ(0, nRuns);
}

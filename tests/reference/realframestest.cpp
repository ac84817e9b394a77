// The goals of the weighted reference, on the frames of a real camera.
#include <cstdlib>

#include <gtest/gtest.h>

#include "tests/reference/recordedset.h"

using namespace ffc::test;

namespace {

class RealFrames : public testing::Test {
protected:
  void SetUp() override
  {
    const char *pData = std::getenv("FFC_TEST_DATA");
    if (pData == nullptr) {
      GTEST_SKIP() << "FFC_TEST_DATA names no recorded frames";
    }
    static const ffc::Result<CRecordedSet> s_set = CRecordedSet::Load(pData);
    if (!s_set) {
      GTEST_SKIP() << s_set.GetError();
    }
    m_set = s_set.GetValue();
    ASSERT_EQ(m_set.CountBright(), 40U);
  }

  CRecordedSet m_set;
};

} // namespace

TEST_F(RealFrames, FreshFramesAreFlatterThanTheAverageLeavesThemAndThanTheyCame)
{
  EXPECT_NEAR(m_set.MeasureResidual(nullptr).dAll, 0.43, 0.01);
  const auto fnResidual = [this](uint32_t nFrames) {
    const std::vector<uint8_t> listTable = m_set.MakeTable(nFrames);
    return m_set.MeasureResidual(&listTable).dAll;
  };
  EXPECT_LE(fnResidual(1), 0.28);
  EXPECT_LE(fnResidual(4), 0.25);
  EXPECT_LE(fnResidual(16), 0.21);
}

class RealFramesWithDust : public RealFrames, public testing::WithParamInterface<bool> {};

TEST_P(RealFramesWithDust, OneFrameIsEnough)
{
  // Shallow spots, whose edges are the hardest.
  const SDust stDust = MakeDust(GetParam(), 104);
  m_set.Cover(stDust);
  const std::vector<uint8_t> listTable = m_set.MakeTable(1, 4);
  const SResidual stResidual = m_set.MeasureResidual(&listTable, stDust);
  EXPECT_GT(stResidual.dInside, 0.1) << "where there is no dust it is 0";
  EXPECT_LE(stResidual.dInside, 0.45) << "uncorrected it is more than 2";
  EXPECT_LE(stResidual.dAll, 0.30);
}

INSTANTIATE_TEST_SUITE_P(Kinds, RealFramesWithDust, testing::Bool(),
                         [](const auto &stInfo) { return stInfo.param ? "Hard" : "Soft"; });

#include "pluginobject/shadingcorrection/imagecalc/arrayallocation.h"
#include "pluginobject/shadingcorrection/imagecalc/calcstatus.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/coefficientfixture.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/failingnew.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/slowtwin.h"

using namespace ffc::imagecalc;

namespace {

class CoefficientGeneratorStatus : public CCoefficientTest {
protected:
  const void *const m_pBright = m_bright.GetData();
  const void *const m_pDark = m_dark.GetData();

  int32_t GetSize()
  {
    int32_t nSize = -1;
    EXPECT_EQ(m_generator.GetCoefficientSize(&nSize), 0);
    return nSize;
  }

  // Both calculations leave the same status.
  int32_t Calc()
  {
    const int32_t nStatus = CalcWithDark();
    EXPECT_EQ(CalcWithoutDark(), nStatus);
    return nStatus;
  }

  int32_t CalcWithFailingMemory(bool bDark, int32_t nSuccesses)
  {
    const int64_t nBefore = CountLiveAllocations();
    int32_t nStatus = 0;
    {
      const CFailingNew failingNew(nSuccesses);
      nStatus = bDark ? CalcWithDark() : CalcWithoutDark();
    }
    EXPECT_EQ(CountLiveAllocations(), nBefore);
    return nStatus;
  }
};

} // namespace

TEST_F(CoefficientGeneratorStatus, TwoByTwoBlocksTake128Bytes)
{
  EXPECT_EQ(m_generator.SetBlockParam(GRID), 0);
  EXPECT_EQ(GetSize(), 128);
}

TEST_F(CoefficientGeneratorStatus, TheSizeIsThatOfTheFramedGridForAllSmallSides)
{
  for (int32_t nSide = 32; nSide <= 160; nSide += 2) {
    for (int32_t nBlockSide = 8; nBlockSide <= nSide; nBlockSide += 2) {
      ASSERT_EQ(m_generator.SetBlockParam({nSide, 100, nBlockSide, 32, 2}), 0);
      const int32_t nSize = (CountBlocksSlowly(nSide, nBlockSide) + 2) * (3 + 2) * 8;
      ASSERT_EQ(GetSize(), nSize) << nSide << " by " << nBlockSide;
      ASSERT_EQ(m_generator.SetBlockParam({100, nSide, 32, nBlockSide, 0}), 0);
      ASSERT_EQ(GetSize(), nSize) << nSide << " by " << nBlockSide;
    }
  }
}

TEST_F(CoefficientGeneratorStatus, TheLargestGridHasASize)
{
  EXPECT_EQ(m_generator.SetBlockParam({100000, 100000, 8, 8, 1}), 0);
  EXPECT_EQ(GetSize(), 12502 * 12502 * 8);
}

TEST_F(CoefficientGeneratorStatus, AGridOutOfRangeOrThatDoesNotFitIsRefused)
{
  struct SCase {
    BLOCK_PARAM stParam;
    int32_t nStatus;
  };
  constexpr SCase CASES[] = {
    {{100002, 64, 8, 8, 0}, IMAGECALC_STATUS_OUT_OF_RANGE},  {{64, 100002, 8, 8, 0}, IMAGECALC_STATUS_OUT_OF_RANGE},
    {{64, 64, 100002, 8, 0}, IMAGECALC_STATUS_OUT_OF_RANGE}, {{64, 64, 8, 100002, 0}, IMAGECALC_STATUS_OUT_OF_RANGE},
    {{30, 64, 8, 8, 0}, IMAGECALC_STATUS_OUT_OF_RANGE},      {{64, 30, 8, 8, 0}, IMAGECALC_STATUS_OUT_OF_RANGE},
    {{64, 64, 6, 8, 0}, IMAGECALC_STATUS_OUT_OF_RANGE},      {{64, 64, 8, 6, 0}, IMAGECALC_STATUS_OUT_OF_RANGE},
    {{0, 0, 0, 0, 0}, IMAGECALC_STATUS_OUT_OF_RANGE},        {{-64, 64, -8, 8, 0}, IMAGECALC_STATUS_OUT_OF_RANGE},
    {{64, 64, 66, 8, 0}, IMAGECALC_STATUS_INVALID_ARGUMENT}, {{64, 64, 8, 66, 0}, IMAGECALC_STATUS_INVALID_ARGUMENT},
    {{65, 64, 8, 8, 0}, IMAGECALC_STATUS_INVALID_ARGUMENT},  {{64, 65, 8, 8, 0}, IMAGECALC_STATUS_INVALID_ARGUMENT},
    {{64, 64, 9, 8, 0}, IMAGECALC_STATUS_INVALID_ARGUMENT},  {{64, 64, 8, 9, 0}, IMAGECALC_STATUS_INVALID_ARGUMENT},
    {{33, 64, 6, 8, 0}, IMAGECALC_STATUS_OUT_OF_RANGE},      {{64, 33, 8, 100001, 0}, IMAGECALC_STATUS_OUT_OF_RANGE},
  };
  for (const auto &[stParam, nStatus] : CASES) {
    ASSERT_EQ(m_generator.SetBlockParam(GRID), 0);
    EXPECT_EQ(m_generator.SetBlockParam(stParam), nStatus) << stParam.nWidth << " x " << stParam.nHeight;
    EXPECT_EQ(Calc(), IMAGECALC_STATUS_NOT_INITIALIZED) << "the grid accepted before must not stay in force";
  }
}

TEST_F(CoefficientGeneratorStatus, WithoutAGridThereIsNoSizeAndNoTable)
{
  int32_t nSize = -7;
  EXPECT_EQ(m_generator.GetCoefficientSize(&nSize), IMAGECALC_STATUS_NOT_INITIALIZED);
  EXPECT_EQ(nSize, -7);
  EXPECT_EQ(Calc(), IMAGECALC_STATUS_NOT_INITIALIZED);
  m_nSize = 0;
  EXPECT_EQ(Calc(), IMAGECALC_STATUS_NOT_INITIALIZED) << "before the size is looked at";
  EXPECT_EQ(m_nSize, 0);
  EXPECT_TRUE(IsTableUntouched());
}

TEST_F(CoefficientGeneratorStatus, AMissingSizeOutputIsRefused)
{
  EXPECT_EQ(m_generator.GetCoefficientSize(nullptr), IMAGECALC_STATUS_INVALID_ARGUMENT);
  ASSERT_EQ(m_generator.SetBlockParam(GRID), 0);
  EXPECT_EQ(m_generator.GetCoefficientSize(nullptr), IMAGECALC_STATUS_INVALID_ARGUMENT);
}

TEST_F(CoefficientGeneratorStatus, AMissingArgumentIsRefusedBeforeAnythingElse)
{
  for (const BLOCK_PARAM &stParam : {BLOCK_PARAM(), GRID}) {
    (void)m_generator.SetBlockParam(stParam);
    for (const int32_t nBitDepth : {8, 12}) {
      EXPECT_EQ(m_generator.CalcWithDark(nullptr, m_pDark, nBitDepth, Table(), &m_nSize),
                IMAGECALC_STATUS_INVALID_ARGUMENT);
      EXPECT_EQ(m_generator.CalcWithDark(m_pBright, nullptr, nBitDepth, Table(), &m_nSize),
                IMAGECALC_STATUS_INVALID_ARGUMENT);
      EXPECT_EQ(m_generator.CalcWithDark(m_pBright, m_pDark, nBitDepth, nullptr, &m_nSize),
                IMAGECALC_STATUS_INVALID_ARGUMENT);
      EXPECT_EQ(m_generator.CalcWithDark(m_pBright, m_pDark, nBitDepth, Table(), nullptr),
                IMAGECALC_STATUS_INVALID_ARGUMENT);
      EXPECT_EQ(m_generator.CalcWithoutDark(nullptr, nBitDepth, Table(), &m_nSize), IMAGECALC_STATUS_INVALID_ARGUMENT);
      EXPECT_EQ(m_generator.CalcWithoutDark(m_pBright, nBitDepth, nullptr, &m_nSize),
                IMAGECALC_STATUS_INVALID_ARGUMENT);
      EXPECT_EQ(m_generator.CalcWithoutDark(m_pBright, nBitDepth, Table(), nullptr), IMAGECALC_STATUS_INVALID_ARGUMENT);
    }
  }
  EXPECT_TRUE(IsTableUntouched());
  EXPECT_EQ(m_nSize, TABLE_SIZE);
}

TEST_F(CoefficientGeneratorStatus, EveryBitDepthButEightIsOutOfRangeEvenBeforeTheGrid)
{
  for (const BLOCK_PARAM &stParam : {BLOCK_PARAM(), GRID}) {
    (void)m_generator.SetBlockParam(stParam);
    for (const int32_t nBitDepth : {INT32_MIN, -8, 0, 7, 9, 10, 12, 16, INT32_MAX}) {
      EXPECT_EQ(m_generator.CalcWithDark(m_pBright, m_pDark, nBitDepth, Table(), &m_nSize),
                IMAGECALC_STATUS_OUT_OF_RANGE)
        << nBitDepth;
      EXPECT_EQ(m_generator.CalcWithoutDark(m_pBright, nBitDepth, Table(), &m_nSize), IMAGECALC_STATUS_OUT_OF_RANGE)
        << nBitDepth;
    }
  }
  EXPECT_TRUE(IsTableUntouched());
  EXPECT_EQ(m_nSize, TABLE_SIZE);
}

TEST_F(CoefficientGeneratorStatus, ATableThatIsTooSmallIsRefusedAndNotWritten)
{
  ASSERT_EQ(m_generator.SetBlockParam(GRID), 0);
  for (const int32_t nSize : {TABLE_SIZE - 1, TABLE_SIZE - 8, 1, 0, -1, INT32_MIN}) {
    m_nSize = nSize;
    EXPECT_EQ(CalcWithFailingMemory(true, 0), IMAGECALC_STATUS_INVALID_ARGUMENT) << "before memory is asked for";
    EXPECT_EQ(Calc(), IMAGECALC_STATUS_INVALID_ARGUMENT);
    EXPECT_EQ(m_nSize, nSize);
  }
  EXPECT_TRUE(IsTableUntouched());
}

TEST_F(CoefficientGeneratorStatus, ALargerTableComesBackLoweredAndIsWrittenOnlySoFar)
{
  ASSERT_EQ(m_generator.SetBlockParam(GRID), 0);
  for (const int32_t nSize : {TABLE_SIZE + 1, TABLE_SIZE + 40, INT32_MAX}) {
    m_listTable.assign(TABLE_SIZE + 40, UNTOUCHED);
    m_nSize = nSize;
    EXPECT_EQ(CalcWithDark(), 0);
    EXPECT_EQ(m_nSize, TABLE_SIZE);
    m_nSize = nSize;
    EXPECT_EQ(CalcWithoutDark(), 0);
    EXPECT_EQ(m_nSize, TABLE_SIZE);
    EXPECT_NE(m_listTable[TABLE_SIZE - 1], UNTOUCHED);
    EXPECT_EQ(TBytes(m_listTable.begin() + TABLE_SIZE, m_listTable.end()), TBytes(40, UNTOUCHED));
  }
}

TEST_F(CoefficientGeneratorStatus, MemoryThatRunsOutIsReportedAndNothingIsKept)
{
  for (const int32_t nBayerType : {0, 1}) {
    ASSERT_EQ(m_generator.SetBlockParam({64, 64, 32, 32, nBayerType}), 0);
    EXPECT_EQ(CalcWithFailingMemory(true, 0), IMAGECALC_STATUS_OUT_OF_MEMORY);
    EXPECT_EQ(CalcWithFailingMemory(true, 1), IMAGECALC_STATUS_OUT_OF_MEMORY);
    EXPECT_EQ(CalcWithFailingMemory(false, 0), IMAGECALC_STATUS_OUT_OF_MEMORY);
    EXPECT_TRUE(IsTableUntouched());
  }
}

TEST_F(CoefficientGeneratorStatus, AFrameTakesOneArrayAndGivesItBack)
{
  ASSERT_EQ(m_generator.SetBlockParam(GRID), 0);
  EXPECT_EQ(CalcWithFailingMemory(false, 1), 0);
  EXPECT_EQ(CalcWithFailingMemory(true, 2), 0);
}

TEST_F(CoefficientGeneratorStatus, ACalculationSucceedsAfterOneThatHadNoMemory)
{
  ASSERT_EQ(m_generator.SetBlockParam(GRID), 0);
  EXPECT_EQ(CalcWithFailingMemory(true, 1), IMAGECALC_STATUS_OUT_OF_MEMORY);
  EXPECT_EQ(CalcWithDark(), 0);
  EXPECT_EQ(GetElement(1, 1), (TWords{10, 343, 343, 343}));
}

TEST_F(CoefficientGeneratorStatus, TheLargestGridReportsMissingMemoryInsteadOfWriting)
{
  ASSERT_EQ(m_generator.SetBlockParam({100000, 100000, 8, 8, 1}), 0);
  m_nSize = INT32_MAX;
  EXPECT_EQ(CalcWithFailingMemory(true, 0), IMAGECALC_STATUS_OUT_OF_MEMORY);
  EXPECT_EQ(m_nSize, 12502 * 12502 * 8);
  EXPECT_TRUE(IsTableUntouched());
}

TEST(ArrayAllocation, OfAnySizeIsAnArrayOrNone)
{
  EXPECT_NE(AllocateArray<double>({3, 4}), nullptr);
  for (const uint64_t nOther : {uint64_t{0}, uint64_t{5}, UINT64_MAX}) {
    EXPECT_NE(AllocateArray<double>({0, nOther}), nullptr) << "room for one element";
  }
  EXPECT_EQ(AllocateArray<double>({UINT64_MAX / 2, 1}), nullptr);
  EXPECT_EQ(AllocateArray<double>({uint64_t{1} << 32, uint64_t{1} << 32}), nullptr) << "a product beyond 64 bits";
  EXPECT_EQ(AllocateArray<double>({uint64_t{1} << 60, 1}), nullptr) << "bytes beyond what memory has";
}

#include <type_traits>

#include "pluginobject/shadingcorrection/imagecalc/calcstatus.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/failingnew.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/vignetting/vignettingfixture.h"

using namespace ffc::imagecalc;
using namespace ffc::test;

namespace {

template <class TCalculator>
class VignettingStatus : public testing::Test {
protected:
  static constexpr uint32_t GAINS = std::is_same_v<TCalculator, CReachableBayer> ? 3 : 1;

  TCalculator m_calculator;
  SGainTable m_stTable;

  int32_t Calc(const void *pImage, uint32_t nWidth, uint32_t nHeight, int32_t nBitDepth)
  {
    return m_calculator.CalcCoefficient(pImage, nWidth, nHeight, nBitDepth, &m_stTable.pTable, &m_stTable.nColumns,
                                        &m_stTable.nRows);
  }

  bool AreOutputsUntouched() const
  {
    return m_stTable.pTable == nullptr && m_stTable.nColumns == 77 && m_stTable.nRows == 77;
  }
};

using TCalculators = testing::Types<CReachableBayer, CReachableGray>;
TYPED_TEST_SUITE(VignettingStatus, TCalculators, );

} // namespace

TYPED_TEST(VignettingStatus, AFrameOfEachSupportedDepthGivesATable)
{
  ASSERT_EQ(this->m_calculator.Init(8, 8, 8, 7), 0);
  for (const int32_t nBitDepth : {8, 10, 12}) {
    const SGainTable stTable = CalcTable(this->m_calculator, CTestImage(16, 16, nBitDepth, 200));
    EXPECT_EQ(stTable.nStatus, 0);
    EXPECT_EQ(this->m_calculator.m_pCoefficient.get(), stTable.pTable);
    EXPECT_EQ(stTable.nColumns, 4U);
    EXPECT_EQ(stTable.nRows, 4U);
    EXPECT_EQ(stTable.GetGains(this->GAINS), TGains(16U * this->GAINS, 256));
  }
}

TYPED_TEST(VignettingStatus, EveryOtherDepthIsNotSupported)
{
  ASSERT_EQ(this->m_calculator.Init(8, 8, 8, 7), 0);
  const CTestImage image(16, 16, 16, 200);
  for (const int32_t nBitDepth : {INT32_MIN, -8, 0, 1, 7, 9, 11, 13, 14, 16, 32, INT32_MAX}) {
    EXPECT_EQ(this->Calc(image.GetData(), 16, 16, nBitDepth), IMAGECALC_STATUS_NOT_SUPPORTED) << nBitDepth;
  }
  EXPECT_TRUE(this->AreOutputsUntouched());
}

TYPED_TEST(VignettingStatus, AnImageThatIsNotGoodIsRefusedBeforeItsDepth)
{
  const CTestImage image(16, 16, 8, 200);
  EXPECT_EQ(this->Calc(image.GetData(), 16, 16, 8), IMAGECALC_STATUS_INVALID_ARGUMENT) << "not initialised";
  ASSERT_EQ(this->m_calculator.Init(16, 16, 8, 7), 0);
  EXPECT_EQ(this->Calc(nullptr, 16, 16, 16), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(this->Calc(image.GetData(), 15, 16, 16), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(this->Calc(image.GetData(), 16, 15, 8), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_TRUE(this->AreOutputsUntouched());
}

TYPED_TEST(VignettingStatus, AMissingOutputIsRefused)
{
  ASSERT_EQ(this->m_calculator.Init(16, 16, 8, 7), 0);
  const CTestImage image(16, 16, 8, 200);
  SGainTable &stTable = this->m_stTable;
  TypeParam &calculator = this->m_calculator;
  EXPECT_EQ(calculator.CalcCoefficient(image.GetData(), 16, 16, 8, nullptr, &stTable.nColumns, &stTable.nRows),
            IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(calculator.CalcCoefficient(image.GetData(), 16, 16, 8, &stTable.pTable, nullptr, &stTable.nRows),
            IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(calculator.CalcCoefficient(image.GetData(), 16, 16, 8, &stTable.pTable, &stTable.nColumns, nullptr),
            IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_TRUE(this->AreOutputsUntouched());
}

TYPED_TEST(VignettingStatus, MemoryThatRunsOutAtAnyStepIsReportedAndNothingLeaks)
{
  ASSERT_EQ(this->m_calculator.Init(8, 8, 8, 7), 0);
  for (const int32_t nBitDepth : {8, 12}) {
    const CTestImage image(24, 16, nBitDepth, 200);
    // Padded image, grid, gains, table.
    for (int32_t nSuccesses = 0; nSuccesses < 4; ++nSuccesses) {
      const int64_t nBefore = CountLiveAllocations();
      SGainTable stTable;
      {
        const CFailingNew failingNew(nSuccesses);
        stTable = CalcTable(this->m_calculator, image);
      }
      EXPECT_EQ(CountLiveAllocations(), nBefore) << nSuccesses;
      EXPECT_EQ(stTable.nStatus, IMAGECALC_STATUS_OUT_OF_MEMORY) << nSuccesses;
      EXPECT_EQ(stTable.pTable, nullptr);
      EXPECT_EQ(stTable.nColumns, 0U);
      EXPECT_EQ(stTable.nRows, 0U);
    }
    EXPECT_EQ(CalcTable(this->m_calculator, image).nStatus, 0);
    this->m_calculator.m_pCoefficient.reset();
  }
}

TYPED_TEST(VignettingStatus, BothCalculationsZeroTheSizeBeforeTheyCanFail)
{
  ASSERT_EQ(this->m_calculator.SetBlockSize(8, 8), 0);
  const CTestImage bytes(16, 16, 8);
  const CTestImage words(16, 16, 12);
  SGridSize stSize8 = {77, 77};
  SGridSize stSize16 = {77, 77};
  const CFailingNew failingNew;
  EXPECT_EQ(this->m_calculator.Calc8Bit({static_cast<const uint8_t *>(bytes.GetData()), 16, 16}, stSize8),
            IMAGECALC_STATUS_OUT_OF_MEMORY);
  EXPECT_EQ(this->m_calculator.Calc16Bit({static_cast<const uint16_t *>(words.GetData()), 16, 16}, stSize16),
            IMAGECALC_STATUS_OUT_OF_MEMORY);
  EXPECT_EQ(stSize8.nColumns + stSize8.nRows, 0U);
  EXPECT_EQ(stSize16.nColumns + stSize16.nRows, 0U);
}

TYPED_TEST(VignettingStatus, FourAllocationsAreEnough)
{
  ASSERT_EQ(this->m_calculator.Init(8, 8, 8, 7), 0);
  const CFailingNew failingNew(4);
  EXPECT_EQ(CalcTable(this->m_calculator, CTestImage(24, 16, 8, 200)).nStatus, 0);
}

TYPED_TEST(VignettingStatus, ATableTakesThePlaceOfTheOneBefore)
{
  ASSERT_EQ(this->m_calculator.Init(8, 8, 8, 7), 0);
  const CTestImage image(24, 16, 8, 200);
  ASSERT_EQ(CalcTable(this->m_calculator, image).nStatus, 0);
  const int64_t nBefore = CountLiveAllocations();
  const SGainTable stTable = CalcTable(this->m_calculator, image);
  EXPECT_EQ(CountLiveAllocations(), nBefore);
  EXPECT_EQ(this->m_calculator.m_pCoefficient.get(), stTable.pTable);
}

TYPED_TEST(VignettingStatus, TheLastTableOutlivesACalculationThatFails)
{
  ASSERT_EQ(this->m_calculator.Init(8, 8, 8, 7), 0);
  const SGainTable stTable = CalcTable(this->m_calculator, CTestImage(16, 16, 8, 200));
  ASSERT_EQ(stTable.nStatus, 0);
  {
    const CFailingNew failingNew(3);
    EXPECT_EQ(CalcTable(this->m_calculator, CTestImage(64, 16, 8, 1)).nStatus, IMAGECALC_STATUS_OUT_OF_MEMORY);
  }
  EXPECT_EQ(this->m_calculator.m_pCoefficient.get(), stTable.pTable);
  EXPECT_EQ(stTable.GetGains(this->GAINS), TGains(16U * this->GAINS, 256));
}

TYPED_TEST(VignettingStatus, TheTableIsFreedWithTheCalculator)
{
  const CTestImage image(16, 16, 8, 200);
  const int64_t nBefore = CountLiveAllocations();
  {
    TypeParam calculator;
    EXPECT_EQ(calculator.Init(8, 8, 8, 7), 0);
    EXPECT_EQ(CalcTable(calculator, image).nStatus, 0);
    EXPECT_EQ(CountLiveAllocations(), nBefore + 1);
  }
  EXPECT_EQ(CountLiveAllocations(), nBefore);
}

TYPED_TEST(VignettingStatus, ASizeThatNoMemoryHoldsIsReported)
{
  // Blocks so large that the padded sides pass 32 bits, and their product 64.
  ASSERT_EQ(this->m_calculator.Init(0x80000000U, 0x80000000U, 8, 7), 0);
  const CTestImage image(2, 2, 8, 200);
  EXPECT_EQ(this->Calc(image.GetData(), UINT32_MAX, UINT32_MAX, 8), IMAGECALC_STATUS_OUT_OF_MEMORY);
  EXPECT_EQ(this->Calc(image.GetData(), UINT32_MAX, UINT32_MAX, 12), IMAGECALC_STATUS_OUT_OF_MEMORY);
  ASSERT_EQ(this->m_calculator.Init(1, 1, 8, 7), 0);
  EXPECT_EQ(this->Calc(image.GetData(), UINT32_MAX, UINT32_MAX, 12), IMAGECALC_STATUS_OUT_OF_MEMORY);
}

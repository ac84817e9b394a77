// The order of the virtual operations, by calls through the table itself. The table is laid out as the Itanium
// C++ ABI says, which all compilers but Microsoft's follow.
#include <algorithm>
#include <memory>
#include <type_traits>

#include "pluginobject/shadingcorrection/imagecalc/calcstatus.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/failingnew.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/vignetting/vignettingfixture.h"

using namespace ffc::imagecalc;
using namespace ffc::test;

namespace {

// The two entries of the destructor.
constexpr std::size_t DESTRUCTOR_ENTRIES = 2;
constexpr std::size_t DELETING_DESTRUCTOR = 1;

void *const *GetTable(void *pObject)
{
  return *static_cast<void *const **>(pObject);
}

// The operation at a place, counted from 1 after the destructor.
template <class TResult, typename... TArguments>
TResult Call(IVignettingCorrection &calculator, std::size_t nPlace, TArguments... arguments)
{
  using Function = TResult (*)(void *, TArguments...);
  const auto fnOperation = reinterpret_cast<Function>(GetTable(&calculator)[DESTRUCTOR_ENTRIES + nPlace - 1]);
  return fnOperation(&calculator, arguments...);
}

template <class TCalculator>
class VignettingVirtualOrder : public testing::Test {
protected:
  static constexpr bool IS_BAYER = std::is_same_v<TCalculator, CReachableBayer>;
  static constexpr uint64_t PLANES = IS_BAYER ? 3 : 1;
  // The Bayer calculator has one more operation.
  static constexpr std::size_t PACK_PLACE = IS_BAYER ? 16 : 15;

  TCalculator m_calculator;
  const CTestImage m_bytes = CTestImage(16, 16, 8, 50);
  const CTestImage m_words = CTestImage(16, 16, 12, 50);

  SFrame8 Frame8() const { return {static_cast<const uint8_t *>(m_bytes.GetData()), 16, 16}; }
  SFrame16 Frame16() const { return {static_cast<const uint16_t *>(m_words.GetData()), 16, 16}; }

  // A grid whose points of one colour are alike.
  static SMeanGrid MakeGrid()
  {
    SMeanGrid stGrid;
    stGrid.stSize = {3, 3};
    stGrid.pMeans = std::make_unique<double[]>(9 * PLANES);
    std::fill_n(stGrid.pMeans.get(), 9 * PLANES, 20.0);
    std::fill_n(stGrid.adMaxima, PLANES, 40.0);
    return stGrid;
  }
};

using TCalculators = testing::Types<CReachableBayer, CReachableGray>;
TYPED_TEST_SUITE(VignettingVirtualOrder, TCalculators, );

} // namespace

TYPED_TEST(VignettingVirtualOrder, TheOperationsOfTheBaseAreAtTheirPlaces)
{
  TypeParam &calculator = this->m_calculator;
  EXPECT_EQ((Call<int32_t>(calculator, 4, uint32_t{9})), 0);
  EXPECT_EQ(calculator.m_nScale, 512);
  EXPECT_EQ((Call<int32_t>(calculator, 5, uint32_t{4}, uint32_t{2})), 0);
  EXPECT_EQ(calculator.m_nBlockWidth, 4U);
  EXPECT_EQ(calculator.m_nBlockHeight, 2U);
  EXPECT_EQ((Call<int32_t>(calculator, 6, int32_t{3})), 0);
  EXPECT_EQ(calculator.m_nMaxGain, 3);
  EXPECT_FALSE(calculator.m_bReady);
  EXPECT_EQ((Call<int32_t>(calculator, 2, uint32_t{8}, uint32_t{16}, uint32_t{8}, int32_t{7})), 0);
  EXPECT_TRUE(calculator.m_bReady);
  EXPECT_EQ((Call<int32_t>(calculator, 3, this->m_bytes.GetData(), uint32_t{8}, uint32_t{16})), 0);
  EXPECT_EQ((Call<int32_t>(calculator, 3, this->m_bytes.GetData(), uint32_t{8}, uint32_t{15})),
            IMAGECALC_STATUS_INVALID_ARGUMENT);
  SGainTable stTable;
  EXPECT_EQ((Call<int32_t>(calculator, 1, this->m_bytes.GetData(), uint32_t{16}, uint32_t{16}, int32_t{8},
                           &stTable.pTable, &stTable.nColumns, &stTable.nRows)),
            0);
  EXPECT_EQ(stTable.nColumns, 4U);
  EXPECT_EQ(stTable.pTable[0], 256);
}

TYPED_TEST(VignettingVirtualOrder, TheCalculationsPaddingsAndGridsFollow)
{
  TypeParam &calculator = this->m_calculator;
  ASSERT_EQ(calculator.Init(8, 8, 8, 7), 0);
  const SFrame16 stFrame16 = this->Frame16();
  const SFrame8 stFrame8 = this->Frame8();
  SGridSize stSize;
  EXPECT_EQ((Call<int32_t, const SFrame16 &, SGridSize &>(calculator, 7, stFrame16, stSize)), 0);
  EXPECT_EQ(stSize.nColumns, 4U);
  stSize = SGridSize();
  EXPECT_EQ((Call<int32_t, const SFrame8 &, SGridSize &>(calculator, 8, stFrame8, stSize)), 0);
  EXPECT_EQ(stSize.nColumns, 4U);
  SPadded16 stPadded16;
  EXPECT_EQ((Call<int32_t, const SFrame16 &, SPadded16 &>(calculator, 9, stFrame16, stPadded16)), 0);
  ASSERT_EQ(stPadded16.nWidth, 16U);
  EXPECT_EQ(stPadded16.pPixels[255], 50);
  SPadded8 stPadded8;
  EXPECT_EQ((Call<int32_t, const SFrame8 &, SPadded8 &>(calculator, 10, stFrame8, stPadded8)), 0);
  ASSERT_EQ(stPadded8.nWidth, 16U);
  EXPECT_EQ(stPadded8.pPixels[255], 50);
  SMeanGrid stGrid16;
  EXPECT_EQ((Call<int32_t, const SPadded16 &, SMeanGrid &>(calculator, 11, stPadded16, stGrid16)), 0);
  EXPECT_EQ(stGrid16.adMaxima[0], 50.0);
  SMeanGrid stGrid8;
  EXPECT_EQ((Call<int32_t, const SPadded8 &, SMeanGrid &>(calculator, 12, stPadded8, stGrid8)), 0);
  EXPECT_EQ(stGrid8.adMaxima[0], 50.0);
}

TYPED_TEST(VignettingVirtualOrder, TheConversionIsFollowedByItsParts)
{
  TypeParam &calculator = this->m_calculator;
  ASSERT_EQ(calculator.Init(8, 8, 8, 7), 0);
  SMeanGrid stGrid = this->MakeGrid();
  SGridSize stSize;
  EXPECT_EQ((Call<int32_t, SMeanGrid &, SGridSize &>(calculator, 13, stGrid, stSize)), 0);
  EXPECT_EQ(stSize.nRows, 4U);
  EXPECT_EQ(calculator.m_pCoefficient[0], 512);
  stGrid = this->MakeGrid();
  uint16_t anGains[27] = {};
  Call<void, SMeanGrid &, uint16_t *>(calculator, 14, stGrid, anGains);
  EXPECT_EQ(anGains[9 * this->PLANES - 1], 512);
  stSize = {1, 1};
  EXPECT_EQ((Call<int32_t, const uint16_t *, SGridSize &>(calculator, this->PACK_PLACE, anGains, stSize)), 0);
  EXPECT_EQ(stSize.nRows, 2U);
}

TYPED_TEST(VignettingVirtualOrder, TheSecondEntryOfTheDestructorDestroysTheObject)
{
  const int64_t nBefore = CountLiveAllocations();
  auto *const pCalculator = new TypeParam();
  EXPECT_EQ(pCalculator->Init(8, 8, 8, 7), 0);
  EXPECT_EQ(CalcTable(*pCalculator, this->m_bytes).nStatus, 0);
  void *const pObject = static_cast<IVignettingCorrection *>(pCalculator);
  reinterpret_cast<void (*)(void *)>(GetTable(pObject)[DELETING_DESTRUCTOR])(pObject);
  EXPECT_EQ(CountLiveAllocations(), nBefore);
}

TEST(VignettingVirtualOrderOfBayer, TheGainOfAPointStandsBeforeThePacking)
{
  CReachableBayer calculator;
  ASSERT_EQ(calculator.Init(8, 8, 8, 7), 0);
  EXPECT_EQ((Call<uint16_t>(calculator, 15, 20.0, 50.0)), 640);
}

#include <string>
#include <type_traits>
#include <utility>

#include "pluginobject/shadingcorrection/imagecalc/calcstatus.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/vignetting/vignettingfixture.h"

using namespace ffc::imagecalc;
using namespace ffc::test;

static_assert(std::has_virtual_destructor_v<IVignettingCorrection>);
static_assert(std::is_base_of_v<IVignettingCorrection, CVCBayer> && std::is_base_of_v<IVignettingCorrection, CVCGary>);

namespace {

class CBareCalculator : public IVignettingCorrection {
public:
  using IVignettingCorrection::m_bReady;
  using IVignettingCorrection::m_nBlockHeight;
  using IVignettingCorrection::m_nBlockWidth;
  using IVignettingCorrection::m_nMaxGain;
  using IVignettingCorrection::m_nScale;
  using IVignettingCorrection::m_pCoefficient;
};

// All that Init sets.
template <class TCalculator>
std::vector<int64_t> GetSettings(const TCalculator &calculator)
{
  return {calculator.m_nScale, calculator.m_nBlockWidth, calculator.m_nBlockHeight, calculator.m_nMaxGain,
          calculator.m_bReady ? 1 : 0};
}

using TSettings = std::vector<int64_t>;

// Both calculators, and what they inherit from.
template <class TCalculator>
class VignettingSetup : public testing::Test {
protected:
  TCalculator m_calculator;
  const CTestImage m_image = CTestImage(64, 32, 8, 9);

  int32_t Check(uint32_t nWidth, uint32_t nHeight)
  {
    return m_calculator.CheckImage(m_image.GetData(), nWidth, nHeight);
  }
};

using TCalculators = testing::Types<CBareCalculator, CReachableBayer, CReachableGray>;
TYPED_TEST_SUITE(VignettingSetup, TCalculators, );

// Counts what Init calls, and fails as told.
class CRecordingCalculator : public CVCGary {
public:
  using CVCGary::m_bReady;
  std::string m_strCalls;
  char m_chFailing = ' ';

  int32_t SetScaleBits(uint32_t) noexcept override { return Record('s'); }
  int32_t SetBlockSize(uint32_t, uint32_t) noexcept override { return Record('b'); }
  int32_t SetMaxGain(int32_t) noexcept override { return Record('g'); }

private:
  int32_t Record(char chCall)
  {
    m_strCalls += chCall;
    return chCall == m_chFailing ? IMAGECALC_STATUS_OUT_OF_MEMORY : 0;
  }
};

} // namespace

TEST(VignettingConstruction, TheBaseStartsWithNothingSet)
{
  const CBareCalculator calculator;
  EXPECT_EQ(GetSettings(calculator), (TSettings{0, 0, 0, 0, 0}));
  EXPECT_EQ(calculator.m_pCoefficient, nullptr);
}

TEST(VignettingConstruction, TheCalculatorsStartWithoutAGainLimit)
{
  EXPECT_EQ(GetSettings(CReachableBayer()), (TSettings{0, 0, 0, 2147483647, 0}));
  EXPECT_EQ(GetSettings(CReachableBayer(4U)), (TSettings{0, 0, 0, 2147483647, 0}));
  EXPECT_EQ(GetSettings(CReachableGray()), (TSettings{0, 0, 0, 2147483647, 0}));
  EXPECT_EQ(CReachableBayer().m_pCoefficient, nullptr);
  EXPECT_EQ(CReachableGray().m_pCoefficient, nullptr);
}

TEST(VignettingConstruction, TheBaseComputesNothing)
{
  CBareCalculator calculator;
  ASSERT_EQ(calculator.Init(8, 8, 8, 7), 0);
  const SGainTable stTable = CalcTable(calculator, CTestImage(16, 16, 8, 9));
  EXPECT_EQ(stTable.nStatus, IMAGECALC_STATUS_NOT_SUPPORTED);
  EXPECT_EQ(stTable.pTable, nullptr);
  EXPECT_EQ(calculator.CalcCoefficient(nullptr, 0, 0, 0, nullptr, nullptr, nullptr), IMAGECALC_STATUS_NOT_SUPPORTED);
}

TYPED_TEST(VignettingSetup, UpToFifteenScaleBitsAreAccepted)
{
  for (uint32_t nBits = 0; nBits <= 15; ++nBits) {
    EXPECT_EQ(this->m_calculator.SetScaleBits(nBits), 0);
    EXPECT_EQ(this->m_calculator.m_nScale, 1 << nBits);
  }
  for (const uint32_t nBits : {16U, 17U, 32U, 64U, UINT32_MAX}) {
    EXPECT_EQ(this->m_calculator.SetScaleBits(nBits), IMAGECALC_STATUS_INVALID_ARGUMENT) << nBits;
    EXPECT_EQ(this->m_calculator.m_nScale, 32768);
  }
}

TYPED_TEST(VignettingSetup, BlockSidesThatArePowersOfTwoAreAccepted)
{
  for (uint32_t nBit = 0; nBit < 32; ++nBit) {
    EXPECT_EQ(this->m_calculator.SetBlockSize(1U << nBit, 1U << (31 - nBit)), 0);
    EXPECT_EQ(this->m_calculator.m_nBlockWidth, 1U << nBit);
    EXPECT_EQ(this->m_calculator.m_nBlockHeight, 1U << (31 - nBit));
  }
}

TYPED_TEST(VignettingSetup, EveryOtherBlockSideIsRefused)
{
  ASSERT_EQ(this->m_calculator.SetBlockSize(4, 16), 0);
  for (const uint32_t nSide : {0U, 3U, 5U, 6U, 7U, 12U, 63U, 65U, 96U, 0x80000001U, UINT32_MAX}) {
    EXPECT_EQ(this->m_calculator.SetBlockSize(nSide, 8), IMAGECALC_STATUS_INVALID_ARGUMENT) << nSide;
    EXPECT_EQ(this->m_calculator.SetBlockSize(8, nSide), IMAGECALC_STATUS_INVALID_ARGUMENT) << nSide;
  }
  EXPECT_EQ(this->m_calculator.m_nBlockWidth, 4U);
  EXPECT_EQ(this->m_calculator.m_nBlockHeight, 16U);
}

TYPED_TEST(VignettingSetup, AGainLimitIsAtLeastOne)
{
  for (const int32_t nGain : {1, 2, 7, INT32_MAX, 5}) {
    EXPECT_EQ(this->m_calculator.SetMaxGain(nGain), 0);
    EXPECT_EQ(this->m_calculator.m_nMaxGain, nGain);
  }
  for (const int32_t nGain : {0, -1, INT32_MIN}) {
    EXPECT_EQ(this->m_calculator.SetMaxGain(nGain), IMAGECALC_STATUS_INVALID_ARGUMENT) << nGain;
    EXPECT_EQ(this->m_calculator.m_nMaxGain, 5);
  }
}

TYPED_TEST(VignettingSetup, InitSetsEverything)
{
  EXPECT_EQ(this->m_calculator.Init(16, 32, 8, 7), 0);
  EXPECT_EQ(GetSettings(this->m_calculator), (TSettings{256, 16, 32, 7, 1}));
}

TYPED_TEST(VignettingSetup, InitStopsAtTheFirstSetterThatFails)
{
  ASSERT_EQ(this->m_calculator.Init(16, 32, 8, 7), 0);
  EXPECT_EQ(this->m_calculator.Init(64, 64, 16, 9), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(GetSettings(this->m_calculator), (TSettings{256, 16, 32, 7, 0}));
  EXPECT_EQ(this->m_calculator.Init(64, 48, 4, 9), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(GetSettings(this->m_calculator), (TSettings{16, 16, 32, 7, 0}));
  EXPECT_EQ(this->m_calculator.Init(64, 128, 5, 0), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(GetSettings(this->m_calculator), (TSettings{32, 64, 128, 7, 0}));
}

TYPED_TEST(VignettingSetup, AnImageMustBeThereAndAtLeastABlockLarge)
{
  ASSERT_EQ(this->m_calculator.Init(64, 32, 8, 7), 0);
  EXPECT_EQ(this->Check(64, 32), 0);
  EXPECT_EQ(this->Check(65, 33), 0);
  EXPECT_EQ(this->Check(UINT32_MAX, UINT32_MAX), 0);
  EXPECT_EQ(this->Check(63, 32), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(this->Check(64, 31), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(this->Check(0, 0), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(this->m_calculator.CheckImage(nullptr, 64, 32), IMAGECALC_STATUS_INVALID_ARGUMENT);
}

TYPED_TEST(VignettingSetup, NoImageIsGoodBeforeInitOrAfterAFailedOne)
{
  EXPECT_EQ(this->Check(64, 32), IMAGECALC_STATUS_INVALID_ARGUMENT);
  ASSERT_EQ(this->m_calculator.SetScaleBits(8), 0);
  ASSERT_EQ(this->m_calculator.SetBlockSize(8, 8), 0);
  ASSERT_EQ(this->m_calculator.SetMaxGain(7), 0);
  EXPECT_EQ(this->Check(64, 32), IMAGECALC_STATUS_INVALID_ARGUMENT);
  ASSERT_EQ(this->m_calculator.Init(8, 8, 8, 7), 0);
  EXPECT_EQ(this->Check(64, 32), 0);
  ASSERT_EQ(this->m_calculator.Init(8, 7, 8, 7), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(this->Check(64, 32), IMAGECALC_STATUS_INVALID_ARGUMENT);
}

TEST(VignettingInit, CallsTheSettersInOrderAndHidesTheirStatus)
{
  const std::pair<char, const char *> aCases[] = {{' ', "sbg"}, {'s', "s"}, {'b', "sb"}, {'g', "sbg"}};
  for (const auto &[chFailing, pszCalls] : aCases) {
    CRecordingCalculator calculator;
    calculator.m_bReady = true;
    calculator.m_chFailing = chFailing;
    EXPECT_EQ(calculator.Init(8, 8, 8, 7), chFailing == ' ' ? 0 : IMAGECALC_STATUS_INVALID_ARGUMENT);
    EXPECT_EQ(calculator.m_strCalls, pszCalls);
    EXPECT_EQ(calculator.m_bReady, chFailing == ' ');
  }
}

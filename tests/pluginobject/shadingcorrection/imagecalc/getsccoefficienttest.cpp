#include <type_traits>

#include "tests/pluginobject/shadingcorrection/imagecalc/coefficientfixture.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/coefficienttwin.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/failingnew.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/slowtwin.h"

using namespace ffc::test;

static_assert(std::has_virtual_destructor_v<CGetSCCoefficient>);

namespace {

class CoefficientGenerator : public CCoefficientTest {
protected:
  // Computes with frames that are the same everywhere.
  TWords CalcUniformly(int32_t nBright, int32_t nDark)
  {
    m_bright = CTestImage(64, 64, 8, nBright);
    m_dark = CTestImage(64, 64, 8, nDark);
    EXPECT_EQ(m_generator.SetBlockParam(GRID), 0);
    EXPECT_EQ(CalcWithDark(), 0);
    return GetElement(1, 1);
  }

  // The gain of the first block, whose mean is nValue + nExtra / 1024, without a dark frame.
  int32_t CalcGain(int32_t nValue, int32_t nExtra)
  {
    m_bright = MakeMean(nValue, nExtra);
    EXPECT_EQ(m_generator.SetBlockParam(GRID), 0);
    EXPECT_EQ(CalcWithoutDark(), 0);
    const TWords listElement = GetElement(1, 1);
    EXPECT_EQ(listElement, (TWords{0, listElement[1], listElement[1], listElement[1]}));
    return listElement[1];
  }

  // A frame whose first block of 1024 pixels has the mean nValue + nExtra / 1024.
  static CTestImage MakeMean(int32_t nValue, int32_t nExtra)
  {
    CTestImage image(64, 64, 8, nValue);
    for (int32_t i = 0; i < nExtra; ++i) {
      image.Set(i % 32, i / 32, nValue + 1);
    }
    return image;
  }
};

BLOCK_PARAM MakeRandomGrid(CTestRandom &random, int32_t nBayerType)
{
  const int32_t nBlockWidth = random.Between(4, 20) * 2;
  const int32_t nBlockHeight = random.Between(4, 20) * 2;
  const int32_t nColumns = random.Between(1, 5);
  const int32_t nRows = random.Between(1, 5);
  const int32_t nWidth = nColumns * nBlockWidth + random.Between(0, nBlockWidth / 2 - 1) * 2;
  const int32_t nHeight = nRows * nBlockHeight + random.Between(0, nBlockHeight / 2 - 1) * 2;
  return {nWidth < 32 ? nWidth + 32 : nWidth, nHeight < 32 ? nHeight + 32 : nHeight, nBlockWidth, nBlockHeight,
          nBayerType};
}

void ExpectEqualsTwin(const BLOCK_PARAM &stParam, CTestRandom &random)
{
  const CTestImage bright = CTestImage::MakeRandom(stParam.nWidth, stParam.nHeight, 8, random);
  CTestImage dark(stParam.nWidth, stParam.nHeight, 8);
  // Dark frames near and far from the bright one, so that some blocks have no signal.
  const int32_t nDarkest = random.Between(0, 255);
  for (int32_t i = 0; i < dark.GetPixelCount(); ++i) {
    dark.SetAt(i, random.Between(0, nDarkest));
  }
  for (const CTestImage *const pDark :
       {static_cast<const CTestImage *>(nullptr), static_cast<const CTestImage *>(&dark)}) {
    const TBytes listExpected = ComputeCoefficientTableSlowly(bright, pDark, stParam);
    CGetSCCoefficient generator;
    ASSERT_EQ(generator.SetBlockParam(stParam), 0);
    auto nSize = static_cast<int32_t>(listExpected.size());
    TBytes listTable(listExpected.size());
    ASSERT_EQ(pDark == nullptr ? generator.CalcWithoutDark(bright.GetData(), 8, listTable.data(), &nSize)
                               : generator.CalcWithDark(bright.GetData(), dark.GetData(), 8, listTable.data(), &nSize),
              0);
    ASSERT_EQ(static_cast<int32_t>(listExpected.size()), nSize);
    ASSERT_EQ(listTable, listExpected) << "type " << stParam.nBayerType << ", " << stParam.nWidth << " x "
                                       << stParam.nHeight << " by " << stParam.nBlockWidth << " x "
                                       << stParam.nBlockHeight << (pDark == nullptr ? "" : ", with dark");
  }
}

} // namespace

TEST_F(CoefficientGenerator, EqualsTheSlowTwinForEveryLayoutOverRandomGrids)
{
  CTestRandom random(6021);
  for (int32_t nBayerType = 0; nBayerType <= 4; ++nBayerType) {
    for (int32_t nRun = 0; nRun < 60; ++nRun) {
      ASSERT_NO_FATAL_FAILURE(ExpectEqualsTwin(MakeRandomGrid(random, nBayerType), random));
    }
  }
}

TEST_F(CoefficientGenerator, EqualsTheSlowTwinForStripsBelowAtAndAboveHalfABlock)
{
  CTestRandom random(77);
  for (int32_t nBayerType = 0; nBayerType <= 4; ++nBayerType) {
    for (const int32_t nBlockSide : {8, 10, 16, 32}) {
      for (const int32_t nStrip : {0, 2, nBlockSide / 2 - 2, nBlockSide / 2, nBlockSide / 2 + 2, nBlockSide - 2}) {
        const int32_t nSide = 4 * nBlockSide + nStrip / 2 * 2;
        ASSERT_NO_FATAL_FAILURE(ExpectEqualsTwin({nSide, 64, nBlockSide, 16, nBayerType}, random));
        ASSERT_NO_FATAL_FAILURE(ExpectEqualsTwin({64, nSide, 16, nBlockSide, nBayerType}, random));
      }
    }
  }
}

TEST_F(CoefficientGenerator, AnElementIsFourLittleEndianWords)
{
  m_bright = CTestImage::MakeCells(64, 64, 8, {255, 100, 100, 200}); // R 255, G 100, B 200
  ASSERT_EQ(m_generator.SetBlockParam({64, 64, 32, 32, 1}), 0);
  m_dark = CTestImage(64, 64, 8, 5);
  ASSERT_EQ(CalcWithDark(), 0);
  // 65280 / 195 = 334, 65280 / 95 = 687, 65280 / 250 = 261
  const TBytes listExpected = {5, 0, 334 - 256, 1, 687 - 512, 2, 261 - 256, 1};
  EXPECT_EQ(TBytes(m_listTable.begin() + 40, m_listTable.begin() + 48), listExpected);
}

TEST_F(CoefficientGenerator, ASignalOf255GetsAGainOf256)
{
  EXPECT_EQ(CalcGain(255, 0), 256);
}

TEST_F(CoefficientGenerator, AMeanOf127AndAHalfGetsAGainOf512)
{
  EXPECT_EQ(CalcGain(127, 512), 512);
}

TEST_F(CoefficientGenerator, AGainIsTruncated)
{
  EXPECT_EQ(CalcGain(65, 0), 1004);   // 1004.31
  EXPECT_EQ(CalcGain(131, 0), 498);   // 498.32
  EXPECT_EQ(CalcGain(97, 0), 672);    // 672.99
  EXPECT_EQ(CalcGain(127, 511), 512); // 512.004
  EXPECT_EQ(CalcGain(127, 513), 511); // 511.996
}

TEST_F(CoefficientGenerator, ABlockWithoutSignalGetsTheLargestGain)
{
  EXPECT_EQ(CalcGain(0, 0), 65280);
  EXPECT_EQ(CalcGain(0, 1), 65280);
  EXPECT_EQ(CalcGain(0, 1023), 65280);
  EXPECT_EQ(CalcGain(1, 0), 65280);
  EXPECT_EQ(CalcGain(1, 1), 65216); // 65280 x 1024 / 1025
}

TEST_F(CoefficientGenerator, ABlockAsDarkAsTheDarkFrameGetsTheLargestGain)
{
  EXPECT_EQ(CalcUniformly(40, 40), (TWords{40, 65280, 65280, 65280}));
  EXPECT_EQ(CalcUniformly(0, 0), (TWords{0, 65280, 65280, 65280}));
  EXPECT_EQ(CalcUniformly(255, 255), (TWords{255, 65280, 65280, 65280}));
}

TEST_F(CoefficientGenerator, ABlockDarkerThanTheDarkFrameGetsTheLargestGain)
{
  EXPECT_EQ(CalcUniformly(10, 200), (TWords{200, 65280, 65280, 65280}));
  EXPECT_EQ(CalcUniformly(0, 255), (TWords{255, 65280, 65280, 65280}));
}

TEST_F(CoefficientGenerator, TheDarkLevelIsTakenOffTheSignal)
{
  EXPECT_EQ(CalcUniformly(255, 0), (TWords{0, 256, 256, 256}));
  EXPECT_EQ(CalcUniformly(137, 10), (TWords{10, 514, 514, 514}));
}

TEST_F(CoefficientGenerator, TheSignalIsMeasuredFromTheTruncatedDarkLevel)
{
  m_dark = MakeMean(9, 1023); // 9.999
  m_bright = CTestImage(64, 64, 8, 12);
  ASSERT_EQ(m_generator.SetBlockParam(GRID), 0);
  ASSERT_EQ(CalcWithDark(), 0);
  EXPECT_EQ(GetElement(1, 1), (TWords{9, 21760, 21760, 21760}));
}

TEST_F(CoefficientGenerator, TheDarkLevelOfAColourImageIsThatOfAllItsPixels)
{
  m_dark = CTestImage::MakeCells(64, 64, 8, {10, 20, 30, 43}); // 25.75
  m_bright = CTestImage::MakeCells(64, 64, 8, {225, 125, 125, 75});
  ASSERT_EQ(m_generator.SetBlockParam({64, 64, 32, 32, 1}), 0);
  ASSERT_EQ(CalcWithDark(), 0);
  EXPECT_EQ(GetElement(1, 1), (TWords{25, 65280 / 50, 65280 / 100, 65280 / 200}));
}

TEST_F(CoefficientGenerator, GainsStandInTheOrderBlueGreenRedForEveryLayout)
{
  m_bright = CTestImage::MakeCells(64, 64, 8, {10, 20, 30, 44});
  const int32_t anRedGreenBlue[][3] = {{10, 25, 44}, {30, 27, 20}, {20, 27, 30}, {44, 25, 10}};
  for (int32_t nBayerType = 1; nBayerType <= 4; ++nBayerType) {
    const auto &anMeans = anRedGreenBlue[nBayerType - 1];
    ASSERT_EQ(m_generator.SetBlockParam({64, 64, 32, 32, nBayerType}), 0);
    ASSERT_EQ(CalcWithoutDark(), 0);
    EXPECT_EQ(GetElement(1, 1), (TWords{0, 65280 / anMeans[2], 65280 / anMeans[1], 65280 / anMeans[0]})) << nBayerType;
  }
}

TEST_F(CoefficientGenerator, AnUnknownBayerTypeHasNoSignal)
{
  for (const int32_t nBayerType : {INT32_MIN, -1, 5, INT32_MAX}) {
    ASSERT_EQ(m_generator.SetBlockParam({64, 64, 32, 32, nBayerType}), 0);
    ASSERT_EQ(CalcWithDark(), 0);
    EXPECT_EQ(GetElement(2, 2), (TWords{10, 65280, 65280, 65280})) << nBayerType;
  }
}

TEST_F(CoefficientGenerator, TheGridIsFramedByCopiesOfItsOuterElements)
{
  for (int32_t y = 0; y < 64; ++y) {
    for (int32_t x = 0; x < 64; ++x) {
      m_bright.Set(x, y, 1 + x / 32 + y / 32 * 2);
    }
  }
  ASSERT_EQ(m_generator.SetBlockParam(GRID), 0);
  ASSERT_EQ(CalcWithoutDark(), 0);
  const int32_t anMeans[4][4] = {{1, 1, 2, 2}, {1, 1, 2, 2}, {3, 3, 4, 4}, {3, 3, 4, 4}};
  for (int32_t nRow = 0; nRow < 4; ++nRow) {
    for (int32_t nColumn = 0; nColumn < 4; ++nColumn) {
      const int32_t nGain = 65280 / anMeans[nRow][nColumn];
      EXPECT_EQ(GetElement(nColumn, nRow), (TWords{0, nGain, nGain, nGain})) << nColumn << ", " << nRow;
    }
  }
}

TEST_F(CoefficientGenerator, ATableMayStandAtAnyAddress)
{
  m_listTable.resize(TABLE_SIZE + 1);
  ASSERT_EQ(m_generator.SetBlockParam(GRID), 0);
  ASSERT_EQ(m_generator.CalcWithDark(m_bright.GetData(), m_dark.GetData(), 8, Table() + 1, &m_nSize), 0);
  EXPECT_EQ(TBytes(m_listTable.begin() + 1, m_listTable.end()), ComputeCoefficientTableSlowly(m_bright, &m_dark, GRID));
}

TEST_F(CoefficientGenerator, TheLastGridThatWasAcceptedCounts)
{
  ASSERT_EQ(m_generator.SetBlockParam({64, 64, 8, 8, 1}), 0);
  ASSERT_EQ(m_generator.SetBlockParam(GRID), 0);
  ASSERT_EQ(CalcWithDark(), 0);
  EXPECT_EQ(ComputeCoefficientTableSlowly(m_bright, &m_dark, GRID), m_listTable);
}

TEST_F(CoefficientGenerator, ADarkFrameOfAnEarlierCalculationIsForgotten)
{
  ASSERT_EQ(m_generator.SetBlockParam(GRID), 0);
  ASSERT_EQ(CalcWithDark(), 0);
  ASSERT_EQ(CalcWithoutDark(), 0);
  EXPECT_EQ(ComputeCoefficientTableSlowly(m_bright, nullptr, GRID), m_listTable);
}

#include "ombrix/ombrix.h"

#include <utility>

#include <gtest/gtest.h>

#include "tests/ombrix/pixelbytes.h"

namespace {

constexpr uint32_t WIDTH = 6;
constexpr uint32_t HEIGHT = 4;
constexpr uint32_t PIXELS = WIDTH * HEIGHT;
constexpr uint32_t UNTOUCHED_SIZE = 0x5A5A5A5A;
constexpr uint32_t NO_LIMIT = UINT32_MAX;

// Arguments that work, for 12-bit frames with a dark one. Each test spoils some of them.
class OmbrixStatus : public testing::Test {
protected:
  const TBytes m_listFrame = PackValues(TValues(PIXELS, 1000), 2);
  const TBytes m_listUntouched = TBytes(PIXELS * 4, 0xA5);
  TBytes m_listTable = m_listUntouched;
  TBytes m_listDestination = m_listUntouched;
  OMBRIX_FFC_PARAM m_stParam = {m_listFrame.data(), m_listFrame.data(), WIDTH, HEIGHT, 12, 1};
  uint32_t m_nSize = PIXELS * 4;
  uint32_t m_nExpectGray = 3200;

  void ExpectQueryFails(int32_t nStatus)
  {
    uint32_t nSize = UNTOUCHED_SIZE;
    EXPECT_EQ(OmbrixComputeFlatField(m_stParam, nullptr, &nSize, nullptr), nStatus);
    EXPECT_EQ(nSize, 0U);
  }

  void ExpectComputeFails(int32_t nStatus)
  {
    const uint32_t nCapacity = m_nSize;
    EXPECT_EQ(OmbrixComputeFlatField(m_stParam, m_listTable.data(), &m_nSize, &m_nExpectGray), nStatus);
    EXPECT_EQ(m_nSize, nCapacity);
    EXPECT_EQ(m_listTable, m_listUntouched);
  }

  void ExpectApplyFails(uint32_t nBitDepth, uint32_t nWidth, uint32_t nHeight, int32_t nStatus)
  {
    EXPECT_EQ(OmbrixApplyFlatField(m_listFrame.data(), m_listDestination.data(), nBitDepth, nWidth, nHeight,
                                   m_listTable.data(), &m_nSize),
              nStatus);
    EXPECT_EQ(m_listDestination, m_listUntouched);
  }

  void ExpectSizeRefused(uint32_t nWidth, uint32_t nHeight)
  {
    m_stParam.nWidth = nWidth;
    m_stParam.nHeight = nHeight;
    ExpectQueryFails(OMBRIX_STATUS_OUT_OF_RANGE);
    ExpectComputeFails(OMBRIX_STATUS_OUT_OF_RANGE);
    ExpectApplyFails(12, nWidth, nHeight, OMBRIX_STATUS_OUT_OF_RANGE);
  }
};

} // namespace

TEST_F(OmbrixStatus, AQueryTellsTwoBytesPerPixelWithoutDarkAndFourWithIt)
{
  uint32_t nSize = 0;
  EXPECT_EQ(OmbrixComputeFlatField(m_stParam, nullptr, &nSize, nullptr), OMBRIX_STATUS_SUCCESS);
  EXPECT_EQ(nSize, PIXELS * 4);
  m_stParam.pDark = nullptr;
  EXPECT_EQ(OmbrixComputeFlatField(m_stParam, nullptr, &nSize, nullptr), OMBRIX_STATUS_SUCCESS);
  EXPECT_EQ(nSize, PIXELS * 2);
}

TEST_F(OmbrixStatus, AQueryTakesNoNoticeOfTheExpectedGrey)
{
  m_nExpectGray = NO_LIMIT;
  uint32_t nSize = 0;
  EXPECT_EQ(OmbrixComputeFlatField(m_stParam, nullptr, &nSize, &m_nExpectGray), OMBRIX_STATUS_SUCCESS);
  EXPECT_EQ(nSize, PIXELS * 4);
}

TEST_F(OmbrixStatus, AQueryAnswersForTheLargestTableThatThirtyTwoBitsCount)
{
  uint32_t nSize = 0;
  m_stParam.nHeight = 1;
  m_stParam.nWidth = 0x3FFFFFFF;
  EXPECT_EQ(OmbrixComputeFlatField(m_stParam, nullptr, &nSize, nullptr), OMBRIX_STATUS_SUCCESS);
  EXPECT_EQ(nSize, 0xFFFFFFFCU);
  for (const uint32_t nWidth : {0x40000000U, 0x40000001U, 0xFFFFFFFFU}) {
    m_stParam.nWidth = nWidth;
    ExpectQueryFails(OMBRIX_STATUS_OUT_OF_RANGE);
  }

  m_stParam.pDark = nullptr;
  m_stParam.nWidth = 0x7FFFFFFF;
  EXPECT_EQ(OmbrixComputeFlatField(m_stParam, nullptr, &nSize, nullptr), OMBRIX_STATUS_SUCCESS);
  EXPECT_EQ(nSize, 0xFFFFFFFEU);
  for (const uint32_t nWidth : {0x80000000U, 0x80000001U, 0xFFFFFFFFU}) {
    m_stParam.nWidth = nWidth;
    ExpectQueryFails(OMBRIX_STATUS_OUT_OF_RANGE);
  }
}

TEST_F(OmbrixStatus, AMissingBrightFrameIsRefused)
{
  m_stParam.pBright = nullptr;
  ExpectQueryFails(OMBRIX_STATUS_MISSING_POINTER);
  ExpectComputeFails(OMBRIX_STATUS_MISSING_POINTER);
}

TEST_F(OmbrixStatus, AMissingSizeIsRefused)
{
  EXPECT_EQ(OmbrixComputeFlatField(m_stParam, nullptr, nullptr, nullptr), OMBRIX_STATUS_MISSING_POINTER);
  EXPECT_EQ(OmbrixComputeFlatField(m_stParam, m_listTable.data(), nullptr, &m_nExpectGray),
            OMBRIX_STATUS_MISSING_POINTER);
  EXPECT_EQ(m_listTable, m_listUntouched);
}

TEST_F(OmbrixStatus, AMissingExpectedGreyIsRefused)
{
  EXPECT_EQ(OmbrixComputeFlatField(m_stParam, m_listTable.data(), &m_nSize, nullptr), OMBRIX_STATUS_MISSING_POINTER);
  EXPECT_EQ(m_listTable, m_listUntouched);
  EXPECT_EQ(m_nSize, PIXELS * 4);
}

TEST_F(OmbrixStatus, AnUnsupportedBitDepthIsRefused)
{
  for (const uint32_t nBitDepth : {0U, 1U, 7U, 17U, 32U, NO_LIMIT}) {
    m_stParam.nBitDepth = nBitDepth;
    ExpectQueryFails(OMBRIX_STATUS_NOT_SUPPORTED);
    ExpectComputeFails(OMBRIX_STATUS_NOT_SUPPORTED);
    ExpectApplyFails(nBitDepth, WIDTH, HEIGHT, OMBRIX_STATUS_NOT_SUPPORTED);
  }
}

TEST_F(OmbrixStatus, AnUnsupportedBayerTypeIsRefused)
{
  for (const uint32_t nBayerType : {5U, NO_LIMIT}) {
    m_stParam.nBayerType = nBayerType;
    ExpectQueryFails(OMBRIX_STATUS_NOT_SUPPORTED);
    ExpectComputeFails(OMBRIX_STATUS_NOT_SUPPORTED);
  }
}

TEST_F(OmbrixStatus, AnEmptyImageIsRefused)
{
  for (const auto &[nWidth, nHeight] : {std::pair{0U, HEIGHT}, std::pair{WIDTH, 0U}, std::pair{0U, 0U}}) {
    ExpectSizeRefused(nWidth, nHeight);
  }
}

TEST_F(OmbrixStatus, AnImageWhoseTableOverflowsThirtyTwoBitsIsRefused)
{
  // Each product wraps to something small in 32 or 64 bits.
  for (const auto &[nWidth, nHeight] :
       {std::pair{65536U, 65536U}, std::pair{65536U, 65537U}, std::pair{NO_LIMIT, NO_LIMIT}, std::pair{NO_LIMIT, 1U},
        std::pair{0x80000000U, 0x80000000U}}) {
    ExpectSizeRefused(nWidth, nHeight);
  }
}

TEST_F(OmbrixStatus, AnExpectedGreyAboveTheMaximumIsRefused)
{
  for (const uint32_t nExpectGray : {4096U, 65535U, NO_LIMIT}) {
    m_nExpectGray = nExpectGray;
    ExpectComputeFails(OMBRIX_STATUS_OUT_OF_RANGE);
  }
  m_nExpectGray = 4095;
  EXPECT_EQ(OmbrixComputeFlatField(m_stParam, m_listTable.data(), &m_nSize, &m_nExpectGray), OMBRIX_STATUS_SUCCESS);
}

TEST_F(OmbrixStatus, ABufferThatIsTooSmallForTheTableIsRefused)
{
  for (const uint32_t nCapacity : {0U, PIXELS * 2, PIXELS * 4 - 1}) {
    m_nSize = nCapacity;
    ExpectComputeFails(OMBRIX_STATUS_BUFFER_SIZE);
  }
}

TEST_F(OmbrixStatus, ABufferThatIsLargerThanTheTableKeepsItsRest)
{
  m_stParam.pDark = nullptr;
  EXPECT_EQ(OmbrixComputeFlatField(m_stParam, m_listTable.data(), &m_nSize, &m_nExpectGray), OMBRIX_STATUS_SUCCESS);
  EXPECT_EQ(m_nSize, PIXELS * 2);
  EXPECT_EQ(TBytes(m_listTable.begin() + PIXELS * 2, m_listTable.end()), TBytes(PIXELS * 2, 0xA5));
}

TEST_F(OmbrixStatus, ApplyRefusesEachMissingPointer)
{
  const void *const pSource = m_listFrame.data();
  void *const pDestination = m_listDestination.data();
  const void *const pTable = m_listTable.data();
  const auto apply = [](const void *pFrom, void *pTo, const void *pCoefficient, const uint32_t *pnSize) {
    return OmbrixApplyFlatField(pFrom, pTo, 12, WIDTH, HEIGHT, pCoefficient, pnSize);
  };
  EXPECT_EQ(apply(nullptr, pDestination, pTable, &m_nSize), OMBRIX_STATUS_MISSING_POINTER);
  EXPECT_EQ(apply(pSource, nullptr, pTable, &m_nSize), OMBRIX_STATUS_MISSING_POINTER);
  EXPECT_EQ(apply(pSource, pDestination, nullptr, &m_nSize), OMBRIX_STATUS_MISSING_POINTER);
  EXPECT_EQ(apply(pSource, pDestination, pTable, nullptr), OMBRIX_STATUS_MISSING_POINTER);
  EXPECT_EQ(m_listDestination, m_listUntouched);
}

TEST_F(OmbrixStatus, ApplyRefusesATableOfAnotherSize)
{
  for (const uint32_t nSize : {0U, PIXELS, PIXELS * 2 - 1, PIXELS * 2 + 1, PIXELS * 3, PIXELS * 4 + 1, NO_LIMIT}) {
    m_nSize = nSize;
    ExpectApplyFails(12, WIDTH, HEIGHT, OMBRIX_STATUS_BUFFER_SIZE);
  }
}

TEST_F(OmbrixStatus, ApplyDoesNotTakeASizeThatOnlyMatchesModuloThirtyTwoBits)
{
  m_nSize = 0; // 0x40000000 x 4 is 0 in 32 bits
  ExpectApplyFails(12, 0x40000000, 1, OMBRIX_STATUS_BUFFER_SIZE);
}

TEST_F(OmbrixStatus, MissingPointersWinThenUnsupportedValuesThenRangesThenTheBufferSize)
{
  m_nSize = 1;
  m_nExpectGray = 4096;
  ExpectComputeFails(OMBRIX_STATUS_OUT_OF_RANGE);
  m_stParam.nWidth = 0;
  m_stParam.nBayerType = 5;
  ExpectComputeFails(OMBRIX_STATUS_NOT_SUPPORTED);
  m_stParam.pBright = nullptr;
  ExpectComputeFails(OMBRIX_STATUS_MISSING_POINTER);

  ExpectApplyFails(12, 0, HEIGHT, OMBRIX_STATUS_OUT_OF_RANGE);
  ExpectApplyFails(7, 0, HEIGHT, OMBRIX_STATUS_NOT_SUPPORTED);
  EXPECT_EQ(OmbrixApplyFlatField(nullptr, nullptr, 7, 0, 0, nullptr, &m_nSize), OMBRIX_STATUS_MISSING_POINTER);
}

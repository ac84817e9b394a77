#include "ombrix/ombrix.h"

#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "tests/ombrix/pixelbytes.h"
#include "tests/ombrix/reference.h"

namespace {

// A table as its owner made it: gains, then dark levels unless there are none.
struct STable {
  TValues listGains;
  TValues listLevels;

  TBytes Pack(std::size_t nOffset = 0) const
  {
    TValues listWords = listGains;
    listWords.insert(listWords.end(), listLevels.begin(), listLevels.end());
    return PackValues(listWords, 2, nOffset);
  }
};

STable MakeRandomTable(std::size_t nPixels, uint32_t nMaxGain, bool bDark, uint32_t nSeed)
{
  return {MakeRandomValues(nPixels, nMaxGain, nSeed),
          bDark ? MakeRandomValues(nPixels, nSeed % 2 == 0 ? 65535 : 5000, nSeed + 1) : TValues()};
}

TValues Apply(const TValues &listSource, const STable &stTable, uint32_t nWidth, uint32_t nHeight, uint32_t nBitDepth)
{
  const std::size_t nBytes = GetBytesPerPixel(nBitDepth);
  const TBytes listSourceBytes = PackValues(listSource, nBytes);
  const TBytes listTable = stTable.Pack();
  const auto nSize = static_cast<uint32_t>(listTable.size());
  TBytes listDestination(listSourceBytes.size());
  EXPECT_EQ(OmbrixApplyFlatField(listSourceBytes.data(), listDestination.data(), nBitDepth, nWidth, nHeight,
                                 listTable.data(), &nSize),
            OMBRIX_STATUS_SUCCESS);
  return UnpackValues(listDestination, nBytes);
}

TValues ApplyReference(const TValues &listSource, const STable &stTable, uint32_t nBitDepth)
{
  TValues listResult;
  for (std::size_t i = 0; i < listSource.size(); ++i) {
    const uint32_t nLevel = stTable.listLevels.empty() ? 0 : stTable.listLevels[i];
    listResult.push_back(static_cast<uint32_t>(
      GetReferencePixel(listSource[i], nLevel, stTable.listGains[i], static_cast<int>(nBitDepth))));
  }
  return listResult;
}

class OmbrixApply : public testing::TestWithParam<std::tuple<uint32_t, bool>> {};

} // namespace

TEST_P(OmbrixApply, EveryStoredSourceValueEqualsTheReference)
{
  const auto [nBitDepth, bDark] = GetParam();
  const uint32_t nStored = GetMaxStoredValue(nBitDepth);
  TValues listSource(65536);
  for (uint32_t i = 0; i < listSource.size(); ++i) {
    listSource[i] = i % (nStored + 1);
  }
  uint32_t nSeed = nBitDepth;
  for (const uint32_t nMaxGain : {8192U, 20000U, 65535U, 65535U}) {
    const STable stTable = MakeRandomTable(listSource.size(), nMaxGain, bDark, ++nSeed);
    ASSERT_EQ(Apply(listSource, stTable, 256, 256, nBitDepth), ApplyReference(listSource, stTable, nBitDepth));
  }
}

TEST_P(OmbrixApply, EveryStoredSourceValueEqualsTheReferenceAtTheExtremeGains)
{
  const auto [nBitDepth, bDark] = GetParam();
  const uint32_t nStored = GetMaxStoredValue(nBitDepth);
  TValues listSource(nStored + 1);
  for (uint32_t i = 0; i < listSource.size(); ++i) {
    listSource[i] = i;
  }
  for (const uint32_t nGain : {0U, 1U, 2047U, 2048U, 4095U, 4096U, 4097U, 6144U, 65534U, 65535U}) {
    for (const uint32_t nLevel : {0U, 1U << (16 - nBitDepth), 0x1000U, 0xFFFFU}) {
      const STable stTable = {TValues(listSource.size(), nGain),
                              bDark ? TValues(listSource.size(), nLevel) : TValues()};
      ASSERT_EQ(Apply(listSource, stTable, nStored + 1, 1, nBitDepth), ApplyReference(listSource, stTable, nBitDepth))
        << "gain " << nGain << ", level " << nLevel;
    }
  }
}

TEST_P(OmbrixApply, EverySmallSizeEqualsTheReference)
{
  const auto [nBitDepth, bDark] = GetParam();
  for (uint32_t nWidth = 1; nWidth <= 63; ++nWidth) {
    for (const uint32_t nHeight : {1U, 2U, 3U, 63U}) {
      const TValues listSource = MakeRandomValues(nWidth * nHeight, GetMaxStoredValue(nBitDepth), nWidth);
      const STable stTable = MakeRandomTable(listSource.size(), 16384, bDark, nHeight);
      ASSERT_EQ(Apply(listSource, stTable, nWidth, nHeight, nBitDepth), ApplyReference(listSource, stTable, nBitDepth))
        << nWidth << " x " << nHeight;
    }
  }
}

TEST_P(OmbrixApply, InPlaceEqualsOutOfPlace)
{
  const auto [nBitDepth, bDark] = GetParam();
  const std::size_t nBytes = GetBytesPerPixel(nBitDepth);
  const TValues listSource = MakeRandomValues(61 * 47, GetMaxStoredValue(nBitDepth), 1);
  const STable stTable = MakeRandomTable(listSource.size(), 16384, bDark, 2);
  const TBytes listTable = stTable.Pack();
  const auto nSize = static_cast<uint32_t>(listTable.size());
  TBytes listFrame = PackValues(listSource, nBytes);
  ASSERT_EQ(OmbrixApplyFlatField(listFrame.data(), listFrame.data(), nBitDepth, 61, 47, listTable.data(), &nSize),
            OMBRIX_STATUS_SUCCESS);
  EXPECT_EQ(UnpackValues(listFrame, nBytes), Apply(listSource, stTable, 61, 47, nBitDepth));
}

TEST_P(OmbrixApply, UnalignedBuffersGiveTheSameFrameAndNothingIsWrittenAroundIt)
{
  const auto [nBitDepth, bDark] = GetParam();
  const std::size_t nBytes = GetBytesPerPixel(nBitDepth);
  const TValues listSource = MakeRandomValues(33 * 5, GetMaxStoredValue(nBitDepth), 3);
  const STable stTable = MakeRandomTable(listSource.size(), 16384, bDark, 4);
  const TBytes listOddSource = PackValues(listSource, nBytes, 1);
  const TBytes listOddTable = stTable.Pack(1);
  const auto nSize = static_cast<uint32_t>(listOddTable.size() - 1);
  TBytes listDestination(listOddSource.size() + 1, 0xA5);
  ASSERT_EQ(OmbrixApplyFlatField(listOddSource.data() + 1, listDestination.data() + 1, nBitDepth, 33, 5,
                                 listOddTable.data() + 1, &nSize),
            OMBRIX_STATUS_SUCCESS);
  EXPECT_EQ(listDestination.front(), 0xA5);
  EXPECT_EQ(listDestination.back(), 0xA5);
  listDestination.pop_back();
  EXPECT_EQ(UnpackValues(listDestination, nBytes, 1), Apply(listSource, stTable, 33, 5, nBitDepth));
}

INSTANTIATE_TEST_SUITE_P(AllDepths, OmbrixApply, testing::Combine(testing::Range(8U, 17U), testing::Bool()),
                         [](const auto &stInfo) {
                           return std::to_string(std::get<0>(stInfo.param)) + "Bit" +
                                  (std::get<1>(stInfo.param) ? "WithDark" : "WithoutDark");
                         });

TEST(OmbrixApplyExamples, AProductIsRoundedHalfUp)
{
  // Gains 1.5, 0.5 and 0.4998.
  EXPECT_EQ(Apply({1, 3, 1, 1}, {{6144, 6144, 2048, 2047}, {}}, 4, 1, 8), (TValues{2, 5, 1, 0}));
}

TEST(OmbrixApplyExamples, AProductAboveTheMaximumBecomesTheMaximum)
{
  EXPECT_EQ(Apply({255, 128, 254}, {{4096, 8192, 4096}, {}}, 3, 1, 8), (TValues{255, 255, 254}));
  EXPECT_EQ(Apply({4095, 2048}, {{65535, 8192}, {}}, 2, 1, 12), (TValues{4095, 4095}));
}

TEST(OmbrixApplyExamples, ASourceBelowTheDarkLevelBecomesZero)
{
  EXPECT_EQ(Apply({9, 10, 11}, {{4096, 4096, 4096}, {2560, 2560, 2560}}, 3, 1, 8), (TValues{0, 0, 1}));
}

TEST(OmbrixApplyExamples, ASourceAboveTheNominalDepthCountsAsTheMaximum)
{
  EXPECT_EQ(Apply({4096, 65535}, {{2048, 2048}, {}}, 2, 1, 12), (TValues{2048, 2048}));
}

TEST(OmbrixApplyExamples, ABrightFrameCorrectedWithItsOwnTableIsFlat)
{
  const TValues listDark = MakeRandomValues(64 * 48, 60, 8);
  TValues listBright = MakeRandomValues(64 * 48, 2000, 9);
  for (std::size_t i = 0; i < listBright.size(); ++i) {
    listBright[i] += 1500 + listDark[i];
  }
  const TBytes listBrightBytes = PackValues(listBright, 2);
  const TBytes listDarkBytes = PackValues(listDark, 2);
  const OMBRIX_FFC_PARAM stParam = {listBrightBytes.data(), listDarkBytes.data(), 64, 48, 12, 1};
  const uint32_t nTarget = 2400;
  uint32_t nSize = 64 * 48 * 4;
  TBytes listTable(nSize);
  ASSERT_EQ(OmbrixComputeFlatField(stParam, listTable.data(), &nSize, &nTarget), OMBRIX_STATUS_SUCCESS);
  TBytes listFrame = listBrightBytes;
  ASSERT_EQ(OmbrixApplyFlatField(listFrame.data(), listFrame.data(), 12, 64, 48, listTable.data(), &nSize),
            OMBRIX_STATUS_SUCCESS);
  EXPECT_EQ(UnpackValues(listFrame, 2), TValues(listBright.size(), nTarget));
}

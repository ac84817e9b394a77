#include "ombrix/ombrix.h"

#include <algorithm>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "tests/ombrix/pixelbytes.h"
#include "tests/ombrix/reference.h"

namespace {

// The words of the table, gains first.
TValues ComputeWords(const TBytes &listBright, const TBytes *pDark, uint32_t nWidth, uint32_t nHeight,
                     uint32_t nBitDepth, uint32_t nTarget)
{
  const OMBRIX_FFC_PARAM stParam = {
    listBright.data(), pDark != nullptr ? pDark->data() : nullptr, nWidth, nHeight, nBitDepth, 0};
  uint32_t nSize = 0;
  EXPECT_EQ(OmbrixComputeFlatField(stParam, nullptr, &nSize, nullptr), OMBRIX_STATUS_SUCCESS);
  TBytes listTable(nSize);
  EXPECT_EQ(OmbrixComputeFlatField(stParam, listTable.data(), &nSize, &nTarget), OMBRIX_STATUS_SUCCESS);
  EXPECT_EQ(nSize, listTable.size());
  return UnpackValues(listTable, 2);
}

TValues GetReferenceWords(const TValues &listBright, const TValues *pDark, uint32_t nBitDepth, uint32_t nTarget)
{
  const uint32_t nMax = (1U << nBitDepth) - 1;
  TValues listGains;
  TValues listLevels;
  for (std::size_t i = 0; i < listBright.size(); ++i) {
    const uint32_t nDark = pDark != nullptr ? (*pDark)[i] : 0;
    listGains.push_back(
      static_cast<uint32_t>(GetReferenceGain(listBright[i], nDark, nTarget, static_cast<int>(nBitDepth))));
    listLevels.push_back(std::min(nDark, nMax) * (65536U / (nMax + 1)));
  }
  if (pDark != nullptr) {
    listGains.insert(listGains.end(), listLevels.begin(), listLevels.end());
  }
  return listGains;
}

class OmbrixCompute : public testing::TestWithParam<std::tuple<uint32_t, bool>> {
protected:
  void ExpectReference(const TValues &listBright, const TValues &listDark, uint32_t nWidth, uint32_t nHeight,
                       uint32_t nTarget) const
  {
    const auto [nBitDepth, bDark] = GetParam();
    const std::size_t nBytes = GetBytesPerPixel(nBitDepth);
    const TBytes listBrightBytes = PackValues(listBright, nBytes);
    const TBytes listDarkBytes = PackValues(listDark, nBytes);
    const TValues listWords =
      ComputeWords(listBrightBytes, bDark ? &listDarkBytes : nullptr, nWidth, nHeight, nBitDepth, nTarget);
    ASSERT_EQ(listWords, GetReferenceWords(listBright, bDark ? &listDark : nullptr, nBitDepth, nTarget))
      << nWidth << " x " << nHeight << ", target " << nTarget;
  }
};

} // namespace

TEST_P(OmbrixCompute, EveryWordEqualsTheReferenceForEveryBrightValue)
{
  const uint32_t nBitDepth = std::get<0>(GetParam());
  const uint32_t nStored = GetMaxStoredValue(nBitDepth);
  const uint32_t nMax = (1U << nBitDepth) - 1;
  TValues listBright(65536);
  for (uint32_t i = 0; i < listBright.size(); ++i) {
    listBright[i] = i % (nStored + 1);
  }
  // Darks of every size: without light, of a real sensor, and as large as the pixel holds.
  uint32_t nSeed = nBitDepth;
  for (const uint32_t nLargestDark : {0U, nMax / 16, nStored}) {
    const TValues listDark = MakeRandomValues(listBright.size(), nLargestDark, ++nSeed);
    for (const uint32_t nTarget : {0U, 1U, nMax / 2, nMax - 1, nMax}) {
      ExpectReference(listBright, listDark, 256, 256, nTarget);
    }
  }
}

TEST_P(OmbrixCompute, EverySmallSizeEqualsTheReference)
{
  const uint32_t nBitDepth = std::get<0>(GetParam());
  const uint32_t nStored = GetMaxStoredValue(nBitDepth);
  for (uint32_t nWidth = 1; nWidth <= 63; ++nWidth) {
    for (const uint32_t nHeight : {1U, 2U, 3U, 63U}) {
      ExpectReference(MakeRandomValues(nWidth * nHeight, nStored, nWidth),
                      MakeRandomValues(nWidth * nHeight, nStored, nHeight), nWidth, nHeight, 200);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(AllDepths, OmbrixCompute, testing::Combine(testing::Range(8U, 17U), testing::Bool()),
                         [](const auto &stInfo) {
                           return std::to_string(std::get<0>(stInfo.param)) + "Bit" +
                                  (std::get<1>(stInfo.param) ? "WithDark" : "WithoutDark");
                         });

TEST(OmbrixComputeExamples, AllPairsOfEightBitValuesEqualTheReference)
{
  TValues listBright;
  TValues listDark;
  for (uint32_t i = 0; i < 65536; ++i) {
    listBright.push_back(i / 256);
    listDark.push_back(i % 256);
  }
  const TBytes listDarkBytes = PackValues(listDark, 1);
  for (const uint32_t nTarget : {1U, 100U, 200U, 255U}) {
    ASSERT_EQ(ComputeWords(PackValues(listBright, 1), &listDarkBytes, 256, 256, 8, nTarget),
              GetReferenceWords(listBright, &listDark, 8, nTarget));
  }
}

TEST(OmbrixComputeExamples, GainsAndLevelsHaveTheirDocumentedPlacesAndUnits)
{
  const TBytes listBright = PackValues({150, 250, 100}, 1);
  const TBytes listDark = PackValues({50, 50, 1}, 1);
  // 100/100, 100/200, and 409600 / 99 = 4137.37; levels in the high byte.
  EXPECT_EQ(ComputeWords(listBright, &listDark, 3, 1, 8, 100), (TValues{4096, 2048, 4137, 12800, 12800, 256}));
}

TEST(OmbrixComputeExamples, AGainIsRoundedHalfUp)
{
  // 1 x 4096 / 8192 is a half, 3 x 4096 / 8192 one and a half, 1 x 4096 / 8193 less than a half.
  EXPECT_EQ(ComputeWords(PackValues({8192}, 2), nullptr, 1, 1, 16, 1), TValues{1});
  EXPECT_EQ(ComputeWords(PackValues({8192}, 2), nullptr, 1, 1, 16, 3), TValues{2});
  EXPECT_EQ(ComputeWords(PackValues({8193}, 2), nullptr, 1, 1, 16, 1), TValues{0});
}

TEST(OmbrixComputeExamples, APixelWithoutSignalGetsTheGainLimit)
{
  const TBytes listBright = PackValues({0, 40, 39, 41}, 1);
  const TBytes listDark = PackValues({0, 40, 40, 40}, 1);
  const TValues listWords = ComputeWords(listBright, &listDark, 4, 1, 8, 200);
  EXPECT_EQ(TValues(listWords.begin(), listWords.begin() + 4), (TValues{65535, 65535, 65535, 65535}));
  EXPECT_EQ(ComputeWords(PackValues({0}, 1), nullptr, 1, 1, 8, 0), TValues{65535}) << "even for the target 0";
}

TEST(OmbrixComputeExamples, TheTableDoesNotDependOnTheBayerType)
{
  const TBytes listBright = PackValues(MakeRandomValues(64, 4095, 5), 2);
  TBytes listMono(128);
  for (uint32_t nBayerType = 0; nBayerType <= 4; ++nBayerType) {
    const OMBRIX_FFC_PARAM stParam = {listBright.data(), nullptr, 8, 8, 12, nBayerType};
    const uint32_t nTarget = 2000;
    uint32_t nSize = 128;
    TBytes listTable(nSize);
    ASSERT_EQ(OmbrixComputeFlatField(stParam, listTable.data(), &nSize, &nTarget), OMBRIX_STATUS_SUCCESS);
    listMono = nBayerType == 0 ? listTable : listMono;
    EXPECT_EQ(listTable, listMono);
  }
}

TEST(OmbrixComputeExamples, UnalignedBuffersGiveTheSameTable)
{
  const TValues listBright = MakeRandomValues(35, 4095, 6);
  const TValues listDark = MakeRandomValues(35, 100, 7);
  const TBytes listAlignedDark = PackValues(listDark, 2);
  const TValues listExpected = ComputeWords(PackValues(listBright, 2), &listAlignedDark, 7, 5, 12, 3000);

  const TBytes listOddBright = PackValues(listBright, 2, 1);
  const TBytes listOddDark = PackValues(listDark, 2, 1);
  const OMBRIX_FFC_PARAM stParam = {listOddBright.data() + 1, listOddDark.data() + 1, 7, 5, 12, 0};
  const uint32_t nTarget = 3000;
  uint32_t nSize = 35 * 4;
  TBytes listTable(nSize + 1);
  ASSERT_EQ(OmbrixComputeFlatField(stParam, listTable.data() + 1, &nSize, &nTarget), OMBRIX_STATUS_SUCCESS);
  EXPECT_EQ(UnpackValues(listTable, 2, 1), listExpected);
}

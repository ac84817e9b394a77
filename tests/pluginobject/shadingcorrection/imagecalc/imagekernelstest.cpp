// Every level's kernels against slow twins, over small sizes and starts of every alignment.
#include "pluginobject/shadingcorrection/imagecalc/kernels/imagekernels.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "tests/pluginobject/shadingcorrection/imagecalc/slowtwin.h"
#include "tests/support/kernellevels.h"

using namespace ffc::imagecalc;
using namespace ffc::test;
using ffc::platform::EInstructionLevel;
using ffc::platform::GetInstructionLevel;
using ffc::platform::INSTRUCTION_LEVEL_BASELINE;

namespace {

using TBytes = std::vector<unsigned char>;
using TWords = std::vector<uint32_t>;

constexpr int32_t LONGEST = 67;
constexpr std::size_t OFFSETS[] = {0, 1, 3, 7};
constexpr unsigned char UNTOUCHED = 0xA5;

class ImageKernels : public testing::TestWithParam<EInstructionLevel> {
protected:
  const SImageKernels &Kernels() const { return *FindSImageKernels(GetParam()); }
};

TBytes PackAt(std::size_t nOffset, const void *pData, std::size_t nBytes)
{
  TBytes listBytes(nOffset + nBytes, UNTOUCHED);
  std::memcpy(listBytes.data() + nOffset, pData, nBytes);
  return listBytes;
}

std::size_t CountBytes(const CTestImage &image)
{
  return static_cast<std::size_t>(image.GetPixelCount()) * (image.GetBitDepth() == 8 ? 1 : 2);
}

TBytes PackAt(std::size_t nOffset, const CTestImage &image)
{
  return PackAt(nOffset, image.GetData(), CountBytes(image));
}

// The words from an offset on.
TWords ReadWords(const TBytes &listBytes, std::size_t nOffset)
{
  TWords listWords((listBytes.size() - nOffset) / sizeof(uint32_t));
  std::memcpy(listWords.data(), listBytes.data() + nOffset, listWords.size() * sizeof(uint32_t));
  return listWords;
}

// An image of one row from an offset on.
CTestImage ReadRow(const TBytes &listBytes, std::size_t nOffset, int32_t nBitDepth)
{
  CTestImage row(static_cast<int32_t>(listBytes.size() - nOffset) / (nBitDepth == 8 ? 1 : 2), 1, nBitDepth);
  std::memcpy(row.GetData(), listBytes.data() + nOffset, listBytes.size() - nOffset);
  return row;
}

uint32_t MakeWord(CTestRandom &random)
{
  return static_cast<uint32_t>(random.Between(0, 0xFFFF)) << 16 | static_cast<uint32_t>(random.Between(0, 0xFFFF));
}

// Sums as they are after some frames, and at the ends of their range.
TWords MakeSums(int32_t nCount, CTestRandom &random)
{
  TWords listSums;
  for (int32_t i = 0; i < nCount; ++i) {
    const uint32_t nWord = MakeWord(random);
    listSums.push_back(i % 4 == 0   ? nWord
                       : i % 4 == 1 ? nWord >> 12
                       : i % 4 == 2 ? UINT32_MAX - static_cast<uint32_t>(i)
                                    : nWord >> 20);
  }
  return listSums;
}

template <class TExpected>
CTestImage MakeQuotients(const TWords &listSums, int32_t nBitDepth, TExpected fnExpected)
{
  CTestImage expected(static_cast<int32_t>(listSums.size()), 1, nBitDepth);
  for (std::size_t i = 0; i < listSums.size(); ++i) {
    expected.SetAt(static_cast<int32_t>(i), static_cast<int32_t>(fnExpected(listSums[i]) & 0xFFFF));
  }
  return expected;
}

// An image of three or four rows, smoothed but for its border.
CTestImage SmoothInner(const SImageKernels &stKernels, const CTestImage &image, std::size_t nOffset)
{
  const TBytes listImage = PackAt(nOffset, image);
  TBytes listResult = listImage;
  const std::size_t nPixelBytes = image.GetBitDepth() == 8 ? 1 : 2;
  const std::size_t nRowBytes = static_cast<std::size_t>(image.GetWidth()) * nPixelBytes;
  stKernels.afnSmooth[nPixelBytes > 1]({listImage.data() + nOffset, nRowBytes,
                                        static_cast<std::size_t>(image.GetWidth() - 2), image.GetHeight() == 4,
                                        listResult.data() + nOffset + nRowBytes + nPixelBytes});
  CTestImage result = image;
  std::memcpy(result.GetData(), listResult.data() + nOffset, CountBytes(image));
  return result;
}

// Multiplier and shift in 64 bits: the smallest power of two not below the divisor, times 2^32.
SReciprocal MakeReciprocal(uint64_t nDivisor)
{
  uint32_t nLog = 0;
  while ((uint64_t{1} << nLog) < nDivisor) {
    ++nLog;
  }
  return {static_cast<uint32_t>((((uint64_t{1} << nLog) - nDivisor) << 32) / nDivisor + 1), nLog - 1};
}

} // namespace

TEST_P(ImageKernels, AreCompiledForTheirLevel)
{
#ifdef _MSC_VER
  GTEST_SKIP() << "this compiler does not tell its level below AVX2";
#endif
  EXPECT_EQ(Kernels().eLevel, GetParam());
}

TEST_P(ImageKernels, AddEqualsTheSlowTwinForEverySizeAndStart)
{
  CTestRandom random(31);
  for (const int32_t nBitDepth : {8, 16}) {
    for (int32_t nPixels = 1; nPixels <= LONGEST; ++nPixels) {
      for (const std::size_t nOffset : OFFSETS) {
        const CTestImage frame = CTestImage::MakeRandom(nPixels, 1, nBitDepth, random);
        TWords listSums = MakeSums(nPixels, random);
        const TBytes listFrame = PackAt(nOffset, frame);
        TBytes listResult = PackAt(nOffset, listSums.data(), listSums.size() * sizeof(uint32_t));
        Kernels().afnAdd[nBitDepth > 8](listFrame.data() + nOffset, listSums.size(), listResult.data() + nOffset);
        for (std::size_t i = 0; i < listSums.size(); ++i) {
          listSums[i] += static_cast<uint32_t>(frame.GetAt(static_cast<int32_t>(i)));
        }
        ASSERT_EQ(ReadWords(listResult, nOffset), listSums) << nBitDepth << " bit, offset " << nOffset;
      }
    }
  }
}

TEST_P(ImageKernels, ShiftEqualsTheSlowTwinForEverySizeAndStart)
{
  CTestRandom random(32);
  for (const int32_t nBitDepth : {8, 16}) {
    for (int32_t nPixels = 1; nPixels <= LONGEST; ++nPixels) {
      for (const std::size_t nOffset : OFFSETS) {
        const TWords listSums = MakeSums(nPixels, random);
        const auto nShift = static_cast<uint32_t>(nPixels % 32);
        const CTestImage expected = MakeQuotients(listSums, nBitDepth, [&](uint32_t nSum) { return nSum >> nShift; });
        const TBytes listFrom = PackAt(nOffset, listSums.data(), listSums.size() * sizeof(uint32_t));
        TBytes listResult(nOffset + CountBytes(expected), UNTOUCHED);
        Kernels().afnShift[nBitDepth > 8](listFrom.data() + nOffset, listSums.size(), nShift,
                                          listResult.data() + nOffset);
        ASSERT_EQ(ReadRow(listResult, nOffset, nBitDepth), expected) << nBitDepth << " bit, offset " << nOffset;
      }
    }
  }
}

TEST_P(ImageKernels, DivideEqualsTheDivisionForEverySizeAndStart)
{
  CTestRandom random(33);
  for (const int32_t nBitDepth : {8, 16}) {
    for (int32_t nPixels = 1; nPixels <= LONGEST; ++nPixels) {
      for (const uint32_t nDivisor :
           {2U, 3U, 5U, 7U, 11U, 641U, 32767U, 65537U, 0x7FFFFFFFU, 0x80000001U, UINT32_MAX}) {
        const std::size_t nOffset = OFFSETS[nDivisor % 4];
        const TWords listSums = MakeSums(nPixels, random);
        const CTestImage expected = MakeQuotients(listSums, nBitDepth, [&](uint32_t nSum) { return nSum / nDivisor; });
        const TBytes listFrom = PackAt(nOffset, listSums.data(), listSums.size() * sizeof(uint32_t));
        TBytes listResult(nOffset + CountBytes(expected), UNTOUCHED);
        Kernels().afnDivide[nBitDepth > 8](listFrom.data() + nOffset, listSums.size(), MakeReciprocal(nDivisor),
                                           listResult.data() + nOffset);
        ASSERT_EQ(ReadRow(listResult, nOffset, nBitDepth), expected) << nBitDepth << " bit, by " << nDivisor;
      }
    }
  }
}

TEST_P(ImageKernels, MultiplyEqualsTheDivisionForEverySizeAndStart)
{
  struct SDivisor {
    uint32_t nDivisor;
    SReciprocal stReciprocal;
  };
  constexpr SDivisor DIVISORS[] = {{3, {0xAAAAAAAB, 1}}, {10, {0xCCCCCCCD, 3}}, {641, {0x00663D81, 0}}};
  CTestRandom random(37);
  for (const int32_t nBitDepth : {8, 16}) {
    for (int32_t nPixels = 1; nPixels <= LONGEST; ++nPixels) {
      const SDivisor &stDivisor = DIVISORS[nPixels % 3];
      const std::size_t nOffset = OFFSETS[nPixels % 4];
      const TWords listSums = MakeSums(nPixels, random);
      const CTestImage expected =
        MakeQuotients(listSums, nBitDepth, [&](uint32_t nSum) { return nSum / stDivisor.nDivisor; });
      const TBytes listFrom = PackAt(nOffset, listSums.data(), listSums.size() * sizeof(uint32_t));
      TBytes listResult(nOffset + CountBytes(expected), UNTOUCHED);
      Kernels().afnMultiply[nBitDepth > 8](listFrom.data() + nOffset, listSums.size(), stDivisor.stReciprocal,
                                           listResult.data() + nOffset);
      ASSERT_EQ(ReadRow(listResult, nOffset, nBitDepth), expected) << nBitDepth << " bit, by " << stDivisor.nDivisor;
    }
  }
}

TEST_P(ImageKernels, AddingInSixteenBitsEqualsTheSlowTwinForEverySizeAndStartAndIsTakenBack)
{
  CTestRandom random(38);
  for (const int32_t nBitDepth : {8, 16}) {
    const bool bWords = nBitDepth > 8;
    for (int32_t nPixels = 1; nPixels <= LONGEST; ++nPixels) {
      for (const std::size_t nOffset : OFFSETS) {
        const CTestImage frame = CTestImage::MakeRandom(nPixels, 1, nBitDepth, random);
        const CTestImage before = CTestImage::MakeRandom(nPixels, 1, 16, random);
        CTestImage expected = before;
        int32_t nBits = 0;
        for (int32_t i = 0; i < nPixels; ++i) {
          nBits |= frame.GetAt(i);
          expected.SetAt(i, (before.GetAt(i) + frame.GetAt(i)) & 0xFFFF);
        }
        const TBytes listFrame = PackAt(nOffset, frame);
        TBytes listSums = PackAt(nOffset, before);
        const auto nCount = static_cast<std::size_t>(nPixels);
        ASSERT_EQ(Kernels().afnAddNarrow[bWords](listFrame.data() + nOffset, nCount, listSums.data() + nOffset),
                  static_cast<uint32_t>(nBits));
        ASSERT_EQ(ReadRow(listSums, nOffset, 16), expected) << nBitDepth << " bit, offset " << nOffset;
        Kernels().afnTakeNarrow[bWords](listFrame.data() + nOffset, nCount, listSums.data() + nOffset);
        ASSERT_EQ(ReadRow(listSums, nOffset, 16), before) << nBitDepth << " bit, offset " << nOffset;
      }
    }
  }
}

TEST_P(ImageKernels, OneBitOfOnePixelIsToldWhereverItIs)
{
  for (const int32_t nBitDepth : {8, 16}) {
    for (int32_t nPlace = 0; nPlace < LONGEST; ++nPlace) {
      CTestImage frame(LONGEST, 1, nBitDepth, 0);
      frame.SetAt(nPlace, 1 << nPlace % nBitDepth);
      CTestImage sums(LONGEST, 1, 16, 0);
      ASSERT_EQ(Kernels().afnAddNarrow[nBitDepth > 8](frame.GetData(), LONGEST, sums.GetData()),
                1U << nPlace % nBitDepth);
    }
  }
}

TEST_P(ImageKernels, ShiftingSixteenBitsEqualsTheSlowTwinForEverySizeAndStart)
{
  CTestRandom random(39);
  for (const int32_t nBitDepth : {8, 16}) {
    for (int32_t nPixels = 1; nPixels <= LONGEST; ++nPixels) {
      for (const std::size_t nOffset : OFFSETS) {
        const CTestImage sums = CTestImage::MakeRandom(nPixels, 1, 16, random);
        const auto nShift = static_cast<uint32_t>(nPixels % 32);
        CTestImage expected(nPixels, 1, nBitDepth, 0);
        for (int32_t i = 0; i < nPixels; ++i) {
          expected.SetAt(i, sums.GetAt(i) >> nShift);
        }
        const TBytes listFrom = PackAt(nOffset, sums);
        TBytes listResult(nOffset + CountBytes(expected), UNTOUCHED);
        Kernels().afnShiftNarrow[nBitDepth > 8](listFrom.data() + nOffset, static_cast<std::size_t>(nPixels), nShift,
                                                listResult.data() + nOffset);
        ASSERT_EQ(ReadRow(listResult, nOffset, nBitDepth), expected) << nBitDepth << " bit, offset " << nOffset;
      }
    }
  }
}

TEST_P(ImageKernels, WideningEqualsTheSlowTwinForEverySizeAndStart)
{
  CTestRandom random(40);
  for (int32_t nPixels = 1; nPixels <= LONGEST; ++nPixels) {
    for (const std::size_t nOffset : OFFSETS) {
      const CTestImage sums = CTestImage::MakeRandom(nPixels, 1, 16, random);
      TWords listExpected;
      for (int32_t i = 0; i < nPixels; ++i) {
        listExpected.push_back(static_cast<uint32_t>(sums.GetAt(i)));
      }
      const TBytes listFrom = PackAt(nOffset, sums);
      TBytes listResult(nOffset + listExpected.size() * sizeof(uint32_t), UNTOUCHED);
      Kernels().fnWiden(listFrom.data() + nOffset, listExpected.size(), listResult.data() + nOffset);
      ASSERT_EQ(ReadWords(listResult, nOffset), listExpected) << nPixels << ", offset " << nOffset;
    }
  }
}

TEST_P(ImageKernels, BlockSumsEqualTheSlowTwinForEverySizeAndStart)
{
  CTestRandom random(34);
  for (const int32_t nBitDepth : {8, 16}) {
    for (int32_t nColumns = 1; nColumns <= LONGEST; ++nColumns) {
      const int32_t nRows = 1 + nColumns % 9;
      const int32_t nBlockWidth = random.Between(1, nColumns);
      const std::size_t nOffset = OFFSETS[nColumns % 4];
      const CTestImage image = CTestImage::MakeRandom(nColumns + 3, nRows, nBitDepth, random);
      std::vector<double> listExpected(static_cast<std::size_t>((nColumns - 1) / nBlockWidth + 1), 0.5);
      std::vector<double> listSums = listExpected;
      for (int32_t y = 0; y < nRows; ++y) {
        for (int32_t x = 0; x < nColumns; ++x) {
          listExpected[static_cast<std::size_t>(x / nBlockWidth)] += image.Get(x, y);
        }
      }
      const TBytes listImage = PackAt(nOffset, image);
      Kernels().afnSumBlocks[nBitDepth > 8]({listImage.data() + nOffset, static_cast<std::size_t>(nColumns + 3),
                                             static_cast<std::size_t>(nRows), static_cast<std::size_t>(nColumns),
                                             static_cast<std::size_t>(nBlockWidth)},
                                            listSums.data());
      ASSERT_EQ(listSums, listExpected) << nColumns << " x " << nRows << " by " << nBlockWidth;
    }
  }
}

TEST_P(ImageKernels, CellSumsEqualTheSlowTwinForEverySizeAndStart)
{
  CTestRandom random(35);
  const uint8_t anTarget[4] = {2, 1, 1, 0};
  for (const int32_t nBitDepth : {8, 16}) {
    for (int32_t nColumns = 2; nColumns <= LONGEST; nColumns += 2) {
      const int32_t nRows = 1 + nColumns % 11;
      const int32_t nBlockWidth = 2 * random.Between(1, nColumns / 2);
      const std::size_t nOffset = OFFSETS[nColumns / 2 % 4];
      const CTestImage image = CTestImage::MakeRandom(nColumns + 5, nRows, nBitDepth, random);
      std::vector<double> listExpected(static_cast<std::size_t>((nColumns - 1) / nBlockWidth + 1) * 3);
      std::vector<double> listSums = listExpected;
      for (int32_t y = 0; y < nRows / 2 * 2; ++y) {
        for (int32_t x = 0; x < nColumns; ++x) {
          listExpected[static_cast<std::size_t>(x / nBlockWidth * 3 + anTarget[y % 2 * 2 + x % 2])] += image.Get(x, y);
        }
      }
      const TBytes listImage = PackAt(nOffset, image);
      Kernels().afnSumCells[nBitDepth > 8]({listImage.data() + nOffset, static_cast<std::size_t>(nColumns + 5),
                                            static_cast<std::size_t>(nRows), static_cast<std::size_t>(nColumns),
                                            static_cast<std::size_t>(nBlockWidth)},
                                           anTarget, listSums.data());
      ASSERT_EQ(listSums, listExpected) << nColumns << " x " << nRows << " by " << nBlockWidth;
    }
  }
}

TEST_P(ImageKernels, SumsOfWhiteImagesOfManyTilesDoNotOverflow)
{
  for (const int32_t nBitDepth : {8, 16}) {
    const CTestImage image(4998, 1030, nBitDepth, (1 << nBitDepth) - 1);
    const SBlockRow stRow = {image.GetData(), 4998, 1030, 4998, 2500};
    double adSums[2] = {};
    Kernels().afnSumBlocks[nBitDepth > 8](stRow, adSums);
    const double dWhite = (1 << nBitDepth) - 1;
    EXPECT_EQ(adSums[0], dWhite * 2500 * 1030);
    EXPECT_EQ(adSums[1], dWhite * 2498 * 1030);
    double adCells[6] = {};
    Kernels().afnSumCells[nBitDepth > 8](stRow, {0, 1, 1, 2}, adCells);
    EXPECT_EQ(adCells[0], dWhite * 1250 * 515);
    EXPECT_EQ(adCells[1], dWhite * 2500 * 515);
    EXPECT_EQ(adCells[5], dWhite * 1249 * 515);
  }
}

TEST_P(ImageKernels, SmoothEqualsTheSlowTwinForEverySizeAndStart)
{
  CTestRandom random(36);
  // 12 and 13 bits lie on both sides of what 16 bits hold.
  for (const int32_t nBitDepth : {8, 12, 13, 16}) {
    for (int32_t nPixels = 1; nPixels <= LONGEST; ++nPixels) {
      for (const std::size_t nOffset : OFFSETS) {
        for (const bool bTwoRows : {false, true}) {
          const CTestImage image = CTestImage::MakeRandom(nPixels + 2, bTwoRows ? 4 : 3, nBitDepth, random);
          ASSERT_EQ(SmoothInner(Kernels(), image, nOffset), SmoothSlowly(image, false))
            << nBitDepth << " bit, " << nPixels << " pixels, offset " << nOffset;
        }
      }
    }
  }
}

TEST_P(ImageKernels, OneWordAboveTwelveBitsAmongManyIsSmoothedExactly)
{
  for (const int32_t nRows : {3, 4}) {
    for (const int32_t nPlace : {0, 1, 511, 512, 513, 514, 2999, 4101}) {
      CTestImage image(4102, nRows, 16, 4095);
      image.Set(nPlace, nPlace % nRows, 65535);
      ASSERT_EQ(SmoothInner(Kernels(), image, 0), SmoothSlowly(image, false)) << nPlace;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(AllLevels, ImageKernels, testing::ValuesIn(GetTestableLevels(FindSImageKernels)),
                         GetLevelTestName);

TEST(ImageKernelChoice, IsTheBuiltLevelThatTheEnvironmentAndTheProcessorAllow)
{
  EInstructionLevel eExpected = INSTRUCTION_LEVEL_BASELINE;
  for (const EInstructionLevel eLevel : GetTestableLevels(FindSImageKernels)) {
    eExpected = eLevel <= GetInstructionLevel() ? eLevel : eExpected;
  }
  EXPECT_EQ(&GetImageKernels(), FindSImageKernels(eExpected));
}

// Every level's kernels against the slow twin, at starts of every alignment.
#include "ombrix/kernels/flatfieldkernels.h"

#include <algorithm>
#include <numeric>

#include <gtest/gtest.h>

#include "tests/ombrix/pixelbytes.h"
#include "tests/ombrix/reference.h"
#include "tests/support/kernellevels.h"

using namespace ffc::ombrix;
using namespace ffc::test;
using ffc::platform::EInstructionLevel;

namespace {

// Sizes around one and several of the steps that the loops take, beside all small ones.
constexpr std::size_t LONGEST = 67;
constexpr std::size_t STEPPED_SIZES[] = {255, 256, 257, 511, 512, 513, 1024, 1099};
constexpr unsigned char UNTOUCHED = 0xA5;
constexpr std::size_t GUARD = 8; // bytes behind what a kernel may write

class FlatFieldKernels : public testing::TestWithParam<EInstructionLevel> {
protected:
  const SFlatFieldKernels &Kernels() const { return *FindSFlatFieldKernels(GetParam()); }

  // The gains of all signals of a depth, in one call.
  void ExpectQuotients(uint32_t nBitDepth, uint32_t nTarget) const
  {
    const std::size_t nSignals = std::size_t{1} << nBitDepth;
    const std::size_t nBytes = GetBytesPerPixel(nBitDepth);
    m_listGains.resize(nSignals);
    Kernels().afnCompute[nBitDepth - FLATFIELD_MIN_BIT_DEPTH][0](
      {GetAllSignals(nBytes).data(), nullptr, nSignals, nTarget, m_listGains.data(), nullptr});
    ASSERT_EQ(m_listGains[0], 65535) << nBitDepth << " bit, target " << nTarget;
    for (uint32_t nSignal = 1; nSignal < nSignals; ++nSignal) {
      if (m_listGains[nSignal] != std::min(65535U, (nTarget * 4096 + nSignal / 2) / nSignal)) {
        FAIL() << nBitDepth << " bit, target " << nTarget << ", signal " << nSignal << ": " << m_listGains[nSignal];
      }
    }
  }

private:
  static const TBytes &GetAllSignals(std::size_t nBytes)
  {
    static const TBytes s_aSignals[] = {MakeSignals(1), MakeSignals(2)};
    return s_aSignals[nBytes - 1];
  }
  static TBytes MakeSignals(std::size_t nBytes)
  {
    TValues listSignals(nBytes == 1 ? 256 : 65536);
    std::iota(listSignals.begin(), listSignals.end(), 0U);
    return PackValues(listSignals, nBytes);
  }

  mutable std::vector<uint16_t> m_listGains;
};

// What is handed to a kernel, each part some bytes off from any alignment.
struct SCase {
  uint32_t nBitDepth;
  bool bDark;
  std::size_t nPixels;
  std::size_t nOffset;

  std::size_t PixelBytes() const { return GetBytesPerPixel(nBitDepth); }
  uint32_t Index() const { return nBitDepth - FLATFIELD_MIN_BIT_DEPTH; }
  TValues MakePixels(uint32_t nSeed) const { return MakeRandomValues(nPixels, GetMaxStoredValue(nBitDepth), nSeed); }
  template <class TByte>
  TByte *FindLevels(TByte *pGains) const
  {
    return bDark ? pGains + 2 * nPixels : nullptr;
  }
  TBytes MakeOutput(std::size_t nBytes) const { return TBytes(nOffset + nBytes + GUARD, UNTOUCHED); }

  // The values of an output, after a look at the bytes around it.
  TValues Read(TBytes listBytes, std::size_t nBytesPerValue) const
  {
    EXPECT_EQ(std::count(listBytes.begin(), listBytes.begin() + static_cast<std::ptrdiff_t>(nOffset), UNTOUCHED),
              static_cast<std::ptrdiff_t>(nOffset));
    EXPECT_EQ(std::count(listBytes.end() - GUARD, listBytes.end(), UNTOUCHED), static_cast<std::ptrdiff_t>(GUARD));
    listBytes.resize(listBytes.size() - GUARD);
    return UnpackValues(listBytes, nBytesPerValue, nOffset);
  }
};

std::vector<std::size_t> ListSizes()
{
  std::vector<std::size_t> listSizes(std::begin(STEPPED_SIZES), std::end(STEPPED_SIZES));
  for (std::size_t nPixels = 1; nPixels <= LONGEST; ++nPixels) {
    listSizes.push_back(nPixels);
  }
  return listSizes;
}

template <class TCheck>
void ForAllCases(TCheck fnCheck)
{
  for (uint32_t nBitDepth = FLATFIELD_MIN_BIT_DEPTH; nBitDepth <= FLATFIELD_MAX_BIT_DEPTH; ++nBitDepth) {
    for (const bool bDark : {false, true}) {
      for (const std::size_t nPixels : ListSizes()) {
        for (const std::size_t nOffset : {0U, 1U, 2U, 7U}) {
          fnCheck(SCase{nBitDepth, bDark, nPixels, nOffset});
          if (testing::Test::HasFailure()) {
            FAIL() << nBitDepth << " bit, " << nPixels << " pixels, offset " << nOffset << (bDark ? ", dark" : "");
          }
        }
      }
    }
  }
}

// Gains around 1 and around the limit, so that results lie below, at and above the maximum.
TValues MakeTable(const SCase &stCase)
{
  TValues listWords = MakeRandomValues(stCase.nPixels, stCase.nPixels % 3 == 0 ? 65535 : 9000, 11);
  if (stCase.bDark) {
    const TValues listLevels = MakeRandomValues(stCase.nPixels, stCase.nPixels % 2 == 0 ? 65535 : 5000, 12);
    listWords.insert(listWords.end(), listLevels.begin(), listLevels.end());
  }
  return listWords;
}

TValues ApplyReference(const SCase &stCase, const TValues &listSource, const TValues &listTable)
{
  TValues listResult;
  for (std::size_t i = 0; i < stCase.nPixels; ++i) {
    listResult.push_back(
      static_cast<uint32_t>(GetReferencePixel(listSource[i], stCase.bDark ? listTable[stCase.nPixels + i] : 0,
                                              listTable[i], static_cast<int>(stCase.nBitDepth))));
  }
  return listResult;
}

TValues ComputeReference(const SCase &stCase, const TValues &listBright, const TValues &listDark, uint32_t nTarget)
{
  const uint32_t nMax = (1U << stCase.nBitDepth) - 1;
  TValues listWords;
  for (std::size_t i = 0; i < stCase.nPixels; ++i) {
    listWords.push_back(static_cast<uint32_t>(
      GetReferenceGain(listBright[i], stCase.bDark ? listDark[i] : 0, nTarget, static_cast<int>(stCase.nBitDepth))));
  }
  for (std::size_t i = 0; stCase.bDark && i < stCase.nPixels; ++i) {
    listWords.push_back(std::min(listDark[i], nMax) << (16 - stCase.nBitDepth));
  }
  return listWords;
}

} // namespace

TEST_P(FlatFieldKernels, AreCompiledForTheirLevel)
{
#ifdef _MSC_VER
  GTEST_SKIP() << "this compiler does not tell its level below AVX2";
#endif
  EXPECT_EQ(Kernels().eLevel, GetParam());
}

TEST_P(FlatFieldKernels, ApplyEqualsTheSlowTwinOutOfPlaceForEverySizeAndStart)
{
  ForAllCases([&](const SCase &stCase) {
    const TValues listSource = stCase.MakePixels(7);
    const TValues listTable = MakeTable(stCase);
    const TBytes listSourceBytes = PackValues(listSource, stCase.PixelBytes(), stCase.nOffset);
    const TBytes listTableBytes = PackValues(listTable, 2, stCase.nOffset);
    TBytes listResult = stCase.MakeOutput(stCase.nPixels * stCase.PixelBytes());
    const unsigned char *const pGains = listTableBytes.data() + stCase.nOffset;
    Kernels().afnApply[stCase.Index()][stCase.bDark][0]({listSourceBytes.data() + stCase.nOffset,
                                                         listResult.data() + stCase.nOffset, stCase.nPixels, pGains,
                                                         stCase.FindLevels(pGains)});
    EXPECT_EQ(stCase.Read(listResult, stCase.PixelBytes()), ApplyReference(stCase, listSource, listTable));
  });
}

TEST_P(FlatFieldKernels, ApplyEqualsTheSlowTwinInPlaceForEverySizeAndStart)
{
  ForAllCases([&](const SCase &stCase) {
    const TValues listSource = stCase.MakePixels(8);
    const TValues listTable = MakeTable(stCase);
    const TBytes listTableBytes = PackValues(listTable, 2, stCase.nOffset);
    TBytes listFrame = stCase.MakeOutput(stCase.nPixels * stCase.PixelBytes());
    const TBytes listSourceBytes = PackValues(listSource, stCase.PixelBytes());
    std::copy(listSourceBytes.begin(), listSourceBytes.end(),
              listFrame.begin() + static_cast<std::ptrdiff_t>(stCase.nOffset));
    unsigned char *const pFrame = listFrame.data() + stCase.nOffset;
    const unsigned char *const pGains = listTableBytes.data() + stCase.nOffset;
    Kernels().afnApply[stCase.Index()][stCase.bDark][1](
      {pFrame, pFrame, stCase.nPixels, pGains, stCase.FindLevels(pGains)});
    EXPECT_EQ(stCase.Read(listFrame, stCase.PixelBytes()), ApplyReference(stCase, listSource, listTable));
  });
}

TEST_P(FlatFieldKernels, ApplyGivesTheSameWhereverFrameAndTableBeginWithinACacheLine)
{
  constexpr std::size_t LINE = 64;
  alignas(LINE) static unsigned char s_aFrame[1024];
  alignas(LINE) static unsigned char s_aTable[1024];
  for (const SCase &stCase : {SCase{8, false, 200, 0}, SCase{8, true, 20, 0}, SCase{8, true, 200, 0},
                              SCase{12, false, 20, 0}, SCase{12, false, 200, 0}, SCase{16, true, 200, 0}}) {
    const TValues listSource = stCase.MakePixels(13);
    const TValues listTable = MakeTable(stCase);
    const TValues listExpected = ApplyReference(stCase, listSource, listTable);
    const TBytes listSourceBytes = PackValues(listSource, stCase.PixelBytes());
    const TBytes listTableBytes = PackValues(listTable, 2);
    for (const std::size_t nFrame : {0U, 1U, 2U, 16U, 62U, 63U}) {
      for (const std::size_t nTable : {0U, 1U, 16U, 62U}) {
        for (const bool bInPlace : {false, true}) {
          std::fill(std::begin(s_aFrame), std::end(s_aFrame), UNTOUCHED);
          unsigned char *const pFrame = s_aFrame + LINE + nFrame;
          std::copy(listSourceBytes.begin(), listSourceBytes.end(), pFrame);
          unsigned char *const pGains = std::copy(listTableBytes.begin(), listTableBytes.end(), s_aTable + nTable) -
                                        static_cast<std::ptrdiff_t>(listTableBytes.size());
          Kernels().afnApply[stCase.Index()][stCase.bDark][bInPlace](
            {bInPlace ? pFrame : listSourceBytes.data(), pFrame, stCase.nPixels, pGains, stCase.FindLevels(pGains)});
          EXPECT_EQ(UnpackValues(TBytes(pFrame, pFrame + listSourceBytes.size()), stCase.PixelBytes()), listExpected)
            << stCase.nBitDepth << " bit, frame at " << nFrame << ", table at " << nTable << ", " << bInPlace;
          EXPECT_EQ(static_cast<std::size_t>(std::count(std::begin(s_aFrame), pFrame, UNTOUCHED)), LINE + nFrame);
          unsigned char *const pEnd = pFrame + listSourceBytes.size();
          EXPECT_EQ(std::count(pEnd, std::end(s_aFrame), UNTOUCHED), std::end(s_aFrame) - pEnd);
        }
      }
    }
  }
}

TEST_P(FlatFieldKernels, ComputeEqualsTheSlowTwinForEverySizeAndStart)
{
  ForAllCases([&](const SCase &stCase) {
    const TValues listBright = stCase.MakePixels(9);
    const TValues listDark = stCase.MakePixels(10);
    const TBytes listBrightBytes = PackValues(listBright, stCase.PixelBytes(), stCase.nOffset);
    const TBytes listDarkBytes = PackValues(listDark, stCase.PixelBytes(), stCase.nOffset);
    const auto nTarget = static_cast<uint32_t>(stCase.nPixels % 256 << (stCase.nBitDepth - 8));
    TBytes listTable = stCase.MakeOutput(stCase.nPixels * (stCase.bDark ? 4 : 2));
    unsigned char *const pGains = listTable.data() + stCase.nOffset;
    Kernels().afnCompute[stCase.Index()][stCase.bDark]({listBrightBytes.data() + stCase.nOffset,
                                                        stCase.bDark ? listDarkBytes.data() + stCase.nOffset : nullptr,
                                                        stCase.nPixels, nTarget, pGains, stCase.FindLevels(pGains)});
    EXPECT_EQ(stCase.Read(listTable, 2), ComputeReference(stCase, listBright, listDark, nTarget));
  });
}

TEST_P(FlatFieldKernels, EveryGainOfEverySignalAndTargetToTwelveBitsEqualsTheQuotient)
{
  for (uint32_t nBitDepth = FLATFIELD_MIN_BIT_DEPTH; nBitDepth <= 12; ++nBitDepth) {
    for (uint32_t nTarget = 0; nTarget < 1U << nBitDepth; ++nTarget) {
      ExpectQuotients(nBitDepth, nTarget);
    }
  }
}

// Above, some targets for each value of the upper byte, and all signals.
TEST_P(FlatFieldKernels, EveryGainOfEverySignalAboveTwelveBitsEqualsTheQuotient)
{
  for (uint32_t nBitDepth = 13; nBitDepth <= FLATFIELD_MAX_BIT_DEPTH; ++nBitDepth) {
    for (uint32_t nUpper = 0; nUpper < 1U << nBitDepth; nUpper += 256) {
      for (const uint32_t nLower : {0U, 1U, nUpper / 256 * 151 % 256, nUpper / 256 * 89 % 256, 255U}) {
        ExpectQuotients(nBitDepth, nUpper + nLower);
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(AllLevels, FlatFieldKernels, testing::ValuesIn(GetTestableLevels(FindSFlatFieldKernels)),
                         GetLevelTestName);

// Every instruction level gives the numbers of the baseline, and these are the right ones.
#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "reference/kernels/referencekernels.h"

using namespace ffc::reference;

namespace {

constexpr std::size_t LINE_WIDTH = 61; ///< no whole number of vectors
constexpr std::size_t LINES = 21;
constexpr std::size_t FIRST = 10 * LINE_WIDTH + 9;
constexpr std::size_t RUN = 37; ///< more than two times the lanes
constexpr float UNWRITTEN = -7;

using Floats = std::vector<float>;

Floats MakeNumbers(uint32_t nSeed, float fFrom, float fTo)
{
  std::mt19937 random(nSeed);
  Floats listNumbers(LINE_WIDTH * LINES);
  for (float &fNumber : listNumbers) {
    fNumber = fFrom + (fTo - fFrom) * static_cast<float>(random() >> 8U) / 16777216.0F;
  }
  return listNumbers;
}

/// What one level makes of the same numbers; one place more than there are results.
struct SOutcome {
  Floats listAcross = Floats(LINE_WIDTH + 1, UNWRITTEN);
  Floats listAlong = Floats(LINE_WIDTH + 1, UNWRITTEN);
  Floats listFirstLine = Floats(LINE_WIDTH + 1, UNWRITTEN);
  Floats listNextLine = Floats(LINE_WIDTH + 1, UNWRITTEN);
  Floats listColumns = MakeNumbers(11, -1, 1);
  Floats listLines = MakeNumbers(12, -1, 1);
  Floats listNextColumns = MakeNumbers(13, -1, 1);
  Floats listNextLines = MakeNumbers(14, -1, 1);
  Floats listMeans = Floats(RUN + 1, UNWRITTEN);
  Floats listCounts = Floats(RUN + 1, UNWRITTEN);
  Floats listSums = Floats(RUN + 1, UNWRITTEN);
};

const SWindowPixel WINDOW[] = {
  {-1 - std::ptrdiff_t{LINE_WIDTH}, 0.25F}, {-1, 0.5F}, {0, 1}, {2, 0.75F}, {LINE_WIDTH, 0.5F}};
const Floats SAMPLES = MakeNumbers(1, -100, 3000);
const Floats MEANS = MakeNumbers(2, 1000, 1030);
const Floats COUNTS = MakeNumbers(3, 0, 0.01F); // from alike to far apart
constexpr float WEIGHT = 20;

SOutcome RunAll(const SReferenceKernels &stKernels)
{
  SOutcome st;
  const float *p = SAMPLES.data();
  stKernels.fnSmoothAcross({p, p + LINE_WIDTH, p + 2 * LINE_WIDTH, p + 3 * LINE_WIDTH, p + 4 * LINE_WIDTH}, LINE_WIDTH,
                           st.listAcross.data());
  stKernels.fnSmoothAlong(p + FIRST, LINE_WIDTH, 3, st.listAlong.data());
  const float *pColumns = st.listColumns.data() + LINE_WIDTH; // left of them is another line
  const float *pLines = st.listLines.data();
  stKernels.fnTakeAway({pColumns, pLines, nullptr, WEIGHT}, p, LINE_WIDTH, st.listFirstLine.data());
  stKernels.fnTakeAway({pColumns, pLines + LINE_WIDTH, pLines, WEIGHT}, p, LINE_WIDTH, st.listNextLine.data());
  stKernels.fnDescend({p, p + LINE_WIDTH, LINE_WIDTH, 0.001F, 0.5F}, st.listColumns.data(), st.listLines.data(),
                      st.listNextColumns.data(), st.listNextLines.data());
  stKernels.fnGrowRun({MEANS.data() + FIRST, COUNTS.data() + FIRST, p + FIRST, RUN}, WINDOW, std::size(WINDOW),
                      st.listMeans.data(), st.listCounts.data());
  stKernels.fnSumSquares(p + FIRST, RUN, LINE_WIDTH, st.listSums.data());
  return st;
}

const SReferenceKernels &GetBaseline()
{
  return *FindSReferenceKernels(ffc::platform::INSTRUCTION_LEVEL_BASELINE);
}

} // namespace

TEST(ReferenceKernels, EveryLevelGivesTheSame)
{
  const SOutcome stBaseline = RunAll(GetBaseline());
  for (int32_t nLevel = 1; nLevel <= ffc::platform::DetectProcessorLevel(); ++nLevel) {
    const SReferenceKernels *pKernels = FindSReferenceKernels(static_cast<ffc::platform::EInstructionLevel>(nLevel));
    if (pKernels == nullptr) {
      continue;
    }
    const SOutcome st = RunAll(*pKernels);
    for (Floats SOutcome::*pList :
         {&SOutcome::listAcross, &SOutcome::listAlong, &SOutcome::listFirstLine, &SOutcome::listNextLine,
          &SOutcome::listColumns, &SOutcome::listLines, &SOutcome::listNextColumns, &SOutcome::listNextLines,
          &SOutcome::listMeans, &SOutcome::listCounts, &SOutcome::listSums}) {
      EXPECT_EQ(st.*pList, stBaseline.*pList) << "level " << nLevel;
    }
  }
}

TEST(ReferenceKernels, SmoothingAndDivergenceAreThoseOfTheSlowTwin)
{
  const SOutcome st = RunAll(GetBaseline());
  const Floats listAllColumns = SOutcome().listColumns;
  const Floats listColumns(listAllColumns.begin() + LINE_WIDTH, listAllColumns.end());
  const Floats listLines = SOutcome().listLines;
  const auto smoothAt = [](std::size_t nPlace, std::size_t nStep) {
    constexpr float KERNEL[] = {1, 4, 6, 4, 1};
    float fSum = 0;
    for (std::size_t n = 0; n < 5; ++n) {
      fSum += KERNEL[n] / 16 * SAMPLES[nPlace + n * nStep - 2 * nStep];
    }
    return fSum;
  };
  for (std::size_t n = 0; n < LINE_WIDTH; ++n) {
    EXPECT_NEAR(st.listAcross[n], smoothAt(2 * LINE_WIDTH + n, LINE_WIDTH), 0.01) << n;
    EXPECT_NEAR(st.listAlong[n], smoothAt(FIRST + n, 3), 0.01) << n;
    const float fFromLeft = n > 0 ? listColumns[n - 1] : 0.0F;
    EXPECT_NEAR(st.listFirstLine[n], SAMPLES[n] + WEIGHT * (listColumns[n] - fFromLeft + listLines[n]), 0.01) << n;
    EXPECT_NEAR(st.listNextLine[n],
                SAMPLES[n] + WEIGHT * (listColumns[n] - fFromLeft + listLines[LINE_WIDTH + n] - listLines[n]), 0.01)
      << n;
  }
}

TEST(ReferenceKernels, StepsAreThoseOfTheSlowTwin)
{
  const SOutcome st = RunAll(GetBaseline());
  const SOutcome stBefore;
  for (std::size_t n = 0; n < LINE_WIDTH; ++n) {
    const float fToRight = n + 1 < LINE_WIDTH ? SAMPLES[n + 1] - SAMPLES[n] : 0.0F;
    const float fColumn = stBefore.listNextColumns[n] + 0.001F * fToRight;
    const float fLine = stBefore.listNextLines[n] + 0.001F * (SAMPLES[LINE_WIDTH + n] - SAMPLES[n]);
    const float fLongest = std::max(1.0F, std::hypot(fColumn, fLine));
    EXPECT_NEAR(st.listColumns[n], fColumn / fLongest, 1e-5) << n;
    EXPECT_NEAR(st.listLines[n], fLine / fLongest, 1e-5) << n;
    EXPECT_NEAR(st.listNextColumns[n], 1.5F * fColumn / fLongest - 0.5F * stBefore.listColumns[n], 1e-5) << n;
    EXPECT_NEAR(st.listNextLines[n], 1.5F * fLine / fLongest - 0.5F * stBefore.listLines[n], 1e-5) << n;
  }
  EXPECT_EQ(st.listColumns[LINE_WIDTH], stBefore.listColumns[LINE_WIDTH]) << "beyond the line";
}

TEST(ReferenceKernels, RegionsAndSumsAreThoseOfTheSlowTwin)
{
  const SOutcome st = RunAll(GetBaseline());
  for (std::size_t n = 0; n < RUN; ++n) {
    double dSum = 0;
    double dWeights = 0;
    double dSquares = 0;
    for (const SWindowPixel &stPixel : WINDOW) {
      const std::size_t nOther = FIRST + n + static_cast<std::size_t>(stPixel.nOffset);
      const double dApart = double{MEANS[FIRST + n]} - double{MEANS[nOther]};
      const double dAlike = std::clamp(2 - 2 * double{COUNTS[FIRST + n]} * dApart * dApart, 0.0, 1.0);
      const double dWeight = double{stPixel.fNear} * dAlike;
      dSum += dWeight * double{SAMPLES[nOther]};
      dWeights += dWeight;
      dSquares += dWeight * dWeight;
    }
    EXPECT_NEAR(st.listMeans[n], dSum / dWeights, 0.05) << n;
    EXPECT_NEAR(st.listCounts[n], dWeights * dWeights / dSquares, 1e-3) << n;
    double dAround = 0;
    for (std::size_t nY = 0; nY < 13; ++nY) {
      for (std::size_t nX = 0; nX < 13; ++nX) {
        dAround += double{SAMPLES[FIRST + n + nY * LINE_WIDTH + nX - 6 * LINE_WIDTH - 6]};
      }
    }
    EXPECT_NEAR(st.listSums[n], dAround, 0.5) << n;
  }
}

TEST(ReferenceKernels, NothingIsWrittenBeyondTheLastResult)
{
  const SOutcome st = RunAll(GetReferenceKernels());
  for (const Floats SOutcome::*pList :
       {&SOutcome::listAcross, &SOutcome::listAlong, &SOutcome::listFirstLine, &SOutcome::listNextLine,
        &SOutcome::listMeans, &SOutcome::listCounts, &SOutcome::listSums}) {
    EXPECT_EQ((st.*pList).back(), UNWRITTEN);
    EXPECT_NE((st.*pList)[(st.*pList).size() - 2], UNWRITTEN);
  }
}

TEST(ReferenceKernels, NoMoreIsReadThanTheHeaderSays)
{
  // Copies that end where reading has to; the address sanitizer watches.
  const auto fnCopy = [](const Floats &from, std::size_t nBefore, std::size_t nEnd) {
    return Floats(from.begin() + static_cast<std::ptrdiff_t>(FIRST - nBefore),
                  from.begin() + static_cast<std::ptrdiff_t>(FIRST + nEnd));
  };
  const SOutcome stLong = RunAll(GetReferenceKernels());
  constexpr std::size_t LANES = SRegionRun::LANES;
  constexpr std::size_t BEFORE = 1 + LINE_WIDTH;
  const Floats listMeans = fnCopy(MEANS, BEFORE, LINE_WIDTH + LANES);
  const Floats listCounts = fnCopy(COUNTS, 0, LANES);
  const Floats listSamples = fnCopy(SAMPLES, BEFORE, LINE_WIDTH + LANES);
  Floats listNext(LANES);
  Floats listNextCounts(LANES);
  GetReferenceKernels().fnGrowRun({listMeans.data() + BEFORE, listCounts.data(), listSamples.data() + BEFORE, LANES},
                                  WINDOW, std::size(WINDOW), listNext.data(), listNextCounts.data());
  EXPECT_EQ(listNext, Floats(stLong.listMeans.begin(), stLong.listMeans.begin() + LANES));
  EXPECT_EQ(listNextCounts, Floats(stLong.listCounts.begin(), stLong.listCounts.begin() + LANES));
  constexpr std::size_t REACH = SUMMED_REACH * (LINE_WIDTH + 1);
  const Floats listSquares = fnCopy(SAMPLES, REACH, REACH + 2 * LANES);
  Floats listSums(2 * LANES);
  GetReferenceKernels().fnSumSquares(listSquares.data() + REACH, 2 * LANES, LINE_WIDTH, listSums.data());
  EXPECT_EQ(listSums, Floats(stLong.listSums.begin(), stLong.listSums.begin() + 2 * LANES));
}

TEST(ReferenceKernels, TheProgramUsesThoseOfTheLevelThatIsAskedFor)
{
  EXPECT_LE(GetReferenceKernels().eLevel, ffc::platform::GetInstructionLevel());
  EXPECT_EQ(GetBaseline().eLevel, ffc::platform::INSTRUCTION_LEVEL_BASELINE);
  EXPECT_EQ(FindSReferenceKernels(ffc::platform::INSTRUCTION_LEVEL_COUNT), nullptr) << "a level that there is not";
}

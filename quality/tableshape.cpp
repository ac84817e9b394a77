#include "quality/tableshape.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <vector>

namespace ffc::quality {
namespace {

constexpr std::size_t RUN = 32;       ///< pixels that are compared together
constexpr std::size_t SAMPLES = 8192; ///< runs that are compared
constexpr uint32_t SMALLEST_SIDE = 16;
/// Lines between two that are compared: those of a mosaic have the same colours then, as have those of a sensor that
/// reads even and odd lines through different amplifiers.
constexpr std::size_t LINES = 2;
/// Share of the stated width's difference from which on another is better, and not by chance.
constexpr double BETTER = 0.8;
constexpr double BETTER_OF_FEW = 0.6; ///< where there are few runs
constexpr std::size_t MANY_RUNS = 4096;
constexpr double AS_GOOD = 3.0; ///< times the best width's

int64_t AddRun(const uint16_t *pGains)
{
  int64_t nSum = 0;
  for (std::size_t n = 0; n < RUN; ++n) {
    nSum += pGains[n];
  }
  return nSum;
}

/// Median of the differences between runs two lines apart: dust and dead pixels do not count.
int64_t GetDifference(const uint16_t *pGains, std::size_t nPixels, uint32_t nWidth)
{
  const std::size_t nDistance = LINES * nWidth;
  const std::size_t nLast = nPixels - nDistance - RUN;
  const std::size_t nStep = std::max<std::size_t>(1, nLast / SAMPLES) | 1U; // odd: no multiple of a width's
  std::vector<int64_t> listDifferences;
  for (std::size_t nFirst = 0; nFirst <= nLast; nFirst += nStep) {
    listDifferences.push_back(std::abs(AddRun(pGains + nFirst) - AddRun(pGains + nFirst + nDistance)));
  }
  const auto itMiddle = listDifferences.begin() + static_cast<std::ptrdiff_t>(listDifferences.size() / 2);
  std::nth_element(listDifferences.begin(), itMiddle, listDifferences.end());
  return *itMiddle;
}

struct SCandidate {
  STableShape stShape;
  double dDifference;
};

bool IsWholePart(uint32_t nOne, uint32_t nOther)
{
  return nOne % nOther == 0 || nOther % nOne == 0;
}

/// Half of a table's width has its lines, too, and twice the width has every second: of the best width and those, the
/// least elongated shape that fits about as well.
std::optional<STableShape> FindLikeliest(const std::vector<SCandidate> &listCandidates, double dLimit)
{
  const auto itBest = std::min_element(
    listCandidates.begin(), listCandidates.end(),
    [](const SCandidate &stOne, const SCandidate &stOther) { return stOne.dDifference < stOther.dDifference; });
  if (itBest == listCandidates.end() || !(itBest->dDifference < dLimit)) {
    return std::nullopt;
  }
  STableShape stFound = itBest->stShape;
  for (const auto &[stShape, dDifference] : listCandidates) {
    if (dDifference <= AS_GOOD * itBest->dDifference && IsWholePart(stShape.nWidth, itBest->stShape.nWidth) &&
        stShape.nWidth + stShape.nHeight < stFound.nWidth + stFound.nHeight) {
      stFound = stShape;
    }
  }
  return stFound;
}

} // namespace

std::optional<STableShape> FindOtherShape(const uint16_t *pGains, uint32_t nWidth, uint32_t nHeight)
{
  if (nWidth < SMALLEST_SIDE || nHeight < SMALLEST_SIDE) {
    return std::nullopt;
  }
  const std::size_t nPixels = std::size_t{nWidth} * nHeight;
  std::vector<SCandidate> listCandidates;
  for (uint32_t nOther = SMALLEST_SIDE; nOther <= nPixels / SMALLEST_SIDE; nOther += 2) {
    if (nPixels % nOther == 0 && !IsWholePart(nOther, nWidth)) {
      listCandidates.push_back({{nOther, static_cast<uint32_t>(nPixels / nOther)},
                                static_cast<double>(GetDifference(pGains, nPixels, nOther))});
    }
  }
  const double dBetter = nPixels / RUN >= MANY_RUNS ? BETTER : BETTER_OF_FEW;
  return FindLikeliest(listCandidates, dBetter * static_cast<double>(GetDifference(pGains, nPixels, nWidth)));
}

} // namespace ffc::quality

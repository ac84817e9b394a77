#include "reference/scales.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "reference/kernels/referencekernels.h"

namespace ffc::reference {
namespace {

constexpr std::array<double, 5> KERNEL = {1.0 / 16, 4.0 / 16, 6.0 / 16, 4.0 / 16, 1.0 / 16};

using Kernel = std::vector<double>;

void SmoothAcrossLines(const SImage &from, uint32_t nLine, uint32_t nStep, float *pOut)
{
  const auto fnLine = [&](int64_t nTaps) { return from.GetLine(Mirror(int64_t{nLine} + nTaps * nStep, from.nHeight)); };
  GetReferenceKernels().fnSmoothAcross({fnLine(-2), fnLine(-1), fnLine(0), fnLine(1), fnLine(2)}, from.nWidth, pOut);
}

/// \param pLine with 2 nStep places on either side of the line
void SmoothAlongLine(float *pLine, uint32_t nWidth, uint32_t nStep, float *pOut)
{
  for (int64_t n = 1; n <= 2 * int64_t{nStep}; ++n) {
    pLine[-n] = pLine[Mirror(-n, nWidth)];
    pLine[nWidth - 1 + n] = pLine[Mirror(nWidth - 1 + n, nWidth)];
  }
  GetReferenceKernels().fnSmoothAlong(pLine, nWidth, nStep, pOut);
}

/// The kernel of one more smoothing.
Kernel Widen(const Kernel &kernel, std::size_t nStep)
{
  Kernel wide(kernel.size() + 4 * nStep, 0.0);
  for (std::size_t nTap = 0; nTap < KERNEL.size(); ++nTap) {
    for (std::size_t n = 0; n < kernel.size(); ++n) {
      wide[n + nTap * nStep] += KERNEL[nTap] * kernel[n];
    }
  }
  return wide;
}

/// Sum of products of two centred kernels, one of them moved.
/// \param other no shorter than the one
double Correlate(const Kernel &one, const Kernel &other, std::size_t nShift)
{
  const std::size_t nFirst = other.size() / 2 - one.size() / 2 + nShift;
  double dSum = 0;
  for (std::size_t n = 0; n < one.size() && n + nFirst < other.size(); ++n) {
    dSum += one[n] * other[n + nFirst];
  }
  return dSum;
}

/// The detail is fine - wide along both axes; its autocovariance has a product of correlations for each pair of them.
SScaleStatistics GetStatistics(const Kernel &fine, const Kernel &wide, std::size_t nStep)
{
  constexpr std::size_t LAGS = KERNEL.size();
  std::array<double, LAGS> adFine{};
  std::array<double, LAGS> adMixed{};
  std::array<double, LAGS> adWide{};
  std::array<double, LAGS> adWindow{};
  for (std::size_t nLag = 0; nLag < LAGS; ++nLag) {
    adFine[nLag] = Correlate(fine, fine, nLag * nStep);
    adMixed[nLag] = Correlate(fine, wide, nLag * nStep);
    adWide[nLag] = Correlate(wide, wide, nLag * nStep);
    for (std::size_t n = 0; n + nLag < KERNEL.size(); ++n) {
      adWindow[nLag] += KERNEL[n] * KERNEL[n + nLag];
    }
  }
  const auto fnCovariance = [&](std::size_t nX, std::size_t nY) {
    return adFine[nX] * adFine[nY] - 2 * adMixed[nX] * adMixed[nY] + adWide[nX] * adWide[nY];
  };
  const double dGain = fnCovariance(0, 0);
  double dVariance = 0; // half that of the smoothed square, whose mean is 1
  for (std::size_t nY = 0; nY < LAGS; ++nY) {
    for (std::size_t nX = 0; nX < LAGS; ++nX) {
      const double dTimes = (nX == 0 ? 1 : 2) * (nY == 0 ? 1 : 2);
      const double dCorrelation = fnCovariance(nX, nY) / dGain;
      dVariance += dTimes * adWindow[nX] * adWindow[nY] * dCorrelation * dCorrelation;
    }
  }
  return {dGain, 1 / dVariance};
}

} // namespace

uint32_t Mirror(int64_t nIndex, uint32_t nCount)
{
  const int64_t nLast = int64_t{nCount} - 1;
  const int64_t nReflected = nIndex < 0 ? -nIndex : nLast - std::abs(nLast - nIndex);
  // Small images are reflected again and again.
  if (nReflected < 0 || nReflected > nLast) {
    const int64_t nPeriod = std::max<int64_t>(2 * nLast, 1);
    const int64_t nWithin = std::abs(nIndex) % nPeriod;
    return static_cast<uint32_t>(std::min(nWithin, nPeriod - nWithin));
  }
  return static_cast<uint32_t>(nReflected);
}

void Smooth(const SImage &from, const SImage &to, uint32_t nStep, float *pWideLine)
{
  for (uint32_t nLine = 0; nLine < from.nHeight; ++nLine) {
    SmoothAcrossLines(from, nLine, nStep, pWideLine + std::size_t{2} * nStep);
    SmoothAlongLine(pWideLine + std::size_t{2} * nStep, from.nWidth, nStep, to.GetLine(nLine));
  }
}

std::vector<SScaleStatistics> GetScaleStatistics(uint32_t nScales)
{
  std::vector<SScaleStatistics> listStatistics;
  Kernel fine = {1.0};
  for (uint32_t nScale = 0; nScale < nScales; ++nScale) {
    const std::size_t nStep = std::size_t{1} << nScale;
    Kernel wide = Widen(fine, nStep);
    listStatistics.push_back(GetStatistics(fine, wide, nStep));
    fine = std::move(wide);
  }
  return listStatistics;
}

} // namespace ffc::reference

/// \file
/// The undecimated wavelet transform "a trous": an image is smoothed with wider and wider steps, and what each
/// smoothing takes away is the detail of one scale. The details and the last smooth image add up to the image.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ffc::reference {

/// Floats of an image, line after line.
struct SImage {
  float *pValues = nullptr;
  uint32_t nWidth = 0;
  uint32_t nHeight = 0;

  float *GetLine(uint32_t nLine) const { return pValues + static_cast<std::size_t>(nLine) * nWidth; }
  std::size_t GetCount() const { return static_cast<std::size_t>(nWidth) * nHeight; }
};

/// A part of an image; empty by itself.
struct SBox {
  uint32_t nFirstColumn = 0;
  uint32_t nFirstLine = 0;
  uint32_t nEndColumn = 0;
  uint32_t nEndLine = 0;

  uint32_t GetWidth() const { return nEndColumn - nFirstColumn; }
  uint32_t GetHeight() const { return nEndLine - nFirstLine; }
};

/// The place of a sample beyond the edge, reflected at the first and the last one.
/// \param nCount at least 1
uint32_t Mirror(int64_t nIndex, uint32_t nCount);

/// Smooths with the cubic B-spline 1, 4, 6, 4, 1 along both axes, its taps nStep samples apart.
/// \param to of the same size; not the same memory
/// \param pWideLine memory for one line and 4 nStep samples
void Smooth(const SImage &from, const SImage &to, uint32_t nStep, float *pWideLine);

/// What white noise of variance 1 becomes in the detail of one scale.
struct SScaleStatistics {
  double dGain = 0;    ///< variance of the detail
  double dFreedom = 0; ///< degrees of freedom of the smoothed square of the detail, as those of a chi-square
};

/// Of the scales 0 to nScales - 1; the detail of scale n is what a smoothing with the step 2^n takes away.
std::vector<SScaleStatistics> GetScaleStatistics(uint32_t nScales);

} // namespace ffc::reference

/// \file
/// The vignetting calculators once more, point by point and without thought for speed.
#pragma once

#include <cstdint>
#include <vector>

#include "tests/pluginobject/shadingcorrection/imagecalc/testimage.h"

/// What a twin computes with.
struct SVignettingCase {
  int32_t nBayerType; ///< 0 for mono
  int32_t nBlockWidth;
  int32_t nBlockHeight;
  int32_t nScaleBits;
  int32_t nMaxGain;
};

/// A table and its size in points.
struct SVignettingTwinTable {
  int32_t nColumns;
  int32_t nRows;
  std::vector<int32_t> listGains;
};

SVignettingTwinTable ComputeVignettingSlowly(const ffc::test::CTestImage &image, const SVignettingCase &stCase);

/// An image cut off or extended to whole blocks.
ffc::test::CTestImage PadSlowly(const ffc::test::CTestImage &image, const SVignettingCase &stCase);

/// \file
/// The image statistics once more, pixel by pixel and without thought for speed.
#pragma once

#include <vector>

#include "tests/pluginobject/shadingcorrection/imagecalc/testimage.h"

/// Blocks along a side: all whole ones, and one more for a strip of more than half a block.
int32_t CountBlocksSlowly(int32_t nImageSide, int32_t nBlockSide);

/// Block means in the order of CImageCalc::CalcBlockMeans.
std::vector<double> ComputeBlockMeansSlowly(const ffc::test::CTestImage &image, const BLOCK_PARAM &stParam);

ffc::test::CTestImage SmoothSlowly(const ffc::test::CTestImage &image, bool bBayer);

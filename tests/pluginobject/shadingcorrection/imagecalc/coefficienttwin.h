/// \file
/// The coefficient table once more, element by element and without thought for speed.
#pragma once

#include <cstdint>
#include <vector>

#include "tests/pluginobject/shadingcorrection/imagecalc/testimage.h"

/// The table of CGetSCCoefficient.
/// \param pDark null without a dark frame
std::vector<uint8_t> ComputeCoefficientTableSlowly(const ffc::test::CTestImage &bright,
                                                   const ffc::test::CTestImage *pDark, const BLOCK_PARAM &stParam);

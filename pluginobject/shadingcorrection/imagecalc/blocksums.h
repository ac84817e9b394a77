/// \file
/// Means of the blocks of one row of blocks.
#pragma once

#include <cstdint>

#include "pluginobject/shadingcorrection/imagecalc/kernels/imagekernels.h"

/// Writes the mean of all pixels of each block.
/// \param stRow at least one pixel
/// \param bWords whether pixels are 16-bit words, else bytes
/// \param pMeans one value for each block
void ComputeGreyMeans(const SBlockRow &stRow, bool bWords, double *pMeans);

/// Writes the means of R, G and B of each block; all zero for a type outside 1 to 4, or when a block has no whole 2x2
/// cell. Only whole cells are summed, but the sums are divided by all of the block's pixels: a quarter of them is red,
/// a half green, a quarter blue. \param stRow blocks of even sides, or of sides of 1 \param pMeans three values for
/// each block
void ComputeColourMeans(const SBlockRow &stRow, bool bWords, int32_t nBayerType, double *pMeans);

/// \file
/// Means of the blocks of an image, and of a whole image. Arguments are checked by the caller.
#pragma once

#include <cstdint>

#include "pluginobject/shadingcorrection/imagecalc/blockparam.h"

/// Doubles that each block takes in an array of block means: one for a mono image, three (R, G, B) for
/// every other.
constexpr int32_t GetMeansPerBlock(int32_t nBayerType)
{
  return nBayerType == BAYER_TYPE_MONO ? 1 : 3;
}

/// Writes the means of all blocks, row by row from the top left.
/// \param pImage pixels of the bit depth's type, width x height
/// \param stParam a grid that CheckBlockGrid accepts
/// \param pMeans blocks x GetMeansPerBlock values
void ComputeBlockMeans(const void *pImage, int32_t nBitDepth, const BLOCK_PARAM &stParam, double *pMeans);

/// The mean of all pixels.
/// \param nWidth, nHeight at least 1
double ComputeImageMean(const void *pImage, int32_t nBitDepth, int32_t nWidth, int32_t nHeight);

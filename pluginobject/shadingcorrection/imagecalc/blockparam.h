/// \file
/// The record that describes a block grid.
#pragma once

#include <cstddef>
#include <cstdint>

#include "pluginobject/shadingcorrection/imagecalc/bayertype.h"

/// An image and the blocks it is cut into. Sizes in pixels.
struct BLOCK_PARAM {
  int32_t nWidth = 0;
  int32_t nHeight = 0;
  int32_t nBlockWidth = 0;
  int32_t nBlockHeight = 0;
  /// One of BAYER_TYPE_*. Any other value counts as Bayer where sizes are concerned, but has no colours: its block
  /// means are zero.
  int32_t nBayerType = ffc::imagecalc::BAYER_TYPE_MONO;
};

static_assert(sizeof(BLOCK_PARAM) == 20 && alignof(BLOCK_PARAM) == 4);
static_assert(offsetof(BLOCK_PARAM, nWidth) == 0);
static_assert(offsetof(BLOCK_PARAM, nHeight) == 4);
static_assert(offsetof(BLOCK_PARAM, nBlockWidth) == 8);
static_assert(offsetof(BLOCK_PARAM, nBlockHeight) == 12);
static_assert(offsetof(BLOCK_PARAM, nBayerType) == 16);

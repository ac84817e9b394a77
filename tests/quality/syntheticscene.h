/// \file
/// Frames with known unevenness and noise.
#pragma once

#include <cstdint>
#include <functional>
#include <random>
#include <vector>

#include "genapi/sensorformat.h"
#include "quality/framestack.h"

/// Samples of a stack of frames, as wide as they may need to be.
using TestFrame = std::vector<uint16_t>;

/// A scene whose pixels have a level of their own, with normal noise on top that is new in each frame.
struct SSyntheticScene {
  uint32_t nWidth = 0;
  uint32_t nHeight = 0;
  uint32_t nBitDepth = 12;
  std::function<double(uint32_t nColumn, uint32_t nLine)> fnLevel; ///< DN
  double dNoise = 0;                                               ///< DN, standard deviation in time

  std::vector<TestFrame> MakeFrames(uint32_t nFrames, uint32_t nSeed) const;
  /// The frames in one stack.
  ffc::quality::CFrameStack MakeStack(const std::vector<TestFrame> &listFrames) const;
};

/// The bytes of one frame at a bit depth.
std::vector<uint8_t> PackFrame(const TestFrame &listSamples, uint32_t nBitDepth);

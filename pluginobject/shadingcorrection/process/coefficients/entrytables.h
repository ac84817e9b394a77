/// \file
/// Entry names of the correction features, as data.
#pragma once

#include <cstdint>
#include <string>

namespace ffc::process {

/// Frames to average for an entry of FFCFrameCount ("FFCFrameCount_1", _2, _4, _8, _16). Any other name
/// leaves the count as it is.
void ApplyFrameCountEntry(const std::string &strEntry, uint32_t &nFrameCount);

/// The frame count of a record, which may come from a file and say anything: 1, as the dialog shows it, where it is
/// none of those that FFCFrameCount has. 0 stays, which is the count of a camera that never told one.
uint32_t GetPossibleFrameCount(uint32_t nFrameCount);

/// The blocks that a camera takes coefficients for.
struct SCorrectionBlock {
  int64_t nWidth = 0;  ///< pixels
  int64_t nHeight = 0; ///< pixels
  uint32_t nCode = 0;  ///< index of the camera's FFCBlockSize entry
};

/// Blocks for an FFCBlockSize entry of a flat-field camera: "BlockSize_1024" 32 x 32, "BlockSize_256" 16 x 16.
/// Any other name leaves the size as it is.
void ApplyFlatFieldBlockEntry(const std::string &strEntry, SCorrectionBlock &stBlock);

/// Blocks for an FFCBlockSize entry of a vignetting camera: "BlockSize_16384" 128 x 128, "BlockSize_4096" 64 x 64.
/// Any other name leaves the size as it is.
void ApplyVignettingBlockEntry(const std::string &strEntry, SCorrectionBlock &stBlock);

} // namespace ffc::process

/// \file
/// Entry names of the correction features, as data.
#pragma once

#include <cstdint>
#include <string>

/// Frames to average for an entry of FFCFrameCount ("FFCFrameCount_1", _2, _4, _8, _16). Any other name
/// leaves the count as it is.
void ApplyFrameCountEntry(const std::string &strEntry, uint32_t &nFrameCount);

/// Bayer type of a PixelColorFilter value: "BayerRG" 1, "BayerGB" 2, "BayerGR" 3, "BayerBG" 4, any other 0.
int32_t GetBayerType(const std::string &strPixelColorFilter);

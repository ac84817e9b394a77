/// \file
/// The pixel formats that this project's own cameras deliver: one sample per pixel, right-aligned.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "genapi/pfnc.h"

namespace ffc::genapi {

using SSensorFormat = SPixelFormat;

/// Mono8, 10, 12, 14, 16 and the four Bayer layouts at 8, 10, 12 and 16 bits; by layout, then by rising bit depth.
const std::vector<SSensorFormat> &GetSensorFormats();
/// Null for a format that is not in the list; else always the same one for the same format.
const SSensorFormat *FindSensorFormat(std::string_view strName);
const SSensorFormat *FindSensorFormat(uint32_t nCode);
/// The formats of a sensor with this layout, by rising bit depth.
std::vector<SSensorFormat> GetSensorFormats(EColorLayout eLayout);

} // namespace ffc::genapi

/// \file
/// The pixel formats that this project's own cameras deliver: one sample per pixel, right-aligned.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// Colour layout of a sensor: the colours of its first two pixels, as the format names say.
enum class EColorLayout { Mono, BayerGR, BayerRG, BayerGB, BayerBG };

enum class EColor { Red = 0, Green = 1, Blue = 2 };
constexpr int COLOR_COUNT = 3;

struct SSensorFormat {
  std::string strName;    ///< PFNC name
  uint32_t nCode = 0;     ///< PFNC code
  uint32_t nBitDepth = 0; ///< significant bits per sample
  EColorLayout eLayout = EColorLayout::Mono;

  /// Samples of more than 8 bits stand in 16, in the byte order of the machine.
  uint32_t GetBytesPerPixel() const { return nBitDepth > 8 ? 2 : 1; }
  uint32_t GetMaxValue() const { return (1U << nBitDepth) - 1; }
};

/// Mono8, 10, 12, 14, 16 and the four Bayer layouts at 8, 10, 12 and 16 bits.
const std::vector<SSensorFormat> &GetSensorFormats();
/// Null for a format that is not in the list.
const SSensorFormat *FindSensorFormat(const std::string &strName);
const SSensorFormat *FindSensorFormat(uint32_t nCode);
/// The formats of a sensor with this layout, by rising bit depth.
std::vector<SSensorFormat> GetSensorFormats(EColorLayout eLayout);

/// Colour of a pixel; Green for mono.
EColor GetPixelColor(EColorLayout eLayout, uint32_t nX, uint32_t nY);
/// "BayerGR", "BayerRG", "BayerGB" or "BayerBG"; "Mono".
const char *GetLayoutName(EColorLayout eLayout);

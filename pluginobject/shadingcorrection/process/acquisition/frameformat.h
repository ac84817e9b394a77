/// \file
/// Geometry, pixel format, colours and size of the camera's frames.
#pragma once

#include <cstdint>
#include <string>

#include "pluginobject/featureaccess.h"

/// Significant bits per sample, by PFNC code: 8, 10, 12, 14 or 16; -1 for a format that is not known.
[[nodiscard]] int32_t GetPixelFormatBitDepth(uint32_t nPixelFormat);

/// Bytes of a frame whose packed samples the host delivers unpacked to 16 bits: width x height x 2.
/// \return 0 for every format that is not packed, and for a size that is negative or beyond 63 bits
[[nodiscard]] int64_t GetUnpackedPayloadSize(uint32_t nPixelFormat, int64_t nWidth, int64_t nHeight);

namespace ffc::process {

/// What a frame must have in common with another one to be worked on together.
struct SFrameShape {
  int64_t nWidth = 0;    ///< pixels
  int64_t nHeight = 0;   ///< pixels
  int32_t nBitDepth = 0; ///< -1 when not known

  bool operator==(const SFrameShape &stOther) const
  {
    return nWidth == stOther.nWidth && nHeight == stOther.nHeight && nBitDepth == stOther.nBitDepth;
  }
};

/// What a frame of the camera looks like. Values come from the camera and may be anything.
struct SFrameFormat {
  uint32_t nPixelFormat = 0; ///< PFNC code
  int64_t nWidth = 0;        ///< pixels
  int64_t nHeight = 0;       ///< pixels
  uint64_t nFrameSize = 0;   ///< bytes of one frame as the host delivers it

  /// Bits per sample, -1 when not known.
  [[nodiscard]] int32_t GetBitDepth() const;
  /// Width x height; 0 unless both sides are positive 31-bit numbers.
  uint64_t GetPixelCount() const;
  /// Whether a buffer of nBytes holds every pixel at the format's depth.
  bool FitsInto(uint64_t nBytes) const;
  SFrameShape GetShape() const { return {nWidth, nHeight, GetBitDepth()}; }
  bool HasSameShape(const SFrameFormat &stOther) const { return GetShape() == stOther.GetShape(); }
  /// Replaces the frame size by the unpacked one where the format is delivered unpacked.
  void ApplyUnpackedSize();
};

/// One reading step each, for CSteps.
[[nodiscard]] int32_t ReadPayloadSize(const pluginobject::CFeatureAccess &features, SFrameFormat &stFormat);
[[nodiscard]] int32_t ReadWidth(const pluginobject::CFeatureAccess &features, SFrameFormat &stFormat);
[[nodiscard]] int32_t ReadHeight(const pluginobject::CFeatureAccess &features, SFrameFormat &stFormat);
[[nodiscard]] int32_t ReadPixelFormat(const pluginobject::CFeatureAccess &features, SFrameFormat &stFormat);

/// Whether the camera's frames still have the kept size: 0, -1012 when not, or the code of a failing read.
[[nodiscard]] int32_t CheckFrameSize(const pluginobject::CFeatureAccess &features, const SFrameFormat &stKept);
/// The same for size, geometry and depth.
[[nodiscard]] int32_t CheckFrameFormat(const pluginobject::CFeatureAccess &features, const SFrameFormat &stKept);

/// Whether the host delivers the image as the camera makes it: compares pixel format, payload size, width and height of
/// the two. A pair of which either feature is missing counts as equal.
/// \return 0; -1019 at the first pair that differs; or the code of a failing read
[[nodiscard]] int32_t CheckDeliveredImage(const pluginobject::CFeatureAccess &outputFeatures,
                                          const pluginobject::CFeatureAccess &deviceFeatures);

/// Bayer type of a PixelColorFilter value: "BayerRG" 1, "BayerGB" 2, "BayerGR" 3, "BayerBG" 4, any other 0.
[[nodiscard]] int32_t GetBayerType(const std::string &strPixelColorFilter);

/// Whether the camera has a colour filter; false when it does not tell.
bool ReadIsColorCamera(const pluginobject::CFeatureAccess &features);

/// True for a monochrome camera, and for a colour camera that can only deliver Bayer formats or is set
/// to one. False when the camera does not tell.
bool IsBayerFormatSelected(const pluginobject::CFeatureAccess &features, bool bColorCamera);

} // namespace ffc::process

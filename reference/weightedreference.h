/// \file
/// Bright and dark reference out of few frames: averages in which every part counts as much as it stands out of the
/// noise.
#pragma once

#include <cstdint>
#include <optional>

#include "reference/noisemeter.h"

namespace ffc::reference {

// The statuses of this project's calculations.
constexpr int32_t STATUS_SUCCESS = 0;
constexpr int32_t STATUS_OUT_OF_MEMORY = -2;
constexpr int32_t STATUS_INVALID_PARAM = -3;

/// Frames of one kind, added up.
struct SFrameSums {
  const uint32_t *pSums = nullptr; ///< one per pixel
  uint32_t nFrames = 0;
  uint32_t nShift = 0;                 ///< bits that the added samples stand too far left
  const CNoiseMeter *pMeter = nullptr; ///< of the same frames, as they were added; may be null
};

/// What a data sheet after EMVA 1288 says of the camera.
struct SCameraNoise {
  double dSystemGain = 0; ///< K, DN per electron
  /// Temporal dark noise, DN; unless told, what the dark frames show.
  std::optional<double> dDarkNoise = std::nullopt;
};

struct SReferenceInput {
  uint32_t nWidth = 0;
  uint32_t nHeight = 0;
  uint32_t nBitDepth = 0; ///< 8 to 16
  bool bMosaic = false;   ///< the four sites of each cell of 2 x 2 are fields of their own
  SFrameSums stBright;
  SFrameSums stDark; ///< no frames: the dark level is 0
  std::optional<SCameraNoise> stCamera;
  uint32_t nThreads = 1;
};

/// Where the noise of the bright frames is known from.
enum class ENoiseSource {
  Differences,    ///< of the frames
  Camera,         ///< as it was stated
  PhotonTransfer, ///< within the one frame
  AllDetail,      ///< one frame of nearly one level: its finest detail counts as noise
  HalfDetail,     ///< the same, with less of it than the light's noise in any common sensor: half of it counts
};

/// "differences of the frames" and so on.
const char *DescribeNoiseSource(ENoiseSource eSource);

struct SReferenceResult {
  ENoiseSource eNoise = ENoiseSource::Differences;
  double dNoise = 0;        ///< standard deviation of one bright frame at its mean level, DN
  double dDetailWeight = 0; ///< mean weight of the finest detail, 0 to 1; of a mosaic the mean of its planes
};

/// Makes the references, left-justified in 16 bits: the fraction that an average has beyond the frames' depth is kept.
/// Any number of threads gives the same. Needs 2 bytes per pixel beside input and output, and some MB per thread.
/// \param pBright, pDark nWidth x nHeight numbers each; pDark is not touched without dark frames
/// \return 0; -2 when there is no memory; -3 for sizes, depths or counts that there are not
[[nodiscard]] int32_t MakeWeightedReference(const SReferenceInput &stInput, uint16_t *pBright, uint16_t *pDark,
                                            SReferenceResult &stResult) noexcept;

} // namespace ffc::reference

/// \file
/// Statuses of the image computations.
#pragma once

#include <cstdint>

/// 0 is success, every failure is negative. The processes map these to the plug-in's status codes.
enum EImageCalcStatus : int32_t {
  IMAGECALC_STATUS_SUCCESS = 0,
  IMAGECALC_STATUS_INVALID_ARGUMENT = -101, ///< a missing buffer, a grid or a size that does not fit
  IMAGECALC_STATUS_OUT_OF_RANGE = -102,
  IMAGECALC_STATUS_OUT_OF_MEMORY = -103,
  IMAGECALC_STATUS_NOT_SUPPORTED = -105,   ///< a Bayer type or bit depth that is not supported
  IMAGECALC_STATUS_SIZE_MISMATCH = -106,   ///< a coefficient buffer of another size than the image needs
  IMAGECALC_STATUS_NOT_INITIALIZED = -107, ///< no block grid accepted yet
};

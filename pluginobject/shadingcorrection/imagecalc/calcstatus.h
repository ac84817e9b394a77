/// \file
/// Statuses of the image computations.
#pragma once

#include <cstdint>

namespace ffc::imagecalc {

// 0 is success, every failure is negative. The processes map these to the plug-in's status codes.
inline constexpr int32_t IMAGECALC_STATUS_SUCCESS = 0;
/// A missing buffer, a grid or a size that does not fit.
inline constexpr int32_t IMAGECALC_STATUS_INVALID_ARGUMENT = -101;
inline constexpr int32_t IMAGECALC_STATUS_OUT_OF_RANGE = -102;
inline constexpr int32_t IMAGECALC_STATUS_OUT_OF_MEMORY = -103;
/// A Bayer type or bit depth that is not supported.
inline constexpr int32_t IMAGECALC_STATUS_NOT_SUPPORTED = -105;
/// A coefficient buffer of another size than the image needs.
inline constexpr int32_t IMAGECALC_STATUS_SIZE_MISMATCH = -106;
/// No block grid accepted yet.
inline constexpr int32_t IMAGECALC_STATUS_NOT_INITIALIZED = -107;

} // namespace ffc::imagecalc

/// \file
/// How many frames a bright field can be averaged from.
#pragma once

namespace ffc::genapi {

/// What FFCFrameCount offers, as "FFCFrameCount_1" and so on, and the dialog too.
inline constexpr int FRAME_COUNTS[] = {1, 2, 4, 8, 16};

} // namespace ffc::genapi

/// \file
/// Which of the frames that wait are delivered.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ffc::camera {

/// The entries of StreamBufferHandlingMode.
enum class EBufferHandling : int64_t { OldestFirst = 0, OldestFirstOverwrite = 1, NewestOnly = 2 };

/// How many waiting frames are kept, the newest ones, when a frame is to be delivered; the others are dropped.
///
/// Overwriting keeps half of the buffers free, so that the camera always finds one.
/// \param nBuffers that the stream has
constexpr std::size_t GetKeptFrames(EBufferHandling eHandling, std::size_t nBuffers)
{
  switch (eHandling) {
  case EBufferHandling::NewestOnly: return 1;
  case EBufferHandling::OldestFirstOverwrite: return nBuffers / 2;
  default: return nBuffers;
  }
}

} // namespace ffc::camera

/// \file
/// The frames of a real camera that did not arrive, and why.
#pragma once

#include <cstdint>

namespace ffc::camera {

struct SFrameLosses {
  uint64_t nIncomplete = 0;  ///< came without some of their packets, or not of the size that they say
  uint64_t nWithoutRoom = 0; ///< came when no buffer was free: this program is too slow
  uint64_t nOverwritten = 0; ///< gave way to newer ones, as StreamBufferHandlingMode wants it
  uint64_t nUnusable = 0;    ///< are no image, or of a format that is not received
  uint64_t nNeverSeen = 0;   ///< nothing of them came: gaps in the camera's own numbers
  uint64_t nMissingPackets = 0;
  uint64_t nResentPackets = 0; ///< asked for again, and then received

  uint64_t GetFrames() const { return nIncomplete + nWithoutRoom + nOverwritten + nUnusable + nNeverSeen; }

  SFrameLosses &operator+=(const SFrameLosses &stOther)
  {
    nIncomplete += stOther.nIncomplete;
    nWithoutRoom += stOther.nWithoutRoom;
    nOverwritten += stOther.nOverwritten;
    nUnusable += stOther.nUnusable;
    nNeverSeen += stOther.nNeverSeen;
    nMissingPackets += stOther.nMissingPackets;
    nResentPackets += stOther.nResentPackets;
    return *this;
  }
};

} // namespace ffc::camera

/// \file
/// What the camera of the tests sees.
#pragma once

#include <atomic>
#include <cstdint>

#include <arv.h>

namespace ffc::test {

/// An evenly lit target through a lens that is darker in its corners, on a sensor whose pixels differ; or the lens
/// cap. A colour camera sees it reddish until its white balance has run.
class CShadedScene {
public:
  /// From any thread.
  void SetLensCap(bool bCovered) { m_bLensCapOn = bCovered; }

  /// Fills one frame, as the camera's registers say. On the camera's own thread, which also serves the registers.
  void Expose(ArvFakeCamera &camera, ArvBuffer &buffer);

private:
  void Balance(ArvFakeCamera &camera);

  std::atomic<bool> m_bLensCapOn{false};
  uint32_t m_nFrame = 0;
};

/// Gives the camera this sensor and the settings that it has when it gets power.
/// \param nPixelFormat PFNC code of a format in camera.xml; a Bayer one makes it a colour camera
void PowerOn(ArvFakeCamera &camera, uint32_t nPixelFormat, uint32_t nWidth, uint32_t nHeight, uint32_t nFramePeriod);

} // namespace ffc::test

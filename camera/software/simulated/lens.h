/// \file
/// What falls onto the simulated sensor.
#pragma once

#include <cstdint>

#include "camera/software/scenestate.h"
#include "genapi/sensorformat.h"

namespace ffc::camera {

/// Lens and scene in front of a sensor of a given size; all results are relative to the centre of an
/// evenly lit target under green light.
class CLens {
public:
  /// \param dCornerFalloff what the four corners get on average, above 0 and at most 1
  CLens(uint32_t nSensorWidth, uint32_t nSensorHeight, double dCornerFalloff);

  /// Light on a pixel, without the sensor's colour filters.
  float GetLight(const SScene &stScene, uint32_t nX, uint32_t nY) const;
  /// Lens alone: cos^4 of the angle, times a tilt for the decentred mount.
  float GetFalloff(uint32_t nX, uint32_t nY) const;

private:
  float m_fCentreX;
  float m_fCentreY;
  float m_fScaleX; ///< to -1 .. 1 over the width
  float m_fScaleY;
  float m_fAspectX; ///< share of the half diagonal
  float m_fAspectY;
  float m_fTangentSquared; ///< of the angle at the corners
};

/// What the lamp gives in a colour, relative to green.
double GetLampColor(genapi::EColor eColor);

} // namespace ffc::camera

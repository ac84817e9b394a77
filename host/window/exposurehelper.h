/// \file
/// Exposes so that the brightest part of the image lies where a bright field wants it.
#pragma once

#include <cstdint>

#include "host/viewer/framepipeline.h"

namespace ffc::host {

/// Finds an exposure time in some steps, from the frames as the sensor gave them. The brightest part is the grey that
/// all but a thousandth of the samples stay below. User-interface thread.
class CExposureHelper {
public:
  static constexpr double TARGET_PERCENT = 70; ///< of the format's maximum
  static constexpr double TOLERANCE = 1.5;     ///< percent of the maximum

  enum class EOutcome {
    Wait,      ///< for a frame that was exposed anew
    Write,     ///< the camera is to get another exposure time
    Done,      ///< the image is as bright as it should be
    TooDark,   ///< the longest exposure is not enough
    TooBright, ///< the shortest exposure is too much
    Unsteady,  ///< the light changes, or the camera does not follow
    NoFigures  ///< frames of this format have none
  };

  struct SStep {
    EOutcome eOutcome = EOutcome::Wait;
    double dExposure = 0; ///< to be written, microseconds
    double dLevel = 0;    ///< of the brightest part, percent of the format's maximum
  };

  void Begin();
  void Cancel() { m_bRunning = false; }
  bool IsRunning() const { return m_bRunning; }

  /// To be called with each frame while it runs. Anything but Wait and Write ends it.
  /// \param dExposure, dMin, dMax of the camera now, microseconds
  SStep Look(const SFrameCopy &stFrame, double dExposure, double dMin, double dMax);

private:
  SStep Judge(double dLevel, double dExposure, double dMin, double dMax);

  bool m_bRunning = false;
  int m_nWait = 0; ///< frames to pass by: they were exposed before
  int m_nSteps = 0;
};

} // namespace ffc::host

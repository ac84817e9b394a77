/// \file
/// What a camera does to a frame after its sensor.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "camera/software/camerasettings.h"
#include "camera/software/selfcorrection/blocklayout.h"

namespace ffc::camera {

/// The coefficient register as it was written, and what it was written for. Never changed once it is
/// shared between threads.
struct SCoefficients {
  SBlockLayout stLayout;
  std::vector<uint8_t> listRegister; ///< GetRegisterSize() bytes
};

/// What is done to one frame, besides the settings it was exposed with.
struct SFrameCorrection {
  std::shared_ptr<const SCoefficients> pCoefficients; ///< with a table, for the frame's region; null: no correction
  double dExpectGray = 255.0;                         ///< 0 to 255; 255 multiplies by one
  uint32_t nDigitalShift = 0;                         ///< 0 to 4
};

/// Digital shift, then correction, so that coefficients hold for frames of the shift that they were
/// measured with. Used on the camera's thread only.
class CFrameCorrector {
public:
  /// Shift: each value times 2^n. Correction: (value - dark level) x gain x expected grey / 255, rounded;
  /// dark level, scaled to the frame's bits, and gain are interpolated between the blocks. Both end at
  /// the format's range.
  void Process(const SCameraSettings &stSettings, const SFrameCorrection &stCorrection, void *pFrame);

private:
  bool IsPrepared(const SCameraSettings &stSettings, const SFrameCorrection &stCorrection) const;
  void Prepare(const SCameraSettings &stSettings, const SFrameCorrection &stCorrection);
  template <class TSample>
  void ProcessSamples(const SCameraSettings &stSettings, const SFrameCorrection &stCorrection, TSample *pFrame);

  /// Per pixel, for what stands below.
  std::vector<float> m_listDark;
  std::vector<float> m_listFactor;
  std::shared_ptr<const SCoefficients> m_pPrepared; ///< kept alive, so that its address stays its own
  const genapi::SSensorFormat *m_pPreparedFormat = nullptr;
  double m_dPreparedGray = 0.0;
};

} // namespace ffc::camera

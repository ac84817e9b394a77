/// \file
/// A sensor after EMVA 1288's linear model.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "camera/software/iframesource.h"
#include "camera/software/simulated/lens.h"
#include "camera/software/simulated/noisetable.h"

namespace ffc::camera {

/// The sensor's figures, in electrons where no other unit is said.
struct SSensorModel {
  double dFullWell = 15000.0;       ///< becomes full scale at 0 dB
  double dDarkNoise = 6.0;          ///< temporal, of one readout
  double dDarkCurrent = 20.0;       ///< per second of exposure
  double dPrnu = 0.008;             ///< standard deviation of the pixels' response, as a share
  double dDsnu = 3.0;               ///< standard deviation of the pixels' dark signal
  double dHotPixels = 0.0;          ///< share of the pixels that have a dark signal far above the others ...
  double dHotSignal = 3000.0;       ///< ... by so much
  double dBrightSignal = 0.716;     ///< share of the full well that the target's centre gives ...
  double dBrightExposure = 10000.0; ///< ... in so many microseconds
};

/// Light falls through the lens for the exposure time; each pixel turns it into electrons with its own
/// response (PRNU) and dark signal (DSNU), their number varies from frame to frame (photon shot noise,
/// taken as Gaussian, and dark noise), the well overflows at its capacity; gain, white balance and
/// black level make it a number that is rounded and cut off at the ends of its range. With fixed-pattern
/// correction the pixels' dark signals are taken off, with dead-pixel correction hot pixels look as if
/// they were not.
class CSimulatedSensor final : public IFrameSource {
public:
  /// \param nSeed the sensor's own pixels and the noise of all its frames
  CSimulatedSensor(uint32_t nSensorWidth, uint32_t nSensorHeight, double dCornerFalloff, uint64_t nSeed,
                   const SSensorModel &stModel = {});

  void Expose(const SCameraSettings &stSettings, const SScene &stScene, uint64_t nFrameId,
              std::vector<uint8_t> &listFrame) override;

private:
  void Prepare(const SCameraSettings &stSettings, const SScene &stScene);
  void MakeHotPixels(CRandomPicker &picker);
  double GetGain(const SCameraSettings &stSettings, genapi::EColor eColor) const;
  void PrepareHotPixels(const SCameraSettings &stSettings);
  void PrepareRow(const SCameraSettings &stSettings, const SScene &stScene, uint32_t nY);
  template <class TSample>
  void Digitise(const SCameraSettings &stSettings, uint64_t nFrameId, TSample *pFrame) const;

  SSensorModel m_stModel;
  uint32_t m_nSensorWidth;
  uint64_t m_nSeed;
  CLens m_lens;
  CNoiseTable m_noise;
  std::vector<float> m_listResponse;   ///< per pixel of the sensor, about 1
  std::vector<float> m_listDarkSignal; ///< per pixel of the sensor, electrons, about 0
  std::vector<uint32_t> m_listHot;     ///< places of the hot pixels, row by row

  /// Per pixel of the frame, for the settings and the scene below: values in digital numbers.
  std::vector<float> m_listMean;
  std::vector<float> m_listDeviation;
  std::optional<SCameraSettings> m_stPrepared;
  SScene m_stPreparedScene;
};

} // namespace ffc::camera

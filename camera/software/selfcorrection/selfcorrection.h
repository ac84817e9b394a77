/// \file
/// A camera's own shading correction as a whole.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "camera/software/camerafeatures.h"
#include "camera/software/selfcorrection/cameraflash.h"
#include "camera/software/selfcorrection/coefficientregister.h"
#include "camera/software/selfcorrection/correctionfeatures.h"
#include "camera/software/selfcorrection/framecorrector.h"
#include "camera/software/selfcorrection/sensorfeatures.h"
#include "camera/software/selfcorrection/usersets.h"
#include "camera/software/whitebalance.h"

namespace ffc::camera {

struct SSelfCorrectionOptions {
  ECorrectionMode eMode = ECorrectionMode::FlatField; ///< not None
  std::string strFlashFile;                           ///< empty: a flash that ends with the camera
  std::string strPixelFormat;                         ///< selected at power-on, unless a saved user set is loaded
};

/// Adds the features of the correction to a camera and corrects its frames. Make it when all other
/// features are declared.
class CSelfCorrection {
public:
  /// \param stOptions of mode FlatField or Vignetting
  /// \param features, pWhiteBalance outlive this object; no white balance for a mono camera
  CSelfCorrection(const SCameraDescription &stDescription, const SSelfCorrectionOptions &stOptions,
                  CCameraFeatures &features, ffc::camera::CWhiteBalance *pWhiteBalance);

  /// Reads the flash and loads the user set to start with. Before the camera is used.
  /// \return why not: what is wrong with the flash
  Result<> PowerOn();

  /// What to expose the next frame with and what to do to it then, as the features say now; with the
  /// device map's lock held, so that both belong together.
  void CompleteSettings(SCameraSettings &stSettings) const;
  SFrameCorrection GetFrameCorrection() const;

private:
  SBlockLayout GetLayout() const;

  SSelfCorrectionOptions m_stOptions;
  bool m_bColor;
  CCameraFeatures &m_features;
  CCameraFlash m_flash;
  ffc::camera::CCorrectionFeatures m_correction;
  std::optional<CSensorFeatures> m_sensor; ///< of a flat-field camera
  CCoefficientRegister m_register;
  std::optional<ffc::camera::CUserSets> m_userSets; ///< always; made when all settings are declared
};

} // namespace ffc::camera

/// \file
/// Flat-field correction on the host, for cameras that cannot correct by themselves.
#pragma once

#include <atomic>
#include <memory>
#include <string>

#include <QFile>

#include "pluginobject/featureaccess.h"
#include "pluginobject/shadingcorrection/process/acquisition/framebuffer.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameformat.h"
#include "pluginobject/shadingcorrection/process/camerastate/hoststreamguard.h"
#include "pluginobject/shadingcorrection/process/camerastate/whitebalance.h"
#include "pluginobject/shadingcorrection/process/coefficients/hosttable.h"
#include "pluginobject/shadingcorrection/process/processbase.h"
#include "pluginobject/statuscode.h"

/// Takes a dark frame and an averaged bright frame from the running stream, has Ombrix compute a
/// per-pixel coefficient table, and corrects every frame with it.
///
/// Each operation that touches the camera answers -3 without its node map. A failed acquisition leaves no
/// frame of its kind behind; the camera's settings are put back on every path.
class CShadingCorrectionPro_PC : public ffc::process::CProcessBase {
  Q_OBJECT

public:
  CShadingCorrectionPro_PC(const ffc::pluginobject::CFeatureAccess &deviceFeatures,
                           const ffc::pluginobject::CFeatureAccess &streamFeatures);
  ~CShadingCorrectionPro_PC() override;

  int32_t InitProcess() override;
  int32_t PrepareDeviceParam() override;
  int32_t RestoreDeviceParam() override;
  int32_t AcquireDarkImage() override;
  int32_t AcquireBrightImage() override;
  int32_t ExecuteCorrection() override;
  int32_t SetFrameCount(std::string strEntry) override;
  int32_t SetExpectGray(int64_t nExpectGray) override;
  int32_t LoadFromFlash() override { return PLUGIN_STATUS_SUCCESS; }
  int32_t SaveToFlash() override { return PLUGIN_STATUS_SUCCESS; }
  int32_t LoadFromFile() override;
  int32_t SaveToFile() override;
  int32_t CorrectImage(const void *pSource, void *pDestination, uint32_t nWidth, int32_t nHeight,
                       uint32_t nPixelFormat) override;

private:
  bool __HasNodeMaps() const;
  int32_t __SaveCameraState();
  void __KeepDarkFrame();
  int32_t __StartBrightStream();
  int32_t __CollectAndJudge(bool bFirst);
  int32_t __JudgeFrame();
  void __PutIntoForce(ffc::process::HostTablePtr pTable);
  int32_t __LoadTable(QFile &file);

  // Cleared on the frame thread too, when the frames' format changes.
  std::atomic<bool> m_bDarkValid{false};
  std::atomic<bool> m_bBrightValid{false};
  uint32_t m_nTimeout = 0; // milliseconds
  float m_fGain = 0.0F;
  float m_fExposureTime = 0.0F;
  std::string m_strPixelColorFilter;
  ffc::pluginobject::CFeatureAccess m_streamFeatures;
  ffc::process::CFrameBuffer m_darkFrame;
  ffc::process::CHostCoefficients m_coefficients;
  ffc::process::CWhiteBalance m_whiteBalance;
  ffc::process::CHostStreamGuard m_streamGuard;
};

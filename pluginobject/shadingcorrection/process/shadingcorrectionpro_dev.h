/// \file
/// Flat-field correction for cameras that apply a coefficient table themselves.
#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "pluginobject/featureaccess.h"
#include "pluginobject/shadingcorrection/imagecalc/getsccoefficient.h"
#include "pluginobject/shadingcorrection/process/acquisition/framebuffer.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameformat.h"
#include "pluginobject/shadingcorrection/process/camerastate/deviceparamguard.h"
#include "pluginobject/shadingcorrection/process/coefficients/devicecorrection.h"
#include "pluginobject/shadingcorrection/process/processbase.h"
#include "pluginobject/statuscode.h"

/// Takes a dark frame and an averaged bright frame in the camera's factory state, computes a dark level and
/// gains per block, and writes them into the camera, which then corrects its own frames.
///
/// Frames are read as 8 bit. Each operation that touches the camera answers -3 without its node map. A
/// failed acquisition leaves no frame of its kind behind; the camera's settings are put back on every path.
class CShadingCorrectionPro_Dev : public ffc::process::CProcessBase {
  Q_OBJECT

public:
  explicit CShadingCorrectionPro_Dev(const ffc::pluginobject::CFeatureAccess &deviceFeatures);
  ~CShadingCorrectionPro_Dev() override;

  int32_t InitProcess() override;
  int32_t PrepareDeviceParam() override;
  int32_t RestoreDeviceParam() override;
  int32_t AcquireDarkImage() override;
  int32_t AcquireBrightImage() override;
  int32_t ExecuteCorrection() override;
  int32_t SetFrameCount(std::string strEntry) override;
  int32_t SetExpectGray(int64_t nExpectGray) override;
  int32_t LoadFromFlash() override;
  int32_t SaveToFlash() override;
  int32_t LoadFromFile() override;
  int32_t SaveToFile() override;
  int32_t CorrectImage(const void * /*pSource*/, void * /*pDestination*/, uint32_t /*nWidth*/, int32_t /*nHeight*/,
                       uint32_t /*nPixelFormat*/) override
  {
    return PLUGIN_STATUS_SUCCESS;
  }

  /// Reads what PrepareDeviceParam writes back; both acquisitions begin with it.
  int32_t SaveUserParam();

private:
  /// A kept frame, the format it was taken in and its largest block mean.
  struct SReferenceFrame {
    ffc::process::CFrameBuffer data;
    ffc::process::SFrameFormat stFormat;
    double dMaxGray = 0.0;
  };

  int32_t __SettlePendingRestore();
  int32_t __BeginAcquisition();
  void __DropDark();
  int32_t __TriggerFrame();
  int32_t __JudgeFrame();
  void __KeepDarkFrame();
  int32_t __StartBrightStream();
  int32_t __CollectAndJudge(bool bFirst, int32_t &nJudged);
  bool __IsDarkUsed() const;
  int32_t __ComputeBody(ffc::process::CFrameBuffer &body);

  bool m_bDarkUsable = false;
  ffc::process::SDeviceSettings m_stSettings;
  SReferenceFrame m_stDark;
  ffc::process::SFrameFormat m_stBrightFormat;
  double m_dBrightMaxGray = 0.0;             // largest block mean of the first bright frame
  ffc::process::CFrameBuffer m_coefficients; // the whole image; its size is the coefficients size of the initialisation
  ffc::process::CDeviceParamGuard m_guard;
  CGetSCCoefficient m_generator;
  ffc::process::SFrameFormat m_stGeneratorFormat; // of the last analysed frame, for which the generator is set up
};

/// \file
/// Vignetting correction for cameras that apply a table of gains themselves.
#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "pluginobject/featureaccess.h"
#include "pluginobject/shadingcorrection/process/acquisition/framebuffer.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameformat.h"
#include "pluginobject/shadingcorrection/process/camerastate/savedsettings.h"
#include "pluginobject/shadingcorrection/process/coefficients/devicecorrection.h"
#include "pluginobject/shadingcorrection/process/processbase.h"
#include "pluginobject/statuscode.h"

/// Takes an averaged bright frame at the camera's own bit depth, computes gains per block that lift the
/// darker parts to the level of the brightest, and writes them into the camera, which then corrects its own
/// frames. There is no dark frame and no expected grey.
///
/// Each operation that touches the camera answers -3 without its node map. A failed acquisition leaves no
/// frame behind; trigger mode and stream are put back on every path. The camera's own correction stays off
/// after an acquisition, until coefficients are put into force.
class CVignettingCorrectionPro_Dev : public ffc::process::CProcessBase {
  Q_OBJECT

public:
  explicit CVignettingCorrectionPro_Dev(const ffc::pluginobject::CFeatureAccess &deviceFeatures);
  ~CVignettingCorrectionPro_Dev() override;

  int32_t InitProcess() override;
  int32_t PrepareDeviceParam() override;
  int32_t RestoreDeviceParam() override;
  int32_t AcquireDarkImage() override { return PLUGIN_STATUS_SUCCESS; }
  int32_t AcquireBrightImage() override;
  int32_t ExecuteCorrection() override;
  int32_t SetFrameCount(std::string strEntry) override;
  int32_t SetExpectGray(int64_t /*nExpectGray*/) override { return PLUGIN_STATUS_SUCCESS; }
  int32_t LoadFromFlash() override;
  int32_t SaveToFlash() override;
  int32_t LoadFromFile() override;
  int32_t SaveToFile() override;
  int32_t CorrectImage(const void * /*pSource*/, void * /*pDestination*/, uint32_t /*nWidth*/, int32_t /*nHeight*/,
                       uint32_t /*nPixelFormat*/) override
  {
    return PLUGIN_STATUS_SUCCESS;
  }

private:
  int32_t __SaveCameraState();
  int32_t __CollectAndJudge(bool bFirst);
  int32_t __JudgeFrame();
  int32_t __SizeCoefficients(ffc::process::CFrameBuffer &body);
  int32_t __ComputeBody(ffc::process::CFrameBuffer &body);
  int32_t __AllocateImage(ffc::process::CFrameBuffer &image);

  uint32_t m_nTimeout = 0; // milliseconds
  ffc::process::CStreamingState m_streaming;
  ffc::process::CSavedEntry m_triggerMode{"TriggerMode"};
  ffc::process::SDeviceSettings m_stSettings;
  ffc::process::CFrameBuffer m_coefficients; // the whole image
};

/// \file
/// Vignetting correction for cameras that apply a table of gains themselves.
#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "pluginobject/featureaccess.h"
#include "pluginobject/shadingcorrection/process/acquisition/brightfield.h"
#include "pluginobject/shadingcorrection/process/acquisition/framebuffer.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameexchange.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameformat.h"
#include "pluginobject/shadingcorrection/process/acquisition/framejudge.h"
#include "pluginobject/shadingcorrection/process/camerastate/savedsettings.h"
#include "pluginobject/shadingcorrection/process/coefficients/devicecorrection.h"
#include "pluginobject/shadingcorrection/process/coefficients/filechooser.h"
#include "pluginobject/shadingcorrection/process/ishadingcorrectionprocess.h"
#include "pluginobject/statuscode.h"

/// Takes an averaged bright frame at the camera's own bit depth, computes gains per block that lift the
/// darker parts to the level of the brightest, and writes them into the camera, which then corrects its own
/// frames. There is no dark frame and no expected grey.
///
/// Each operation that touches the camera answers -3 without its node map. A failed acquisition leaves no
/// frame behind; trigger mode and stream are put back on every path. The camera's own correction stays off
/// after an acquisition, until coefficients are put into force.
class CVignettingCorrectionPro_Dev : public IShadingCorrectionProcess {
  Q_OBJECT

public:
  explicit CVignettingCorrectionPro_Dev(const CFeatureAccess &deviceFeatures);
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
  void ReceiveImage(const void *pFrame, uint32_t nSize) override { m_exchange.ReceiveFrame(pFrame, nSize); }
  void SetImageReady() override { m_exchange.SetFrameReady(); }
  uint32_t WaitImageRequest() override { return m_exchange.PollRequest(); }
  FFCInfo GetCorrectionInfo() override { return m_stInfo; }
  double GetImageMaxGray() override { return m_stGray.dMax; }
  double GetImageGrayDiff() override { return m_stGray.dMax - m_stGray.dMin; }
  bool IsBlackLevelDefault() override { return m_bBlackLevelDefault; }
  int32_t CorrectImage(const void * /*pSource*/, void * /*pDestination*/, uint32_t /*nWidth*/, int32_t /*nHeight*/,
                       uint32_t /*nPixelFormat*/) override
  {
    return PLUGIN_STATUS_SUCCESS;
  }
  bool IsPixelFormatSupported() override { return IsBayerFormatSelected(m_deviceFeatures, m_bColor); }
  void SetStopFlag(bool bStop) override { m_exchange.SetStopFlag(bStop); }
  bool IsColorCamera() override { return m_bColor; }

  /// Replaces the file dialogs.
  void SetFileChooser(std::unique_ptr<IFileChooser> pFileChooser);

private:
  void __EmitAcquisition(EPluginMsgCode eCode);
  int32_t __SaveCameraState();
  int32_t __CaptureBright();
  int32_t __TakeBrightFrame(bool bFirst);
  int32_t __AnalyseFrame();
  int32_t __SizeCoefficients(CFrameBuffer &body);
  int32_t __ComputeBody(CFrameBuffer &body);
  int32_t __AllocateImage(CFrameBuffer &image);

  std::atomic<bool> m_bColor{false};
  bool m_bBlackLevelDefault = true;
  uint32_t m_nTimeout = 0; // milliseconds
  ffc::process::CStreamingState m_streaming;
  ffc::process::CSavedEntry m_triggerMode{"TriggerMode"};
  SFrameFormat m_stFormat;
  SBlockMeanRange m_stGray; // on an 8-bit scale
  SDeviceSettings m_stSettings;
  FFCInfo m_stInfo;
  CFeatureAccess m_deviceFeatures;
  CFrameBuffer m_coefficients; // the whole image
  CFrameExchange m_exchange;
  CBrightField m_bright{m_exchange};
  std::unique_ptr<IFileChooser> m_pFileChooser;
};

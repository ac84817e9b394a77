/// \file
/// Flat-field correction for cameras that apply a coefficient table themselves.
#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "pluginobject/featureaccess.h"
#include "pluginobject/shadingcorrection/imagecalc/getsccoefficient.h"
#include "pluginobject/shadingcorrection/process/acquisition/brightfield.h"
#include "pluginobject/shadingcorrection/process/acquisition/framebuffer.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameexchange.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameformat.h"
#include "pluginobject/shadingcorrection/process/acquisition/framejudge.h"
#include "pluginobject/shadingcorrection/process/camerastate/deviceparamguard.h"
#include "pluginobject/shadingcorrection/process/coefficients/devicecorrection.h"
#include "pluginobject/shadingcorrection/process/coefficients/filechooser.h"
#include "pluginobject/shadingcorrection/process/ishadingcorrectionprocess.h"
#include "pluginobject/statuscode.h"

/// Takes a dark frame and an averaged bright frame in the camera's factory state, computes a dark level and
/// gains per block, and writes them into the camera, which then corrects its own frames.
///
/// Frames are read as 8 bit. Each operation that touches the camera answers -3 without its node map. A
/// failed acquisition leaves no frame of its kind behind; the camera's settings are put back on every path.
class CShadingCorrectionPro_Dev : public IShadingCorrectionProcess {
  Q_OBJECT

public:
  explicit CShadingCorrectionPro_Dev(const CFeatureAccess &deviceFeatures);
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

  /// Reads what PrepareDeviceParam writes back; both acquisitions begin with it.
  int32_t SaveUserParam();
  /// Replaces the file dialogs.
  void SetFileChooser(std::unique_ptr<IFileChooser> pFileChooser);

private:
  /// A kept frame, the format it was taken in and its largest block mean.
  struct SReferenceFrame {
    CFrameBuffer data;
    SFrameFormat stFormat;
    double dMaxGray = 0.0;
  };

  void __EmitAcquisition(EPluginMsgCode eCode);
  int32_t __SettlePendingRestore();
  void __DropDark();
  int32_t __CaptureDark();
  int32_t __TriggerFrame();
  int32_t __AnalyseFrame();
  void __KeepDarkFrame();
  int32_t __CaptureBright();
  int32_t __StartBrightStream();
  int32_t __BalanceWhite();
  int32_t __TakeBrightFrames();
  bool __IsDarkUsed() const;
  int32_t __ComputeBody(CFrameBuffer &body);

  std::atomic<bool> m_bColor{false};
  bool m_bDarkUsable = false;
  bool m_bBlackLevelDefault = false;
  SFrameFormat m_stFormat;
  SBlockMeanRange m_stGray;
  SDeviceSettings m_stSettings;
  FFCInfo m_stInfo;
  CFeatureAccess m_deviceFeatures;
  SReferenceFrame m_stDark;
  SFrameFormat m_stBrightFormat;
  double m_dBrightMaxGray = 0.0; // largest block mean of the first bright frame
  CFrameBuffer m_coefficients;   // the whole image; its size is the coefficients size of the initialisation
  CFrameExchange m_exchange;
  CBrightField m_bright{m_exchange};
  ffc::process::CDeviceParamGuard m_guard;
  CGetSCCoefficient m_generator;
  SFrameFormat m_stGeneratorFormat; // of the last analysed frame, for which the generator is set up
  std::unique_ptr<IFileChooser> m_pFileChooser;
};

/// \file
/// Flat-field correction on the host, for cameras that cannot correct by themselves.
#pragma once

#include <atomic>
#include <memory>
#include <string>

#include <QFile>

#include "pluginobject/featureaccess.h"
#include "pluginobject/shadingcorrection/process/acquisition/brightfield.h"
#include "pluginobject/shadingcorrection/process/acquisition/framebuffer.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameexchange.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameformat.h"
#include "pluginobject/shadingcorrection/process/acquisition/framejudge.h"
#include "pluginobject/shadingcorrection/process/camerastate/hoststreamguard.h"
#include "pluginobject/shadingcorrection/process/camerastate/whitebalance.h"
#include "pluginobject/shadingcorrection/process/coefficients/filechooser.h"
#include "pluginobject/shadingcorrection/process/coefficients/hosttable.h"
#include "pluginobject/shadingcorrection/process/ishadingcorrectionprocess.h"
#include "pluginobject/statuscode.h"

/// Takes a dark frame and an averaged bright frame from the running stream, has Ombrix compute a
/// per-pixel coefficient table, and corrects every frame with it.
///
/// Each operation that touches the camera answers -3 without its node map. A failed acquisition leaves no
/// frame of its kind behind; the camera's settings are put back on every path.
class CShadingCorrectionPro_PC : public IShadingCorrectionProcess {
  Q_OBJECT

public:
  CShadingCorrectionPro_PC(const CFeatureAccess &deviceFeatures, const CFeatureAccess &streamFeatures);
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
  void ReceiveImage(const void *pFrame, uint32_t nSize) override { m_exchange.ReceiveFrame(pFrame, nSize); }
  void SetImageReady() override { m_exchange.SetFrameReady(); }
  uint32_t WaitImageRequest() override { return m_exchange.PollRequest(); }
  FFCInfo GetCorrectionInfo() override { return m_stInfo; }
  double GetImageMaxGray() override { return m_stGray.dMax; }
  double GetImageGrayDiff() override { return m_stGray.dMax - m_stGray.dMin; }
  bool IsBlackLevelDefault() override { return m_bBlackLevelDefault; }
  int32_t CorrectImage(const void *pSource, void *pDestination, uint32_t nWidth, int32_t nHeight,
                       uint32_t nPixelFormat) override;
  bool IsPixelFormatSupported() override { return IsBayerFormatSelected(m_deviceFeatures, m_bColor); }
  void SetStopFlag(bool bStop) override { m_exchange.SetStopFlag(bStop); }
  bool IsColorCamera() override { return m_bColor; }

  /// Replaces the file dialogs.
  void SetFileChooser(std::unique_ptr<IFileChooser> pFileChooser);

private:
  bool __HasNodeMaps() const;
  void __EmitAcquisition(EPluginMsgCode eCode);
  int32_t __SaveCameraState();
  int32_t __CaptureDark();
  int32_t __CaptureBright();
  int32_t __StartBrightStream();
  int32_t __TakeBrightFrames();
  int32_t __KeepBrightFrame(bool bFirst);
  int32_t __JudgeFrame();
  void __PutIntoForce(HostTablePtr pTable);
  int32_t __LoadTable(QFile &file);

  std::atomic<bool> m_bColor{false};
  // Cleared on the frame thread too, when the frames' format changes.
  std::atomic<bool> m_bDarkValid{false};
  std::atomic<bool> m_bBrightValid{false};
  bool m_bBlackLevelDefault = true;
  int64_t m_nBlockWidth = 32;
  int64_t m_nBlockHeight = 32;
  uint32_t m_nTimeout = 0;  // milliseconds
  SBlockMeanRange m_stGray; // on an 8-bit scale
  float m_fGain = 0.0F;
  float m_fExposureTime = 0.0F;
  SFrameFormat m_stFormat;
  std::string m_strPixelColorFilter;
  FFCInfo m_stInfo;
  CFeatureAccess m_deviceFeatures;
  CFeatureAccess m_streamFeatures;
  CFrameBuffer m_darkFrame;
  CFrameExchange m_exchange;
  CBrightField m_bright{m_exchange};
  CHostCoefficients m_coefficients;
  ffc::process::CWhiteBalance m_whiteBalance;
  ffc::process::CHostStreamGuard m_streamGuard;
  std::unique_ptr<IFileChooser> m_pFileChooser;
};

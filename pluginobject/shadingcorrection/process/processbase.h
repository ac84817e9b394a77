/// \file
/// What is literally the same in all three processes.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <utility>

#include "pluginobject/featureaccess.h"
#include "pluginobject/shadingcorrection/process/acquisition/brightfield.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameexchange.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameformat.h"
#include "pluginobject/shadingcorrection/process/acquisition/framejudge.h"
#include "pluginobject/shadingcorrection/process/coefficients/filechooser.h"
#include "pluginobject/shadingcorrection/process/ishadingcorrectionprocess.h"

namespace ffc::process {

/// Holds the frame exchange, the correction record and the range of greys, and answers the operations that only hand
/// these over. It decides nothing and calls nothing of the process above it.
///
/// It is no class of the meta-object system: the parent of a process there is IShadingCorrectionProcess.
class CProcessBase : public IShadingCorrectionProcess {
public:
  ~CProcessBase() override;

  void ReceiveImage(const void *pFrame, uint32_t nSize) override { m_exchange.ReceiveFrame(pFrame, nSize); }
  void SetImageReady() override { m_exchange.SetFrameReady(); }
  uint32_t WaitImageRequest() override { return m_exchange.PollRequest(); }
  FFCInfo GetCorrectionInfo() override { return m_stInfo; }
  double GetImageMaxGray() override { return m_stGray.dMax; }
  double GetImageGrayDiff() override { return m_stGray.dMax - m_stGray.dMin; }
  bool IsBlackLevelDefault() override { return m_bBlackLevelDefault; }
  bool IsPixelFormatSupported() override { return IsBayerFormatSelected(m_deviceFeatures, m_bColor); }
  void SetStopFlag(bool bStop) override { m_exchange.SetStopFlag(bStop); }
  bool IsColorCamera() override { return m_bColor; }

  /// Replaces the file dialogs.
  void SetFileChooser(std::unique_ptr<IFileChooser> pFileChooser) { m_pFileChooser = std::move(pFileChooser); }

protected:
  CProcessBase(const pluginobject::CFeatureAccess &deviceFeatures, bool bBlackLevelDefault);

  /// Ask the host.
  void StartStream();
  void StopStream();

  pluginobject::CFeatureAccess m_deviceFeatures;
  std::atomic<bool> m_bColor{false};
  bool m_bBlackLevelDefault;
  SFrameFormat m_stFormat;  ///< of the frames of the last acquisition
  SBlockMeanRange m_stGray; ///< of the last judged frame, on an 8-bit scale
  FFCInfo m_stInfo;
  CFrameExchange m_exchange;
  CBrightField m_bright{m_exchange};
  std::unique_ptr<IFileChooser> m_pFileChooser;
};

} // namespace ffc::process

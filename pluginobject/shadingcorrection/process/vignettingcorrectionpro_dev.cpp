#include "pluginobject/shadingcorrection/process/vignettingcorrectionpro_dev.h"

#include <utility>

#include "pluginobject/shadingcorrection/imagecalc/calcstatus.h"
#include "pluginobject/shadingcorrection/imagecalc/vignetting/vignettingcoefficient.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameexchange.h"
#include "pluginobject/shadingcorrection/process/coefficients/devicecorrection.h"
#include "pluginobject/shadingcorrection/process/coefficients/entrytables.h"
#include "pluginobject/shadingcorrection/process/coefficients/ffcfile.h"
#include "pluginobject/shadingcorrection/process/steps.h"
#include "pluginobject/statuscode.h"

using ffc::pluginobject::CFeatureAccess;
using namespace ffc::process;

namespace {

constexpr uint32_t MODE_VIGNETTING = 2;

// Whether an image has a record, and the record says the image's size.
int32_t CheckRecord(const CFrameBuffer &image)
{
  const bool bMatches = HasRecord(image) && GetRecord(image).nCoefficientsSize == image.GetSize();
  return bMatches ? PLUGIN_STATUS_SUCCESS : PLUGIN_STATUS_ROI_MISMATCH;
}

// Opens and reads a file that has to be exactly as long.
int32_t ReadImage(QFile &file, uint64_t nSize, CFrameBuffer &image)
{
  const int32_t nStatus = OpenCoefficientFile(file);
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    return nStatus;
  }
  return static_cast<uint64_t>(file.size()) == nSize ? ReadCoefficientFile(file, nSize, image)
                                                     : PLUGIN_STATUS_ROI_MISMATCH;
}

} // namespace

CVignettingCorrectionPro_Dev::CVignettingCorrectionPro_Dev(const CFeatureAccess &deviceFeatures)
  : CProcessBase(deviceFeatures, true)
{
  m_stInfo.nMode = MODE_VIGNETTING;
}

CVignettingCorrectionPro_Dev::~CVignettingCorrectionPro_Dev() = default;

int32_t CVignettingCorrectionPro_Dev::InitProcess()
{
  if (!m_deviceFeatures.HasNodeMap()) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  m_bColor = ReadIsColorCamera(m_deviceFeatures);
  const int32_t nStatus =
    ReadDeviceSettings(m_deviceFeatures, m_bColor, ApplyVignettingBlockEntry, m_stSettings, m_stInfo);
  return nStatus == PLUGIN_STATUS_SUCCESS ? InitCoefficients(m_deviceFeatures, m_stInfo, m_coefficients) : nStatus;
}

int32_t CVignettingCorrectionPro_Dev::__SaveCameraState()
{
  m_triggerMode.Forget();
  m_streaming = CStreamingState();
  SFrameFormat stFormat;
  float fExposureTime = 0.0F;
  const int32_t nStatus = CSteps(m_deviceFeatures)
                            .Get("ExposureTime", fExposureTime)
                            .Save(m_streaming)
                            .Then(ReadPayloadSize, m_deviceFeatures, stFormat)
                            .Then(ReadWidth, m_deviceFeatures, stFormat)
                            .Then(ReadHeight, m_deviceFeatures, stFormat)
                            .Save(m_triggerMode)
                            .Then(ReadPixelFormat, m_deviceFeatures, stFormat)
                            .Status();
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    m_streaming.SaveLate(m_deviceFeatures);
    return nStatus;
  }
  stFormat.ApplyUnpackedSize();
  m_nTimeout = GetFrameTimeout(fExposureTime);
  m_stFormat = stFormat;
  return PLUGIN_STATUS_SUCCESS;
}

int32_t CVignettingCorrectionPro_Dev::PrepareDeviceParam()
{
  if (!m_deviceFeatures.HasNodeMap()) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  const int32_t nStatus = CSteps(m_deviceFeatures)
                            .Then(SwitchTriggerOff, m_deviceFeatures, m_triggerMode)
                            .Then(SwitchCorrectionOff, m_deviceFeatures)
                            .Status();
  if (nStatus == PLUGIN_STATUS_SUCCESS && !m_streaming.WasStreaming()) {
    StartStream();
  }
  return nStatus;
}

int32_t CVignettingCorrectionPro_Dev::RestoreDeviceParam()
{
  m_triggerMode.Restore(m_deviceFeatures);
  if (!m_streaming.WasStreaming()) {
    StopStream();
  }
  return PLUGIN_STATUS_SUCCESS;
}

int32_t CVignettingCorrectionPro_Dev::AcquireBrightImage()
{
  m_bright.Drop();
  if (!m_deviceFeatures.HasNodeMap()) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  // No frame is left whose size could have changed; the camera is asked all the same, as by each acquisition.
  (void)CheckFrameSize(m_deviceFeatures, m_stFormat);
  m_stInfo.nFrameCount = GetPossibleFrameCount(m_stInfo.nFrameCount);
  const CScopeGuard restore([this] {
    m_bright.EndAcquisition();
    RestoreDeviceParam();
  });
  const auto collectAndJudge = [this](uint32_t nFrame) { return __CollectAndJudge(nFrame == 0); };
  const int32_t nStatus =
    CSteps(m_deviceFeatures)
      .Then(&CVignettingCorrectionPro_Dev::__SaveCameraState, this)
      .Then(&CVignettingCorrectionPro_Dev::PrepareDeviceParam, this)
      .Then(&CBrightField::Allocate, m_bright, m_stFormat.nFrameSize)
      .Then(&CFrameExchange::TakeFrames, m_exchange, m_nTimeout, m_stInfo.nFrameCount, collectAndJudge)
      .Then(&CBrightField::Average, m_bright, m_stInfo.nFrameCount, m_stFormat)
      .Status();
  return m_bright.KeepOnSuccess(nStatus);
}

int32_t CVignettingCorrectionPro_Dev::__CollectAndJudge(bool bFirst)
{
  return CSteps(m_deviceFeatures)
    .Then(CheckFrameSize, m_deviceFeatures, m_stFormat)
    .Then([&] { return bFirst ? __JudgeFrame() : PLUGIN_STATUS_SUCCESS; })
    .Then(&CBrightField::Add, m_bright, m_stFormat)
    .Status();
}

int32_t CVignettingCorrectionPro_Dev::__JudgeFrame()
{
  return m_exchange.UseFrame([this](const CFrameBuffer &frame) {
    return MeasureEightBitMeans(frame, m_stFormat, m_stSettings.GetGrid(), m_stGray);
  });
}

int32_t CVignettingCorrectionPro_Dev::ExecuteCorrection()
{
  if (!m_deviceFeatures.HasNodeMap() || !m_coefficients.IsAllocated()) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  CFrameBuffer body;
  const int32_t nStatus = CSteps(m_deviceFeatures)
                            .Then(&CVignettingCorrectionPro_Dev::__SizeCoefficients, this, body)
                            .Then(&CVignettingCorrectionPro_Dev::__ComputeBody, this, body)
                            .Status();
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    return nStatus;
  }
  m_stInfo.nValid = 1;
  FillImage(body, m_stInfo, m_coefficients);
  return PutIntoForce(m_deviceFeatures, m_coefficients, m_stInfo);
}

// Makes room for the coefficients of the kept geometry.
int32_t CVignettingCorrectionPro_Dev::__SizeCoefficients(CFrameBuffer &body)
{
  const SBlockGrid stGrid = m_stSettings.GetGrid();
  int64_t nBodySize = 0;
  if (GetVignettingCoefficientSize(stGrid.nBayerType, m_stFormat.nWidth, m_stFormat.nHeight, stGrid.nBlockWidth,
                                   stGrid.nBlockHeight, &nBodySize) != ffc::imagecalc::IMAGECALC_STATUS_SUCCESS) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  const uint64_t nImageSize = static_cast<uint64_t>(nBodySize) + FFC_INFO_SIZE;
  if (nImageSize != m_stInfo.nCoefficientsSize || nImageSize != m_coefficients.GetSize()) {
    CFrameBuffer image;
    const int32_t nStatus = AllocateCoefficients(nImageSize, image);
    if (nStatus != PLUGIN_STATUS_SUCCESS) {
      return nStatus;
    }
    m_stInfo.nCoefficientsSize = static_cast<uint32_t>(nImageSize);
    m_coefficients = std::move(image);
  }
  return body.Allocate(static_cast<uint64_t>(nBodySize)) ? PLUGIN_STATUS_SUCCESS : PLUGIN_STATUS_OUT_OF_MEMORY;
}

int32_t CVignettingCorrectionPro_Dev::__ComputeBody(CFrameBuffer &body)
{
  // An average that there is was made in this format: each acquisition drops it before the format changes.
  const SBlockGrid stGrid = m_stSettings.GetGrid();
  return MapCalcStatus(CalcVignettingCoefficient(
    m_bright.GetAverage().GetData(), m_stFormat.GetBitDepth(), stGrid.nBayerType, m_stFormat.nWidth, m_stFormat.nHeight,
    stGrid.nBlockWidth, stGrid.nBlockHeight, static_cast<int64_t>(body.GetSize()), body.GetData()));
}

int32_t CVignettingCorrectionPro_Dev::SetFrameCount(std::string strEntry)
{
  return WriteFrameCount(m_deviceFeatures, strEntry, m_stInfo);
}

// As large as the camera's coefficients are now.
int32_t CVignettingCorrectionPro_Dev::__AllocateImage(CFrameBuffer &image)
{
  uint64_t nSize = 0;
  return CSteps(m_deviceFeatures)
    .Then(ReadCoefficientsSize, m_deviceFeatures, nSize)
    .Then(AllocateCoefficients, nSize, image)
    .Status();
}

int32_t CVignettingCorrectionPro_Dev::LoadFromFlash()
{
  CFrameBuffer image;
  const int32_t nStatus = CSteps(m_deviceFeatures)
                            .Then(&CVignettingCorrectionPro_Dev::__AllocateImage, this, image)
                            .Then(LoadFlashCoefficients, m_deviceFeatures, image)
                            .Then(CheckRecord, image)
                            .Then(SwitchCorrectionOn, m_deviceFeatures)
                            .Status();
  if (nStatus == PLUGIN_STATUS_SUCCESS) {
    m_stInfo = GetRecord(image);
  }
  return nStatus;
}

int32_t CVignettingCorrectionPro_Dev::SaveToFlash()
{
  return SaveFlashCoefficients(m_deviceFeatures);
}

int32_t CVignettingCorrectionPro_Dev::LoadFromFile()
{
  uint64_t nSize = 0;
  const int32_t nSizeStatus = ReadCoefficientsSize(m_deviceFeatures, nSize);
  if (nSizeStatus != PLUGIN_STATUS_SUCCESS) {
    return nSizeStatus;
  }
  const QString strFileName = m_pFileChooser->ChooseFileToOpen({tr("Open FFC"), tr("ini file (*.ffc)")});
  if (strFileName.isEmpty()) {
    return PLUGIN_STATUS_SILENT;
  }
  QFile file(strFileName);
  CFrameBuffer image;
  return CSteps(m_deviceFeatures)
    .Then(ReadImage, file, nSize, image)
    .Then(CheckRecord, image)
    .Then(PutIntoForce, m_deviceFeatures, image, m_stInfo)
    .Status();
}

int32_t CVignettingCorrectionPro_Dev::SaveToFile()
{
  CFrameBuffer image;
  const int32_t nAllocateStatus = __AllocateImage(image);
  if (nAllocateStatus != PLUGIN_STATUS_SUCCESS) {
    return nAllocateStatus;
  }
  const QString strFileName = m_pFileChooser->ChooseFileToSave({tr("Save FFC"), tr("ini file (*.ffc)")});
  if (strFileName.isEmpty()) {
    return PLUGIN_STATUS_SILENT;
  }
  return CSteps(m_deviceFeatures)
    .Then(ReadCoefficients, m_deviceFeatures, image)
    .Then(CheckRecord, image)
    .Then(WriteCoefficientFile, strFileName, image.GetData(), image.GetSize())
    .Status();
}

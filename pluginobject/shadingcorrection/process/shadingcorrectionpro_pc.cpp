#include "pluginobject/shadingcorrection/process/shadingcorrectionpro_pc.h"

#include <utility>
#include <vector>

#include "pluginobject/shadingcorrection/process/acquisition/frameexchange.h"
#include "pluginobject/shadingcorrection/process/coefficients/entrytables.h"
#include "pluginobject/shadingcorrection/process/coefficients/ffcfile.h"
#include "pluginobject/shadingcorrection/process/coefficients/hosttable.h"
#include "pluginobject/shadingcorrection/process/steps.h"
#include "pluginobject/statuscode.h"

using ffc::pluginobject::CFeatureAccess;
using namespace ffc::process;

namespace {

// Frames that a colour camera delivers before its white balance has settled.
constexpr uint32_t SETTLING_FRAMES = 7;

// Of the blocks that a frame is judged by, pixels.
constexpr int64_t BLOCK_SIDE = 32;

} // namespace

CShadingCorrectionPro_PC::CShadingCorrectionPro_PC(const CFeatureAccess &deviceFeatures,
                                                   const CFeatureAccess &streamFeatures)
  : CProcessBase(deviceFeatures, true), m_streamFeatures(streamFeatures)
{
}

CShadingCorrectionPro_PC::~CShadingCorrectionPro_PC() = default;

bool CShadingCorrectionPro_PC::__HasNodeMaps() const
{
  return m_deviceFeatures.HasNodeMap() && m_streamFeatures.HasNodeMap();
}

int32_t CShadingCorrectionPro_PC::InitProcess()
{
  if (!m_deviceFeatures.HasNodeMap()) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  m_bColor = ReadIsColorCamera(m_deviceFeatures);
  if (m_bColor) {
    std::vector<std::string> listFormats;
    const int32_t nStatus = CSteps(m_deviceFeatures)
                              .GetEntries("PixelFormat", listFormats)
                              .Get("PixelColorFilter", m_strPixelColorFilter)
                              .Status();
    if (nStatus != PLUGIN_STATUS_SUCCESS) {
      return nStatus;
    }
  }
  m_stInfo.nExpectGray = 0;
  m_stInfo.nFrameCount = 4;
  return PLUGIN_STATUS_SUCCESS;
}

// Reads everything that an acquisition, which has seen both node maps, needs or changes. The kept format changes only
// when all is read.
int32_t CShadingCorrectionPro_PC::__SaveCameraState()
{
  m_streamGuard.Reset();
  SFrameFormat stFormat;
  const int32_t nStatus = CSteps(m_deviceFeatures)
                            .Get("ExposureTime", m_fExposureTime)
                            .Get("Gain", m_fGain)
                            .Save(m_streamGuard.Streaming())
                            .Then(ReadPayloadSize, m_deviceFeatures, stFormat)
                            .Then(ReadWidth, m_deviceFeatures, stFormat)
                            .Then(ReadHeight, m_deviceFeatures, stFormat)
                            .Then(ReadPixelFormat, m_deviceFeatures, stFormat)
                            .Then(&CHostStreamGuard::SaveTriggerMode, m_streamGuard, m_deviceFeatures)
                            .Status();
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    m_streamGuard.Streaming().SaveLate(m_deviceFeatures);
    return nStatus;
  }
  m_streamGuard.SaveStreamMode(m_streamFeatures);
  stFormat.ApplyUnpackedSize();
  m_nTimeout = GetFrameTimeout(m_fExposureTime);
  m_stFormat = stFormat;
  m_coefficients.SetShape(stFormat.GetShape());
  return PLUGIN_STATUS_SUCCESS;
}

int32_t CShadingCorrectionPro_PC::PrepareDeviceParam()
{
  if (!__HasNodeMaps()) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  if (m_streamGuard.WasStreaming()) {
    StopStream();
  }
  return m_streamGuard.Prepare(m_deviceFeatures, m_streamFeatures);
}

int32_t CShadingCorrectionPro_PC::RestoreDeviceParam()
{
  StopStream();
  if (__HasNodeMaps()) {
    m_streamGuard.Restore(m_deviceFeatures, m_streamFeatures);
  }
  if (m_streamGuard.WasStreaming()) {
    StartStream();
  }
  return PLUGIN_STATUS_SUCCESS;
}

int32_t CShadingCorrectionPro_PC::AcquireDarkImage()
{
  m_bDarkValid = false;
  m_darkFrame.Release();
  if (!__HasNodeMaps()) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  if (CheckFrameFormat(m_deviceFeatures, m_stFormat) != PLUGIN_STATUS_SUCCESS) {
    m_bBrightValid = false;
  }
  m_exchange.ReleaseBuffer();
  const CScopeGuard restore([this] {
    m_exchange.ReleaseBuffer();
    RestoreDeviceParam();
  });
  const int32_t nStatus = CSteps(m_deviceFeatures)
                            .Then(&CShadingCorrectionPro_PC::__SaveCameraState, this)
                            .Then(&CShadingCorrectionPro_PC::PrepareDeviceParam, this)
                            .Then(&CFrameExchange::AllocateFrame, m_exchange, m_stFormat.nFrameSize, m_darkFrame)
                            .Then(&CShadingCorrectionPro_PC::StartStream, this)
                            .Then(&CFrameExchange::TakeFrame, m_exchange, m_nTimeout)
                            .Then(&CShadingCorrectionPro_PC::__JudgeFrame, this)
                            .Then(&CShadingCorrectionPro_PC::__KeepDarkFrame, this)
                            .Status();
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    m_darkFrame.Release();
  }
  return nStatus;
}

// A frame that is too bright or too uneven is kept but not used.
void CShadingCorrectionPro_PC::__KeepDarkFrame()
{
  m_exchange.UseFrame([this](const CFrameBuffer &frame) { m_darkFrame.CopyFrom(frame); });
  m_bDarkValid = m_stGray.IsDark();
}

int32_t CShadingCorrectionPro_PC::AcquireBrightImage()
{
  m_bright.Drop();
  if (!__HasNodeMaps()) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  if (CheckFrameFormat(m_deviceFeatures, m_stFormat) != PLUGIN_STATUS_SUCCESS) {
    m_bDarkValid = false;
  }
  m_bBrightValid = true;
  const CScopeGuard restore([this] {
    m_whiteBalance.Restore(m_deviceFeatures);
    m_bright.EndAcquisition();
    RestoreDeviceParam();
  });
  const uint32_t nToDiscard = m_bColor ? SETTLING_FRAMES : 0;
  const auto collectAndJudge = [this, nToDiscard](uint32_t nFrame) {
    return nFrame < nToDiscard ? PLUGIN_STATUS_SUCCESS : __CollectAndJudge(nFrame == nToDiscard);
  };
  const int32_t nStatus =
    CSteps(m_deviceFeatures)
      .Then(&CShadingCorrectionPro_PC::__SaveCameraState, this)
      .Then(&CShadingCorrectionPro_PC::PrepareDeviceParam, this)
      .Then(&CBrightField::Allocate, m_bright, m_stFormat.nFrameSize)
      .Then(&CShadingCorrectionPro_PC::__StartBrightStream, this)
      .Then(&CFrameExchange::TakeFrames, m_exchange, m_nTimeout, nToDiscard + m_stInfo.nFrameCount, collectAndJudge)
      .Then(&CBrightField::Average, m_bright, m_stInfo.nFrameCount, m_stFormat)
      .Status();
  return m_bright.KeepOnSuccess(nStatus);
}

int32_t CShadingCorrectionPro_PC::__StartBrightStream()
{
  if (!m_bColor) {
    StartStream();
    return PLUGIN_STATUS_SUCCESS;
  }
  const int32_t nStatus =
    m_whiteBalance.BalanceOnce(m_deviceFeatures, m_exchange, m_nTimeout, [this] { StartStream(); });
  // The frames of the balance went into the buffer.
  m_exchange.ZeroBuffer();
  return nStatus == PLUGIN_STATUS_FEATURE_ERROR ? PLUGIN_STATUS_PIXEL_FORMAT_NOT_IMPLEMENTED : nStatus;
}

int32_t CShadingCorrectionPro_PC::__CollectAndJudge(bool bFirst)
{
  return CSteps(m_deviceFeatures)
    .Then(CheckFrameSize, m_deviceFeatures, m_stFormat)
    .Then([&] { return bFirst ? __JudgeFrame() : PLUGIN_STATUS_SUCCESS; })
    .Then(&CBrightField::Add, m_bright, m_stFormat)
    .Status();
}

int32_t CShadingCorrectionPro_PC::__JudgeFrame()
{
  return m_exchange.UseFrame([this](const CFrameBuffer &frame) {
    const SBlockGrid stGrid = {BLOCK_SIDE, BLOCK_SIDE, GetBayerType(m_strPixelColorFilter)};
    return MeasureEightBitMeans(frame, m_stFormat, stGrid, m_stGray);
  });
}

void CShadingCorrectionPro_PC::__PutIntoForce(HostTablePtr pTable)
{
  m_stInfo.nCoefficientsSize = pTable->nSize;
  m_coefficients.SetTable(std::move(pTable));
}

int32_t CShadingCorrectionPro_PC::ExecuteCorrection()
{
  if (!m_deviceFeatures.HasNodeMap()) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  const int32_t nSizeStatus = CheckFrameSize(m_deviceFeatures, m_stFormat);
  if (nSizeStatus != PLUGIN_STATUS_SUCCESS) {
    return nSizeStatus;
  }
  if (!m_bBrightValid) {
    return PLUGIN_STATUS_BUFFER_SIZE_ERROR;
  }
  HostTablePtr pTable;
  const SHostReference stReference = {m_bright.GetAverage(), m_bDarkValid ? &m_darkFrame : nullptr, m_stFormat,
                                      GetBayerType(m_strPixelColorFilter), m_stInfo.nExpectGray};
  const int32_t nStatus = ComputeHostTable(stReference, pTable);
  if (nStatus == PLUGIN_STATUS_SUCCESS) {
    __PutIntoForce(std::move(pTable));
  }
  return nStatus;
}

int32_t CShadingCorrectionPro_PC::CorrectImage(const void *pSource, void *pDestination, uint32_t nWidth,
                                               int32_t nHeight, uint32_t nPixelFormat)
{
  const CHostCoefficients::SSnapshot stSnapshot = m_coefficients.Get();
  if (pSource == nullptr || pDestination == nullptr || stSnapshot.pTable == nullptr) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  if (IsFrameOfShape(stSnapshot.pTable->stShape, nWidth, nHeight, nPixelFormat)) {
    return ApplyHostTable(*stSnapshot.pTable, pSource, pDestination);
  }
  // Kept frames of the new shape wait for their execution; those of another one are of no use any more.
  if (!IsFrameOfShape(stSnapshot.stShape, nWidth, nHeight, nPixelFormat)) {
    m_bDarkValid = false;
    m_bBrightValid = false;
  }
  return PLUGIN_STATUS_INVALID_PARAM;
}

int32_t CShadingCorrectionPro_PC::LoadFromFile()
{
  const QString strFileName = m_pFileChooser->ChooseFileToOpen({tr("Open FFC"), tr("ini file (*.ffc)")});
  if (strFileName.isEmpty()) {
    return PLUGIN_STATUS_SILENT;
  }
  QFile file(strFileName);
  const int32_t nStatus = OpenCoefficientFile(file);
  return nStatus == PLUGIN_STATUS_SUCCESS ? __LoadTable(file) : nStatus;
}

// The table in force changes only when everything is read and fits. The kept frames keep their format.
int32_t CShadingCorrectionPro_PC::__LoadTable(QFile &file)
{
  SFrameFormat stFormat;
  HostTablePtr pTable;
  const int32_t nStatus = CSteps(m_deviceFeatures)
                            .Then(ReadWidth, m_deviceFeatures, stFormat)
                            .Then(ReadHeight, m_deviceFeatures, stFormat)
                            .Then(ReadPixelFormat, m_deviceFeatures, stFormat)
                            .Then(ReadHostTable, file, stFormat, pTable)
                            .Status();
  if (nStatus == PLUGIN_STATUS_SUCCESS) {
    __PutIntoForce(std::move(pTable));
  }
  return nStatus;
}

int32_t CShadingCorrectionPro_PC::SaveToFile()
{
  const HostTablePtr pTable = m_coefficients.Get().pTable;
  // Without coefficients there is nothing to write: an empty file would only replace a good one.
  if (!__HasNodeMaps() || pTable == nullptr) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  const QString strFileName = m_pFileChooser->ChooseFileToSave({tr("Save FFC"), tr("ini file (*.ffc)")});
  if (strFileName.isEmpty()) {
    return PLUGIN_STATUS_SILENT;
  }
  return WriteCoefficientFile(strFileName, pTable->data.GetData(), pTable->nSize);
}

int32_t CShadingCorrectionPro_PC::SetFrameCount(std::string strEntry)
{
  ApplyFrameCountEntry(strEntry, m_stInfo.nFrameCount);
  return PLUGIN_STATUS_SUCCESS;
}

int32_t CShadingCorrectionPro_PC::SetExpectGray(int64_t nExpectGray)
{
  m_stInfo.nExpectGray = static_cast<uint32_t>(nExpectGray);
  return PLUGIN_STATUS_SUCCESS;
}

#include "pluginobject/shadingcorrection/process/shadingcorrectionpro_dev.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "genapi/pfnc.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameexchange.h"
#include "pluginobject/shadingcorrection/process/camerastate/whitebalance.h"
#include "pluginobject/shadingcorrection/process/coefficients/devicecorrection.h"
#include "pluginobject/shadingcorrection/process/coefficients/entrytables.h"
#include "pluginobject/shadingcorrection/process/coefficients/ffcfile.h"
#include "pluginobject/shadingcorrection/process/steps.h"
#include "pluginobject/statuscode.h"

using ffc::pluginobject::CFeatureAccess;
using namespace ffc::process;

namespace {

constexpr int32_t BIT_DEPTH = 8;

// A dark frame is subtracted only where the bright one stands out from it by so much.
constexpr double MIN_CONTRAST = 80.0;

// Whatever the camera delivers is read as one byte per pixel.
SFrameFormat ReadAsEightBit(SFrameFormat stFormat)
{
  stFormat.nPixelFormat = ffc::genapi::GetPixelFormatCode("Mono8");
  return stFormat;
}

} // namespace

CShadingCorrectionPro_Dev::CShadingCorrectionPro_Dev(const CFeatureAccess &deviceFeatures)
  : CProcessBase(deviceFeatures, false)
{
}

CShadingCorrectionPro_Dev::~CShadingCorrectionPro_Dev() = default;

int32_t CShadingCorrectionPro_Dev::InitProcess()
{
  if (!m_deviceFeatures.HasNodeMap()) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  m_bColor = ReadIsColorCamera(m_deviceFeatures);
  int64_t nExpectGray = 0;
  return CSteps(m_deviceFeatures)
    .Then(ReadDeviceSettings, m_deviceFeatures, m_bColor, ApplyFlatFieldBlockEntry, m_stSettings, m_stInfo)
    .Get("FFCExpectGray", nExpectGray)
    .Then([&] { m_stInfo.nExpectGray = static_cast<uint32_t>(nExpectGray); })
    .Then(InitCoefficients, m_deviceFeatures, m_stInfo, m_coefficients)
    .Status();
}

int32_t CShadingCorrectionPro_Dev::SaveUserParam()
{
  return m_deviceFeatures.HasNodeMap() ? m_guard.SaveUserParam(m_deviceFeatures) : PLUGIN_STATUS_INVALID_PARAM;
}

int32_t CShadingCorrectionPro_Dev::PrepareDeviceParam()
{
  if (!m_deviceFeatures.HasNodeMap()) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  if (m_guard.WasStreaming()) {
    // User sets can only be switched while the stream stands still.
    StopStream();
  }
  return m_guard.Prepare(m_deviceFeatures, m_stFormat);
}

int32_t CShadingCorrectionPro_Dev::RestoreDeviceParam()
{
  StopStream();
  m_guard.Restore(m_deviceFeatures);
  if (m_guard.WasStreaming()) {
    StartStream();
  }
  return PLUGIN_STATUS_SUCCESS;
}

// A camera that refused the user's state when an acquisition ended has it in "UserSet0" alone. It has to take it back
// before anything is saved there.
int32_t CShadingCorrectionPro_Dev::__SettlePendingRestore()
{
  if (m_guard.IsRestorePending()) {
    const int32_t nStatus = m_guard.ReviewPendingRestore(m_deviceFeatures);
    if (nStatus != PLUGIN_STATUS_SUCCESS) {
      return nStatus;
    }
  }
  if (m_guard.IsRestorePending()) {
    RestoreDeviceParam();
  }
  if (m_guard.IsRestorePending()) {
    return PLUGIN_STATUS_RESTORE_USER_PARAM_FAILED;
  }
  m_guard.RestoreSelector(m_deviceFeatures);
  return PLUGIN_STATUS_SUCCESS;
}

// What comes before the first access of an acquisition.
int32_t CShadingCorrectionPro_Dev::__BeginAcquisition()
{
  if (!m_deviceFeatures.HasNodeMap()) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  const int32_t nStatus = __SettlePendingRestore();
  if (nStatus == PLUGIN_STATUS_SUCCESS) {
    m_guard.BeginAcquisition();
  }
  return nStatus;
}

void CShadingCorrectionPro_Dev::__DropDark()
{
  m_bDarkUsable = false;
  m_bBlackLevelDefault = false;
  m_stDark = SReferenceFrame();
}

int32_t CShadingCorrectionPro_Dev::AcquireDarkImage()
{
  __DropDark();
  const int32_t nReady = __BeginAcquisition();
  if (nReady != PLUGIN_STATUS_SUCCESS) {
    return nReady;
  }
  const CScopeGuard restore([this] {
    m_exchange.ReleaseBuffer();
    RestoreDeviceParam();
  });
  const int32_t nStatus = CSteps(m_deviceFeatures)
                            .Then(&CShadingCorrectionPro_Dev::SaveUserParam, this)
                            .Then(&CShadingCorrectionPro_Dev::PrepareDeviceParam, this)
                            .Then(&CFrameExchange::BeginRequests, m_exchange)
                            .Then(&CFrameExchange::AllocateFrame, m_exchange, m_stFormat.nFrameSize, m_stDark.data)
                            .Then(&CShadingCorrectionPro_Dev::__TriggerFrame, this)
                            .Then(&CFrameExchange::WaitFrame, m_exchange, m_guard.GetTimeout())
                            .Then(CheckFrameSize, m_deviceFeatures, m_stFormat)
                            .Then(&CShadingCorrectionPro_Dev::__JudgeFrame, this)
                            .Then(&CShadingCorrectionPro_Dev::__KeepDarkFrame, this)
                            .Status();
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    __DropDark();
  }
  return nStatus;
}

int32_t CShadingCorrectionPro_Dev::__TriggerFrame()
{
  return CSteps(m_deviceFeatures)
    .Set("TriggerMode", "On")
    .Set("TriggerSource", "Software")
    .Then(&CFrameExchange::ZeroBuffer, m_exchange)
    .Then(&CShadingCorrectionPro_Dev::StartStream, this)
    .Execute("TriggerSoftware")
    .Status();
}

// Also tells the generator what the frames look like.
int32_t CShadingCorrectionPro_Dev::__JudgeFrame()
{
  const SBlockGrid stGrid = m_stSettings.GetGrid();
  const BLOCK_PARAM stParam = MakeBlockParam(m_stFormat, stGrid);
  m_stGeneratorFormat = m_stFormat;
  return CSteps(m_deviceFeatures)
    .Then([&] { return MapCalcStatus(m_generator.SetBlockParam(stParam)); })
    .Then([&] {
      return m_exchange.UseFrame([&](const CFrameBuffer &frame) {
        return MeasureBlockMeans(frame, ReadAsEightBit(m_stFormat), stGrid, m_stGray);
      });
    })
    .Status();
}

void CShadingCorrectionPro_Dev::__KeepDarkFrame()
{
  m_stDark.stFormat = m_stFormat;
  m_stDark.dMaxGray = m_stGray.dMax;
  m_exchange.UseFrame([this](const CFrameBuffer &frame) { m_stDark.data.CopyFrom(frame); });
  m_bBlackLevelDefault = m_guard.IsBlackLevelDefault();
  m_bDarkUsable = m_bBlackLevelDefault && m_stGray.IsDark();
}

int32_t CShadingCorrectionPro_Dev::AcquireBrightImage()
{
  m_bright.Drop();
  const int32_t nReady = __BeginAcquisition();
  if (nReady != PLUGIN_STATUS_SUCCESS) {
    return nReady;
  }
  m_stInfo.nFrameCount = GetPossibleFrameCount(m_stInfo.nFrameCount);
  const CScopeGuard restore([this] {
    m_bright.EndAcquisition();
    RestoreDeviceParam();
  });
  // A frame that cannot be judged fails at the end only: the user has shown the target for all of them.
  int32_t nJudged = PLUGIN_STATUS_SUCCESS;
  const auto collectAndJudge = [this, &nJudged](uint32_t nFrame) { return __CollectAndJudge(nFrame == 0, nJudged); };
  const int32_t nStatus =
    CSteps(m_deviceFeatures)
      .Then(&CShadingCorrectionPro_Dev::SaveUserParam, this)
      .Then(&CShadingCorrectionPro_Dev::PrepareDeviceParam, this)
      .Then(&CBrightField::Allocate, m_bright, m_stFormat.nFrameSize)
      .Then(&CShadingCorrectionPro_Dev::__StartBrightStream, this)
      .Then(&CFrameExchange::TakeFrames, m_exchange, m_guard.GetTimeout(), m_stInfo.nFrameCount, collectAndJudge)
      .Then([&] { return nJudged; })
      .Then(&CBrightField::Average, m_bright, m_stInfo.nFrameCount, ReadAsEightBit(m_stFormat))
      .Status();
  return m_bright.KeepOnSuccess(nStatus);
}

int32_t CShadingCorrectionPro_Dev::__StartBrightStream()
{
  if (!m_bColor) {
    StartStream();
    return PLUGIN_STATUS_SUCCESS;
  }
  const int32_t nStatus =
    CSteps(m_deviceFeatures)
      .Set("AWBLampHouse", "Adaptive")
      .Set("BalanceWhiteAuto", "Once")
      .Then(RunWhiteBalance, m_deviceFeatures, m_exchange, m_guard.GetTimeout(), [this] { StartStream(); })
      .Status();
  // The frames of the balance went into the buffer.
  m_exchange.ZeroBuffer();
  return nStatus == PLUGIN_STATUS_FEATURE_ERROR ? PLUGIN_STATUS_PIXEL_FORMAT_NOT_IMPLEMENTED : nStatus;
}

int32_t CShadingCorrectionPro_Dev::__CollectAndJudge(bool bFirst, int32_t &nJudged)
{
  const int32_t nStatus = CheckFrameSize(m_deviceFeatures, m_stFormat);
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    return nStatus;
  }
  if (bFirst) {
    nJudged = __JudgeFrame();
    m_dBrightMaxGray = m_stGray.dMax;
    m_stBrightFormat = m_stFormat;
  }
  return nJudged == PLUGIN_STATUS_SUCCESS ? m_bright.Add(ReadAsEightBit(m_stFormat)) : PLUGIN_STATUS_SUCCESS;
}

bool CShadingCorrectionPro_Dev::__IsDarkUsed() const
{
  return m_bDarkUsable && m_dBrightMaxGray - m_stDark.dMaxGray >= MIN_CONTRAST &&
         m_stDark.stFormat.HasSameShape(m_stBrightFormat);
}

int32_t CShadingCorrectionPro_Dev::ExecuteCorrection()
{
  const uint64_t nImageSize = m_coefficients.GetSize();
  if (!m_deviceFeatures.HasNodeMap() || !m_coefficients.IsAllocated() || nImageSize <= FFC_INFO_SIZE) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  CFrameBuffer body;
  if (!body.Allocate(nImageSize - FFC_INFO_SIZE)) {
    return PLUGIN_STATUS_OUT_OF_MEMORY;
  }
  const int32_t nStatus = __ComputeBody(body);
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    return nStatus;
  }
  m_stInfo.nValid = 1;
  // A record that was loaded may say something else than the camera takes.
  m_stInfo.nCoefficientsSize = static_cast<uint32_t>(nImageSize);
  FillImage(body, m_stInfo, m_coefficients);
  return PutIntoForce(m_deviceFeatures, m_coefficients, m_stInfo);
}

int32_t CShadingCorrectionPro_Dev::__ComputeBody(CFrameBuffer &body)
{
  if (m_bright.GetAverage().IsAllocated() && !m_stBrightFormat.HasSameShape(m_stGeneratorFormat)) {
    return PLUGIN_STATUS_BUFFER_SIZE_ERROR;
  }
  constexpr uint64_t LARGEST = std::numeric_limits<int32_t>::max();
  auto nSize = static_cast<int32_t>(std::min(body.GetSize(), LARGEST));
  const uint8_t *pBright = m_bright.GetAverage().GetData();
  return MapCalcStatus(__IsDarkUsed()
                         ? m_generator.CalcWithDark(pBright, m_stDark.data.GetData(), BIT_DEPTH, body.GetData(), &nSize)
                         : m_generator.CalcWithoutDark(pBright, BIT_DEPTH, body.GetData(), &nSize));
}

int32_t CShadingCorrectionPro_Dev::SetFrameCount(std::string strEntry)
{
  return WriteFrameCount(m_deviceFeatures, strEntry, m_stInfo);
}

int32_t CShadingCorrectionPro_Dev::SetExpectGray(int64_t nExpectGray)
{
  const int32_t nStatus = m_deviceFeatures.SetIntFeature("FFCExpectGray", nExpectGray);
  if (nStatus == PLUGIN_STATUS_SUCCESS) {
    m_stInfo.nExpectGray = static_cast<uint32_t>(nExpectGray);
  }
  return nStatus;
}

int32_t CShadingCorrectionPro_Dev::LoadFromFlash()
{
  if (!m_deviceFeatures.HasNodeMap()) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  CFrameBuffer image;
  const int32_t nStatus = CSteps(m_deviceFeatures)
                            .Then(AllocateCoefficients, m_coefficients.GetSize(), image)
                            .Then(LoadFlashCoefficients, m_deviceFeatures, image)
                            .Then(SwitchCorrectionOn, m_deviceFeatures)
                            .Status();
  if (nStatus == PLUGIN_STATUS_SUCCESS && HasRecord(image)) {
    ExchangeRecordBytes(image);
    m_stInfo = GetRecord(image);
  }
  return nStatus;
}

int32_t CShadingCorrectionPro_Dev::SaveToFlash()
{
  const int32_t nPendingStatus = __SettlePendingRestore();
  return nPendingStatus == PLUGIN_STATUS_SUCCESS ? SaveFlashCoefficients(m_deviceFeatures) : nPendingStatus;
}

int32_t CShadingCorrectionPro_Dev::LoadFromFile()
{
  const QString strFileName = m_pFileChooser->ChooseFileToOpen({tr("Open FFC"), tr("ini file (*.ffc)")});
  if (strFileName.isEmpty()) {
    return PLUGIN_STATUS_SILENT;
  }
  QFile file(strFileName);
  const int32_t nOpenStatus = OpenCoefficientFile(file);
  if (nOpenStatus != PLUGIN_STATUS_SUCCESS) {
    return nOpenStatus;
  }
  if (!m_deviceFeatures.HasNodeMap()) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  CFrameBuffer image;
  const int32_t nReadStatus = ReadCoefficientFile(file, m_coefficients.GetSize(), image);
  if (nReadStatus != PLUGIN_STATUS_SUCCESS) {
    return nReadStatus;
  }
  if (!HasRecord(image)) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  ExchangeRecordBytes(image);
  return PutIntoForce(m_deviceFeatures, image, m_stInfo);
}

int32_t CShadingCorrectionPro_Dev::SaveToFile()
{
  CFrameBuffer image;
  const int32_t nAllocateStatus = AllocateCoefficients(m_coefficients.GetSize(), image);
  if (nAllocateStatus != PLUGIN_STATUS_SUCCESS) {
    return nAllocateStatus;
  }
  if (!m_deviceFeatures.HasNodeMap()) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  const QString strFileName = m_pFileChooser->ChooseFileToSave({tr("Save FFC"), tr("ini file (*.ffc)")});
  if (strFileName.isEmpty()) {
    return PLUGIN_STATUS_SILENT;
  }
  CCoefficientFileWriter writer(strFileName);
  const int32_t nStatus = CSteps(m_deviceFeatures)
                            .Then(ReadCoefficients, m_deviceFeatures, image)
                            .Then(&CCoefficientFileWriter::Open, writer)
                            .Status();
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    return nStatus;
  }
  const int32_t nOnStatus = SwitchCorrectionOn(m_deviceFeatures);
  if (nOnStatus != PLUGIN_STATUS_SUCCESS) {
    writer.LeaveEmpty();
    return nOnStatus;
  }
  // The camera holds the coefficients and corrects, whatever became of the file.
  (void)writer.Write(image.GetData(), image.GetSize());
  return PLUGIN_STATUS_SUCCESS;
}

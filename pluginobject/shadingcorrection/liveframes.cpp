#include "pluginobject/shadingcorrection/liveframes.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

#include "genapi/pfnc.h"
#include "platform/event.h"
#include "pluginobject/shadingcorrection/process/ishadingcorrectionprocess.h"
#include "pluginobject/statuscode.h"

namespace ffc::dialog {

namespace {

// What a frame's record and the code of its pixel format tell.
struct SFrameKind {
  bool bBayer = false;
  bool bWhole = false; // the buffer has all the pixels that a correction reads
};

SFrameKind GetFrameKind(const PLUGIN_IMAGE_INFO &stImage)
{
  const auto nFormat = static_cast<uint32_t>(stImage.nPixelFormat);
  // A correction reads more than one byte per pixel only where the format's code says that it takes 16 bits.
  const int64_t nPixelSize = genapi::GetBitsPerPixel(nFormat) == 16 ? 2 : 1;
  const int64_t nPixels = std::max<int64_t>(stImage.nWidth, 0) * std::max<int64_t>(stImage.nHeight, 0);
  return {genapi::IsBayerFormat(nFormat), nPixels * nPixelSize <= std::max(stImage.nPayloadSize, 0)};
}

} // namespace

CFrameGate::CPass::CPass(CFrameGate &gate) : m_gate(gate)
{
  // Frames before a closed gate are not counted: however many they are, Close does not wait for them.
  if (!m_gate.m_bOpen) {
    return;
  }
  // Counted first, then looked: Close looks in the other order, so one of the two sees the other.
  ++m_gate.m_nWithin;
  m_bGranted = m_gate.m_bOpen;
  if (!m_bGranted) {
    --m_gate.m_nWithin;
  }
}

CFrameGate::CPass::~CPass()
{
  if (m_bGranted) {
    --m_gate.m_nWithin;
  }
}

void CFrameGate::Close()
{
  constexpr std::chrono::microseconds PAUSE(100);
  m_bOpen = false;
  while (m_nWithin > 0) {
    std::this_thread::sleep_for(PAUSE);
  }
}

void CLiveFrames::Attach(FnReport fnReport)
{
  Detach();
  m_fnReport = std::move(fnReport);
  m_bApplyCorrection = false;
  m_bReportSuccess = false;
}

void CLiveFrames::Detach()
{
  Close();
  SetProcess(nullptr, false);
  m_fnReport = nullptr;
}

void CLiveFrames::SetProcess(IShadingCorrectionProcess *pProcess, bool bCorrects)
{
  m_pProcess = pProcess;
  m_bCorrects = bCorrects;
}

void CLiveFrames::SetPreview(bool bOn)
{
  // The report first, the frames' leave last.
  m_bReportSuccess = bOn;
  m_bApplyCorrection = bOn;
}

int32_t CLiveFrames::ProcessFrame(const PLUGIN_IMAGE_INFO &stInput, const PLUGIN_IMAGE_INFO &stOutput, bool &bCorrected)
{
  const CFrameGate::CPass pass(m_gate);
  if (!pass.IsGranted()) {
    return PLUGIN_STATUS_SUCCESS;
  }
  const SFrameKind stKind = GetFrameKind(stInput);
  const bool bUsable = stKind.bBayer || !IsColorCamera();
  SetStopFlag(!bUsable);
  if (!bUsable) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  if (WaitImageRequest() == platform::WAIT_RESULT_SIGNALLED) {
    ReceiveImage(stInput.pBuffer, static_cast<uint32_t>(std::max(stInput.nPayloadSize, 0)));
    SetImageReady();
  } else if (stKind.bWhole) { // an incomplete frame is left alone; the next one may be whole
    // Only an image that was really written counts: it also succeeds when there is nothing to do.
    (void)CorrectFrame(stInput.pBuffer, stOutput.pBuffer, static_cast<uint32_t>(stInput.nWidth), stInput.nHeight,
                       static_cast<uint32_t>(stInput.nPixelFormat), bCorrected);
  }
  return PLUGIN_STATUS_SUCCESS;
}

int32_t CLiveFrames::CorrectFrame(const void *pSource, void *pDestination, uint32_t nWidth, int32_t nHeight,
                                  uint32_t nPixelFormat, bool &bCorrected)
{
  if (pSource == nullptr || pDestination == nullptr || m_pProcess == nullptr) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  if (!m_bCorrects || !m_bApplyCorrection) {
    return PLUGIN_STATUS_SUCCESS;
  }
  const int32_t nStatus = m_pProcess->CorrectImage(pSource, pDestination, nWidth, nHeight, nPixelFormat);
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    Report(m_bApplyCorrection, false);
    return nStatus;
  }
  bCorrected = true;
  Report(m_bReportSuccess, true);
  return nStatus;
}

void CLiveFrames::ReceiveImage(const void *pFrame, uint32_t nSize)
{
  if (m_pProcess != nullptr) {
    m_pProcess->ReceiveImage(pFrame, nSize);
  }
}

void CLiveFrames::SetImageReady()
{
  if (m_pProcess != nullptr) {
    m_pProcess->SetImageReady();
  }
}

uint32_t CLiveFrames::WaitImageRequest()
{
  if (m_pProcess == nullptr) {
    return platform::WAIT_RESULT_TIMEOUT;
  }
  return m_pProcess->WaitImageRequest();
}

void CLiveFrames::SetStopFlag(bool bStop)
{
  if (m_pProcess != nullptr) {
    m_pProcess->SetStopFlag(bStop);
  }
}

bool CLiveFrames::IsColorCamera()
{
  return m_pProcess != nullptr && m_pProcess->IsColorCamera();
}

// Once only: the next frame finds the flag cleared, unless there was no memory for the message.
void CLiveFrames::Report(std::atomic<bool> &bFlag, bool bCorrected) const
{
  if (!bFlag.exchange(false)) {
    return;
  }
  try {
    m_fnReport(bCorrected);
  } catch (...) {
    bFlag = true;
  }
}

} // namespace ffc::dialog

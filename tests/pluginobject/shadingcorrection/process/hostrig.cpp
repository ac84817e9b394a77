#include "tests/pluginobject/shadingcorrection/process/hostrig.h"

#include <algorithm>
#include <utility>

namespace {

constexpr double FRAMES_PER_SECOND = 20000.0;
constexpr uint32_t REQUESTED = 0;

void AddTo(std::map<std::string, std::string> &mapValues, CSoftwareNodeMap &map)
{
  GenApi::NodeList_t listNodes;
  map.GetNodes(listNodes);
  for (GenApi::INode *pNode : listNodes) {
    if (auto *pValue = dynamic_cast<GenApi::IValue *>(pNode)) {
      mapValues[pNode->GetName().c_str()] =
        GenApi::IsReadable(pNode->GetAccessMode()) ? pValue->ToString().c_str() : "";
    }
  }
}

} // namespace

CHostRig::CHostRig(const std::string &strPixelFormat, int64_t nWidth, int64_t nHeight)
  : m_camera(strPixelFormat, nWidth, nHeight), m_deviceMap(m_camera.Device()), m_streamMap(m_camera.Stream())
{
  const auto fnCallHook = [this](const SNodeAccess &stAccess) {
    if (m_fnHook) {
      m_fnHook(stAccess);
    }
  };
  m_deviceMap.AddHook(fnCallHook);
  m_streamMap.AddHook(fnCallHook);
  m_pProcess = std::make_unique<CShadingCorrectionPro_PC>(CFeatureAccess(&m_deviceMap), CFeatureAccess(&m_streamMap));
  QObject::connect(m_pProcess.get(), &IShadingCorrectionProcess::SigAcquisitionStatusChanged,
                   [this](const PLUGIN_MSG &stMessage) { HandleMessage(stMessage); });
  m_pProcess->InitProcess();
  ShowGray(0);
  m_pPump = std::make_unique<CFramePump>([](std::vector<uint8_t> &, uint64_t) {},
                                         [this](const std::vector<uint8_t> &) { Deliver(); }, FRAMES_PER_SECOND);
}

CHostRig::~CHostRig()
{
  m_pPump->Stop();
}

void CHostRig::Show(FnFrame fnFrame)
{
  const std::lock_guard lock(m_mutex);
  m_fnFrame = std::move(fnFrame);
  m_nFrames = 0;
}

void CHostRig::ShowGray(uint32_t nGray)
{
  Show([this, nGray](int) { return m_camera.MakeFrame(nGray); });
}

void CHostRig::ShowNothing()
{
  m_camera.Float("ExposureTime").Poke(-970000.0);
  Show(nullptr);
}

void CHostRig::SetStreaming(bool bStreaming)
{
  const std::lock_guard lock(m_mutex);
  m_bStreaming = bStreaming;
  m_camera.Integer("TLParamsLocked").Poke(bStreaming ? 1 : 0);
}

std::vector<int32_t> CHostRig::TakeSignals()
{
  return std::exchange(m_listSignals, {});
}

std::map<std::string, std::string> CHostRig::TakeSnapshot()
{
  std::map<std::string, std::string> mapValues;
  AddTo(mapValues, m_camera.Device());
  AddTo(mapValues, m_camera.Stream());
  for (const double dRatio : m_camera.m_adBalanceRatio) {
    mapValues["ratios"] += std::to_string(dRatio) + " ";
  }
  return mapValues;
}

int32_t CHostRig::AcquireDark(uint32_t nGray)
{
  ShowGray(nGray);
  return m_pProcess->AcquireDarkImage();
}

int32_t CHostRig::AcquireBright(uint32_t nGray)
{
  ShowGray(nGray);
  return m_pProcess->AcquireBrightImage();
}

int32_t CHostRig::Correct(const std::vector<uint8_t> &listSource, std::vector<uint8_t> &listDestination)
{
  listDestination.resize(listSource.size());
  return m_pProcess->CorrectImage(listSource.data(), listDestination.data(),
                                  static_cast<uint32_t>(m_camera.Integer("Width").Peek()),
                                  static_cast<int32_t>(m_camera.Integer("Height").Peek()), m_camera.GetPixelFormat());
}

uint32_t CHostRig::GetTableBytesPerPixel()
{
  const int64_t nPixels = m_camera.Integer("Width").Peek() * m_camera.Integer("Height").Peek();
  return m_pProcess->GetCorrectionInfo().nCoefficientsSize / static_cast<uint32_t>(nPixels);
}

void CHostRig::HandleMessage(const PLUGIN_MSG &stMessage)
{
  const auto *pBytes = reinterpret_cast<const uint8_t *>(&stMessage);
  m_bPlainSignals = m_bPlainSignals && std::all_of(pBytes + sizeof stMessage.nMsgCode, pBytes + sizeof stMessage,
                                                   [](uint8_t nByte) { return nByte == 0; });
  m_listSignals.push_back(stMessage.nMsgCode);
  SetStreaming(stMessage.nMsgCode == PLUGIN_MSG_ACQUISITION_ON);
}

void CHostRig::Deliver()
{
  const std::lock_guard lock(m_mutex);
  if (m_bStreaming && m_fnFrame && m_pProcess->WaitImageRequest() == REQUESTED) {
    const std::vector<uint8_t> listFrame = m_fnFrame(m_nFrames++);
    if (!listFrame.empty()) {
      m_pProcess->ReceiveImage(listFrame.data(), static_cast<uint32_t>(listFrame.size()));
      m_pProcess->SetImageReady();
    }
  }
}

#include "tests/pluginobject/shadingcorrection/process/processrig.h"

#include <algorithm>

namespace ffc::test {

using genapi::CSoftwareNodeMap;
using genapi::SNodeAccess;

namespace {

constexpr double FRAMES_PER_SECOND = 20000.0;
constexpr uint32_t REQUESTED = 0;

} // namespace

void AddSettings(Settings &mapValues, CSoftwareNodeMap &map)
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

std::string DescribeChanges(const Settings &mapBefore, const Settings &mapAfter)
{
  Settings mapAll = mapBefore;
  mapAll.insert(mapAfter.begin(), mapAfter.end());
  std::string strChanges;
  for (const auto &stFeature : mapAll) {
    const std::string &strName = stFeature.first;
    const std::string strBefore = mapBefore.count(strName) != 0 ? mapBefore.at(strName) : "nothing";
    const std::string strAfter = mapAfter.count(strName) != 0 ? mapAfter.at(strName) : "nothing";
    if (strBefore != strAfter) {
      strChanges.append(strName).append(": ").append(strBefore).append(" -> ").append(strAfter).append("; ");
    }
  }
  return strChanges;
}

CProcessRig::CProcessRig(std::unique_ptr<CTestCamera> pCamera)
  : m_pCamera(std::move(pCamera)), m_deviceMap(m_pCamera->Device()), m_streamMap(m_pCamera->Stream())
{
  const auto callHook = [this](const SNodeAccess &stAccess) {
    if (m_fnHook) {
      m_fnHook(stAccess);
    }
  };
  m_deviceMap.AddHook(callHook);
  m_streamMap.AddHook(callHook);
}

CProcessRig::~CProcessRig()
{
  m_pPump->Stop();
}

void CProcessRig::Connect(std::unique_ptr<IShadingCorrectionProcess> pProcess)
{
  m_pProcess = std::move(pProcess);
  QObject::connect(m_pProcess.get(), &IShadingCorrectionProcess::SigAcquisitionStatusChanged,
                   [this](const PLUGIN_MSG &stMessage) { HandleMessage(stMessage); });
  m_pProcess->InitProcess();
  ShowGray(0);
  m_pPump = std::make_unique<CFramePump>([](std::vector<uint8_t> &, uint64_t) {},
                                         [this](const std::vector<uint8_t> &) { Deliver(); }, FRAMES_PER_SECOND);
}

void CProcessRig::Show(FnFrame fnFrame)
{
  const std::lock_guard lock(m_mutex);
  m_fnFrame = std::move(fnFrame);
  m_nFrames = 0;
}

void CProcessRig::ShowGray(uint32_t nGray)
{
  Show([this, nGray](int) { return m_pCamera->MakeFrame(nGray); });
}

void CProcessRig::ShowNothing()
{
  m_pCamera->Float("ExposureTime").Poke(-970000.0);
  Show(nullptr);
}

void CProcessRig::SetStreaming(bool bStreaming)
{
  const std::lock_guard lock(m_mutex);
  m_bStreaming = bStreaming;
  m_pCamera->Integer("TLParamsLocked").Poke(bStreaming ? 1 : 0);
}

std::vector<int32_t> CProcessRig::TakeSignals()
{
  return std::exchange(m_listSignals, {});
}

std::vector<uint32_t> CProcessRig::GetInfo()
{
  const FFCInfo stInfo = m_pProcess->GetCorrectionInfo();
  return {stInfo.nValid,     stInfo.nMode, stInfo.nFrameCount, stInfo.nBlockSizeCode, stInfo.nCoefficientsSize,
          stInfo.nExpectGray};
}

Settings CProcessRig::TakeSnapshot()
{
  Settings mapValues;
  AddSettings(mapValues, m_pCamera->Device());
  AddSettings(mapValues, m_pCamera->Stream());
  for (const double dRatio : m_pCamera->m_adBalanceRatio) {
    mapValues["ratios"] += std::to_string(dRatio) + " ";
  }
  return mapValues;
}

int32_t CProcessRig::AcquireDark(uint32_t nGray)
{
  ShowGray(nGray);
  return m_pProcess->AcquireDarkImage();
}

int32_t CProcessRig::AcquireBright(uint32_t nGray)
{
  ShowGray(nGray);
  return m_pProcess->AcquireBrightImage();
}

void CProcessRig::HandleMessage(const PLUGIN_MSG &stMessage)
{
  const auto *pBytes = reinterpret_cast<const uint8_t *>(&stMessage);
  m_bPlainSignals = m_bPlainSignals && std::all_of(pBytes + sizeof stMessage.nMsgCode, pBytes + sizeof stMessage,
                                                   [](uint8_t nByte) { return nByte == 0; });
  m_listSignals.push_back(stMessage.nMsgCode);
  if (m_fnMessageHook) {
    m_fnMessageHook(stMessage.nMsgCode);
  }
  SetStreaming(stMessage.nMsgCode == PLUGIN_MSG_ACQUISITION_ON);
}

void CProcessRig::Deliver()
{
  const std::lock_guard lock(m_mutex);
  if (m_bStreaming && m_pCamera->TakeFrame() && m_fnFrame && m_pProcess->WaitImageRequest() == REQUESTED) {
    const std::vector<uint8_t> listFrame = m_fnFrame(m_nFrames++);
    if (!listFrame.empty()) {
      m_pProcess->ReceiveImage(listFrame.data(), static_cast<uint32_t>(listFrame.size()));
      m_pProcess->SetImageReady();
    }
  }
}

std::vector<uint8_t> MakeRecord(const std::vector<uint32_t> &listWords)
{
  std::vector<uint8_t> listRecord;
  for (const uint32_t nWord : listWords) {
    for (const uint32_t nByte : {nWord, nWord / 0x100, nWord / 0x10000, nWord / 0x1000000}) {
      listRecord.push_back(static_cast<uint8_t>(nByte % 0x100));
    }
  }
  return listRecord;
}

} // namespace ffc::test

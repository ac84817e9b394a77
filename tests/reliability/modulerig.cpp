#include "tests/reliability/modulerig.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

#include <QApplication>
#include <QTest>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"

using ffc::pluginobject::MakePluginMsg;
using namespace ffc::test;

namespace {

// Five times as many left the rest of the program one processor of two, and under Wine much less than that.
constexpr double FRAMES_PER_SECOND = 1000.0;
constexpr uint32_t DARK_GRAY = 10;
constexpr uint32_t BRIGHT_GRAY = 120;
const std::string SUCCESS_PROMPT = "FFC executed successfully";

// What cameras that correct flat fields have besides.
const std::set<std::string> FLAT_FIELD_ONLY = {"FFCExpectGray", "DigitalShift", "FixedPatternNoiseCorrectMode",
                                               "DeadPixelCorrect", "RemoveParameterLimit"};

std::unique_ptr<CTestCamera> MakeCamera(EMode eMode, const std::string &strPixelFormat)
{
  if (eMode == EMode::Host) {
    return std::make_unique<CTestCamera>(strPixelFormat, 64, 64);
  }
  const bool bFlatField = eMode == EMode::FlatField;
  auto pCamera = std::make_unique<CCorrectingCamera>(strPixelFormat, bFlatField ? 64 : 256, bFlatField ? 64 : 256,
                                                     bFlatField ? std::set<std::string>() : FLAT_FIELD_ONLY,
                                                     bFlatField ? ECoefficients::FlatField : ECoefficients::Vignetting);
  pCamera->AddShadingCorrectionMode(bFlatField ? "FlatFieldCorrection" : "TailorFlatFieldCorrection");
  pCamera->UserSets().SetSaveLocked(false);
  return pCamera;
}

// Settings of a user, which are not the factory's.
void MakeUsersOwn(CTestCamera &camera)
{
  const auto lock = camera.Device().Lock();
  camera.Float("ExposureTime").Range(-1e6, 1e6);
  camera.Float("Gain").Poke(7.5);
  camera.Enumeration("TriggerMode").Select("On");
  auto *pCorrecting = dynamic_cast<CCorrectingCamera *>(&camera);
  if (pCorrecting != nullptr) {
    camera.Enumeration("TriggerMode").Select("Off");
    camera.Enumeration("UserSetSelector").Select("Default");
  }
}

template <std::size_t N, class TEnum>
const char *PickName(const char *const (&listNames)[N], TEnum eValue)
{
  return listNames[static_cast<std::size_t>(eValue)];
}

} // namespace

const char *GetName(EMode eMode)
{
  return PickName({"Host", "FlatField", "Vignetting"}, eMode);
}

const char *GetName(EOperation eOperation)
{
  return PickName({"Dark", "Bright", "Execute", "Preview", "LoadFlash", "SaveFlash", "LoadFile", "SaveFile",
                   "FrameCount", "ExpectGray", "Reopen"},
                  eOperation);
}

std::vector<EOperation> ListOperations(EMode eMode)
{
  using E = EOperation;
  switch (eMode) {
  case EMode::Host:
    return {E::Dark,     E::Bright,     E::Execute,    E::Preview, E::LoadFile,
            E::SaveFile, E::FrameCount, E::ExpectGray, E::Reopen};
  case EMode::FlatField:
    return {E::Dark,     E::Bright,   E::Execute,    E::Preview,    E::LoadFlash, E::SaveFlash,
            E::LoadFile, E::SaveFile, E::FrameCount, E::ExpectGray, E::Reopen};
  default:
    return {E::Bright,   E::Execute,  E::Preview,    E::LoadFlash, E::SaveFlash,
            E::LoadFile, E::SaveFile, E::FrameCount, E::Reopen};
  }
}

std::string SOutcome::Describe() const
{
  std::string strText = "status " + std::to_string(nStatus) + ", prompt \"" + strPrompt + "\"";
  for (const std::string &strBox : listBoxes) {
    strText += ", box \"" + strBox + "\"";
  }
  return strText;
}

CModuleRig::CModuleRig(EMode eMode, const std::string &strPixelFormat)
  : m_eMode(eMode), m_pCamera(MakeCamera(eMode, strPixelFormat)), m_deviceMap(m_pCamera->Device(), m_fault),
    m_streamMap(m_pCamera->Stream(), m_fault), m_outputMap(m_pCamera->Output(), m_fault),
    m_library(QString::fromLocal8Bit(PLUGIN_MODULE)), m_relay([this](int32_t nCode) { HandleMessage(nCode); })
{
  MakeUsersOwn(*m_pCamera);
  m_pCamera->Integer("TLParamsLocked").Poke(1);
  m_stParam.pOutputNodeMap = static_cast<GenApi::INodeMap *>(&m_outputMap);
  m_stParam.pStreamNodeMap = static_cast<GenApi::INodeMap *>(&m_streamMap);
  m_stParam.pDeviceNodeMap = static_cast<GenApi::INodeMap *>(&m_deviceMap);
  m_answer.ChooseFile(Path("table.ffc"));
  EXPECT_TRUE(m_library.load()) << m_library.errorString().toStdString();
  const auto fnCreate = reinterpret_cast<FnCreatePluginObject>(m_library.resolve(CREATE_PLUGIN_OBJECT));
  m_pPlugin = fnCreate();
  EXPECT_TRUE(QObject::connect(m_pPlugin, SIGNAL(SigPluginMsg(const PLUGIN_MSG &)), &m_relay,
                               SLOT(SlotReceive(const PLUGIN_MSG &)), Qt::DirectConnection));
  m_pPump = std::make_unique<CFramePump>([](std::vector<uint8_t> &, uint64_t) {},
                                         [this](const std::vector<uint8_t> &) { Deliver(); }, FRAMES_PER_SECOND);
}

CModuleRig::~CModuleRig()
{
  m_fault.Disarm();
  Close();
  m_pPump->Stop();
  Destroy();
}

void CModuleRig::Destroy()
{
  m_pDialog = nullptr;
  IPlugin *pPlugin = nullptr;
  {
    const std::lock_guard<std::mutex> lock(m_mutex);
    pPlugin = std::exchange(m_pPlugin, nullptr);
  }
  reinterpret_cast<FnDestoryPluginObject>(m_library.resolve(DESTORY_PLUGIN_OBJECT))(pPlugin);
}

int32_t CModuleRig::Open()
{
  m_pDialog = nullptr;
  const int32_t nStatus = m_pPlugin->Initialize(&m_stParam);
  if (nStatus == 0) {
    m_pPlugin->SlotProcessDemoMsg(MakePluginMsg(PLUGIN_MSG_SHOW_DIALOG));
  }
  for (QWidget *pWidget : QApplication::topLevelWidgets()) {
    if (pWidget->objectName() == QLatin1String("ShadingCorrectionDlg")) {
      m_pDialog = pWidget;
    }
  }
  return nStatus;
}

void CModuleRig::Close()
{
  m_pDialog = nullptr;
  if (m_pPlugin != nullptr) {
    EXPECT_EQ(m_pPlugin->Uninitialize(), PLUGIN_STATUS_SUCCESS);
  }
}

void CModuleRig::Press(const char *pName)
{
  auto *pButton = Find<QAbstractButton>(pName);
  ASSERT_NE(pButton, nullptr) << pName;
  EXPECT_TRUE(pButton->isEnabled()) << pName;
  pButton->click();
}

void CModuleRig::Prepare(EOperation eOperation)
{
  using E = EOperation;
  if (eOperation == E::FrameCount || eOperation == E::LoadFile || eOperation == E::LoadFlash) {
    Find<QSlider>("AcquisitionFrame_Slider")->setValue(0);
  }
  if (m_eMode != EMode::Vignetting &&
      (eOperation == E::ExpectGray || eOperation == E::LoadFile || eOperation == E::LoadFlash)) {
    Find<QSlider>("ExpectGrayValue_Slider")->setValue(100);
  }
  auto *pPreview = Find<QCheckBox>("PreviewcheckBox");
  if (eOperation == E::Preview) {
    if (!pPreview->isEnabled()) {
      (void)Do(E::Execute);
    }
    if (pPreview->isChecked()) {
      pPreview->click();
    }
  }
}

void CModuleRig::Act(EOperation eOperation)
{
  switch (eOperation) {
  case EOperation::Dark:
    m_bCapOn = true;
    Press("AcquisitionDarkFrame_Button");
    m_bCapOn = false;
    break;
  case EOperation::Bright: Press("AcquisitionBrightFrame_Button"); break;
  case EOperation::Execute: Press("ExecuteShadingCorrection_Button"); break;
  case EOperation::Preview: Press("PreviewcheckBox"); break;
  case EOperation::LoadFlash: Press("LoadFlash_Button"); break;
  case EOperation::SaveFlash: Press("SaveFlash_Button"); break;
  case EOperation::LoadFile: Press("LoadPC_Button"); break;
  case EOperation::SaveFile: Press("SavePC_Button"); break;
  case EOperation::FrameCount: Find<QSlider>("AcquisitionFrame_Slider")->setValue(4); break;
  case EOperation::ExpectGray: Find<QSlider>("ExpectGrayValue_Slider")->setValue(150); break;
  case EOperation::Reopen:
    Close();
    m_nStatus = Open();
    break;
  }
}

SOutcome CModuleRig::Do(EOperation eOperation)
{
  const std::size_t nBoxes = m_answer.GetBoxes().size();
  if (m_pDialog != nullptr) {
    Find<QLabel>("PromptInformation_label")->clear();
  }
  m_nStatus = 0;
  SOutcome stOutcome;
  try {
    Act(eOperation);
  } catch (...) {
    // From an event loop it would have ended the host.
    stOutcome.listBoxes.emplace_back("an exception left the module");
  }
  m_bCapOn = false;
  QCoreApplication::processEvents();
  stOutcome.nStatus = m_nStatus;
  for (std::size_t n = nBoxes; n < m_answer.GetBoxes().size(); ++n) {
    const CModalAnswer::SBox &stBox = m_answer.GetBoxes()[n];
    if (stBox.strTitle == "Error") { // not the toolkit's question whether to overwrite
      stOutcome.listBoxes.push_back(stBox.strMessage);
    }
  }
  const bool bTold = eOperation == EOperation::Execute || eOperation == EOperation::Preview;
  if (m_eMode == EMode::Host && bTold && stOutcome.listBoxes.empty() && m_bStreaming &&
      Find<QCheckBox>("PreviewcheckBox")->isChecked()) {
    WaitForPrompt();
  }
  if (m_pDialog != nullptr) {
    stOutcome.strPrompt = Find<QLabel>("PromptInformation_label")->text().toStdString();
  }
  return stOutcome;
}

// On the host the success is told with the first corrected frame.
void CModuleRig::WaitForPrompt()
{
  auto *pPrompt = Find<QLabel>("PromptInformation_label");
  EXPECT_TRUE(QTest::qWaitFor([&] { return pPrompt->text().toStdString() == SUCCESS_PROMPT; }));
}

std::string CModuleRig::Correct()
{
  using E = EOperation;
  if (Open() != 0) {
    return "not opened";
  }
  Find<QSlider>("AcquisitionFrame_Slider")->setValue(0);
  std::vector<EOperation> listSteps = {E::Bright, E::Execute, E::SaveFile};
  if (m_eMode != EMode::Vignetting) {
    listSteps.insert(listSteps.begin(), E::Dark);
  }
  if (m_eMode != EMode::Host) {
    listSteps.push_back(E::SaveFlash);
  }
  for (const EOperation eStep : listSteps) {
    const SOutcome stOutcome = Do(eStep);
    if (!stOutcome.listBoxes.empty()) {
      return std::string(GetName(eStep)) + ": " + stOutcome.Describe();
    }
  }
  return {};
}

void CModuleRig::ReplaceFeatures(const GenApi::INodeMap *pOther)
{
  m_deviceMap.Replace(pOther);
  m_outputMap.Replace(pOther);
}

void CModuleRig::SetFrame(FnFrame fnFrame)
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_fnFrame = std::move(fnFrame);
}

void CModuleRig::SetImageInfo(std::function<void(PLUGIN_IMAGE_INFO &)> fnChange)
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_fnImageInfo = std::move(fnChange);
}

void CModuleRig::SetStreaming(bool bStreaming)
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_bStreaming = bStreaming;
  m_pCamera->Integer("TLParamsLocked").Poke(bStreaming ? 1 : 0);
}

void CModuleRig::HandleMessage(int32_t nCode)
{
  if (m_fnMessageHook) {
    m_fnMessageHook(nCode);
  }
  if (nCode == PLUGIN_MSG_ACQUISITION_ON || nCode == PLUGIN_MSG_ACQUISITION_OFF) {
    SetStreaming(nCode == PLUGIN_MSG_ACQUISITION_ON);
  }
}

Settings CModuleRig::TakeSettings()
{
  Settings mapValues;
  AddSettings(mapValues, m_pCamera->Device());
  AddSettings(mapValues, m_pCamera->Stream());
  if (m_eMode == EMode::Vignetting) {
    mapValues.erase("FlatFieldCorrection"); // an acquisition switches it off
  }
  return mapValues;
}

std::string CModuleRig::FindTrouble() const
{
  std::string strTrouble;
  strTrouble += QApplication::overrideCursor() == nullptr ? "" : "a wait cursor; ";
  strTrouble += m_bStreaming ? "" : "the stream stands still; ";
  for (const char *pName : {"AcquisitionBrightFrame_Button", "LoadPC_Button", "SavePC_Button"}) {
    strTrouble +=
      m_pDialog != nullptr && !Find<QPushButton>(pName)->isEnabled() ? std::string(pName) + " is off; " : "";
  }
  return strTrouble;
}

void CModuleRig::Deliver()
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  if (m_pPlugin == nullptr || !m_bStreaming || (!m_pCamera->TakeFrame() && m_eMode != EMode::Host)) {
    return;
  }
  const uint32_t nGray = m_bCapOn ? DARK_GRAY : BRIGHT_GRAY;
  const std::vector<uint8_t> listFrame = m_fnFrame ? m_fnFrame(*m_pCamera, nGray) : m_pCamera->MakeFrame(nGray);
  if (listFrame.empty()) {
    return;
  }
  m_listOutput.resize(listFrame.size());
  PLUGIN_IMAGE_INFO stInput;
  stInput.nPixelFormat = static_cast<int32_t>(m_pCamera->GetPixelFormat());
  stInput.nWidth = static_cast<int32_t>(m_pCamera->Integer("Width").Peek());
  stInput.nHeight = static_cast<int32_t>(m_pCamera->Integer("Height").Peek());
  stInput.nPayloadSize = static_cast<int32_t>(listFrame.size());
  stInput.pBuffer = const_cast<uint8_t *>(listFrame.data());
  if (m_fnImageInfo) {
    m_fnImageInfo(stInput);
  }
  PLUGIN_IMAGE_INFO stOutput = stInput;
  stOutput.pBuffer = m_listOutput.data();
  PLUGIN_PROCESS_RESULT stResult;
  (void)m_pPlugin->ProcessImage(&stInput, &stOutput, PLUGIN_PROCESS_MODE_FRAME, &stResult);
  ++m_nDelivered;
  m_nCorrected += stResult.bCorrected;
}

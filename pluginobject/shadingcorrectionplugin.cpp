#include "pluginobject/shadingcorrectionplugin.h"

#include <new>

#include <QCoreApplication>
#include <QTextCodec>

#include "platform/moduleversion.h"
#include "pluginobject/featureaccess.h"
#include "pluginobject/statuscode.h"

using ffc::platform::QueryModuleVersion;
using ffc::pluginobject::CFeatureAccess;
using ffc::pluginobject::ETextAudience;
using ffc::pluginobject::GetStatusSourceText;

namespace {

constexpr int32_t LANGUAGE_CHINESE = 1;
constexpr uint32_t INTERFACE_VERSION = 0x10000;

QString GetTranslatedName()
{
  return QObject::tr("Flat Field Correction Plugin");
}

QString AppendDeviceName(const QString &strDeviceName)
{
  return GetTranslatedName() + QStringLiteral("  ") + strDeviceName;
}

PLUGIN_VERSION ReadModuleVersion()
{
  uint16_t anVersion[4] = {};
  std::string strError = "Version";
  (void)QueryModuleVersion(anVersion, strError);
  return {anVersion[0], anVersion[1], anVersion[2], anVersion[3]};
}

} // namespace

CShadingCorrectionPlugin::CShadingCorrectionPlugin()
  : m_stVersion(ReadModuleVersion()), m_strName("Flat Field Correction Plugin"),
    m_strGUID("5b1e7d42-9c0a-4f63-8e21-d7a4c90b3f18")
{
  // So that a host can connect to the signal queued by name.
  qRegisterMetaType<PLUGIN_MSG>();
}

CShadingCorrectionPlugin::~CShadingCorrectionPlugin()
{
  DestroyDialog();
}

void CShadingCorrectionPlugin::SlotProcessDemoMsg(const PLUGIN_MSG &stPluginMsg)
{
  try {
    __ProcessMessage(stPluginMsg);
  } catch (...) {
    // There is no status to answer: the dialog stays as it is.
  }
}

void CShadingCorrectionPlugin::__ProcessMessage(const PLUGIN_MSG &stPluginMsg)
{
  if (m_pDialog == nullptr) {
    return;
  }
  switch (stPluginMsg.nMsgCode) {
  case PLUGIN_MSG_SHOW_DIALOG:
    if (m_pDialog->isMinimized()) {
      m_pDialog->showNormal();
    } else {
      m_pDialog->show();
    }
    break;
  case PLUGIN_MSG_HIDE_DIALOG: m_pDialog->hide(); break;
  case PLUGIN_MSG_DEVICE_NAME:
    if (stPluginMsg.pText != nullptr) {
      m_pDialog->SetDialogTitle(AppendDeviceName(QString::fromLocal8Bit(stPluginMsg.pText)));
    }
    break;
  default: break;
  }
}

const char *CShadingCorrectionPlugin::GetPluginGUID()
{
  return m_strGUID.c_str();
}

const char *CShadingCorrectionPlugin::GetPluginName()
{
  return m_strName.c_str();
}

const char *CShadingCorrectionPlugin::GetPluginDisplayName()
{
  return m_pDisplayName;
}

const char *CShadingCorrectionPlugin::GetPluginDescription()
{
  return m_pDescription;
}

uint32_t CShadingCorrectionPlugin::GetInterfaceVersion()
{
  return INTERFACE_VERSION;
}

PLUGIN_VERSION CShadingCorrectionPlugin::GetPluginVersion()
{
  return m_stVersion;
}

bool CShadingCorrectionPlugin::HasSettingDialog()
{
  return true;
}

bool CShadingCorrectionPlugin::IsDialogVisible()
{
  return m_pDialog != nullptr && m_pDialog->isVisible();
}

bool CShadingCorrectionPlugin::IsDialogHidden()
{
  return m_pDialog == nullptr || m_pDialog->isHidden();
}

const char *CShadingCorrectionPlugin::GetStatusText(int32_t nStatus)
{
  const char *const pSource = GetStatusSourceText(nStatus, ETextAudience::Host);
  try {
    m_strLastStatusText = QObject::tr(pSource).toStdString();
    return m_strLastStatusText.c_str();
  } catch (...) {
    // Untranslated, it takes no memory.
    return pSource;
  }
}

const char *CShadingCorrectionPlugin::__KeepText(const QString &strText)
{
  return m_setTexts.insert(strText.toStdString()).first->c_str();
}

int32_t CShadingCorrectionPlugin::Initialize(PLUGIN_INIT_PARAM *pInitParam)
{
  if (pInitParam == nullptr) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  try {
    SetLanguage(static_cast<int32_t>(pInitParam->nLanguage));
    m_pDisplayName = __KeepText(GetTranslatedName());
    m_pDescription = __KeepText(
      QObject::tr("This plugin can calculate flat field correction coefficient and set the coefficient to device"));
    int32_t nStatus = CreateDialog(pInitParam);
    if (nStatus != PLUGIN_STATUS_SUCCESS) {
      return nStatus;
    }
    nStatus = InitDialogProcess();
    if (nStatus != PLUGIN_STATUS_SUCCESS) {
      return nStatus;
    }
    ConnectDialogSignals();
    m_pLiveFrames->Open();
    return PLUGIN_STATUS_SUCCESS;
  } catch (const std::bad_alloc &) {
    return PLUGIN_STATUS_OUT_OF_MEMORY;
  } catch (...) {
    return PLUGIN_STATUS_UNKNOWN_ERROR;
  }
}

int32_t CShadingCorrectionPlugin::Uninitialize()
{
  CloseDialogProcess();
  DestroyDialog();
  return PLUGIN_STATUS_SUCCESS;
}

int32_t CShadingCorrectionPlugin::ProcessImage(PLUGIN_IMAGE_INFO *pInput, PLUGIN_IMAGE_INFO *pOutput, uint32_t nMode,
                                               PLUGIN_PROCESS_RESULT *pResult)
{
  if (pInput == nullptr || pOutput == nullptr || pInput->pBuffer == nullptr || pOutput->pBuffer == nullptr ||
      nMode != PLUGIN_PROCESS_MODE_FRAME) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  int32_t nStatus = PLUGIN_STATUS_SUCCESS;
  bool bCorrected = false;
  try {
    nStatus = m_pLiveFrames->ProcessFrame(*pInput, *pOutput, bCorrected);
  } catch (...) {
    // This frame is what it became so far.
  }
  if (bCorrected && pResult != nullptr) {
    pResult->bCorrected = 1;
  }
  return nStatus;
}

int32_t CShadingCorrectionPlugin::GetProperty(uint32_t nKey, const QVariant * /*pInput*/, QVariant *pValue)
{
  if (m_pDialog == nullptr) {
    return PLUGIN_STATUS_SUCCESS;
  }
  if (nKey != PLUGIN_PROPERTY_IN_USE) {
    return PLUGIN_STATUS_NOT_SUPPORTED;
  }
  if (pValue == nullptr) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  *pValue = QVariant(m_pDialog->IsApplyingCorrection() || m_pDialog->isVisible() ? 1 : 0);
  return PLUGIN_STATUS_SUCCESS;
}

void CShadingCorrectionPlugin::Release()
{
  delete this;
}

void CShadingCorrectionPlugin::SetLanguage(int32_t nLanguage)
{
  if (nLanguage == LANGUAGE_CHINESE) {
    (void)LoadTranslation(QStringLiteral(":/lumalevel_zh.qm"));
  }
}

bool CShadingCorrectionPlugin::LoadTranslation(QString strPath)
{
  QTextCodec::setCodecForLocale(QTextCodec::codecForName("GB2312"));
  // Loading it anew would tell all windows of the host that the language has changed.
  if (strPath.isEmpty() || strPath != m_strTranslation) {
    m_strTranslation.clear();
    if (!m_translator.load(strPath, QString(), QString(), QString())) {
      return false;
    }
    m_strTranslation = strPath;
  }
  if (!m_bTranslatorInstalled) {
    m_bTranslatorInstalled = QCoreApplication::installTranslator(&m_translator);
  }
  return m_bTranslatorInstalled;
}

int32_t CShadingCorrectionPlugin::CreateDialog(PLUGIN_INIT_PARAM *pInitParam)
{
  if (pInitParam->pDeviceNodeMap == nullptr) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  // A dialog left by an initialisation that failed gives way.
  DestroyDialog();
  if (pInitParam->pParent != nullptr) {
    // Before the dialog hears of it: one that goes with its parent must have no frame in it, and none may keep the
    // host's camera.
    m_parentDestroyed = connect(pInitParam->pParent, &QObject::destroyed, this, [this] { DestroyDialog(); });
  }
  try {
    m_pDialog = new CShadingCorrectionDlg(pInitParam->pParent, *pInitParam, m_pLiveFrames);
  } catch (const std::bad_alloc &) {
    return PLUGIN_STATUS_OUT_OF_MEMORY;
  }
  m_pDialog->setWindowFlags(Qt::Dialog | Qt::WindowMinimizeButtonHint);
  m_pDialog->setWindowTitle(__GetTitle(*pInitParam));
  return PLUGIN_STATUS_SUCCESS;
}

QString CShadingCorrectionPlugin::__GetTitle(const PLUGIN_INIT_PARAM &stInitParam) const
{
  if (stInitParam.pDeviceName != nullptr) {
    return AppendDeviceName(QString::fromLocal8Bit(stInitParam.pDeviceName));
  }
  const CFeatureAccess outputFeatures(static_cast<GenApi::INodeMap *>(stInitParam.pOutputNodeMap));
  std::string strDeviceName;
  return outputFeatures.GetStringFeature("DeviceDisplayName", strDeviceName) == PLUGIN_STATUS_SUCCESS
           ? AppendDeviceName(QString::fromStdString(strDeviceName))
           : GetTranslatedName();
}

int32_t CShadingCorrectionPlugin::InitDialogProcess()
{
  return m_pDialog->InitDialog();
}

void CShadingCorrectionPlugin::CloseDialogProcess()
{
  m_pLiveFrames->Close();
  if (m_pDialog != nullptr) {
    m_pDialog->ReleaseProcess();
  }
}

void CShadingCorrectionPlugin::DestroyDialog()
{
  m_pLiveFrames->Close();
  disconnect(m_parentDestroyed);
  if (m_pDialog != nullptr) {
    CShadingCorrectionDlg *pDialog = m_pDialog;
    m_pDialog.clear();
    pDialog->Retire();
  }
}

void CShadingCorrectionPlugin::ConnectDialogSignals()
{
  connect(m_pDialog, &CShadingCorrectionDlg::SigDlgStatusChanged, this, &IPlugin::SigPluginMsg);
}

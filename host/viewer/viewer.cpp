#include "host/viewer/viewer.h"

#include <utility>

#include <QVariant>

namespace ffc::host {

using camera::ICamera;
using camera::SCameraFrame;
using genapi::CObservedNodeMap;
using genapi::SNodeAccess;
using pluginobject::MakePluginMsg;

namespace {

/// Read by the plug-in with every frame that it takes.
const char *const PAYLOAD_SIZE = "PayloadSize";

} // namespace

CViewer::CViewer(std::unique_ptr<ICamera> pCamera) : m_pCamera(std::move(pCamera))
{
  m_pCamera->SetFrameCallback([this](const SCameraFrame &stFrame) { m_pipeline.Receive(stFrame); });
}

CViewer::~CViewer()
{
  (void)Dismantle();
}

std::unique_ptr<ICamera> CViewer::Dismantle()
{
  if (m_pCamera != nullptr) {
    StopStream();
    Release();
    m_module.Unload();
    m_pCamera->SetFrameCallback(nullptr);
  }
  return std::move(m_pCamera);
}

Result<> CViewer::Open(const QString &strPluginPath, ELanguage eLanguage)
{
  StopStream();
  Release();
  Result<> loaded = m_module.Load(strPluginPath.isEmpty() ? CPluginModule::GetDefaultPath() : strPluginPath);
  if (!loaded) {
    return loaded;
  }
  m_byteDeviceName = QString::fromStdString(m_pCamera->GetDisplayName()).toLocal8Bit();
  m_stInitParam = PLUGIN_INIT_PARAM();
  m_stInitParam.pOutputNodeMap = m_pCamera->GetOutputNodeMap();
  m_stInitParam.pStreamNodeMap = m_pCamera->GetStreamNodeMap();
  m_stInitParam.pDeviceNodeMap = WatchDeviceMap();
  m_stInitParam.nLanguage = static_cast<uint32_t>(eLanguage);
  m_stInitParam.pParent = m_pDialogParent;
  m_stInitParam.pDeviceName = m_byteDeviceName.constData();
  return Bind();
}

GenApi::INodeMap *CViewer::WatchDeviceMap()
{
  if (m_pObserver == nullptr) {
    return m_pCamera->GetDeviceNodeMap();
  }
  m_pWatchedMap = std::make_unique<CObservedNodeMap>(*m_pCamera->GetDeviceNodeMap());
  m_pWatchedMap->AddHook([this](const SNodeAccess &stAccess) { Watch(stAccess); });
  return m_pWatchedMap.get();
}

void CViewer::Watch(const SNodeAccess &stAccess)
{
  if (m_bAcquiring && stAccess.eKind == SNodeAccess::EKind::Read && stAccess.strNode == PAYLOAD_SIZE) {
    m_pObserver->CountAcquiredFrame();
  }
}

Result<> CViewer::Reopen()
{
  StopStream();
  Release();
  return Bind();
}

Result<> CViewer::Bind()
{
  IPlugin *pPlugin = m_module.GetPlugin();
  const int32_t nStatus = pPlugin->Initialize(&m_stInitParam);
  if (nStatus != 0) {
    const QString strText = QString::fromUtf8(pPlugin->GetStatusText(nStatus));
    m_module.Unload();
    return Failure(QStringLiteral("plug-in does not initialise: %1 (%2)").arg(strText).arg(nStatus));
  }
  m_bInitialized = true;
  // By name and not by pointer to member: the module has a meta-object of its own for the interface.
  // Direct, because the user-interface thread is inside an acquisition when the plug-in asks for frames.
  connect(pPlugin, SIGNAL(SigPluginMsg(const PLUGIN_MSG &)), this, SLOT(SlotPluginMsg(const PLUGIN_MSG &)),
          Qt::DirectConnection);
  m_pipeline.SetPlugin(pPlugin);
  return {};
}

void CViewer::Release()
{
  m_pipeline.SetPlugin(nullptr);
  if (m_bInitialized) {
    disconnect(m_module.GetPlugin(), nullptr, this, nullptr);
    m_module.GetPlugin()->Uninitialize();
  }
  m_bInitialized = false;
}

void CViewer::Send(EPluginMsgCode eCode)
{
  if (m_bInitialized) {
    m_module.GetPlugin()->SlotProcessDemoMsg(MakePluginMsg(eCode));
  }
}

void CViewer::ShowDialog()
{
  Send(PLUGIN_MSG_SHOW_DIALOG);
}

void CViewer::HideDialog()
{
  Send(PLUGIN_MSG_HIDE_DIALOG);
}

bool CViewer::IsDialogVisible() const
{
  return m_bInitialized && m_module.GetPlugin()->IsDialogVisible();
}

bool CViewer::IsPluginInUse() const
{
  // By the name of the class: the module has meta-objects of its own.
  IPlugin *pPlugin = m_bInitialized ? m_module.GetPlugin() : nullptr;
  if (pPlugin == nullptr || !pPlugin->inherits("IPluginExtended")) {
    return false;
  }
  QVariant value;
  const int32_t nStatus = static_cast<IPluginExtended *>(pPlugin)->GetProperty(PLUGIN_PROPERTY_IN_USE, nullptr, &value);
  return nStatus == 0 && value.toInt() == 1;
}

QString CViewer::GetStatusText(int32_t nStatus) const
{
  return m_bInitialized ? QString::fromUtf8(m_module.GetPlugin()->GetStatusText(nStatus)).trimmed() : QString();
}

QString GetToolName()
{
  return QStringLiteral("ffchost " FFC_VERSION);
}

QString CViewer::DescribePrograms() const
{
  const QString strModule = m_module.Describe();
  return GetToolName() + (strModule.isEmpty() ? QString() : QStringLiteral(", ") + strModule);
}

Result<> CViewer::StartStream()
{
  m_streamState = m_pCamera->Start();
  return m_streamState;
}

void CViewer::StopStream()
{
  m_pCamera->Stop();
}

void CViewer::SlotPluginMsg(const PLUGIN_MSG &stPluginMsg)
{
  const bool bOn = stPluginMsg.nMsgCode == PLUGIN_MSG_ACQUISITION_ON;
  if (!bOn && stPluginMsg.nMsgCode != PLUGIN_MSG_ACQUISITION_OFF) {
    return;
  }
  if (bOn && m_pObserver != nullptr) {
    m_pObserver->ExpectAcquisition();
  }
  if (bOn) {
    (void)StartStream(); // see GetStreamState
  } else {
    StopStream();
  }
  m_bAcquiring = bOn;
  if (m_pObserver != nullptr) {
    bOn ? m_pObserver->BeginAcquisition() : m_pObserver->EndAcquisition();
  }
  emit SigStreamChanged();
}

} // namespace ffc::host

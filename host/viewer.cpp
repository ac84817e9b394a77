#include "host/viewer.h"

#include <utility>

CViewer::CViewer(std::unique_ptr<ICamera> pCamera) : m_pCamera(std::move(pCamera))
{
  m_pCamera->SetFrameCallback([this](const SCameraFrame &stFrame) { m_pipeline.Receive(stFrame); });
}

CViewer::~CViewer()
{
  StopStream();
  Release();
  m_module.Unload();
  m_pCamera->SetFrameCallback(nullptr);
}

QString CViewer::Open(const QString &strPluginPath, ELanguage eLanguage)
{
  StopStream();
  Release();
  QString strError = m_module.Load(strPluginPath);
  if (!strError.isEmpty()) {
    return strError;
  }
  m_byteDeviceName = QString::fromStdString(m_pCamera->GetDisplayName()).toLocal8Bit();
  m_stInitParam = PLUGIN_INIT_PARAM();
  m_stInitParam.pOutputNodeMap = m_pCamera->GetOutputNodeMap();
  m_stInitParam.pStreamNodeMap = m_pCamera->GetStreamNodeMap();
  m_stInitParam.pDeviceNodeMap = m_pCamera->GetDeviceNodeMap();
  m_stInitParam.nLanguage = uint32_t(eLanguage);
  m_stInitParam.pDeviceName = m_byteDeviceName.constData();
  return Bind();
}

QString CViewer::Open(const SHostOptions &stOptions)
{
  const QString strPlugin =
    stOptions.strPlugin.empty() ? CPluginModule::GetDefaultPath() : QString::fromStdString(stOptions.strPlugin);
  return Open(strPlugin, stOptions.bChinese ? ELanguage::Chinese : ELanguage::English);
}

QString CViewer::Reopen()
{
  StopStream();
  Release();
  return Bind();
}

QString CViewer::Bind()
{
  IPlugin *pPlugin = m_module.GetPlugin();
  const int32_t nStatus = pPlugin->Initialize(&m_stInitParam);
  if (nStatus != 0) {
    const QString strText = QString::fromUtf8(pPlugin->GetStatusText(nStatus));
    m_module.Unload();
    return QStringLiteral("plug-in does not initialise: %1 (%2)").arg(strText).arg(nStatus);
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

QString CViewer::StartStream()
{
  m_strStreamError = QString::fromStdString(m_pCamera->Start());
  return m_strStreamError;
}

void CViewer::StopStream()
{
  m_pCamera->Stop();
}

void CViewer::SlotPluginMsg(const PLUGIN_MSG &stPluginMsg)
{
  if (stPluginMsg.nMsgCode == PLUGIN_MSG_ACQUISITION_ON) {
    StartStream();
  } else if (stPluginMsg.nMsgCode == PLUGIN_MSG_ACQUISITION_OFF) {
    StopStream();
  }
}

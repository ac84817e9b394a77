#include "benchmarks/pluginbench.h"

#include <QApplication>
#include <QList>
#include <QPushButton>
#include <QSlider>

#include "tests/support/framepump.h"
#include "tests/support/modalanswer.h"

using ffc::genapi::CSoftwareNodeMap;
using ffc::test::CFramePump;
using ffc::test::CModalAnswer;

namespace {

constexpr uint32_t GREY = 120;

QList<CShadingCorrectionDlg *> FindDialogs()
{
  QList<CShadingCorrectionDlg *> listDialogs;
  for (QWidget *pWidget : QApplication::topLevelWidgets()) {
    if (auto *pDialog = qobject_cast<CShadingCorrectionDlg *>(pWidget)) {
      listDialogs.append(pDialog);
    }
  }
  return listDialogs;
}

void *ToPointer(CSoftwareNodeMap &map)
{
  return static_cast<GenApi::INodeMap *>(&map);
}

} // namespace

CPluginBench::CPluginBench(const std::string &strPixelFormat, int32_t nWidth, int32_t nHeight)
  : m_camera(strPixelFormat, nWidth, nHeight), m_listFrame(m_camera.MakeFrame(GREY)), m_listOutput(m_listFrame)
{
  m_stInitParam.pOutputNodeMap = ToPointer(m_camera.Output());
  m_stInitParam.pStreamNodeMap = ToPointer(m_camera.Stream());
  m_stInitParam.pDeviceNodeMap = ToPointer(m_camera.Device());
  m_stInput.nPixelFormat = static_cast<int32_t>(m_camera.GetPixelFormat());
  m_stInput.nWidth = nWidth;
  m_stInput.nHeight = nHeight;
  m_stInput.nPayloadSize = static_cast<int32_t>(m_listFrame.size());
  m_stInput.pBuffer = m_listFrame.data();
  m_stOutput = m_stInput;
  m_stOutput.pBuffer = m_listOutput.data();
  const QList<CShadingCorrectionDlg *> listOthers = FindDialogs();
  (void)m_plugin.Initialize(&m_stInitParam);
  for (CShadingCorrectionDlg *pDialog : FindDialogs()) {
    m_pDialog = listOthers.contains(pDialog) ? m_pDialog : pDialog;
  }
}

CPluginBench::~CPluginBench()
{
  m_plugin.Uninitialize();
}

template <class TWidget>
TWidget *CPluginBench::Find(const char *pName)
{
  return m_pDialog->findChild<TWidget *>(QString::fromLatin1(pName));
}

bool CPluginBench::AcquireBright(int32_t nFrameCount)
{
  CModalAnswer answer;
  Find<QSlider>("AcquisitionFrame_Slider")->setValue(nFrameCount);
  CFramePump pump([](std::vector<uint8_t> &, uint64_t) {}, [this](const std::vector<uint8_t> &) { (void)Process(); },
                  5000.0);
  Find<QPushButton>("AcquisitionBrightFrame_Button")->click();
  pump.Stop();
  return answer.GetBoxes().empty();
}

bool CPluginBench::Execute()
{
  CModalAnswer answer;
  Find<QPushButton>("ExecuteShadingCorrection_Button")->click();
  return answer.GetBoxes().empty() && Process();
}

bool CPluginBench::Process()
{
  PLUGIN_PROCESS_RESULT stResult;
  return m_plugin.ProcessImage(&m_stInput, &m_stOutput, PLUGIN_PROCESS_MODE_FRAME, &stResult) == 0 &&
         stResult.bCorrected != 0;
}

// Frames that never stop, while the user does everything.
#include <algorithm>
#include <atomic>
#include <random>
#include <vector>

#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QPushButton>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrectionplugin.h"
#include "pluginobject/statuscode.h"
#include "tests/support/framepump.h"
#include "tests/support/modalanswer.h"
#include "tests/support/testcamera.h"

using ffc::pluginobject::MakePluginMsg;
using namespace ffc::test;

namespace {

constexpr int64_t SIDE = 64;
constexpr uint16_t UNTOUCHED = 0xA5A5;

// A plug-in whose frame thread delivers without a pause, to a camera that is also a user's.
class CBusyViewer {
public:
  explicit CBusyViewer(const std::string &strPixelFormat) : m_camera(strPixelFormat, SIDE, SIDE)
  {
    m_camera.Integer("TLParamsLocked").Poke(1);
    m_stParam.pOutputNodeMap = static_cast<GenApi::INodeMap *>(&m_camera.Output());
    m_stParam.pStreamNodeMap = static_cast<GenApi::INodeMap *>(&m_camera.Stream());
    m_stParam.pDeviceNodeMap = static_cast<GenApi::INodeMap *>(&m_camera.Device());
    m_nPixelFormat = static_cast<int32_t>(m_camera.GetPixelFormat());
    // Settings that are locked while the camera streams are free when the plug-in has the stream stopped. Frames of
    // before go on to come.
    QObject::connect(&m_plugin, &IPlugin::SigPluginMsg, [this](const PLUGIN_MSG &stMsg) {
      if (stMsg.nMsgCode == PLUGIN_MSG_ACQUISITION_ON || stMsg.nMsgCode == PLUGIN_MSG_ACQUISITION_OFF) {
        m_camera.Integer("TLParamsLocked").Poke(stMsg.nMsgCode == PLUGIN_MSG_ACQUISITION_ON ? 1 : 0);
      }
    });
  }

  void Open()
  {
    ASSERT_EQ(m_plugin.Initialize(&m_stParam), PLUGIN_STATUS_SUCCESS);
    PLUGIN_MSG stShow = MakePluginMsg(PLUGIN_MSG_SHOW_DIALOG);
    m_plugin.SlotProcessDemoMsg(stShow);
    m_pDialog = nullptr;
    for (QWidget *pWidget : QApplication::topLevelWidgets()) {
      if (pWidget->objectName() == QLatin1String("ShadingCorrectionDlg")) {
        m_pDialog = pWidget;
      }
    }
    ASSERT_NE(m_pDialog, nullptr);
  }
  void Close() { m_plugin.Uninitialize(); }

  template <class TWidget>
  TWidget *Find(const char *pName) const
  {
    return m_pDialog->findChild<TWidget *>(QString::fromLatin1(pName));
  }
  void Click(const char *pName) const { QTest::mouseClick(Find<QWidget>(pName), Qt::LeftButton); }

  // Frame thread.
  void Fill(std::vector<uint8_t> &listFrame)
  {
    const unsigned nGray = m_bCapOn ? 20 : 3000;
    listFrame.resize(SIDE * SIDE * sizeof(uint16_t));
    for (std::size_t nPixel = 0; nPixel < listFrame.size() / sizeof(uint16_t); ++nPixel) {
      const unsigned nValue = nGray - static_cast<unsigned>(nPixel % SIDE / 8);
      listFrame[2 * nPixel] = static_cast<uint8_t>(nValue & 0xFF);
      listFrame[2 * nPixel + 1] = static_cast<uint8_t>(nValue >> 8);
    }
  }
  void Deliver(const std::vector<uint8_t> &listFrame)
  {
    std::vector<uint16_t> listOutput(SIDE * SIDE, UNTOUCHED);
    PLUGIN_IMAGE_INFO stInput;
    stInput.nPixelFormat = m_nPixelFormat;
    stInput.nWidth = SIDE;
    stInput.nHeight = SIDE;
    stInput.nPayloadSize = static_cast<int32_t>(listFrame.size());
    stInput.pBuffer = const_cast<uint8_t *>(listFrame.data());
    PLUGIN_IMAGE_INFO stOutput = stInput;
    stOutput.pBuffer = listOutput.data();
    PLUGIN_PROCESS_RESULT stResult;
    m_nFailures += m_plugin.ProcessImage(&stInput, &stOutput, PLUGIN_PROCESS_MODE_FRAME, &stResult) != 0;
    const auto nUntouched = std::count(listOutput.begin(), listOutput.end(), UNTOUCHED);
    // The flag and the buffer must agree.
    m_nLies += stResult.bCorrected == 1 ? nUntouched != 0 : nUntouched != SIDE * SIDE;
    m_nCorrected += stResult.bCorrected;
  }

  CTestCamera m_camera;
  PLUGIN_INIT_PARAM m_stParam;
  CShadingCorrectionPlugin m_plugin;
  QWidget *m_pDialog = nullptr;
  int32_t m_nPixelFormat = 0;
  std::atomic<bool> m_bCapOn{false};
  std::atomic<int> m_nFailures{0};
  std::atomic<int> m_nLies{0};
  std::atomic<int> m_nCorrected{0};
};

void DoSomething(CBusyViewer &viewer, std::mt19937 &random)
{
  switch (random() % 9) {
  case 0:
    viewer.m_bCapOn = true;
    viewer.Click("AcquisitionDarkFrame_Button");
    viewer.m_bCapOn = false;
    break;
  case 1: viewer.Click("AcquisitionBrightFrame_Button"); break;
  case 2: viewer.Click("ExecuteShadingCorrection_Button"); break;
  case 3: viewer.Find<QCheckBox>("PreviewcheckBox")->click(); break;
  case 4: viewer.Click("SavePC_Button"); break;
  case 5: viewer.Click("LoadPC_Button"); break;
  case 6: viewer.Find<QSlider>("AcquisitionFrame_Slider")->setValue(static_cast<int>(random() % 17)); break;
  case 7: viewer.Find<QSlider>("ExpectGrayValue_Slider")->setValue(static_cast<int>(100 + random() % 100)); break;
  default: {
    QVariant value;
    viewer.m_plugin.GetProperty(PLUGIN_PROPERTY_IN_USE, nullptr, &value);
    PLUGIN_MSG stHide = MakePluginMsg(PLUGIN_MSG_HIDE_DIALOG);
    viewer.m_plugin.SlotProcessDemoMsg(stHide);
    PLUGIN_MSG stShow = MakePluginMsg(PLUGIN_MSG_SHOW_DIALOG);
    viewer.m_plugin.SlotProcessDemoMsg(stShow);
  }
  }
  QCoreApplication::processEvents();
}

class FrameThread : public ::testing::TestWithParam<const char *> {};

} // namespace

TEST_P(FrameThread, HammersProcessImageWhileTheUserDoesEverything)
{
  constexpr int OPERATIONS = 240;
  constexpr int OPERATIONS_PER_OPENING = 40;
  const QTemporaryDir folder;
  const QString strFile = folder.filePath(QStringLiteral("table.ffc"));
  CModalAnswer answer;
  answer.ChooseFile(strFile);
  CBusyViewer viewer(GetParam());
  std::mt19937 random(20);
  CFramePump pump([&](std::vector<uint8_t> &listFrame, uint64_t) { viewer.Fill(listFrame); },
                  [&](const std::vector<uint8_t> &listFrame) { viewer.Deliver(listFrame); }, 0);
  for (int nDone = 0; nDone < OPERATIONS; ++nDone) {
    if (nDone % OPERATIONS_PER_OPENING == 0) {
      // Opened and closed under fire.
      viewer.Close();
      ASSERT_NO_FATAL_FAILURE(viewer.Open());
      viewer.Click("AcquisitionBrightFrame_Button");
      viewer.Click("ExecuteShadingCorrection_Button");
    }
    DoSomething(viewer, random);
  }
  // Whatever came last, a fresh correction works.
  viewer.Click("AcquisitionBrightFrame_Button");
  viewer.Click("ExecuteShadingCorrection_Button");
  const int nBefore = viewer.m_nCorrected;
  EXPECT_TRUE(QTest::qWaitFor([&] { return viewer.m_nCorrected > nBefore; }));
  viewer.Close();
  pump.Stop();
  EXPECT_EQ(viewer.m_nFailures, 0);
  EXPECT_EQ(viewer.m_nLies, 0);
  EXPECT_GT(viewer.m_nCorrected, 0);
}

INSTANTIATE_TEST_SUITE_P(Cameras, FrameThread, ::testing::Values("Mono12", "BayerRG12"),
                         [](const auto &stInfo) { return std::string(stInfo.param); });

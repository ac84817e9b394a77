/// \file
/// A plug-in object with a test camera, for tests that talk to it as a host does.
#pragma once

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <QApplication>
#include <QLabel>
#include <QTextCodec>

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrectionplugin.h"
#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/scriptedprocess.h"
#include "tests/support/testcamera.h"

/// The one correction dialog that there is; null when there is none.
inline CShadingCorrectionDlg *FindDialog()
{
  for (QWidget *pWidget : QApplication::topLevelWidgets()) {
    if (auto *pDialog = qobject_cast<CShadingCorrectionDlg *>(pWidget)) {
      return pDialog;
    }
  }
  return nullptr;
}

/// The plug-in object with a scripted process behind its dialog.
class CScriptedPlugin : public CShadingCorrectionPlugin {
public:
  explicit CScriptedPlugin(SProcessScript &stScript) : m_stScript(stScript) {}

  int32_t InitDialogProcess() override
  {
    FindDialog()->SetProcessFactory([this](ffc::process::EProcessKind, const ffc::pluginobject::CFeatureAccess &,
                                           const ffc::pluginobject::CFeatureAccess &,
                                           std::unique_ptr<IShadingCorrectionProcess> &pProcess) {
      pProcess = std::make_unique<CScriptedProcess>(m_stScript);
      return PLUGIN_STATUS_SUCCESS;
    });
    return CShadingCorrectionPlugin::InitDialogProcess();
  }

private:
  SProcessScript &m_stScript;
};

/// Puts back what a plug-in changes in the application, and sees that no dialog is left.
class CPluginTest : public testing::Test {
protected:
  CPluginTest() : m_pLocaleCodec(QTextCodec::codecForLocale())
  {
    m_stInitParam.pOutputNodeMap = ToPointer(m_camera.Output());
    m_stInitParam.pStreamNodeMap = ToPointer(m_camera.Stream());
    m_stInitParam.pDeviceNodeMap = ToPointer(m_camera.Device());
  }

  ~CPluginTest() override
  {
    // Takes its translator along.
    m_pPlugin.reset();
    QTextCodec::setCodecForLocale(m_pLocaleCodec);
    EXPECT_EQ(FindDialog(), nullptr);
  }

  /// The host's records carry node maps without their type.
  static void *ToPointer(ffc::genapi::CSoftwareNodeMap &map) { return static_cast<GenApi::INodeMap *>(&map); }

  int32_t Initialize() { return m_pPlugin->Initialize(&m_stInitParam); }

  void Send(int32_t nCode, const char *pText = nullptr)
  {
    PLUGIN_MSG stPluginMsg;
    stPluginMsg.nMsgCode = nCode;
    stPluginMsg.pText = pText;
    m_pPlugin->SlotProcessDemoMsg(stPluginMsg);
  }

  /// Passes one frame through the plug-in, with itself as output.
  int32_t DeliverFrame(PLUGIN_PROCESS_RESULT *pResult = nullptr)
  {
    std::vector<uint8_t> listFrame = m_camera.MakeFrame(10);
    PLUGIN_IMAGE_INFO stImage;
    stImage.nPayloadSize = static_cast<int32_t>(listFrame.size());
    stImage.pBuffer = listFrame.data();
    return m_pPlugin->ProcessImage(&stImage, &stImage, PLUGIN_PROCESS_MODE_FRAME, pResult);
  }

  std::string GetWindowTitle() const { return FindDialog()->windowTitle().toStdString(); }
  std::string GetBarTitle() const
  {
    return FindDialog()->findChild<QLabel *>(QStringLiteral("TitleContent"))->text().toStdString();
  }

  QTextCodec *m_pLocaleCodec;
  ffc::test::CTestCamera m_camera;
  PLUGIN_INIT_PARAM m_stInitParam;
  SProcessScript m_stScript;
  std::unique_ptr<CShadingCorrectionPlugin> m_pPlugin = std::make_unique<CScriptedPlugin>(m_stScript);
};

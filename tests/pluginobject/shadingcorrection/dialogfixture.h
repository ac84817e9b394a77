/// \file
/// A shown correction dialog with a scripted process behind it.
#pragma once

#include <memory>
#include <string>

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QTest>

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/shadingcorrectiondlg.h"
#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/scriptedprocess.h"
#include "tests/support/modalanswer.h"
#include "tests/support/testcamera.h"

class CDialogTest : public ::testing::Test {
public:
  /// Builds, initialises and shows a dialog. \return what InitDialog said
  int32_t Open(const std::string &strMode = std::string())
  {
    if (!strMode.empty()) {
      m_camera.AddShadingCorrectionMode(strMode);
    }
    Build();
    return Init();
  }

  void Build()
  {
    PLUGIN_INIT_PARAM stParam;
    stParam.pOutputNodeMap = static_cast<GenApi::INodeMap *>(&m_camera.Output());
    stParam.pStreamNodeMap = static_cast<GenApi::INodeMap *>(&m_camera.Stream());
    stParam.pDeviceNodeMap = static_cast<GenApi::INodeMap *>(&m_camera.Device());
    m_pDialog = std::make_unique<CShadingCorrectionDlg>(nullptr, stParam);
    m_pDialog->SetProcessFactory([this](ffc::process::EProcessKind eKind, const ffc::pluginobject::CFeatureAccess &,
                                        const ffc::pluginobject::CFeatureAccess &,
                                        std::unique_ptr<IShadingCorrectionProcess> &pProcess) {
      m_eKind = eKind;
      if (m_nFactoryStatus == PLUGIN_STATUS_SUCCESS) {
        pProcess = std::make_unique<CScriptedProcess>(m_stScript);
        m_pMade = pProcess.get();
      }
      return m_nFactoryStatus;
    });
  }

  int32_t Init()
  {
    const int32_t nStatus = m_pDialog->InitDialog();
    m_pDialog->show();
    m_stScript.listCalls.clear();
    return nStatus;
  }

  template <class TWidget>
  TWidget *Find(const char *pName)
  {
    auto *pWidget = m_pDialog->findChild<TWidget *>(QString::fromLatin1(pName));
    EXPECT_NE(pWidget, nullptr) << pName;
    return pWidget;
  }
  QPushButton *Button(const char *pName) { return Find<QPushButton>(pName); }
  QPushButton *Dark() { return Button("AcquisitionDarkFrame_Button"); }
  QPushButton *Bright() { return Button("AcquisitionBrightFrame_Button"); }
  QPushButton *Execute() { return Button("ExecuteShadingCorrection_Button"); }
  QCheckBox *Preview() { return Find<QCheckBox>("PreviewcheckBox"); }
  QSlider *FrameSlider() { return Find<QSlider>("AcquisitionFrame_Slider"); }
  QSlider *GraySlider() { return Find<QSlider>("ExpectGrayValue_Slider"); }
  QSpinBox *GrayBox() { return Find<QSpinBox>("ExpectGrayspinBox"); }

  static void Click(QWidget *pWidget) { QTest::mouseClick(pWidget, Qt::LeftButton); }
  /// A check box reacts to a click on its indicator.
  static void ClickBox(QCheckBox *pBox) { QTest::mouseClick(pBox, Qt::LeftButton, {}, QPoint(8, pBox->height() / 2)); }

  std::string Prompt() { return Find<QLabel>("PromptInformation_label")->text().toStdString(); }
  QColor PromptColour() { return Find<QLabel>("PromptInformation_label")->palette().color(QPalette::WindowText); }
  /// Offers a frame for correction, as the frame thread does.
  int32_t OfferFrame(bool &bCorrected)
  {
    uint8_t nPixel = 0;
    return m_pDialog->CorrectFrame(&nPixel, &nPixel, 1, 1, 0x01080001, bCorrected);
  }
  /// What the single box shown by an action said; fails when there was none or more than one.
  template <class TAction>
  std::string BoxOf(TAction fnAction)
  {
    ffc::test::CModalAnswer answer;
    fnAction();
    EXPECT_EQ(answer.GetBoxes().size(), 1U);
    if (answer.GetBoxes().size() != 1) {
      return {};
    }
    EXPECT_EQ(answer.GetBoxes()[0].strTitle, "Error");
    return answer.GetBoxes()[0].strMessage;
  }

  ffc::test::CTestCamera m_camera;
  SProcessScript m_stScript;
  int32_t m_nFactoryStatus = PLUGIN_STATUS_SUCCESS;
  ffc::process::EProcessKind m_eKind = ffc::process::EProcessKind::DeviceVignetting;
  IShadingCorrectionProcess *m_pMade = nullptr; // the dialog's
  std::unique_ptr<CShadingCorrectionDlg> m_pDialog;
};

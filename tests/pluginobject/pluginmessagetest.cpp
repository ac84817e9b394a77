// Messages in both directions, and properties.
#include <algorithm>

#include "tests/pluginobject/failingtranslator.h"
#include "tests/pluginobject/pluginfixture.h"

using ffc::pluginobject::MakePluginMsg;

namespace {

class PluginMessage : public CPluginTest {
protected:
  PluginMessage()
  {
    QObject::connect(m_pPlugin.get(), &IPlugin::SigPluginMsg,
                     [this](const PLUGIN_MSG &stPluginMsg) { m_listReceived.push_back(stPluginMsg); });
  }

  std::vector<int32_t> GetReceivedCodes() const
  {
    std::vector<int32_t> listCodes;
    for (const PLUGIN_MSG &stPluginMsg : m_listReceived) {
      listCodes.push_back(stPluginMsg.nMsgCode);
    }
    return listCodes;
  }

  std::vector<PLUGIN_MSG> m_listReceived;
};

class PluginProperty : public CPluginTest {
protected:
  // Asks for the one known property.
  QVariant GetInUse()
  {
    QVariant value;
    EXPECT_EQ(m_pPlugin->GetProperty(PLUGIN_PROPERTY_IN_USE, nullptr, &value), PLUGIN_STATUS_SUCCESS);
    return value;
  }
};

} // namespace

TEST_F(PluginMessage, OneShowsTheDialogAndTwoHidesIt)
{
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  Send(1);
  EXPECT_TRUE(m_pPlugin->IsDialogVisible());
  EXPECT_FALSE(m_pPlugin->IsDialogHidden());
  Send(2);
  EXPECT_FALSE(m_pPlugin->IsDialogVisible());
  EXPECT_TRUE(m_pPlugin->IsDialogHidden());
  EXPECT_NE(FindDialog(), nullptr);
}

TEST_F(PluginMessage, OneRestoresAMinimisedDialog)
{
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  Send(1);
  FindDialog()->showMinimized();
  ASSERT_TRUE(FindDialog()->isMinimized());
  Send(1);
  EXPECT_FALSE(FindDialog()->isMinimized());
  EXPECT_TRUE(m_pPlugin->IsDialogVisible());
}

TEST_F(PluginMessage, ShowingAndHidingIsReportedWithZeroFilledRecords)
{
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  Send(1);
  Send(2);
  Send(1);
  ASSERT_EQ(GetReceivedCodes(), (std::vector<int32_t>{1002, 1001, 1002}));
  for (const PLUGIN_MSG &stReceived : m_listReceived) {
    PLUGIN_MSG stExpected;
    std::memset(static_cast<void *>(&stExpected), 0, sizeof stExpected);
    stExpected.nMsgCode = stReceived.nMsgCode;
    EXPECT_EQ(std::memcmp(&stReceived, &stExpected, sizeof stExpected), 0);
  }
}

TEST_F(PluginMessage, WhatTheProcessAsksOfTheStreamIsRelayed)
{
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  auto *pDialog = FindDialog();
  PLUGIN_MSG stPluginMsg = MakePluginMsg(PLUGIN_MSG_ACQUISITION_ON);
  std::fill(std::begin(stPluginMsg.anReserved), std::end(stPluginMsg.anReserved), uint8_t{0x5A});
  emit pDialog->SigDlgStatusChanged(stPluginMsg);
  emit pDialog->SigDlgStatusChanged(MakePluginMsg(PLUGIN_MSG_ACQUISITION_OFF));
  ASSERT_EQ(GetReceivedCodes(), (std::vector<int32_t>{10, 11}));
  EXPECT_EQ(std::memcmp(&m_listReceived[0], &stPluginMsg, sizeof stPluginMsg), 0);
}

TEST_F(PluginMessage, OtherCodesAreIgnored)
{
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  const std::string strTitle = GetBarTitle();
  for (const bool bShown : {false, true}) {
    FindDialog()->setVisible(bShown);
    m_listReceived.clear();
    for (const int32_t nCode : {0, 3, 10, 11, 12, 14, 1001, 1002, 1003, -1}) {
      Send(nCode, "text");
      EXPECT_EQ(m_pPlugin->IsDialogVisible(), bShown) << nCode;
      EXPECT_EQ(GetBarTitle(), strTitle) << nCode;
    }
    EXPECT_TRUE(m_listReceived.empty()) << bShown;
  }
}

TEST_F(PluginMessage, WithoutADialogEveryCodeIsIgnored)
{
  for (const int32_t nCode : {1, 2, 13, 1001}) {
    Send(nCode, "text");
  }
  EXPECT_FALSE(m_pPlugin->IsDialogVisible());
  EXPECT_TRUE(m_pPlugin->IsDialogHidden());
  EXPECT_TRUE(m_listReceived.empty());
}

TEST_F(PluginMessage, ANewNameThatFindsNoMemoryLeavesTheTitleAsItIs)
{
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  const std::string strTitle = GetBarTitle();
  {
    const CFailingTranslator failing("QObject");
    Send(PLUGIN_MSG_DEVICE_NAME, "Renamed");
  }
  EXPECT_EQ(GetBarTitle(), strTitle);
}

TEST_F(PluginMessage, AHostMayDestroyTheWindowOfTheDialogWithinAnAcquisition)
{
  auto pParent = std::make_unique<QWidget>();
  m_stInitParam.pParent = pParent.get();
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  m_stScript.fnMeanwhile = [&pParent] { pParent.reset(); };
  FindDialog()->Slot_objAcquisitionBrightFrame_Button_clicked();
  EXPECT_EQ(pParent, nullptr);
  EXPECT_EQ(m_stScript.listCalls.back(), "restore");
  EXPECT_TRUE(m_stScript.bDestroyed);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(FindDialog(), nullptr);
}

TEST_F(PluginProperty, WithoutADialogEveryKeySucceedsAndNothingIsStored)
{
  QVariant value(7);
  for (const uint32_t nKey : {1003U, 0U, 1004U}) {
    EXPECT_EQ(m_pPlugin->GetProperty(nKey, nullptr, &value), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(m_pPlugin->GetProperty(nKey, nullptr, nullptr), PLUGIN_STATUS_SUCCESS);
  }
  EXPECT_EQ(value, QVariant(7));
}

TEST_F(PluginProperty, UnknownKeysAreNotSupported)
{
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  QVariant value(7);
  for (const uint32_t nKey : {0U, 1002U, 1004U, 0xFFFFFFFFU}) {
    EXPECT_EQ(m_pPlugin->GetProperty(nKey, nullptr, &value), PLUGIN_STATUS_NOT_SUPPORTED);
  }
  EXPECT_EQ(value, QVariant(7));
}

TEST_F(PluginProperty, ThePluginIsInUseWhileItsDialogIsVisible)
{
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(GetInUse(), QVariant(0));
  EXPECT_EQ(GetInUse().type(), QVariant::Int);
  Send(PLUGIN_MSG_SHOW_DIALOG);
  EXPECT_EQ(GetInUse(), QVariant(1));
  Send(PLUGIN_MSG_HIDE_DIALOG);
  EXPECT_EQ(GetInUse(), QVariant(0));
}

TEST_F(PluginProperty, ThePluginIsInUseWhileFramesAreCorrectedAlthoughItsDialogIsHidden)
{
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  FindDialog()->Slot_objExecuteShadingCorrection_Button_clicked();
  EXPECT_FALSE(m_pPlugin->IsDialogVisible());
  EXPECT_EQ(GetInUse(), QVariant(1));
  FindDialog()->SlotPreviewCorrectionEffect(false);
  EXPECT_EQ(GetInUse(), QVariant(0));
}

TEST_F(PluginProperty, TheFurtherInputIsIgnored)
{
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  const QVariant input(99);
  QVariant value;
  EXPECT_EQ(m_pPlugin->GetProperty(PLUGIN_PROPERTY_IN_USE, &input, &value), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(value, QVariant(0));
}

TEST_F(PluginProperty, WithNowhereToStoreItIsAnInvalidParameter)
{
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_pPlugin->GetProperty(PLUGIN_PROPERTY_IN_USE, nullptr, nullptr), PLUGIN_STATUS_INVALID_PARAM);
}

TEST_F(PluginMessage, AHostMayEndTheServiceWhileAnAcquisitionReadsItsFeatures)
{
  const auto uninitialize = [this] {
    m_pPlugin->Uninitialize();
    return 1;
  };
  for (const auto fnSlot : {&CShadingCorrectionDlg::Slot_objAcquisitionDarkFrame_Button_clicked,
                            &CShadingCorrectionDlg::Slot_objAcquisitionBrightFrame_Button_clicked}) {
    ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
    m_stScript.listCalls.clear();
    m_camera.Output().Find<ffc::genapi::CSoftwareInteger>("OutputHeight")->OnRead(uninitialize);
    (FindDialog()->*fnSlot)();
    EXPECT_TRUE(m_stScript.bDestroyed);
    EXPECT_TRUE(m_stScript.listCalls.empty());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(FindDialog(), nullptr);
  }
}

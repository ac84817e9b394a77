// Which process a camera gets, and the state of the dialog before the user does anything.
#include <cstring>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QGroupBox>
#include <QImage>
#include <QMetaMethod>
#include <QPointer>
#include <QSignalSpy>

#include "pluginobject/shadingcorrection/toolstitlebar.h"
#include "tests/pluginobject/shadingcorrection/dialogfixture.h"

using ffc::pluginobject::MakePluginMsg;
using ffc::process::EProcessKind;

using DialogSetup = CDialogTest;

static void ResourcesAway()
{
  Q_CLEANUP_RESOURCE(ffcresources);
}

static void ResourcesBack()
{
  Q_INIT_RESOURCE(ffcresources);
}

TEST_F(DialogSetup, ACameraWithoutAModeFeatureIsCorrectedOnTheHost)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_eKind, EProcessKind::HostFlatField);
  EXPECT_FALSE(Button("LoadFlash_Button")->isEnabled());
  EXPECT_FALSE(Button("SaveFlash_Button")->isEnabled());
  EXPECT_TRUE(Button("LoadPC_Button")->isEnabled());
  EXPECT_TRUE(Button("SavePC_Button")->isEnabled());
}

TEST_F(DialogSetup, FlatFieldModeGetsTheDeviceProcessWithEverythingReady)
{
  ASSERT_EQ(Open("FlatFieldCorrection"), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_eKind, EProcessKind::DeviceFlatField);
  for (const char *pName : {"AcquisitionDarkFrame_Button", "AcquisitionBrightFrame_Button", "LoadFlash_Button",
                            "SaveFlash_Button", "LoadPC_Button", "SavePC_Button"}) {
    EXPECT_TRUE(Button(pName)->isEnabled()) << pName;
  }
  EXPECT_TRUE(Find<QGroupBox>("groupBox_5")->isEnabled());
  EXPECT_TRUE(Find<QLabel>("Prompt2621Info_label")->isHidden());
}

TEST_F(DialogSetup, TailorModeGetsTheVignettingProcessWithoutDarkFieldAndExpectedGray)
{
  m_stScript.stInfo.nExpectGray = 99;
  ASSERT_EQ(Open("TailorFlatFieldCorrection"), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_eKind, EProcessKind::DeviceVignetting);
  EXPECT_FALSE(Dark()->isEnabled());
  EXPECT_TRUE(Bright()->isEnabled());
  EXPECT_FALSE(Find<QGroupBox>("groupBox_5")->isEnabled());
  EXPECT_TRUE(Button("LoadFlash_Button")->isEnabled());
  EXPECT_TRUE(Find<QLabel>("Prompt2621Info_label")->isVisible());
  EXPECT_EQ(GraySlider()->maximum(), 4095);
  EXPECT_EQ(GraySlider()->value(), 0);
}

TEST_F(DialogSetup, AnyOtherModeGivesAnInertDialogAndSuccess)
{
  ASSERT_EQ(Open("SomethingElse"), PLUGIN_STATUS_SUCCESS);
  EXPECT_TRUE(m_pDialog->HasNoProcess());
  EXPECT_EQ(Prompt(), "");
  for (const char *pName : {"groupBox_2", "AcquisitionDarkFrame_Button", "AcquisitionBrightFrame_Button",
                            "ExecuteShadingCorrection_Button", "PreviewcheckBox", "groupBox_5", "LoadFlash_Button",
                            "SaveFlash_Button", "LoadPC_Button", "SavePC_Button", "groupBox_6"}) {
    EXPECT_FALSE(Find<QWidget>(pName)->isEnabled()) << pName;
  }
  EXPECT_EQ(m_pDialog->WaitImageRequest(), 258U);
  EXPECT_FALSE(m_pDialog->IsColorCamera());
}

TEST_F(DialogSetup, TheProcessGetsTheFeaturesOfTheCameraAndOfTheStream)
{
  m_camera.Device().AddInteger("OfTheCamera", 1);
  m_camera.Stream().AddInteger("OfTheStream", 2);
  Build();
  int nMade = 0;
  m_pDialog->SetProcessFactory([this, &nMade](EProcessKind, const ffc::pluginobject::CFeatureAccess &deviceFeatures,
                                              const ffc::pluginobject::CFeatureAccess &streamFeatures,
                                              std::unique_ptr<IShadingCorrectionProcess> &pProcess) {
    int64_t nValue = 0;
    EXPECT_EQ(deviceFeatures.GetIntFeature("OfTheCamera", nValue), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(streamFeatures.GetIntFeature("OfTheStream", nValue), PLUGIN_STATUS_SUCCESS);
    pProcess = std::make_unique<CScriptedProcess>(m_stScript);
    ++nMade;
    return PLUGIN_STATUS_SUCCESS;
  });
  EXPECT_EQ(Init(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(nMade, 1);
}

TEST_F(DialogSetup, AFailingModeQueryReturnsItsStatus)
{
  m_camera.AddShadingCorrectionMode("FlatFieldCorrection");
  m_camera.Enumeration("ShadingCorrectionMode").Access([]() -> GenApi::EAccessMode {
    throw GenICam::RuntimeException("gone", __FILE__, __LINE__);
  });
  Build();
  EXPECT_EQ(Init(), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_TRUE(m_pDialog->HasNoProcess());
}

TEST_F(DialogSetup, AFailingModeReadReturnsItsStatus)
{
  m_camera.AddShadingCorrectionMode("FlatFieldCorrection");
  m_camera.Enumeration("ShadingCorrectionMode").Access(GenApi::NA);
  Build();
  EXPECT_EQ(Init(), PLUGIN_STATUS_FEATURE_ERROR);
}

TEST_F(DialogSetup, WithoutMemoryForTheProcessItReturnsTheFactorysStatus)
{
  m_nFactoryStatus = PLUGIN_STATUS_OUT_OF_MEMORY;
  EXPECT_EQ(Open(), PLUGIN_STATUS_OUT_OF_MEMORY);
  EXPECT_TRUE(m_pDialog->HasNoProcess());
}

TEST_F(DialogSetup, AProcessThatDoesNotInitialiseLeavesTheControlsUnconnected)
{
  m_stScript.nInitStatus = PLUGIN_STATUS_FEATURE_ERROR;
  EXPECT_EQ(Open(), PLUGIN_STATUS_FEATURE_ERROR);
  Click(Dark());
  EXPECT_TRUE(m_stScript.listCalls.empty());
}

TEST_F(DialogSetup, ThatFailedCanBeTriedAgainAndLeavesOneTitleBar)
{
  m_stScript.nInitStatus = PLUGIN_STATUS_FEATURE_ERROR;
  Build();
  m_pDialog->SetDialogTitle(QStringLiteral("No bar yet"));
  EXPECT_EQ(Init(), PLUGIN_STATUS_FEATURE_ERROR);
  m_stScript.nInitStatus = PLUGIN_STATUS_SUCCESS;
  EXPECT_EQ(Init(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_pDialog->findChildren<QToolsTitleBar *>().size(), 1);
  Click(Dark());
  EXPECT_EQ(m_stScript.listCalls, std::vector<std::string>{"dark"});
}

TEST_F(DialogSetup, GoesWithItsParent)
{
  auto pParent = std::make_unique<QWidget>();
  const QPointer<QWidget> pDialog = new CShadingCorrectionDlg(pParent.get(), PLUGIN_INIT_PARAM());
  pParent.reset();
  EXPECT_EQ(pDialog, nullptr);
}

TEST_F(DialogSetup, WithoutItsStyleSheetTheDialogIsPlain)
{
  ResourcesAway();
  const int32_t nStatus = Open();
  ResourcesBack();
  EXPECT_EQ(nStatus, PLUGIN_STATUS_SUCCESS);
  EXPECT_TRUE(m_pDialog->styleSheet().isEmpty());
}

TEST_F(DialogSetup, WithoutDeviceFeaturesThereIsNoProcess)
{
  m_pDialog = std::make_unique<CShadingCorrectionDlg>(nullptr, PLUGIN_INIT_PARAM());
  EXPECT_EQ(m_pDialog->InitDialog(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_TRUE(m_pDialog->HasNoProcess());
}

TEST_F(DialogSetup, TheControlsShowTheProcesssSettings)
{
  m_stScript.stInfo.nFrameCount = 8;
  m_stScript.stInfo.nExpectGray = 123;
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(FrameSlider()->value(), 12);
  EXPECT_EQ(FrameSlider()->singleStep(), 4);
  EXPECT_EQ(FrameSlider()->minimum(), 0);
  EXPECT_EQ(FrameSlider()->maximum(), 16);
  EXPECT_EQ(GraySlider()->maximum(), 255);
  EXPECT_EQ(GraySlider()->value(), 123);
  EXPECT_EQ(GrayBox()->value(), 123);
  EXPECT_EQ(Prompt(), "");
  EXPECT_FALSE(Execute()->isEnabled());
  EXPECT_FALSE(Preview()->isEnabled());
  EXPECT_TRUE(m_stScript.listCalls.empty());
}

TEST_F(DialogSetup, TheWindowIsFramelessWithATitleBarThatOnlyCloses)
{
  Build();
  m_pDialog->setWindowTitle(QStringLiteral("Some title"));
  ASSERT_EQ(Init(), PLUGIN_STATUS_SUCCESS);
  EXPECT_TRUE(m_pDialog->windowFlags() & Qt::FramelessWindowHint);
  EXPECT_TRUE(m_pDialog->windowFlags() & Qt::CustomizeWindowHint);
  auto *pBar = Find<QToolsTitleBar>("QToolsTitleBar");
  EXPECT_EQ(pBar->width(), m_pDialog->width());
  EXPECT_EQ(Find<QLabel>("TitleContent")->text(), QStringLiteral("Some title"));
  EXPECT_EQ(Find<QLabel>("TitleContent")->font().pointSize(), 8);
  EXPECT_TRUE(Button("ButtonMin")->isHidden());
  EXPECT_TRUE(Button("ButtonMax")->isHidden());
  EXPECT_TRUE(Button("ButtonRestore")->isHidden());
  EXPECT_FALSE(Button("ButtonClose")->isHidden());
  m_pDialog->SetDialogTitle(QStringLiteral("Another"));
  EXPECT_EQ(Find<QLabel>("TitleContent")->text(), QStringLiteral("Another"));
}

TEST_F(DialogSetup, TheWindowIconIsTheHostsPictureWhereItHasOne)
{
  const QDir folder(QCoreApplication::applicationDirPath());
  const QString strPicture = folder.filePath(QStringLiteral("resource/oem/images/logo.png"));
  ASSERT_FALSE(QFile::exists(strPicture));
  Build();
  EXPECT_EQ(m_pDialog->windowIcon().cacheKey(), QApplication::windowIcon().cacheKey());
  QImage image(24, 24, QImage::Format_RGB32);
  image.fill(Qt::red);
  ASSERT_TRUE(folder.mkpath(QStringLiteral("resource/oem/images")));
  ASSERT_TRUE(image.save(strPicture));
  Build();
  EXPECT_TRUE(QFile::remove(strPicture));
  folder.rmpath(QStringLiteral("resource/oem/images"));
  EXPECT_EQ(m_pDialog->windowIcon().pixmap(24, 24).toImage().pixelColor(12, 12), QColor(Qt::red));
}

TEST_F(DialogSetup, NoPushButtonIsTheDefaultOneAndSavingToFlashWarnsInItsToolTip)
{
  ASSERT_EQ(Open("FlatFieldCorrection"), PLUGIN_STATUS_SUCCESS);
  for (const char *pName :
       {"AcquisitionDarkFrame_Button", "AcquisitionBrightFrame_Button", "ExecuteShadingCorrection_Button",
        "LoadFlash_Button", "SaveFlash_Button", "LoadPC_Button", "SavePC_Button"}) {
    EXPECT_FALSE(Button(pName)->autoDefault()) << pName;
  }
  EXPECT_EQ(Button("SaveFlash_Button")->toolTip(),
            QStringLiteral("This operation will save the user sets and set the startup sets to UserSet0"));
}

TEST_F(DialogSetup, ShowingAndHidingAreReportedWithZeroFilledMessages)
{
  qRegisterMetaType<PLUGIN_MSG>();
  Build();
  QSignalSpy spy(m_pDialog.get(), &CShadingCorrectionDlg::SigDlgStatusChanged);
  ASSERT_EQ(m_pDialog->InitDialog(), PLUGIN_STATUS_SUCCESS);
  m_pDialog->show();
  m_pDialog->hide();
  ASSERT_EQ(spy.size(), 2);
  EXPECT_EQ(spy[0][0].value<PLUGIN_MSG>().nMsgCode, PLUGIN_MSG_DIALOG_SHOWN);
  EXPECT_EQ(spy[1][0].value<PLUGIN_MSG>().nMsgCode, PLUGIN_MSG_DIALOG_HIDDEN);
  const PLUGIN_MSG stExpected = MakePluginMsg(PLUGIN_MSG_DIALOG_HIDDEN);
  const auto stHidden = spy[1][0].value<PLUGIN_MSG>();
  EXPECT_EQ(std::memcmp(&stHidden, &stExpected, sizeof stHidden), 0);
}

TEST_F(DialogSetup, TheProcesssMessagesAreRelayedAsTheyAre)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  QSignalSpy spy(m_pDialog.get(), &CShadingCorrectionDlg::SigDlgStatusChanged);
  m_stScript.fnMeanwhile = [this] {
    emit m_pMade->SigAcquisitionStatusChanged(MakePluginMsg(PLUGIN_MSG_ACQUISITION_ON));
  };
  Click(Bright());
  ASSERT_EQ(spy.size(), 1);
  EXPECT_EQ(spy[0][0].value<PLUGIN_MSG>().nMsgCode, PLUGIN_MSG_ACQUISITION_ON);
}

TEST_F(DialogSetup, ReleasingTheProcessLeavesADialogThatAnswersWithoutIt)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  m_pDialog->ReleaseProcess();
  EXPECT_TRUE(m_stScript.bDestroyed);
  EXPECT_TRUE(m_pDialog->HasNoProcess());
  EXPECT_EQ(m_pDialog->WaitImageRequest(), 258U);
  m_pDialog->ReceiveImage("x", 1);
  m_pDialog->SetImageReady();
  m_pDialog->SetStopFlag(true);
  bool bCorrected = false;
  EXPECT_EQ(OfferFrame(bCorrected), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_FALSE(bCorrected);
}

TEST_F(DialogSetup, SignalsAndSlotsKeepTheirOrderAndParameterNames)
{
  const QMetaObject &meta = CShadingCorrectionDlg::staticMetaObject;
  const std::vector<std::pair<const char *, const char *>> listExpected = {
    {"SigDlgStatusChanged(PLUGIN_MSG)", "stPluginMsg"},
    {"SetInfoShowSignal(bool)", "bStutas"},
    {"Slot_objAcquisitionFrame_Slider_valueChanged(int)", "nValue"},
    {"Slot_objExpectGrayValue_Slider_valueChanged(int)", "nValue"},
    {"Slot_objExpectGrayValue_SpinBox_valueChanged(int)", "nValue"},
    {"Slot_objAcquisitionDarkFrame_Button_clicked()", nullptr},
    {"Slot_objAcquisitionBrightFrame_Button_clicked()", nullptr},
    {"Slot_objExecuteShadingCorrection_Button_clicked()", nullptr},
    {"Slot_objLoadFlash_Button_clicked()", nullptr},
    {"Slot_objSaveFlash_Button_clicked()", nullptr},
    {"Slot_objLoadPC_Button_clicked()", nullptr},
    {"Slot_objSavePC_Button_clicked()", nullptr},
    {"Slot_objPromptInformation_label_clicked(QString)", "strInfo"},
    {"SlotPreviewCorrectionEffect(bool)", "checked"},
    {"SlotShowInfo(bool)", "bStutas"},
  };
  ASSERT_EQ(meta.methodCount() - meta.methodOffset(), static_cast<int>(listExpected.size()));
  for (std::size_t nIndex = 0; nIndex < listExpected.size(); ++nIndex) {
    const QMetaMethod method = meta.method(meta.methodOffset() + static_cast<int>(nIndex));
    EXPECT_EQ(method.methodSignature().toStdString(), listExpected[nIndex].first);
    const QList<QByteArray> listNames = method.parameterNames();
    EXPECT_EQ(listNames.isEmpty() ? "" : listNames[0].toStdString(),
              listExpected[nIndex].second == nullptr ? "" : listExpected[nIndex].second);
  }
}

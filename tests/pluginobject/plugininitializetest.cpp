// Initialisation: its statuses, the dialog's title, the language.
#include <stdexcept>
#include <utility>

#include <QFile>
#include <QPointer>
#include <QTemporaryDir>
#include <QWidget>

#include "tests/pluginobject/failingtranslator.h"
#include "tests/pluginobject/pluginfixture.h"

using ffc::genapi::CSoftwareNodeMap;
using ffc::genapi::CSoftwareString;

namespace {

const std::string NAME = "Flat Field Correction Plugin";

// "camera" in Chinese, as a host passes it and as the dialog shows it.
constexpr const char *CHINESE_GB2312 = "\xCF\xE0\xBB\xFA";
const std::string CHINESE_UTF8 = "\u76F8\u673A";

// Counts how often the windows are told that the language has changed.
class CLanguageChanges : public QObject {
public:
  CLanguageChanges() { qApp->installEventFilter(this); }
  int Take()
  {
    QCoreApplication::sendPostedEvents();
    return std::exchange(m_nChanges, 0);
  }

protected:
  bool eventFilter(QObject *pObject, QEvent *pEvent) override
  {
    m_nChanges += pObject == qApp && pEvent->type() == QEvent::LanguageChange ? 1 : 0;
    return false;
  }

private:
  int m_nChanges = 0;
};

class PluginInitialize : public CPluginTest {};
class PluginTitle : public CPluginTest {};
class PluginLanguage : public CPluginTest {};

// Fails in the middle of an initialisation.
template <class TException>
class CThrowingPlugin : public CShadingCorrectionPlugin {
public:
  int32_t InitDialogProcess() override { throw TException(); }
};

struct SForeignException {};

} // namespace

TEST_F(PluginInitialize, BuildsAHiddenDialog)
{
  EXPECT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  ASSERT_NE(FindDialog(), nullptr);
  EXPECT_FALSE(m_pPlugin->IsDialogVisible());
  EXPECT_TRUE(m_pPlugin->IsDialogHidden());
  EXPECT_EQ(m_stScript.listCalls, std::vector<std::string>{"init"});
  EXPECT_EQ(m_pPlugin->Uninitialize(), PLUGIN_STATUS_SUCCESS);
}

TEST_F(PluginInitialize, WithoutACameraIsAnInvalidParameterAndBuildsNothing)
{
  m_stInitParam.pDeviceNodeMap = nullptr;
  EXPECT_EQ(Initialize(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(FindDialog(), nullptr);
}

TEST_F(PluginInitialize, WithoutARecordIsAnInvalidParameter)
{
  EXPECT_EQ(m_pPlugin->Initialize(nullptr), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(FindDialog(), nullptr);
}

TEST_F(PluginInitialize, WorksWithoutOutputFeaturesAndWithoutStreamFeatures)
{
  m_stInitParam.pOutputNodeMap = nullptr;
  m_stInitParam.pStreamNodeMap = nullptr;
  EXPECT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
}

TEST_F(PluginInitialize, AProcessThatFailsLeavesTheDialogUntilItIsUninitialised)
{
  m_stScript.nInitStatus = PLUGIN_STATUS_FEATURE_ERROR;
  EXPECT_EQ(Initialize(), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_NE(FindDialog(), nullptr);
  EXPECT_EQ(m_pPlugin->Uninitialize(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(FindDialog(), nullptr);
}

TEST_F(PluginInitialize, AProcessThatFailsLeavesTheDialogUntilThePluginIsDestroyed)
{
  m_stScript.nInitStatus = PLUGIN_STATUS_FEATURE_ERROR;
  EXPECT_EQ(Initialize(), PLUGIN_STATUS_FEATURE_ERROR);
  m_pPlugin.reset();
  EXPECT_EQ(FindDialog(), nullptr);
}

TEST_F(PluginInitialize, AfterAFailureFramesPassByAndNothingIsRelayed)
{
  m_stScript.nInitStatus = PLUGIN_STATUS_OUT_OF_MEMORY;
  EXPECT_EQ(Initialize(), PLUGIN_STATUS_OUT_OF_MEMORY);
  int nMessages = 0;
  QObject::connect(m_pPlugin.get(), &IPlugin::SigPluginMsg, [&] { ++nMessages; });
  Send(PLUGIN_MSG_SHOW_DIALOG);
  EXPECT_EQ(nMessages, 0);
  m_stScript.nWaitResult = 0;
  EXPECT_EQ(DeliverFrame(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_stScript.listCalls, std::vector<std::string>{"init"});
}

TEST_F(PluginInitialize, AnyStatusOfTheDialogIsPassedOn)
{
  m_camera.Device().AddEnumeration("ShadingCorrectionMode");
  EXPECT_EQ(Initialize(), PLUGIN_STATUS_FEATURE_ERROR);
}

TEST_F(PluginInitialize, AnUnknownModeOfTheCameraMakesAnInertDialog)
{
  m_camera.AddShadingCorrectionMode("SomethingElse");
  EXPECT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  ASSERT_NE(FindDialog(), nullptr);
  EXPECT_TRUE(FindDialog()->HasNoProcess());
  PLUGIN_PROCESS_RESULT stResult;
  EXPECT_EQ(DeliverFrame(&stResult), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(stResult.bCorrected, 0);
}

TEST_F(PluginInitialize, CanBeDoneAgainAfterUninitialising)
{
  for (int i = 0; i < 3; ++i) {
    m_stScript.bDestroyed = false;
    EXPECT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
    EXPECT_NE(FindDialog(), nullptr);
    EXPECT_EQ(m_pPlugin->Uninitialize(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(FindDialog(), nullptr);
    EXPECT_TRUE(m_stScript.bDestroyed);
  }
}

TEST_F(PluginInitialize, TwiceReplacesTheDialog)
{
  EXPECT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  const QPointer<CShadingCorrectionDlg> pFirst = FindDialog();
  EXPECT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(pFirst, nullptr);
  EXPECT_NE(FindDialog(), nullptr);
}

TEST_F(PluginInitialize, UninitialisingWithoutADialogDoesNoHarm)
{
  EXPECT_EQ(m_pPlugin->Uninitialize(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_pPlugin->Uninitialize(), PLUGIN_STATUS_SUCCESS);
}

TEST_F(PluginInitialize, WhatIsThrownMeanwhileBecomesAStatus)
{
  m_pPlugin = std::make_unique<CThrowingPlugin<std::bad_alloc>>();
  EXPECT_EQ(Initialize(), PLUGIN_STATUS_OUT_OF_MEMORY);
  m_pPlugin = std::make_unique<CThrowingPlugin<SForeignException>>();
  EXPECT_EQ(Initialize(), PLUGIN_STATUS_UNKNOWN_ERROR);
}

TEST_F(PluginInitialize, WithoutMemoryForTheDialogThereIsNoneUntilTheNextTime)
{
  {
    const CFailingTranslator failing("ShadingCorrectionDlg");
    EXPECT_EQ(Initialize(), PLUGIN_STATUS_OUT_OF_MEMORY);
  }
  EXPECT_EQ(FindDialog(), nullptr);
  EXPECT_EQ(DeliverFrame(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_pPlugin->Uninitialize(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
}

TEST_F(PluginInitialize, TheDialogBelongsToTheHostsWindow)
{
  QWidget parent;
  m_stInitParam.pParent = &parent;
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(FindDialog()->parentWidget(), &parent);
  EXPECT_TRUE(FindDialog()->isWindow());
  m_pPlugin->Uninitialize();
}

TEST_F(PluginInitialize, ADialogThatGoesWithTheHostsWindowIsMissedByNobody)
{
  auto pParent = std::make_unique<QWidget>();
  m_stInitParam.pParent = pParent.get();
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  bool bGoneFirst = false;
  QObject::connect(pParent.get(), &QObject::destroyed, [&] { bGoneFirst = FindDialog() == nullptr; });
  pParent.reset();
  EXPECT_TRUE(bGoneFirst) << "before anything else of the window goes";
  EXPECT_EQ(FindDialog(), nullptr);
  EXPECT_TRUE(m_stScript.bDestroyed);
  Send(PLUGIN_MSG_SHOW_DIALOG);
  EXPECT_FALSE(m_pPlugin->IsDialogVisible());
  EXPECT_TRUE(m_pPlugin->IsDialogHidden());
  EXPECT_EQ(DeliverFrame(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_pPlugin->Uninitialize(), PLUGIN_STATUS_SUCCESS);
  m_stInitParam.pParent = nullptr;
  EXPECT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
}

TEST_F(PluginTitle, NamesTheCameraAsTheHostsRecordDoes)
{
  m_stInitParam.pDeviceName = "Camera in the record";
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(GetWindowTitle(), NAME + "  Camera in the record");
  EXPECT_EQ(GetBarTitle(), NAME + "  Camera in the record");
}

TEST_F(PluginTitle, NamesTheCameraAsTheOutputFeaturesDoWhenTheRecordDoesNot)
{
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(GetWindowTitle(), NAME + "  Test camera (0001)");
  EXPECT_EQ(GetBarTitle(), NAME + "  Test camera (0001)");
}

TEST_F(PluginTitle, IsTheNameAloneWithoutOutputFeatures)
{
  m_stInitParam.pOutputNodeMap = nullptr;
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(GetWindowTitle(), NAME);
}

TEST_F(PluginTitle, IsTheNameAloneWhenTheCamerasNameIsMissingOrNoText)
{
  CSoftwareNodeMap map;
  m_stInitParam.pOutputNodeMap = ToPointer(map);
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(GetWindowTitle(), NAME);
  map.AddInteger("DeviceDisplayName", 5);
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(GetWindowTitle(), NAME);
}

TEST_F(PluginTitle, IsTheNameAloneWhenTheCamerasNameCannotBeRead)
{
  m_camera.Output().Find<CSoftwareString>("DeviceDisplayName")->OnRead([]() -> std::string {
    throw GenICam::TimeoutException("no answer", __FILE__, __LINE__);
  });
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(GetWindowTitle(), NAME);
}

TEST_F(PluginTitle, ChangesWhenTheHostRenamesTheCamera)
{
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  Send(PLUGIN_MSG_DEVICE_NAME, "Renamed");
  EXPECT_EQ(GetBarTitle(), NAME + "  Renamed");
  Send(PLUGIN_MSG_DEVICE_NAME, "");
  EXPECT_EQ(GetBarTitle(), NAME + "  ");
}

TEST_F(PluginTitle, StaysWhenTheHostRenamesTheCameraToNothing)
{
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  Send(PLUGIN_MSG_DEVICE_NAME, "Renamed");
  Send(PLUGIN_MSG_DEVICE_NAME, nullptr);
  EXPECT_EQ(GetBarTitle(), NAME + "  Renamed");
}

TEST_F(PluginTitle, OfAChineseHostIsReadAsGB2312)
{
  m_stInitParam.nLanguage = 1;
  m_stInitParam.pDeviceName = CHINESE_GB2312;
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  const std::string strName = m_pPlugin->GetPluginDisplayName();
  EXPECT_EQ(GetWindowTitle(), strName + "  " + CHINESE_UTF8);
  Send(PLUGIN_MSG_DEVICE_NAME, "Camera 2");
  EXPECT_EQ(GetBarTitle(), strName + "  Camera 2");
  Send(PLUGIN_MSG_DEVICE_NAME, CHINESE_GB2312);
  EXPECT_EQ(GetBarTitle(), strName + "  " + CHINESE_UTF8);
}

TEST_F(PluginLanguage, OtherThanChineseLeavesTextsAndLocaleAlone)
{
  for (const uint32_t nLanguage : {0U, 2U, 0xFFFFFFFFU}) {
    m_stInitParam.nLanguage = nLanguage;
    ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(m_pPlugin->GetPluginDisplayName(), NAME);
    EXPECT_EQ(QTextCodec::codecForLocale(), m_pLocaleCodec);
    EXPECT_EQ(QObject::tr("Success"), QStringLiteral("Success"));
  }
}

TEST_F(PluginLanguage, ChineseTranslatesNameDescriptionAndStatusTexts)
{
  m_stInitParam.nLanguage = 1;
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  EXPECT_STREQ(m_pPlugin->GetPluginDisplayName(), "\u5E73\u573A\u6821\u6B63\u63D2\u4EF6");
  EXPECT_STREQ(m_pPlugin->GetPluginDescription(),
               QObject::tr("This plugin can calculate flat field correction coefficient and set the coefficient to "
                           "device")
                 .toStdString()
                 .c_str());
  EXPECT_STRNE(m_pPlugin->GetPluginDescription(),
               "This plugin can calculate flat field correction coefficient and set the coefficient to device");
  EXPECT_STREQ(m_pPlugin->GetPluginName(), "Flat Field Correction Plugin");
  EXPECT_STRNE(m_pPlugin->GetStatusText(0), "Success");
  EXPECT_EQ(QTextCodec::codecForLocale(), QTextCodec::codecForName("GB2312"));
}

TEST_F(PluginLanguage, ChineseEndsWithThePlugin)
{
  m_stInitParam.nLanguage = 1;
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  ASSERT_NE(QObject::tr("Success"), QStringLiteral("Success"));
  m_pPlugin.reset();
  EXPECT_EQ(QObject::tr("Success"), QStringLiteral("Success"));
}

TEST_F(PluginLanguage, ChineseTwiceIsStillChineseAndStillEndsWithThePlugin)
{
  m_stInitParam.nLanguage = 1;
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  m_pPlugin->Uninitialize();
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  EXPECT_STRNE(m_pPlugin->GetPluginDisplayName(), NAME.c_str());
  m_pPlugin.reset();
  EXPECT_EQ(QObject::tr("Success"), QStringLiteral("Success"));
}

TEST_F(PluginLanguage, ATranslationIsInstalledOnce)
{
  m_stInitParam.nLanguage = 1;
  CLanguageChanges changes;
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(changes.Take(), 1);
  for (int i = 0; i < 3; ++i) {
    m_pPlugin->Uninitialize();
    ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(changes.Take(), 0);
    EXPECT_STRNE(m_pPlugin->GetPluginDisplayName(), NAME.c_str());
  }
}

TEST_F(PluginLanguage, ATranslationThatCannotBeLoadedTakesTheFormersPlaceUntilThatIsLoadedAgain)
{
  EXPECT_TRUE(m_pPlugin->LoadTranslation(QStringLiteral(":/lumalevel_zh.qm")));
  EXPECT_FALSE(m_pPlugin->LoadTranslation(QStringLiteral(":/missing.qm")));
  EXPECT_FALSE(m_pPlugin->LoadTranslation(QString()));
  EXPECT_EQ(QObject::tr("Success"), QStringLiteral("Success"));
  EXPECT_TRUE(m_pPlugin->LoadTranslation(QStringLiteral(":/lumalevel_zh.qm")));
  EXPECT_NE(QObject::tr("Success"), QStringLiteral("Success"));
}

TEST_F(PluginLanguage, ATranslationMayBeAFileOnTheDisk)
{
  const QTemporaryDir dir;
  const QString strFile = dir.filePath(QStringLiteral("other.qm"));
  ASSERT_TRUE(QFile::copy(QStringLiteral(":/lumalevel_zh.qm"), strFile));
  EXPECT_TRUE(m_pPlugin->LoadTranslation(strFile));
  EXPECT_NE(QObject::tr("Success"), QStringLiteral("Success"));
}

TEST_F(PluginLanguage, NameAndDescriptionStayWhereAHostFoundThem)
{
  EXPECT_STREQ(m_pPlugin->GetPluginDisplayName(), "");
  EXPECT_STREQ(m_pPlugin->GetPluginDescription(), "");
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  const char *const pName = m_pPlugin->GetPluginDisplayName();
  const char *const pDescription = m_pPlugin->GetPluginDescription();
  const std::string strDescription = pDescription;
  m_stInitParam.nLanguage = 1;
  for (int i = 0; i < 3; ++i) {
    m_pPlugin->Uninitialize();
    ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
    EXPECT_STRNE(m_pPlugin->GetPluginDisplayName(), pName);
    EXPECT_STRNE(m_pPlugin->GetPluginDescription(), pDescription);
    EXPECT_EQ(pName, NAME);
    EXPECT_EQ(pDescription, strDescription);
  }
}

TEST_F(PluginLanguage, AMissingTranslationStillSetsTheLocale)
{
  EXPECT_FALSE(m_pPlugin->LoadTranslation(QStringLiteral(":/missing.qm")));
  EXPECT_EQ(QTextCodec::codecForLocale(), QTextCodec::codecForName("GB2312"));
  EXPECT_EQ(QObject::tr("Success"), QStringLiteral("Success"));
}

TEST_F(PluginLanguage, WithoutItsTranslationChineseShowsTheEnglishTexts)
{
  class CUntranslatedPlugin : public CScriptedPlugin {
  public:
    using CScriptedPlugin::CScriptedPlugin;
    bool LoadTranslation(QString) override { return CScriptedPlugin::LoadTranslation(QStringLiteral(":/missing.qm")); }
  };
  m_pPlugin = std::make_unique<CUntranslatedPlugin>(m_stScript);
  m_stInitParam.nLanguage = 1;
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_pPlugin->GetPluginDisplayName(), NAME);
  EXPECT_STREQ(m_pPlugin->GetPluginDescription(),
               "This plugin can calculate flat field correction coefficient and set the coefficient to device");
  EXPECT_EQ(QTextCodec::codecForLocale(), QTextCodec::codecForName("GB2312"));
}

TEST_F(PluginLanguage, TheCompiledInTranslationIsLoaded)
{
  EXPECT_TRUE(m_pPlugin->LoadTranslation(QStringLiteral(":/lumalevel_zh.qm")));
  EXPECT_NE(QObject::tr("Success"), QStringLiteral("Success"));
}

// The built module, used as a host uses it: by its two exports and the interface alone.
#include <cstring>

#ifndef _WIN32
#include <dlfcn.h>
#endif

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibrary>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QWidget>

#include <gtest/gtest.h>

#include "pluginobject/iplugin.h"
#include "pluginobject/statuscode.h"
#include "tests/pluginobject/messagereceiver.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/failingnew.h"
#include "tests/support/loadedmodule.h"
#include "tests/support/testcamera.h"

using ffc::pluginobject::MakePluginMsg;
using namespace ffc::test;

namespace {

constexpr const char *MODULE_FILE = FFC_MODULE_FILE;

class Module : public testing::Test {
protected:
  Module() : m_pLocaleCodec(QTextCodec::codecForLocale())
  {
    m_stInitParam.pOutputNodeMap = static_cast<GenApi::INodeMap *>(&m_camera.Output());
    m_stInitParam.pStreamNodeMap = static_cast<GenApi::INodeMap *>(&m_camera.Stream());
    m_stInitParam.pDeviceNodeMap = static_cast<GenApi::INodeMap *>(&m_camera.Device());
    Load();
  }

  ~Module() override
  {
    QTextCodec::setCodecForLocale(m_pLocaleCodec);
    m_library.unload();
  }

  void Load()
  {
    ASSERT_TRUE(m_library.load()) << m_library.errorString().toStdString();
    m_fnCreate = reinterpret_cast<FnCreatePluginObject>(m_library.resolve(CREATE_PLUGIN_OBJECT));
    m_fnDestory = reinterpret_cast<FnDestoryPluginObject>(m_library.resolve(DESTORY_PLUGIN_OBJECT));
    ASSERT_NE(m_fnCreate, nullptr);
    ASSERT_NE(m_fnDestory, nullptr);
  }

  void Unload()
  {
    m_fnCreate = nullptr;
    m_fnDestory = nullptr;
    ASSERT_TRUE(m_library.unload());
  }

  static QWidget *FindDialog()
  {
    for (QWidget *pWidget : QApplication::topLevelWidgets()) {
      if (pWidget->inherits("CShadingCorrectionDlg")) {
        return pWidget;
      }
    }
    return nullptr;
  }

  QTextCodec *m_pLocaleCodec;
  CTestCamera m_camera;
  PLUGIN_INIT_PARAM m_stInitParam;
  QLibrary m_library{QString::fromLocal8Bit(MODULE_FILE)};
  FnCreatePluginObject m_fnCreate = nullptr;
  FnDestoryPluginObject m_fnDestory = nullptr;
};

// Connected by name, as by a host that knows the interface from its meta-object.
void ConnectQueued(IPlugin *pPlugin, CMessageReceiver &receiver)
{
  ASSERT_TRUE(QObject::connect(pPlugin, SIGNAL(SigPluginMsg(PLUGIN_MSG)), &receiver, SLOT(SlotReceive(PLUGIN_MSG)),
                               Qt::QueuedConnection));
}

void Send(IPlugin *pPlugin, EPluginMsgCode eCode)
{
  pPlugin->SlotProcessDemoMsg(MakePluginMsg(eCode));
}

} // namespace

TEST_F(Module, MakesAnObjectThatKnowsItself)
{
  IPlugin *pPlugin = m_fnCreate();
  ASSERT_NE(pPlugin, nullptr);
  EXPECT_STREQ(pPlugin->metaObject()->className(), "CShadingCorrectionPlugin");
  EXPECT_STREQ(pPlugin->GetPluginGUID(), "5b1e7d42-9c0a-4f63-8e21-d7a4c90b3f18");
  EXPECT_EQ(pPlugin->parent(), nullptr);
  m_fnDestory(pPlugin);
}

TEST_F(Module, HasTheVersionOfTheProject)
{
  constexpr uint16_t PROJECT_VERSION[] = {FFC_PROJECT_VERSION};
  IPlugin *pPlugin = m_fnCreate();
  const PLUGIN_VERSION stVersion = pPlugin->GetPluginVersion();
  EXPECT_EQ(stVersion.nMajor, PROJECT_VERSION[0]);
  EXPECT_EQ(stVersion.nMinor, PROJECT_VERSION[1]);
  EXPECT_EQ(stVersion.nBuild, PROJECT_VERSION[2]);
  EXPECT_EQ(stVersion.nRevision, PROJECT_VERSION[3]);
  m_fnDestory(pPlugin);
}

#ifdef FAILING_NEW
TEST_F(Module, WithoutMemoryMakesNoObject)
{
  const IPlugin *pPlugin = nullptr;
  {
    const CFailingThrowingNew failing;
    pPlugin = m_fnCreate();
  }
  EXPECT_EQ(pPlugin, nullptr);
}
#endif

#ifndef _WIN32
TEST_F(Module, LoadedByARelativePathKeepsItsVersionInAnotherWorkingDirectory)
{
  const QTemporaryDir folder;
  ASSERT_TRUE(QFile::copy(QString::fromLocal8Bit(MODULE_FILE), folder.filePath("a copy.plx")));
  const QString strFormer = QDir::currentPath();
  ASSERT_TRUE(QDir::setCurrent(folder.path()));
  void *const pModule = dlopen("./a copy.plx", RTLD_NOW | RTLD_LOCAL);
  ASSERT_TRUE(QDir::setCurrent(strFormer));
  ASSERT_NE(pModule, nullptr) << dlerror();
  const auto fnCreate = reinterpret_cast<FnCreatePluginObject>(dlsym(pModule, CREATE_PLUGIN_OBJECT));
  const auto fnDestory = reinterpret_cast<FnDestoryPluginObject>(dlsym(pModule, DESTORY_PLUGIN_OBJECT));
  ASSERT_NE(fnCreate, m_fnCreate);
  IPlugin *const pPlugin = fnCreate();
  constexpr PLUGIN_VERSION PROJECT_VERSION = {FFC_PROJECT_VERSION};
  const PLUGIN_VERSION stVersion = pPlugin->GetPluginVersion();
  EXPECT_EQ(std::memcmp(&PROJECT_VERSION, &stVersion, sizeof stVersion), 0);
  fnDestory(pPlugin);
  dlclose(pModule);
  // It stays all the same: whoever knows its name finds it.
  EXPECT_NE(FindLoadedModule("a copy.plx"), "");
}
#endif

TEST_F(Module, DestroyingNothingDoesNothing)
{
  m_fnDestory(nullptr);
}

TEST_F(Module, DestroyingAnInitialisedObjectTakesItsDialogAlong)
{
  IPlugin *pPlugin = m_fnCreate();
  ASSERT_EQ(pPlugin->Initialize(&m_stInitParam), PLUGIN_STATUS_SUCCESS);
  ASSERT_NE(FindDialog(), nullptr);
  m_fnDestory(pPlugin);
  EXPECT_EQ(FindDialog(), nullptr);
}

TEST_F(Module, MakesIndependentObjects)
{
  IPlugin *pFirst = m_fnCreate();
  IPlugin *pSecond = m_fnCreate();
  EXPECT_NE(pFirst, pSecond);
  ASSERT_EQ(pFirst->Initialize(&m_stInitParam), PLUGIN_STATUS_SUCCESS);
  m_fnDestory(pSecond);
  EXPECT_NE(FindDialog(), nullptr);
  m_fnDestory(pFirst);
}

TEST_F(Module, CanBeUsedAndClosedTwentyTimes)
{
  Unload();
  for (int i = 0; i < 20; ++i) {
    Load();
    IPlugin *pPlugin = m_fnCreate();
    ASSERT_NE(pPlugin, nullptr);
    m_stInitParam.nLanguage = i % 2 == 0 ? 1 : 0;
    ASSERT_EQ(pPlugin->Initialize(&m_stInitParam), PLUGIN_STATUS_SUCCESS);
    Send(pPlugin, PLUGIN_MSG_SHOW_DIALOG);
    EXPECT_TRUE(pPlugin->IsDialogVisible());
    QApplication::processEvents();
    EXPECT_EQ(pPlugin->Uninitialize(), PLUGIN_STATUS_SUCCESS);
    m_fnDestory(pPlugin);
    Unload();
  }
}

TEST_F(Module, StaysInMemoryOnceItHasMadeAnObject)
{
  m_fnDestory(m_fnCreate());
  Unload();
  EXPECT_NE(FindLoadedModule("FlatFieldCorrection"), "");
}

TEST_F(Module, QueuedMessagesArrive)
{
  CMessageReceiver receiver;
  IPlugin *pPlugin = m_fnCreate();
  ASSERT_EQ(pPlugin->Initialize(&m_stInitParam), PLUGIN_STATUS_SUCCESS);
  ConnectQueued(pPlugin, receiver);
  Send(pPlugin, PLUGIN_MSG_SHOW_DIALOG);
  EXPECT_TRUE(receiver.m_listReceived.empty());
  QApplication::processEvents();
  ASSERT_EQ(receiver.m_listReceived.size(), 1U);
  EXPECT_EQ(receiver.m_listReceived[0].nMsgCode, PLUGIN_MSG_DIALOG_SHOWN);
  m_fnDestory(pPlugin);
}

TEST_F(Module, QueuedMessagesArriveAfterTheModuleWasClosedAndLoadedAgain)
{
  CMessageReceiver receiver;
  for (int i = 0; i < 3; ++i) {
    receiver.m_listReceived.clear();
    IPlugin *pPlugin = m_fnCreate();
    ASSERT_EQ(pPlugin->Initialize(&m_stInitParam), PLUGIN_STATUS_SUCCESS);
    ConnectQueued(pPlugin, receiver);
    Send(pPlugin, PLUGIN_MSG_SHOW_DIALOG);
    Send(pPlugin, PLUGIN_MSG_HIDE_DIALOG);
    QApplication::processEvents();
    ASSERT_EQ(receiver.m_listReceived.size(), 2U);
    EXPECT_EQ(receiver.m_listReceived[0].nMsgCode, PLUGIN_MSG_DIALOG_SHOWN);
    EXPECT_EQ(receiver.m_listReceived[1].nMsgCode, PLUGIN_MSG_DIALOG_HIDDEN);
    m_fnDestory(pPlugin);
    Unload();
    Load();
  }
}

TEST_F(Module, AMessageThatIsStillQueuedWhenTheModuleIsClosedArrives)
{
  CMessageReceiver receiver;
  IPlugin *pPlugin = m_fnCreate();
  ASSERT_EQ(pPlugin->Initialize(&m_stInitParam), PLUGIN_STATUS_SUCCESS);
  ConnectQueued(pPlugin, receiver);
  Send(pPlugin, PLUGIN_MSG_SHOW_DIALOG);
  m_fnDestory(pPlugin);
  Unload();
  QApplication::processEvents();
  ASSERT_FALSE(receiver.m_listReceived.empty());
  EXPECT_EQ(receiver.m_listReceived[0].nMsgCode, PLUGIN_MSG_DIALOG_SHOWN);
  Load();
}

TEST_F(Module, FindsTheImageLibraryBesideItself)
{
  const std::string strFile = FindLoadedModule("Ombrix");
  ASSERT_FALSE(strFile.empty());
  EXPECT_EQ(QFileInfo(QString::fromStdString(strFile)).canonicalPath(),
            QFileInfo(QString::fromLocal8Bit(MODULE_FILE)).canonicalPath());
}

TEST_F(Module, BringsItsOwnResources)
{
  m_stInitParam.nLanguage = 1;
  IPlugin *pPlugin = m_fnCreate();
  ASSERT_EQ(pPlugin->Initialize(&m_stInitParam), PLUGIN_STATUS_SUCCESS);
  EXPECT_STREQ(pPlugin->GetPluginDisplayName(), "\u5E73\u573A\u6821\u6B63\u63D2\u4EF6");
  EXPECT_FALSE(FindDialog()->styleSheet().isEmpty());
  m_fnDestory(pPlugin);
}

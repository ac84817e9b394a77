// What the plug-in object says of itself, and the order in which it is called.
#include <QMetaMethod>
#include <QPointer>

#include "tests/pluginobject/failingtranslator.h"
#include "tests/pluginobject/pluginfixture.h"
#include "tests/support/markingtranslator.h"

using ffc::pluginobject::ETextAudience;
using ffc::pluginobject::GetStatusSourceText;
using ffc::pluginobject::MakePluginMsg;

namespace {

class PluginIdentity : public CPluginTest {};

// Adds nothing to the interface.
class CMinimalPlugin : public IPluginExtended {
public:
  void SlotProcessDemoMsg(const PLUGIN_MSG &) override {}
  const char *GetPluginGUID() override { return ""; }
  const char *GetPluginName() override { return ""; }
  const char *GetPluginDisplayName() override { return ""; }
  const char *GetPluginDescription() override { return ""; }
  uint32_t GetInterfaceVersion() override { return 0; }
  PLUGIN_VERSION GetPluginVersion() override { return {}; }
  bool HasSettingDialog() override { return false; }
  bool IsDialogVisible() override { return false; }
  bool IsDialogHidden() override { return false; }
  const char *GetStatusText(int32_t) override { return ""; }
  int32_t Initialize(PLUGIN_INIT_PARAM *) override { return 0; }
  int32_t Uninitialize() override { return 0; }
  int32_t ProcessImage(PLUGIN_IMAGE_INFO *, PLUGIN_IMAGE_INFO *, uint32_t, PLUGIN_PROCESS_RESULT *) override
  {
    return 0;
  }
};

} // namespace

TEST_F(PluginIdentity, IsKnownBeforeInitialisation)
{
  EXPECT_STREQ(m_pPlugin->GetPluginGUID(), "5b1e7d42-9c0a-4f63-8e21-d7a4c90b3f18");
  EXPECT_STREQ(m_pPlugin->GetPluginName(), "Flat Field Correction Plugin");
  EXPECT_EQ(m_pPlugin->GetInterfaceVersion(), 0x10000U);
  EXPECT_TRUE(m_pPlugin->HasSettingDialog());
}

TEST_F(PluginIdentity, TranslatedTextsAreEmptyUntilInitialisation)
{
  EXPECT_STREQ(m_pPlugin->GetPluginDisplayName(), "");
  EXPECT_STREQ(m_pPlugin->GetPluginDescription(), "");
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  EXPECT_STREQ(m_pPlugin->GetPluginDisplayName(), "Flat Field Correction Plugin");
  EXPECT_STREQ(m_pPlugin->GetPluginDescription(),
               "This plugin can calculate flat field correction coefficient and set the coefficient to device");
}

TEST_F(PluginIdentity, AModuleWithoutAVersionIsVersionZero)
{
  const PLUGIN_VERSION stVersion = m_pPlugin->GetPluginVersion();
  EXPECT_EQ(stVersion.nMajor, 0);
  EXPECT_EQ(stVersion.nMinor, 0);
  EXPECT_EQ(stVersion.nBuild, 0);
  EXPECT_EQ(stVersion.nRevision, 0);
}

TEST_F(PluginIdentity, StatusTextsAreThoseForHostsByteForByte)
{
  for (int32_t nStatus = -1025; nStatus <= 5; ++nStatus) {
    EXPECT_STREQ(m_pPlugin->GetStatusText(nStatus), GetStatusSourceText(nStatus, ETextAudience::Host)) << nStatus;
  }
  EXPECT_STREQ(m_pPlugin->GetStatusText(-1012), "Buffer size is error  ");
  EXPECT_STREQ(m_pPlugin->GetStatusText(-1019), "Unknown error");
  EXPECT_STREQ(m_pPlugin->GetStatusText(-2000), "Unknown error");
}

TEST_F(PluginIdentity, EveryTextForTheHostIsTranslatedInTheCommonContext)
{
  const ffc::test::CMarkingTranslator marking;
  for (int32_t nStatus = -1020; nStatus <= 1; ++nStatus) {
    EXPECT_EQ(m_pPlugin->GetStatusText(nStatus),
              std::string("QObject: ") + GetStatusSourceText(nStatus, ETextAudience::Host));
  }
  m_stInitParam.pDeviceName = "Camera";
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  EXPECT_STREQ(m_pPlugin->GetPluginName(), "Flat Field Correction Plugin");
  EXPECT_STREQ(m_pPlugin->GetPluginDisplayName(), "QObject: Flat Field Correction Plugin");
  EXPECT_STREQ(
    m_pPlugin->GetPluginDescription(),
    "QObject: This plugin can calculate flat field correction coefficient and set the coefficient to device");
  EXPECT_EQ(GetWindowTitle(), "QObject: Flat Field Correction Plugin  Camera");
  Send(PLUGIN_MSG_DEVICE_NAME, "Renamed");
  EXPECT_EQ(GetBarTitle(), "QObject: Flat Field Correction Plugin  Renamed");
}

TEST_F(PluginIdentity, AStatusTextLastsUntilTheNextOne)
{
  const std::string strFirst = m_pPlugin->GetStatusText(-3);
  const char *pSecond = m_pPlugin->GetStatusText(-2);
  EXPECT_EQ(strFirst, "Invalid input param");
  EXPECT_STREQ(pSecond, "Out of memory");
}

TEST_F(PluginIdentity, AStatusTextWithoutMemoryForItsTranslationIsTheEnglishOne)
{
  const CFailingTranslator failing("QObject");
  EXPECT_STREQ(m_pPlugin->GetStatusText(-1012), "Buffer size is error  ");
}

TEST_F(PluginIdentity, AnExtensionWithoutPropertiesSupportsNone)
{
  CMinimalPlugin plugin;
  QVariant value(7);
  for (const uint32_t nKey : {0U, 1003U, 0xFFFFFFFFU}) {
    EXPECT_EQ(plugin.GetProperty(nKey, nullptr, &value), PLUGIN_STATUS_NOT_SUPPORTED);
  }
  EXPECT_EQ(value, QVariant(7));
}

TEST(PluginMetaObject, EveryClassOfTheTreeHasItsName)
{
  const QMetaObject *pMetaObject = &CShadingCorrectionPlugin::staticMetaObject;
  for (const char *pName : {"CShadingCorrectionPlugin", "IPluginExtended", "IPlugin", "QObject"}) {
    ASSERT_NE(pMetaObject, nullptr);
    EXPECT_STREQ(pMetaObject->className(), pName);
    pMetaObject = pMetaObject->superClass();
  }
  EXPECT_EQ(pMetaObject, nullptr);
}

TEST(PluginMetaObject, TheInterfaceHasOneSignalAndThenOneSlot)
{
  const QMetaObject &metaObject = IPlugin::staticMetaObject;
  const int nOffset = metaObject.methodOffset();
  ASSERT_EQ(metaObject.methodCount() - nOffset, 2);
  const QMetaMethod signal = metaObject.method(nOffset);
  EXPECT_EQ(signal.methodType(), QMetaMethod::Signal);
  EXPECT_EQ(signal.methodSignature(), "SigPluginMsg(PLUGIN_MSG)");
  EXPECT_EQ(signal.parameterNames(), QList<QByteArray>{"stPluginMsg"});
  EXPECT_STREQ(signal.typeName(), "void");
  const QMetaMethod slot = metaObject.method(nOffset + 1);
  EXPECT_EQ(slot.methodType(), QMetaMethod::Slot);
  EXPECT_EQ(slot.access(), QMetaMethod::Public);
  EXPECT_EQ(slot.methodSignature(), "SlotProcessDemoMsg(PLUGIN_MSG)");
  EXPECT_EQ(slot.parameterNames(), QList<QByteArray>{"stPluginMsg"});
  EXPECT_STREQ(slot.typeName(), "void");
}

TEST(PluginMetaObject, TheOtherClassesAddNoMethodsAndNoProperties)
{
  for (const QMetaObject *pMetaObject :
       {&IPluginExtended::staticMetaObject, &CShadingCorrectionPlugin::staticMetaObject}) {
    EXPECT_EQ(pMetaObject->methodCount(), pMetaObject->methodOffset()) << pMetaObject->className();
    EXPECT_EQ(pMetaObject->propertyCount(), pMetaObject->propertyOffset()) << pMetaObject->className();
  }
}

TEST_F(PluginIdentity, TheHostsSlotCanBeConnectedByName)
{
  CMinimalPlugin sender;
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  ASSERT_TRUE(
    QObject::connect(&sender, SIGNAL(SigPluginMsg(PLUGIN_MSG)), m_pPlugin.get(), SLOT(SlotProcessDemoMsg(PLUGIN_MSG))));
  emit sender.SigPluginMsg(MakePluginMsg(PLUGIN_MSG_SHOW_DIALOG));
  EXPECT_TRUE(m_pPlugin->IsDialogVisible());
}

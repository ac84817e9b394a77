// The order of the virtual operations, by calls through the table itself. The table is laid out as the Itanium
// C++ ABI says, which all compilers but Microsoft's follow.
#include <QPointer>

#include "tests/pluginobject/pluginfixture.h"

using ffc::pluginobject::MakePluginMsg;

namespace {

// QObject's own: metaObject, qt_metacast, qt_metacall, two entries of the destructor, event, eventFilter,
// timerEvent, childEvent, customEvent, connectNotify, disconnectNotify.
constexpr std::size_t QOBJECT_ENTRIES = 12;

class VirtualOrder : public CPluginTest {
protected:
  // The operation at a place, counted from 1 after QObject's.
  template <class TResult, class... TArguments>
  TResult Call(std::size_t nPlace, TArguments... arguments)
  {
    void *pObject = static_cast<IPlugin *>(m_pPlugin.get());
    void *const *pTable = *static_cast<void *const **>(pObject);
    using Function = TResult (*)(void *, TArguments...);
    const auto fnOperation = reinterpret_cast<Function>(pTable[QOBJECT_ENTRIES + nPlace - 1]);
    return fnOperation(pObject, std::forward<TArguments>(arguments)...);
  }

  void CallMessage(int32_t nCode)
  {
    const PLUGIN_MSG stPluginMsg = MakePluginMsg(static_cast<EPluginMsgCode>(nCode));
    Call<void, const PLUGIN_MSG &>(1, stPluginMsg);
  }
};

} // namespace

TEST_F(VirtualOrder, TheIdentityQueriesAreAtTheirPlaces)
{
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  EXPECT_STREQ(Call<const char *>(2), "5b1e7d42-9c0a-4f63-8e21-d7a4c90b3f18");
  EXPECT_STREQ(Call<const char *>(3), "Flat Field Correction Plugin");
  EXPECT_EQ(Call<const char *>(3), m_pPlugin->GetPluginName());
  EXPECT_EQ(Call<const char *>(4), m_pPlugin->GetPluginDisplayName());
  EXPECT_STREQ(Call<const char *>(5),
               "This plugin can calculate flat field correction coefficient and set the coefficient to device");
  EXPECT_EQ(Call<uint32_t>(6), 0x10000U);
  EXPECT_EQ(Call<PLUGIN_VERSION>(7).nMajor, 0);
  EXPECT_TRUE(Call<bool>(8));
  EXPECT_STREQ(Call<const char *>(11, PLUGIN_STATUS_INVALID_PARAM), "Invalid input param");
}

TEST_F(VirtualOrder, MessageAndVisibilityAreAtTheirPlaces)
{
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  EXPECT_FALSE(Call<bool>(9));
  EXPECT_TRUE(Call<bool>(10));
  CallMessage(PLUGIN_MSG_SHOW_DIALOG);
  EXPECT_TRUE(Call<bool>(9));
  EXPECT_FALSE(Call<bool>(10));
  CallMessage(PLUGIN_MSG_HIDE_DIALOG);
  EXPECT_FALSE(Call<bool>(9));
}

TEST_F(VirtualOrder, InitialisationFramesAndPropertiesAreAtTheirPlaces)
{
  ASSERT_EQ(Call<int32_t>(12, &m_stInitParam), 0);
  EXPECT_NE(FindDialog(), nullptr);
  std::vector<uint8_t> listFrame = m_camera.MakeFrame(10);
  PLUGIN_IMAGE_INFO stImage;
  stImage.pBuffer = listFrame.data();
  PLUGIN_PROCESS_RESULT stResult;
  EXPECT_EQ(Call<int32_t>(14, &stImage, &stImage, uint32_t{1}, &stResult), 0);
  EXPECT_EQ(Call<int32_t>(14, &stImage, &stImage, uint32_t{2}, &stResult), PLUGIN_STATUS_INVALID_PARAM);
  QVariant value;
  EXPECT_EQ(Call<int32_t>(15, uint32_t{1003}, static_cast<const QVariant *>(nullptr), &value), 0);
  EXPECT_EQ(value, QVariant(0));
  EXPECT_EQ(Call<int32_t>(15, uint32_t{1004}, static_cast<const QVariant *>(nullptr), &value),
            PLUGIN_STATUS_NOT_SUPPORTED);
  EXPECT_EQ(Call<int32_t>(13), 0);
  EXPECT_EQ(FindDialog(), nullptr);
}

TEST_F(VirtualOrder, TheClassesOwnOperationsFollow)
{
  Call<void>(17, int32_t{2});
  EXPECT_EQ(QTextCodec::codecForLocale(), m_pLocaleCodec);
  EXPECT_FALSE(Call<bool>(18, QStringLiteral(":/missing.qm")));
  EXPECT_EQ(QTextCodec::codecForLocale(), QTextCodec::codecForName("GB2312"));
  ASSERT_EQ(Call<int32_t>(19, &m_stInitParam), 0);
  ASSERT_NE(FindDialog(), nullptr);
  EXPECT_TRUE(FindDialog()->HasNoProcess());
  EXPECT_TRUE(FindDialog()->windowFlags().testFlag(Qt::WindowMinimizeButtonHint));
  EXPECT_TRUE(FindDialog()->windowTitle().startsWith(QStringLiteral("Flat Field Correction Plugin")));
  ASSERT_EQ(Call<int32_t>(20), 0);
  EXPECT_FALSE(FindDialog()->HasNoProcess());
  int nMessages = 0;
  QObject::connect(m_pPlugin.get(), &IPlugin::SigPluginMsg, [&] { ++nMessages; });
  Call<void>(23);
  CallMessage(PLUGIN_MSG_SHOW_DIALOG);
  EXPECT_EQ(nMessages, 1);
  Call<void>(21);
  ASSERT_NE(FindDialog(), nullptr);
  EXPECT_TRUE(FindDialog()->HasNoProcess());
  Call<void>(22);
  EXPECT_EQ(FindDialog(), nullptr);
}

TEST_F(VirtualOrder, TheFirstOfTheClassesOwnOperationsReleasesTheObject)
{
  const QPointer<CShadingCorrectionPlugin> pPlugin = m_pPlugin.get();
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  Call<void>(16);
  EXPECT_EQ(pPlugin, nullptr);
  EXPECT_EQ(FindDialog(), nullptr);
  (void)m_pPlugin.release();
}

TEST_F(VirtualOrder, TheSecondEntryOfTheDestructorDestroysTheObject)
{
  constexpr std::size_t DELETING_DESTRUCTOR = 4;
  const QPointer<CShadingCorrectionPlugin> pPlugin = m_pPlugin.get();
  void *pObject = static_cast<IPlugin *>(m_pPlugin.release());
  void *const *pTable = *static_cast<void *const **>(pObject);
  reinterpret_cast<void (*)(void *)>(pTable[DELETING_DESTRUCTOR])(pObject);
  EXPECT_EQ(pPlugin, nullptr);
}

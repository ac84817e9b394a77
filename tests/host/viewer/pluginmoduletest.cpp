#include "host/viewer/pluginmodule.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace ffc::host;

TEST(PluginModule, AMissingFileIsNamed)
{
  CPluginModule module;
  EXPECT_EQ(module.Load("/no/such/module.plx").toStdString(), "plug-in /no/such/module.plx: no such file");
  EXPECT_EQ(module.GetPlugin(), nullptr);
}

TEST(PluginModule, AFolderIsNoModule)
{
  CPluginModule module;
  const QTemporaryDir dir;
  EXPECT_TRUE(module.Load(dir.path()).contains("no such file"));
}

TEST(PluginModule, AFileThatIsNoModuleIsRefused)
{
  const QTemporaryDir dir;
  const QString strPath = dir.filePath("text.plx");
  QFile file(strPath);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("not a module");
  file.close();
  CPluginModule module;
  const QString strError = module.Load(strPath);
  EXPECT_TRUE(strError.startsWith("plug-in " + strPath + ": ")) << strError.toStdString();
  EXPECT_EQ(module.GetPlugin(), nullptr);
}

TEST(PluginModule, AModuleWithoutAnExportIsRefusedWithItsName)
{
  CPluginModule module;
  EXPECT_TRUE(module.Load(HALF_MODULE).contains("does not export DestoryPluginObject"));
  EXPECT_EQ(module.GetPlugin(), nullptr);
}

TEST(PluginModule, LoadsDestroysAndLoadsAgain)
{
  CPluginModule module;
  for (int nRound = 0; nRound < 2; ++nRound) {
    ASSERT_EQ(module.Load(FAKE_MODULE).toStdString(), "");
    ASSERT_NE(module.GetPlugin(), nullptr);
    EXPECT_STREQ(module.GetPlugin()->GetPluginName(), "fake");
    module.Unload();
    EXPECT_EQ(module.GetPlugin(), nullptr);
  }
}

TEST(PluginModule, AFailedLoadDropsWhatWasLoaded)
{
  CPluginModule module;
  ASSERT_EQ(module.Load(FAKE_MODULE).toStdString(), "");
  EXPECT_NE(module.Load("/no/such/module.plx").toStdString(), "");
  EXPECT_EQ(module.GetPlugin(), nullptr);
}

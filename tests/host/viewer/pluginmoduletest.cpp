#include "host/viewer/pluginmodule.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace ffc::host;

TEST(PluginModule, AMissingFileIsNamed)
{
  CPluginModule module;
  EXPECT_EQ(module.Load("/no/such/module.plx").GetError(), "plug-in /no/such/module.plx: no such file");
  EXPECT_EQ(module.GetPlugin(), nullptr);
}

TEST(PluginModule, AFolderIsNoModule)
{
  CPluginModule module;
  const QTemporaryDir dir;
  EXPECT_NE(module.Load(dir.path()).GetError().find("no such file"), std::string::npos);
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
  const std::string strError = module.Load(strPath).GetError();
  EXPECT_EQ(strError.rfind("plug-in " + strPath.toStdString() + ": ", 0), 0U) << strError;
  EXPECT_EQ(module.GetPlugin(), nullptr);
}

TEST(PluginModule, AModuleWithoutAnExportIsRefusedWithItsName)
{
  CPluginModule module;
  EXPECT_NE(module.Load(HALF_MODULE).GetError().find("does not export DestoryPluginObject"), std::string::npos);
  EXPECT_EQ(module.GetPlugin(), nullptr);
}

TEST(PluginModule, AModuleThatMakesNoObjectIsToldAndIsTriedAnewTheNextTime)
{
  CPluginModule module;
  qApp->setProperty("fakePluginFails", true);
  const std::string strError = module.Load(FAKE_MODULE).GetError();
  qApp->setProperty("fakePluginFails", false);
  EXPECT_NE(strError.find("it made no object"), std::string::npos) << strError;
  EXPECT_EQ(module.GetPlugin(), nullptr);
  EXPECT_EQ(module.Load(FAKE_MODULE).GetError(), "");
}

TEST(PluginModule, LoadsDestroysAndLoadsAgain)
{
  CPluginModule module;
  for (int nRound = 0; nRound < 2; ++nRound) {
    ASSERT_EQ(module.Load(FAKE_MODULE).GetError(), "");
    ASSERT_NE(module.GetPlugin(), nullptr);
    EXPECT_STREQ(module.GetPlugin()->GetPluginName(), "fake");
    module.Unload();
    EXPECT_EQ(module.GetPlugin(), nullptr);
  }
}

TEST(PluginModule, AFailedLoadDropsWhatWasLoaded)
{
  CPluginModule module;
  ASSERT_EQ(module.Load(FAKE_MODULE).GetError(), "");
  EXPECT_NE(module.Load("/no/such/module.plx").GetError(), "");
  EXPECT_EQ(module.GetPlugin(), nullptr);
}

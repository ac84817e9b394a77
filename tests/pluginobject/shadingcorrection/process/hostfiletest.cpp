#include <cstring>

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "tests/pluginobject/shadingcorrection/process/hostrig.h"
#include "tests/pluginobject/shadingcorrection/process/scriptedchooser.h"
#include "tests/support/modalanswer.h"

using namespace ffc::test;

namespace {

class HostFile : public testing::Test {
protected:
  HostFile() { m_rig.Process().SetExpectGray(200); }

  // Coefficients of a bright frame of 120, with a dark one of 10 or without one.
  void MakeCoefficients(bool bDark)
  {
    if (bDark) {
      EXPECT_EQ(0, m_rig.AcquireDark(10));
    }
    EXPECT_EQ(0, m_rig.AcquireBright(120));
    EXPECT_EQ(0, m_rig.Process().ExecuteCorrection());
  }

  std::vector<uint8_t> Correct(uint32_t nGray)
  {
    std::vector<uint8_t> listCorrected;
    EXPECT_EQ(0, m_rig.Correct(m_rig.Camera().MakeFrame(nGray), listCorrected));
    return listCorrected;
  }

  QString Path(const char *pName) const { return m_folder.filePath(QString::fromUtf8(pName)); }
  int32_t Save(const char *pName)
  {
    m_chooser.Choose(Path(pName));
    return m_rig.Process().SaveToFile();
  }
  int32_t Load(const char *pName)
  {
    m_chooser.Choose(Path(pName));
    return m_rig.Process().LoadFromFile();
  }

  QTemporaryDir m_folder;
  CHostRig m_rig;
  CScriptedChooser &m_chooser = InstallChooser(m_rig.Process());
};

constexpr int PIXELS = 64 * 48;

} // namespace

TEST_F(HostFile, HasTheBytesOfTheTableAndNothingElse)
{
  MakeCoefficients(false);
  EXPECT_EQ(0, Save("a.ffc"));
  const QByteArray bytes = ReadAll(Path("a.ffc"));
  ASSERT_EQ(2 * PIXELS, bytes.size());
  // A gain of 200 / 120 for every pixel.
  for (int i = 0; i < PIXELS; ++i) {
    uint16_t nGain = 0;
    std::memcpy(&nGain, bytes.constData() + 2 * i, sizeof nGain);
    ASSERT_EQ((200 * 4096 + 60) / 120, nGain);
  }
}

TEST_F(HostFile, IsLoadedAsItWasSaved)
{
  for (const bool bDark : {false, true}) {
    MakeCoefficients(bDark);
    EXPECT_EQ(0, Save("a.ffc"));
    const std::vector<uint8_t> listBefore = Correct(60);
    const uint32_t nSize = m_rig.Process().GetCorrectionInfo().nCoefficientsSize;

    CHostRig other;
    CScriptedChooser &chooser = InstallChooser(other.Process(), Path("a.ffc"));
    EXPECT_EQ(0, other.Process().LoadFromFile());
    EXPECT_EQ(nSize, other.Process().GetCorrectionInfo().nCoefficientsSize);
    std::vector<uint8_t> listAfter;
    EXPECT_EQ(0, other.Correct(other.Camera().MakeFrame(60), listAfter));
    EXPECT_EQ(listBefore, listAfter);
    chooser.Choose(Path("b.ffc"));
    EXPECT_EQ(0, other.Process().SaveToFile());
    EXPECT_EQ(ReadAll(Path("a.ffc")), ReadAll(Path("b.ffc")));
  }
}

TEST_F(HostFile, IsAskedForWithTheTextsOfEachDialog)
{
  MakeCoefficients(false);
  EXPECT_EQ(0, Save("a.ffc"));
  EXPECT_EQ(0, Load("a.ffc"));
  EXPECT_EQ((std::vector<std::string>{"save: Save FFC, ini file (*.ffc)", "open: Open FFC, ini file (*.ffc)"}),
            m_chooser.GetQuestions());
}

TEST_F(HostFile, ACancelledDialogChangesNothing)
{
  MakeCoefficients(true);
  const std::vector<uint8_t> listBefore = Correct(60);
  m_chooser.Choose(QString());
  m_rig.SetHook([](const SNodeAccess &stAccess) { ADD_FAILURE() << stAccess.strNode; });
  EXPECT_EQ(-1014, m_rig.Process().LoadFromFile());
  EXPECT_EQ(-1014, m_rig.Process().SaveToFile());
  EXPECT_EQ(listBefore, Correct(60));
  EXPECT_TRUE(QDir(m_folder.path()).isEmpty());
}

TEST_F(HostFile, OfAnotherSizeIsRefusedAndTheCoefficientsStayInForce)
{
  MakeCoefficients(true);
  const std::vector<uint8_t> listBefore = Correct(60);
  for (const int nSize : {0, 1, PIXELS, 2 * PIXELS - 1, 2 * PIXELS + 1, 3 * PIXELS, 4 * PIXELS - 1, 4 * PIXELS + 1}) {
    WriteAll(Path("wrong.ffc"), QByteArray(nSize, '\x10'));
    EXPECT_EQ(-1007, Load("wrong.ffc")) << nSize;
    EXPECT_EQ(listBefore, Correct(60)) << nSize;
    EXPECT_EQ(4U, m_rig.GetTableBytesPerPixel()) << nSize;
  }
  EXPECT_EQ(0, m_rig.Process().ExecuteCorrection());
}

TEST_F(HostFile, OfTheWrongSizeForANewFormatLeavesFramesOfTheFormerOneCorrected)
{
  MakeCoefficients(true);
  const std::vector<uint8_t> listBefore = Correct(60);
  m_rig.Camera().Integer("Width").Poke(96);
  WriteAll(Path("wrong.ffc"), QByteArray(2 * PIXELS, '\x10'));
  EXPECT_EQ(-1007, Load("wrong.ffc"));
  m_rig.Camera().Integer("Width").Poke(64);
  EXPECT_EQ(listBefore, Correct(60));
}

TEST_F(HostFile, ThatCannotBeOpenedIsRefusedAndTheCoefficientsStayInForce)
{
  MakeCoefficients(true);
  const std::vector<uint8_t> listBefore = Correct(60);
  EXPECT_EQ(-1004, Load("missing.ffc"));
  EXPECT_EQ(-1004, Load("."));
  EXPECT_EQ(-1004, Save("missing/a.ffc"));
  EXPECT_EQ(-1004, Save("."));
  EXPECT_EQ(listBefore, Correct(60));
}

TEST_F(HostFile, IsNotLoadedWhenTheCameraDoesNotTellItsFormat)
{
  MakeCoefficients(true);
  EXPECT_EQ(0, Save("a.ffc"));
  const std::vector<uint8_t> listBefore = Correct(60);
  for (const char *pFeature : {"Width", "Height", "PixelFormat"}) {
    m_rig.SetHook([pFeature](const SNodeAccess &stAccess) {
      if (stAccess.strNode == pFeature) {
        throw GenICam::AccessException("refused", __FILE__, __LINE__);
      }
    });
    EXPECT_EQ(-1002, Load("a.ffc")) << pFeature;
    EXPECT_EQ(-1004, Load("missing.ffc")) << pFeature; // opened before the camera is asked
    m_rig.SetHook(nullptr);
    EXPECT_EQ(listBefore, Correct(60)) << pFeature;
  }
}

TEST_F(HostFile, IsLoadedForTheCamerasCurrentFormatAndWritesNothingToIt)
{
  WriteAll(Path("a.ffc"), QByteArray(2 * 96 * 64, '\x10')); // gains of 0x1010
  m_rig.Camera().Integer("Width").Poke(96);
  m_rig.Camera().Integer("Height").Poke(64);
  const auto mapBefore = m_rig.TakeSnapshot();
  EXPECT_EQ(0, Load("a.ffc"));
  EXPECT_EQ(mapBefore, m_rig.TakeSnapshot());
  EXPECT_TRUE(m_rig.TakeSignals().empty());
  EXPECT_EQ(2U * 96U * 64U, m_rig.Process().GetCorrectionInfo().nCoefficientsSize);
  EXPECT_EQ(m_rig.Camera().MakeFrame(201), Correct(200)); // 200 x 4112 / 4096
}

TEST_F(HostFile, ALoadedTableReplacesOneOfAnotherSize)
{
  MakeCoefficients(true);
  WriteAll(Path("a.ffc"), QByteArray(2 * PIXELS, '\x10'));
  EXPECT_EQ(0, Load("a.ffc"));
  EXPECT_EQ(m_rig.Camera().MakeFrame(201), Correct(200));
  EXPECT_EQ(0, Save("b.ffc"));
  EXPECT_EQ(ReadAll(Path("a.ffc")), ReadAll(Path("b.ffc")));
  EXPECT_EQ(0, m_rig.Process().ExecuteCorrection()); // the frames are still there
  EXPECT_EQ(4U, m_rig.GetTableBytesPerPixel());
}

TEST_F(HostFile, WithoutCoefficientsNothingIsSavedAndNoFileTouched)
{
  WriteAll(Path("a.ffc"), "former");
  EXPECT_EQ(-3, Save("a.ffc"));
  EXPECT_EQ(-3, Save("b.ffc"));
  EXPECT_EQ("former", ReadAll(Path("a.ffc")));
  EXPECT_FALSE(QFile::exists(Path("b.ffc")));
  EXPECT_TRUE(m_chooser.GetQuestions().empty());
}

TEST_F(HostFile, WithoutACameraIsNotLoaded)
{
  WriteAll(Path("a.ffc"), QByteArray(2 * PIXELS, '\x10'));
  CShadingCorrectionPro_PC process{CFeatureAccess(nullptr), CFeatureAccess(nullptr)};
  InstallChooser(process, Path("a.ffc"));
  EXPECT_EQ(-3, process.LoadFromFile());
}

namespace {

// In a folder of its own, with the folder of coefficient files in it.
class HostFileDialog : public testing::Test {
protected:
  HostFileDialog()
  {
    QDir::setCurrent(m_folder.path());
    QDir().mkpath("resource/tqplugins/FlatFieldCorrection");
  }
  ~HostFileDialog() override { QDir::setCurrent(m_strFormer); }

  std::string GetDefaultFolder() const
  {
    return QDir("resource/tqplugins/FlatFieldCorrection").canonicalPath().toStdString();
  }

  QString m_strFormer = QDir::currentPath();
  QTemporaryDir m_folder;
  CHostRig m_rig;
};

} // namespace

TEST_F(HostFileDialog, SavesAndLoadsWhatTheUserChooses)
{
  EXPECT_EQ(0, m_rig.AcquireBright(100));
  EXPECT_EQ(0, m_rig.Process().ExecuteCorrection());
  CModalAnswer answer;
  answer.ChooseFile(m_folder.filePath("a.ffc"));
  EXPECT_EQ(0, m_rig.Process().SaveToFile());
  EXPECT_EQ(2 * PIXELS, QFileInfo(m_folder.filePath("a.ffc")).size());
  EXPECT_EQ(0, m_rig.Process().LoadFromFile());
  EXPECT_EQ(2U, answer.GetFileDialogs().size());
}

TEST_F(HostFileDialog, StartsInTheFolderOfCoefficientFiles)
{
  EXPECT_EQ(0, m_rig.AcquireBright(100));
  EXPECT_EQ(0, m_rig.Process().ExecuteCorrection());
  const CModalAnswer answer;
  EXPECT_EQ(-1014, m_rig.Process().LoadFromFile());
  EXPECT_EQ(-1014, m_rig.Process().SaveToFile());
  ASSERT_EQ(2U, answer.GetFileDialogs().size());
  const CModalAnswer::SFileDialog &stOpen = answer.GetFileDialogs()[0];
  EXPECT_EQ("Open FFC", stOpen.strTitle);
  EXPECT_EQ("ini file (*.ffc)", stOpen.strFilter);
  EXPECT_EQ(GetDefaultFolder(), stOpen.strDirectory);
  const CModalAnswer::SFileDialog &stSave = answer.GetFileDialogs()[1];
  EXPECT_EQ("Save FFC", stSave.strTitle);
  EXPECT_EQ("ini file (*.ffc)", stSave.strFilter);
  EXPECT_EQ(GetDefaultFolder(), stSave.strDirectory);
  EXPECT_EQ("FlatFieldCorrection.ffc", stSave.strProposed);
}

// What holds for the coefficient files of all processes alike.
#include <string>
#include <vector>

#include <QDialog>
#include <QDir>
#include <QTemporaryDir>

#include "tests/pluginobject/shadingcorrection/process/processkinds.h"
#include "tests/pluginobject/shadingcorrection/process/scriptedchooser.h"
#include "tests/support/markingtranslator.h"
#include "tests/support/modalanswer.h"

using namespace ffc::test;
using ffc::genapi::SNodeAccess;

using Kinds = testing::Types<SHost, SDevice, SVignetting>;

// Of a process with coefficients in force.
template <class TKind>
class CoefficientFile : public CFileTest<typename TKind::Rig> {
protected:
  CoefficientFile()
  {
    SetFrameCount(this->m_rig, 2);
    TKind::PutIntoForce(this->m_rig);
    m_listInForce = TKind::GetInForce(this->m_rig);
    m_listInfo = this->m_rig.GetInfo();
    this->m_rig.TakeSignals();
  }

  void ExpectUnchanged()
  {
    EXPECT_EQ(TKind::GetInForce(this->m_rig), m_listInForce);
    EXPECT_EQ(this->m_rig.GetInfo(), m_listInfo);
    EXPECT_TRUE(this->m_rig.TakeSignals().empty());
  }

  std::vector<uint8_t> m_listInForce;
  std::vector<uint32_t> m_listInfo;
};

TYPED_TEST_SUITE(CoefficientFile, Kinds, SKindName);

TYPED_TEST(CoefficientFile, IsLoadedAsItWasSaved)
{
  EXPECT_EQ(this->Save("a.ffc"), PLUGIN_STATUS_SUCCESS);
  typename TypeParam::Rig other;
  CScriptedChooser &chooser = InstallChooser(other.Process(), this->Path("a.ffc"));
  EXPECT_EQ(other.Process().LoadFromFile(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(TypeParam::GetInForce(other), this->m_listInForce);
  if (TypeParam::HAS_RECORD) {
    EXPECT_EQ(other.GetInfo(), this->m_listInfo);
  }
  EXPECT_EQ(other.Process().GetCorrectionInfo().nCoefficientsSize, ReadAll(this->Path("a.ffc")).size());
  chooser.Choose(this->Path("b.ffc"));
  EXPECT_EQ(other.Process().SaveToFile(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(ReadAll(this->Path("b.ffc")), ReadAll(this->Path("a.ffc")));
}

TYPED_TEST(CoefficientFile, IsAskedForWithTheTextsOfEachDialog)
{
  EXPECT_EQ(this->Save("a.ffc"), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(this->Load("a.ffc"), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(this->m_chooser.GetQuestions(),
            (std::vector<std::string>{"save: Save FFC, ini file (*.ffc)", "open: Open FFC, ini file (*.ffc)"}));
}

TYPED_TEST(CoefficientFile, IsAskedForInTheTranslationOfItsProcess)
{
  const CMarkingTranslator marking;
  this->m_chooser.Choose(QString());
  EXPECT_EQ(this->m_rig.Process().SaveToFile(), PLUGIN_STATUS_SILENT);
  EXPECT_EQ(this->m_rig.Process().LoadFromFile(), PLUGIN_STATUS_SILENT);
  const std::string strContext = std::string(TypeParam::CLASS) + ": ";
  const std::string strFilter = ", " + strContext + "ini file (*.ffc)";
  EXPECT_EQ(this->m_chooser.GetQuestions(), (std::vector<std::string>{"save: " + strContext + "Save FFC" + strFilter,
                                                                      "open: " + strContext + "Open FFC" + strFilter}));
}

TYPED_TEST(CoefficientFile, ThatTheUserDoesNotChooseChangesNothing)
{
  this->m_chooser.Choose(QString());
  this->m_rig.SetHook([](const SNodeAccess &stAccess) { EXPECT_EQ(stAccess.strNode, TypeParam::READ_FOR_FILE); });
  EXPECT_EQ(this->m_rig.Process().LoadFromFile(), PLUGIN_STATUS_SILENT);
  EXPECT_EQ(this->m_rig.Process().SaveToFile(), PLUGIN_STATUS_SILENT);
  this->m_rig.SetHook(nullptr);
  this->ExpectUnchanged();
  EXPECT_TRUE(QDir(this->m_folder.path()).isEmpty());
}

TYPED_TEST(CoefficientFile, ThatCannotBeOpenedIsRefusedAndNothingChanges)
{
  EXPECT_EQ(this->Load("missing.ffc"), PLUGIN_STATUS_OPEN_FILE_ERROR);
  EXPECT_EQ(this->Load("."), PLUGIN_STATUS_OPEN_FILE_ERROR);
  EXPECT_EQ(this->Save("missing/a.ffc"), PLUGIN_STATUS_OPEN_FILE_ERROR);
  EXPECT_EQ(this->Save("."), PLUGIN_STATUS_OPEN_FILE_ERROR);
  this->ExpectUnchanged();
}

// Asked for in the toolkit's dialogs, with the folder of coefficient files in the current one.
template <class TKind>
class FileDialogs : public testing::Test {
protected:
  FileDialogs()
  {
    QDir::setCurrent(m_folder.path());
    QDir().mkpath("resource/tqplugins/FlatFieldCorrection");
    TKind::PutIntoForce(m_rig);
  }
  ~FileDialogs() override { QDir::setCurrent(m_strFormer); }

  const QString m_strFormer = QDir::currentPath();
  QTemporaryDir m_folder;
  typename TKind::Rig m_rig;
};

TYPED_TEST_SUITE(FileDialogs, Kinds, SKindName);

TYPED_TEST(FileDialogs, StartInTheFolderOfCoefficientFiles)
{
  CModalAnswer answer; // cancels
  answer.BeforeAnswer([](QDialog &dialog) { EXPECT_EQ(dialog.parentWidget(), nullptr); });
  EXPECT_EQ(this->m_rig.Process().LoadFromFile(), PLUGIN_STATUS_SILENT);
  EXPECT_EQ(this->m_rig.Process().SaveToFile(), PLUGIN_STATUS_SILENT);
  ASSERT_EQ(answer.GetFileDialogs().size(), 2U);
  EXPECT_EQ(answer.GetFileDialogs()[0].strTitle, "Open FFC");
  EXPECT_EQ(answer.GetFileDialogs()[1].strTitle, "Save FFC");
  for (const CModalAnswer::SFileDialog &stDialog : answer.GetFileDialogs()) {
    EXPECT_EQ(stDialog.strFilter, "ini file (*.ffc)");
    EXPECT_EQ(stDialog.strDirectory, QDir("resource/tqplugins/FlatFieldCorrection").canonicalPath().toStdString());
  }
  EXPECT_EQ(answer.GetFileDialogs()[1].strProposed, "FlatFieldCorrection.ffc");
}

TYPED_TEST(FileDialogs, GiveTheFileThatIsSavedAndLoaded)
{
  CModalAnswer answer;
  answer.ChooseFile(this->m_folder.filePath("a.ffc"));
  EXPECT_EQ(this->m_rig.Process().SaveToFile(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(ReadAll(this->m_folder.filePath("a.ffc")).size(),
            this->m_rig.Process().GetCorrectionInfo().nCoefficientsSize);
  EXPECT_EQ(this->m_rig.Process().LoadFromFile(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(answer.GetFileDialogs().size(), 2U);
}

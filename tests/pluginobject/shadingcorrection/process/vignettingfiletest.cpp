#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "tests/pluginobject/shadingcorrection/process/operationlog.h"
#include "tests/pluginobject/shadingcorrection/process/scriptedchooser.h"
#include "tests/pluginobject/shadingcorrection/process/vignettingrig.h"
#include "tests/support/fullvolume.h"
#include "tests/support/modalanswer.h"

using namespace ffc::test;

namespace {

using Words = std::vector<uint32_t>;

constexpr uint32_t SIZE = 72;
const Words LOADED = {1, 2, 4, 2, SIZE, 7};

QByteArray ToArray(const std::vector<uint8_t> &listBytes)
{
  return QByteArray(reinterpret_cast<const char *>(listBytes.data()), static_cast<int>(listBytes.size()));
}

// A file that the camera takes.
QByteArray MakeFile()
{
  return ToArray(MakeCoefficients(SIZE, SIZE));
}

// A camera with coefficients in force, of which nothing is changed by an operation that is refused.
class VignettingFile : public testing::Test {
protected:
  VignettingFile()
  {
    EXPECT_EQ(0, m_rig.Process().SetFrameCount("FFCFrameCount_2"));
    EXPECT_EQ(0, m_rig.Correct(100));
    m_rig.Camera().Enumeration("FlatFieldCorrection").Select("Off");
    m_rig.TakeSignals();
    m_written = GetWritten();
    m_listInfo = m_rig.GetInfo();
  }

  QString Path(const char *pName) const { return m_folder.filePath(pName); }
  QByteArray GetWritten() { return ToArray(m_rig.GetWritten()); }
  QStringList ListFiles() { return QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden); }

  int32_t Load(const char *pName)
  {
    m_chooser.Choose(Path(pName));
    return m_rig.Process().LoadFromFile();
  }
  int32_t Load(const QByteArray &bytes)
  {
    WriteAll(Path("load.ffc"), bytes);
    return Load("load.ffc");
  }
  int32_t Save(const char *pName)
  {
    m_chooser.Choose(Path(pName));
    return m_rig.Process().SaveToFile();
  }
  void ExpectUnchanged()
  {
    EXPECT_EQ(m_written, GetWritten());
    EXPECT_EQ(m_listInfo, m_rig.GetInfo());
    EXPECT_EQ("Off", m_rig.GetCorrection());
    EXPECT_TRUE(m_rig.TakeSignals().empty());
  }

  QTemporaryDir m_folder;
  CVignettingRig m_rig;
  CScriptedChooser &m_chooser = InstallChooser(m_rig.Process());
  QByteArray m_written;
  Words m_listInfo;
};

} // namespace

TEST_F(VignettingFile, IsTheRegister)
{
  EXPECT_EQ(0, Save("a.ffc"));
  EXPECT_EQ(m_written, ReadAll(Path("a.ffc")));
  ExpectUnchanged();
}

TEST_F(VignettingFile, IsWrittenAsItIsAndItsRecordTaken)
{
  for (int i = 0; i < 2; ++i) { // the second time with the same result
    EXPECT_EQ(0, Load(MakeFile()));
    EXPECT_EQ(MakeFile(), GetWritten());
    EXPECT_EQ(LOADED, m_rig.GetInfo());
    EXPECT_EQ("On", m_rig.GetCorrection());
    EXPECT_EQ(MakeFile(), ReadAll(Path("load.ffc")));
  }
}

TEST_F(VignettingFile, IsLoadedAsItWasSaved)
{
  EXPECT_EQ(0, Save("a.ffc"));
  EXPECT_EQ(0, Load(MakeFile()));
  EXPECT_EQ(0, Load("a.ffc"));
  EXPECT_EQ(m_written, GetWritten());
  EXPECT_EQ(m_listInfo, m_rig.GetInfo());
  EXPECT_EQ(0, Save("b.ffc"));
  EXPECT_EQ(m_written, ReadAll(Path("b.ffc")));
}

TEST_F(VignettingFile, AccessesOfALoadAndOfASave)
{
  EXPECT_EQ((Log{"get FFCCoefficientsSize", "read FFCValueAll 72"}),
            RecordOperation(m_rig, [this] { return Save("a.ffc"); }));
  EXPECT_EQ((Log{"get FFCCoefficientsSize", "write FFCValueAll 72", "set FlatFieldCorrection = On"}),
            RecordOperation(m_rig, [this] { return Load("a.ffc"); }));
}

TEST_F(VignettingFile, OfAnotherLengthIsRefused)
{
  const QByteArray file = MakeFile();
  for (const QByteArray &bytes : {file.left(71), file + 'x', file.right(71), file.right(24), file.left(1), QByteArray(),
                                  file + file, QByteArray(100000, 'x')}) {
    EXPECT_EQ(-1015, Load(bytes)) << bytes.size();
    ExpectUnchanged();
  }
}

TEST_F(VignettingFile, WhoseRecordSaysAnotherSizeIsRefused)
{
  for (const uint32_t nSize : {0U, 24U, 71U, 73U, SIZE << 8, 0xFFFFFFFFU}) { // the fifth one has its bytes exchanged
    EXPECT_EQ(-1015, Load(ToArray(MakeCoefficients(SIZE, nSize)))) << nSize;
    ExpectUnchanged();
  }
}

TEST_F(VignettingFile, OfCoefficientsWhoseRecordSaysAnotherSizeIsNotSaved)
{
  WriteAll(Path("a.ffc"), "former");
  for (const uint32_t nSize : {0U, 71U, 73U, SIZE << 8}) {
    m_rig.Camera().Correction().SetWritten(MakeCoefficients(SIZE, nSize));
    EXPECT_EQ(-1015, Save("a.ffc")) << nSize;
    EXPECT_EQ(-1015, Save("new.ffc")) << nSize;
  }
  EXPECT_EQ("former", ReadAll(Path("a.ffc")));
  EXPECT_EQ(QStringList{"a.ffc"}, ListFiles());
}

TEST_F(VignettingFile, AFrameCountThatNoEntryHasBecomesOneFrameInTheNextAcquisition)
{
  for (const uint32_t nFrameCount : {3U, 17U, 100U, 0xFFFFFFFFU}) {
    std::vector<uint8_t> listBytes(SIZE - 24, 0xA5);
    for (const uint8_t nByte : MakeRecord({1, 2, nFrameCount, 2, SIZE, 7})) {
      listBytes.push_back(nByte);
    }
    EXPECT_EQ(0, Load(ToArray(listBytes)));
    EXPECT_EQ(0, m_rig.AcquireBright(100)) << nFrameCount;
    EXPECT_EQ(1, m_rig.GetFrameCount()) << nFrameCount;
    EXPECT_EQ(1U, m_rig.Process().GetCorrectionInfo().nFrameCount) << nFrameCount;
  }
}

TEST_F(VignettingFile, AnyOtherWordOfTheRecordIsTakenAsItIs)
{
  std::vector<uint8_t> listBytes(SIZE - 24, 0xA5);
  const Words listWords = {0x01020304, 0x05060708, 0x090A0B0C, 0x0D0E0F10, SIZE, 0xFFFFFFFF};
  for (const uint8_t nByte : MakeRecord(listWords)) {
    listBytes.push_back(nByte);
  }
  EXPECT_EQ(0, Load(ToArray(listBytes)));
  EXPECT_EQ(listWords, m_rig.GetInfo());
  EXPECT_EQ(0, Save("b.ffc"));
  EXPECT_EQ(ToArray(listBytes), ReadAll(Path("b.ffc")));
}

TEST_F(VignettingFile, HasTheLengthThatTheCameraHasNow)
{
  m_rig.Camera().Integer("Width").Poke(320);
  EXPECT_EQ(-1015, Load(MakeFile()));
  EXPECT_EQ(0, Load(ToArray(MakeCoefficients(88, 88))));
  EXPECT_EQ(0, Save("a.ffc"));
  EXPECT_EQ(88, ReadAll(Path("a.ffc")).size());
}

TEST_F(VignettingFile, ForARegisterOfAnotherLengthIsRefused)
{
  WriteAll(Path("a.ffc"), "former");
  for (const int64_t nLength : {71, 73, 0}) {
    m_rig.Camera().Device().Find<CSoftwareRegister>("FFCValueAll")->Length(nLength);
    EXPECT_EQ(-1015, Load(MakeFile())) << nLength;
    EXPECT_EQ(-1015, Save("a.ffc")) << nLength;
    ExpectUnchanged();
    EXPECT_EQ("former", ReadAll(Path("a.ffc"))) << nLength;
  }
}

TEST_F(VignettingFile, WithoutRoomForARecordIsRefused)
{
  for (const int nSize : {1, 23}) {
    m_rig.Camera().Integer("FFCCoefficientsSize").OnRead([nSize] { return nSize; });
    EXPECT_EQ(-1015, Load(MakeFile().left(nSize))) << nSize;
    EXPECT_EQ(-1015, Save("a.ffc")) << nSize;
  }
  m_rig.Camera().Integer("FFCCoefficientsSize").OnRead([] { return 0; });
  EXPECT_EQ(-1007, Load(QByteArray())); // as long as it has to be, but there is nothing
  EXPECT_EQ(-1015, Save("a.ffc"));
  ExpectUnchanged();
  EXPECT_EQ(QStringList{"load.ffc"}, ListFiles());
  m_rig.Camera().Integer("FFCCoefficientsSize").OnRead([] { return 24; });
  EXPECT_EQ(0, Load(ToArray(MakeCoefficients(24, 24)))); // nothing but a record
}

TEST_F(VignettingFile, ForASizeThatNoMemoryHasIsRefused)
{
  for (const int64_t nSize : {int64_t{-1}, INT64_MIN, INT64_MAX, int64_t{1} << 32}) {
    m_rig.Camera().Integer("FFCCoefficientsSize").OnRead([nSize] { return nSize; });
    EXPECT_EQ(-1015, Load(MakeFile())) << nSize;
    EXPECT_EQ(-2, Save("a.ffc")) << nSize; // without asking
  }
  EXPECT_EQ(4U, m_chooser.GetQuestions().size());
  ExpectUnchanged();
}

TEST_F(VignettingFile, IsAskedForWithTheTextsOfEachDialogAfterTheSizeWasRead)
{
  std::size_t nQuestionsAtRead = 99;
  m_rig.SetHook([&](const SNodeAccess &stAccess) {
    if (stAccess.strNode == "FFCCoefficientsSize") {
      nQuestionsAtRead = m_chooser.GetQuestions().size();
    }
  });
  EXPECT_EQ(0, Save("a.ffc"));
  EXPECT_EQ(0U, nQuestionsAtRead);
  EXPECT_EQ(0, Load("a.ffc"));
  EXPECT_EQ(1U, nQuestionsAtRead);
  EXPECT_EQ((std::vector<std::string>{"save: Save FFC, ini file (*.ffc)", "open: Open FFC, ini file (*.ffc)"}),
            m_chooser.GetQuestions());
}

TEST_F(VignettingFile, ACancelledDialogChangesNothing)
{
  m_chooser.Choose(QString());
  m_rig.SetHook([](const SNodeAccess &stAccess) { EXPECT_EQ("FFCCoefficientsSize", stAccess.strNode); });
  EXPECT_EQ(-1014, m_rig.Process().LoadFromFile());
  EXPECT_EQ(-1014, m_rig.Process().SaveToFile());
  ExpectUnchanged();
  EXPECT_TRUE(ListFiles().isEmpty());
}

TEST_F(VignettingFile, ThatCannotBeOpenedIsRefused)
{
  EXPECT_EQ(-1004, Load("missing.ffc"));
  EXPECT_EQ(-1004, Load("."));
  EXPECT_EQ(-1004, Save("missing/a.ffc"));
  EXPECT_EQ(-1004, Save("."));
  ExpectUnchanged();
}

TEST_F(VignettingFile, ThatCannotBeWrittenIsReportedAndTheFormerOneStays)
{
  WriteAll(Path("a.ffc"), "former");
  for (const char *pName : {"a.ffc", "new.ffc"}) {
    const CFullVolume fullVolume(20);
    EXPECT_EQ(-1006, Save(pName)) << pName;
  }
  EXPECT_EQ("former", ReadAll(Path("a.ffc")));
  EXPECT_EQ(QStringList{"a.ffc"}, ListFiles());
  ExpectUnchanged();
}

TEST_F(VignettingFile, ALoadThatTheCameraRefusesKeepsTheRecord)
{
  for (const char *pName : {"FFCCoefficientsSize", "FFCValueAll"}) {
    m_rig.Refuse(pName);
    EXPECT_EQ(-1002, Load(MakeFile())) << pName;
    ExpectUnchanged();
  }
  // Once the camera has the coefficients their record is the process's.
  m_rig.Refuse("FlatFieldCorrection");
  EXPECT_EQ(-1002, Load(MakeFile()));
  EXPECT_EQ(MakeFile(), GetWritten());
  EXPECT_EQ(LOADED, m_rig.GetInfo());
}

TEST_F(VignettingFile, ASaveThatTheCameraRefusesLeavesNoFile)
{
  for (const char *pName : {"FFCCoefficientsSize", "FFCValueAll"}) {
    m_rig.Refuse(pName);
    EXPECT_EQ(-1002, Save("a.ffc")) << pName;
    EXPECT_TRUE(ListFiles().isEmpty()) << pName;
  }
  m_rig.Refuse("FlatFieldCorrection"); // which a save leaves alone
  EXPECT_EQ(0, Save("a.ffc"));
}

TEST_F(VignettingFile, WithoutACameraIsNotAskedFor)
{
  CVignettingCorrectionPro_Dev process{CFeatureAccess(nullptr)};
  CScriptedChooser &chooser = InstallChooser(process, Path("a.ffc"));
  EXPECT_EQ(-3, process.LoadFromFile());
  EXPECT_EQ(-3, process.SaveToFile());
  EXPECT_TRUE(chooser.GetQuestions().empty());
  EXPECT_TRUE(ListFiles().isEmpty());
}

TEST_F(VignettingFile, IsChosenInDialogsUnlessToldOtherwise)
{
  CVignettingRig rig;
  const CModalAnswer answer; // cancels
  EXPECT_EQ(-1014, rig.Process().LoadFromFile());
  EXPECT_EQ(-1014, rig.Process().SaveToFile());
  ASSERT_EQ(2U, answer.GetFileDialogs().size());
  EXPECT_EQ("Open FFC", answer.GetFileDialogs()[0].strTitle);
  EXPECT_EQ("Save FFC", answer.GetFileDialogs()[1].strTitle);
}

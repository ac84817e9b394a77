#include <QDir>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/operationlog.h"
#include "tests/pluginobject/shadingcorrection/process/scriptedchooser.h"
#include "tests/pluginobject/shadingcorrection/process/vignettingrig.h"
#include "tests/support/fullvolume.h"

using ffc::genapi::CSoftwareRegister;
using ffc::genapi::SNodeAccess;
using ffc::pluginobject::CFeatureAccess;
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
class VignettingFile : public CFileTest<CVignettingRig> {
protected:
  VignettingFile()
  {
    EXPECT_EQ(m_rig.Process().SetFrameCount("FFCFrameCount_2"), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(m_rig.Correct(100), PLUGIN_STATUS_SUCCESS);
    m_rig.Camera().Enumeration("FlatFieldCorrection").Select("Off");
    m_rig.TakeSignals();
    m_written = GetWritten();
    m_listInfo = m_rig.GetInfo();
  }

  QByteArray GetWritten() { return ToArray(m_rig.GetWritten()); }
  QStringList ListFiles() { return QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden); }

  using CFileTest::Load;
  int32_t Load(const QByteArray &bytes)
  {
    WriteAll(Path("load.ffc"), bytes);
    return Load("load.ffc");
  }
  void ExpectUnchanged()
  {
    EXPECT_EQ(GetWritten(), m_written);
    EXPECT_EQ(m_rig.GetInfo(), m_listInfo);
    EXPECT_EQ(m_rig.GetCorrection(), "Off");
    EXPECT_TRUE(m_rig.TakeSignals().empty());
  }

  QByteArray m_written;
  Words m_listInfo;
};

} // namespace

TEST_F(VignettingFile, IsTheRegister)
{
  EXPECT_EQ(Save("a.ffc"), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(ReadAll(Path("a.ffc")), m_written);
  ExpectUnchanged();
}

TEST_F(VignettingFile, IsWrittenAsItIsAndItsRecordTaken)
{
  for (int i = 0; i < 2; ++i) { // the second time with the same result
    EXPECT_EQ(Load(MakeFile()), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(MakeFile(), GetWritten());
    EXPECT_EQ(m_rig.GetInfo(), LOADED);
    EXPECT_EQ(m_rig.GetCorrection(), "On");
    EXPECT_EQ(MakeFile(), ReadAll(Path("load.ffc")));
  }
}

TEST_F(VignettingFile, AccessesOfALoadAndOfASave)
{
  EXPECT_EQ(RecordOperation(m_rig, [this] { return Save("a.ffc"); }),
            (Log{"get FFCCoefficientsSize", "read FFCValueAll 72"}));
  EXPECT_EQ(RecordOperation(m_rig, [this] { return Load("a.ffc"); }),
            (Log{"get FFCCoefficientsSize", "write FFCValueAll 72", "set FlatFieldCorrection = On"}));
}

TEST_F(VignettingFile, OfAnotherLengthIsRefused)
{
  const QByteArray file = MakeFile();
  for (const QByteArray &bytes : {file.left(71), file + 'x', file.right(71), file.right(24), file.left(1), QByteArray(),
                                  file + file, QByteArray(100000, 'x')}) {
    EXPECT_EQ(Load(bytes), PLUGIN_STATUS_ROI_MISMATCH) << bytes.size();
    ExpectUnchanged();
  }
}

TEST_F(VignettingFile, WhoseRecordSaysAnotherSizeIsRefused)
{
  for (const uint32_t nSize : {0U, 24U, 71U, 73U, SIZE << 8, 0xFFFFFFFFU}) { // the fifth one has its bytes exchanged
    EXPECT_EQ(Load(ToArray(MakeCoefficients(SIZE, nSize))), PLUGIN_STATUS_ROI_MISMATCH) << nSize;
    ExpectUnchanged();
  }
}

TEST_F(VignettingFile, OfCoefficientsWhoseRecordSaysAnotherSizeIsNotSaved)
{
  WriteAll(Path("a.ffc"), "former");
  for (const uint32_t nSize : {0U, 71U, 73U, SIZE << 8}) {
    m_rig.Camera().Correction().SetWritten(MakeCoefficients(SIZE, nSize));
    EXPECT_EQ(Save("a.ffc"), PLUGIN_STATUS_ROI_MISMATCH) << nSize;
    EXPECT_EQ(Save("new.ffc"), PLUGIN_STATUS_ROI_MISMATCH) << nSize;
  }
  EXPECT_EQ(ReadAll(Path("a.ffc")), "former");
  EXPECT_EQ(ListFiles(), QStringList{"a.ffc"});
}

TEST_F(VignettingFile, AFrameCountThatNoEntryHasBecomesOneFrameInTheNextAcquisition)
{
  for (const uint32_t nFrameCount : {3U, 17U, 100U, 0xFFFFFFFFU}) {
    std::vector<uint8_t> listBytes(SIZE - 24, 0xA5);
    for (const uint8_t nByte : MakeRecord({1, 2, nFrameCount, 2, SIZE, 7})) {
      listBytes.push_back(nByte);
    }
    EXPECT_EQ(Load(ToArray(listBytes)), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(m_rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS) << nFrameCount;
    EXPECT_EQ(m_rig.GetFrameCount(), 1) << nFrameCount;
    EXPECT_EQ(m_rig.Process().GetCorrectionInfo().nFrameCount, 1U) << nFrameCount;
  }
}

TEST_F(VignettingFile, AnyOtherWordOfTheRecordIsTakenAsItIs)
{
  std::vector<uint8_t> listBytes(SIZE - 24, 0xA5);
  const Words listWords = {0x01020304, 0x05060708, 0x090A0B0C, 0x0D0E0F10, SIZE, 0xFFFFFFFF};
  for (const uint8_t nByte : MakeRecord(listWords)) {
    listBytes.push_back(nByte);
  }
  EXPECT_EQ(Load(ToArray(listBytes)), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_rig.GetInfo(), listWords);
  EXPECT_EQ(Save("b.ffc"), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(ToArray(listBytes), ReadAll(Path("b.ffc")));
}

TEST_F(VignettingFile, HasTheLengthThatTheCameraHasNow)
{
  m_rig.Camera().Integer("Width").Poke(320);
  EXPECT_EQ(Load(MakeFile()), PLUGIN_STATUS_ROI_MISMATCH);
  EXPECT_EQ(Load(ToArray(MakeCoefficients(88, 88))), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(Save("a.ffc"), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(ReadAll(Path("a.ffc")).size(), 88);
}

TEST_F(VignettingFile, ForARegisterOfAnotherLengthIsRefused)
{
  WriteAll(Path("a.ffc"), "former");
  for (const int64_t nLength : {71, 73, 0}) {
    m_rig.Camera().Device().Find<CSoftwareRegister>("FFCValueAll")->Length(nLength);
    EXPECT_EQ(Load(MakeFile()), PLUGIN_STATUS_ROI_MISMATCH) << nLength;
    EXPECT_EQ(Save("a.ffc"), PLUGIN_STATUS_ROI_MISMATCH) << nLength;
    ExpectUnchanged();
    EXPECT_EQ(ReadAll(Path("a.ffc")), "former") << nLength;
  }
}

TEST_F(VignettingFile, WithoutRoomForARecordIsRefused)
{
  for (const int nSize : {1, 23}) {
    m_rig.Camera().Integer("FFCCoefficientsSize").OnRead([nSize] { return nSize; });
    EXPECT_EQ(Load(MakeFile().left(nSize)), PLUGIN_STATUS_ROI_MISMATCH) << nSize;
    EXPECT_EQ(Save("a.ffc"), PLUGIN_STATUS_ROI_MISMATCH) << nSize;
  }
  m_rig.Camera().Integer("FFCCoefficientsSize").OnRead([] { return 0; });
  EXPECT_EQ(Load(QByteArray()), PLUGIN_STATUS_READ_FILE_ERROR); // as long as it has to be, but there is nothing
  EXPECT_EQ(Save("a.ffc"), PLUGIN_STATUS_ROI_MISMATCH);
  ExpectUnchanged();
  EXPECT_EQ(ListFiles(), QStringList{"load.ffc"});
  m_rig.Camera().Integer("FFCCoefficientsSize").OnRead([] { return 24; });
  EXPECT_EQ(Load(ToArray(MakeCoefficients(24, 24))), PLUGIN_STATUS_SUCCESS); // nothing but a record
}

TEST_F(VignettingFile, ForASizeThatNoMemoryHasIsRefused)
{
  for (const int64_t nSize : {int64_t{-1}, INT64_MIN, INT64_MAX, int64_t{1} << 32}) {
    m_rig.Camera().Integer("FFCCoefficientsSize").OnRead([nSize] { return nSize; });
    EXPECT_EQ(Load(MakeFile()), PLUGIN_STATUS_ROI_MISMATCH) << nSize;
    EXPECT_EQ(Save("a.ffc"), PLUGIN_STATUS_OUT_OF_MEMORY) << nSize; // without asking
  }
  EXPECT_EQ(m_chooser.GetQuestions().size(), 4U);
  ExpectUnchanged();
}

TEST_F(VignettingFile, IsAskedForAfterTheSizeWasRead)
{
  std::size_t nQuestionsAtRead = 99;
  m_rig.SetHook([&](const SNodeAccess &stAccess) {
    if (stAccess.strNode == "FFCCoefficientsSize") {
      nQuestionsAtRead = m_chooser.GetQuestions().size();
    }
  });
  EXPECT_EQ(Save("a.ffc"), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(nQuestionsAtRead, 0U);
  EXPECT_EQ(Load("a.ffc"), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(nQuestionsAtRead, 1U);
}

TEST_F(VignettingFile, ThatCannotBeWrittenIsReportedAndTheFormerOneStays)
{
  WriteAll(Path("a.ffc"), "former");
  for (const char *pName : {"a.ffc", "new.ffc"}) {
    const CFullVolume fullVolume(20);
    EXPECT_EQ(Save(pName), PLUGIN_STATUS_WRITE_FILE_ERROR) << pName;
  }
  EXPECT_EQ(ReadAll(Path("a.ffc")), "former");
  EXPECT_EQ(ListFiles(), QStringList{"a.ffc"});
  ExpectUnchanged();
}

TEST_F(VignettingFile, ALoadThatTheCameraRefusesKeepsTheRecord)
{
  for (const char *pName : {"FFCCoefficientsSize", "FFCValueAll"}) {
    m_rig.Refuse(pName);
    EXPECT_EQ(Load(MakeFile()), PLUGIN_STATUS_FEATURE_ERROR) << pName;
    ExpectUnchanged();
  }
  // Once the camera has the coefficients their record is the process's.
  m_rig.Refuse("FlatFieldCorrection");
  EXPECT_EQ(Load(MakeFile()), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_EQ(MakeFile(), GetWritten());
  EXPECT_EQ(m_rig.GetInfo(), LOADED);
}

TEST_F(VignettingFile, ASaveThatTheCameraRefusesLeavesNoFile)
{
  for (const char *pName : {"FFCCoefficientsSize", "FFCValueAll"}) {
    m_rig.Refuse(pName);
    EXPECT_EQ(Save("a.ffc"), PLUGIN_STATUS_FEATURE_ERROR) << pName;
    EXPECT_TRUE(ListFiles().isEmpty()) << pName;
  }
  m_rig.Refuse("FlatFieldCorrection"); // which a save leaves alone
  EXPECT_EQ(Save("a.ffc"), PLUGIN_STATUS_SUCCESS);
}

TEST_F(VignettingFile, WithoutACameraIsNotAskedFor)
{
  CVignettingCorrectionPro_Dev process{CFeatureAccess(nullptr)};
  CScriptedChooser &chooser = InstallChooser(process, Path("a.ffc"));
  EXPECT_EQ(process.LoadFromFile(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.SaveToFile(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_TRUE(chooser.GetQuestions().empty());
  EXPECT_TRUE(ListFiles().isEmpty());
}

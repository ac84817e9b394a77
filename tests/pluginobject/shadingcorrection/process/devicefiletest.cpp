#include <QDir>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/devicerig.h"
#include "tests/pluginobject/shadingcorrection/process/operationlog.h"
#include "tests/pluginobject/shadingcorrection/process/scriptedchooser.h"
#include "tests/support/fullvolume.h"

using ffc::genapi::CSoftwareRegister;
using ffc::genapi::SNodeAccess;
using ffc::pluginobject::CFeatureAccess;
using namespace ffc::test;

namespace {

constexpr int SIZE = 152; // of a camera of 64 x 64
constexpr int BODY_SIZE = 128;

QByteArray ToArray(const std::vector<uint8_t> &listBytes)
{
  return QByteArray(reinterpret_cast<const char *>(listBytes.data()), static_cast<int>(listBytes.size()));
}

// The last 24 bytes with the bytes of each pair exchanged, written down one by one.
QByteArray ExchangeRecord(const QByteArray &bytes)
{
  QByteArray exchanged = bytes.left(bytes.size() - 24);
  const QByteArray record = bytes.right(24);
  for (const int nByte : {1, 0, 3, 2, 5, 4, 7, 6, 9, 8, 11, 10, 13, 12, 15, 14, 17, 16, 19, 18, 21, 20, 23, 22}) {
    exchanged.append(record[nByte]);
  }
  return exchanged;
}

// A file of a camera: a body, and a record that reads 1, 1, 8, 1, 152 and 0x01020304 once exchanged.
QByteArray MakeFile(int nBodySize = BODY_SIZE)
{
  QByteArray bytes;
  for (int i = 0; i < nBodySize; ++i) {
    bytes.append(static_cast<char>(i * 7));
  }
  const unsigned char acRecord[] = {0, 1, 0, 0, 0, 1, 0, 0, 0, 8, 0, 0, 0, 1, 0, 0, 0, SIZE, 0, 0, 3, 4, 1, 2};
  return bytes.append(reinterpret_cast<const char *>(acRecord), sizeof acRecord);
}

const std::vector<uint32_t> FRESH_INFO = {0, 0, 1, 0, SIZE, 200};
const std::vector<uint32_t> FILE_INFO = {1, 1, 8, 1, SIZE, 0x01020304};

class DeviceFile : public CFileTest<CDeviceRig> {
protected:
  int32_t LoadBytes(const QByteArray &bytes)
  {
    WriteAll(Path("load.ffc"), bytes);
    return Load("load.ffc");
  }
  std::string GetCorrection() { return m_rig.Camera().Enumeration("FlatFieldCorrection").PeekSymbolic(); }
  std::vector<uint32_t> GetInfo() { return m_rig.GetInfo(); }
  QByteArray GetWritten() { return ToArray(m_rig.Camera().Correction().GetWritten()); }
  void RefuseWrites(const char *pName)
  {
    m_rig.SetHook([strName = std::string(pName)](const SNodeAccess &stAccess) {
      if (stAccess.strNode == strName && stAccess.eKind != SNodeAccess::EKind::LookUp) {
        throw GenICam::AccessException("refused", __FILE__, __LINE__);
      }
    });
  }
};

} // namespace

TEST_F(DeviceFile, IsTheRegisterAsTheCameraHandsItOut)
{
  EXPECT_EQ(m_rig.Correct(10, 120), PLUGIN_STATUS_SUCCESS);
  m_rig.Camera().Enumeration("FlatFieldCorrection").Select("Off");
  EXPECT_EQ(Save("a.ffc"), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(ToArray(m_rig.Camera().Correction().GetReadBack()), ReadAll(Path("a.ffc")));
  EXPECT_EQ(ExchangeRecord(GetWritten()), ReadAll(Path("a.ffc")));
  EXPECT_EQ(GetCorrection(), "On");
  m_rig.Camera().Correction().SetRecordExchanged(false);
  EXPECT_EQ(Save("a.ffc"), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(GetWritten(), ReadAll(Path("a.ffc")));
}

TEST_F(DeviceFile, SavingLeavesTheRecordOfTheProcess)
{
  m_rig.Camera().Correction().SetWritten(std::vector<uint8_t>(SIZE, 0x55));
  EXPECT_EQ(Save("a.ffc"), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(GetInfo(), FRESH_INFO);
}

TEST_F(DeviceFile, IsWrittenWithItsRecordExchangedAndItsBodyAsItIs)
{
  EXPECT_EQ(LoadBytes(MakeFile()), 0);
  EXPECT_EQ(ExchangeRecord(MakeFile()), GetWritten());
  EXPECT_EQ(MakeFile().left(BODY_SIZE), GetWritten().left(BODY_SIZE));
  EXPECT_EQ(GetInfo(), FILE_INFO);
  EXPECT_EQ(GetCorrection(), "On");
}

TEST_F(DeviceFile, AFrameCountThatNoEntryHasBecomesOneFrameInTheNextAcquisition)
{
  for (const uint32_t nFrameCount : {3U, 17U, 100U, 0xFFFFFFFFU}) {
    QByteArray bytes = MakeFile();
    for (int nByte = 0; nByte < 4; ++nByte) {
      // The bytes of each pair stand exchanged.
      bytes[BODY_SIZE + 8 + (nByte ^ 1)] = static_cast<char>(nFrameCount >> (8 * nByte) & 0xFFU);
    }
    EXPECT_EQ(LoadBytes(bytes), 0);
    EXPECT_EQ(GetInfo()[2], nFrameCount);
    EXPECT_EQ(m_rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS) << nFrameCount;
    EXPECT_EQ(m_rig.GetFrameCount(), 1) << nFrameCount;
    EXPECT_EQ(GetInfo()[2], 1U) << nFrameCount;
  }
}

TEST_F(DeviceFile, LoadedTwiceGivesTheSameRecord)
{
  EXPECT_EQ(LoadBytes(MakeFile()), 0);
  EXPECT_EQ(Load("load.ffc"), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(GetInfo(), FILE_INFO);
  EXPECT_EQ(MakeFile(), ReadAll(Path("load.ffc")));
  EXPECT_EQ(ExchangeRecord(MakeFile()), GetWritten());
}

TEST_F(DeviceFile, OneByteShortOrEmptyIsRefused)
{
  for (const QByteArray &bytes : {MakeFile().left(SIZE - 1), MakeFile().left(24), MakeFile().left(1), QByteArray()}) {
    EXPECT_EQ(LoadBytes(bytes), PLUGIN_STATUS_READ_FILE_ERROR) << bytes.size();
    EXPECT_EQ(GetInfo(), FRESH_INFO) << bytes.size();
    EXPECT_TRUE(GetWritten().isEmpty()) << bytes.size();
    EXPECT_EQ(GetCorrection(), "Off") << bytes.size();
  }
}

TEST_F(DeviceFile, OneByteLongIsLoadedAndTheByteIgnored)
{
  EXPECT_EQ(LoadBytes(MakeFile() + 'x'), 0);
  EXPECT_EQ(ExchangeRecord(MakeFile()), GetWritten());
  EXPECT_EQ(GetInfo(), FILE_INFO);
  EXPECT_EQ(LoadBytes(MakeFile() + QByteArray(100000, 'x')), 0);
  EXPECT_EQ(ExchangeRecord(MakeFile()), GetWritten());
}

TEST_F(DeviceFile, IsLoadedAndSavedWithTwoAccessesAndNoWordToTheHost)
{
  WriteAll(Path("load.ffc"), MakeFile());
  for (const bool bStreaming : {false, true}) {
    m_rig.SetStreaming(bStreaming);
    EXPECT_EQ(RecordOperation(m_rig, [this] { return Load("load.ffc"); }),
              (Log{"write FFCValueAll 152", "set FlatFieldCorrection = On"}));
    EXPECT_EQ(RecordOperation(m_rig, [this] { return Save("save.ffc"); }),
              (Log{"read FFCValueAll 152", "set FlatFieldCorrection = On"}));
    EXPECT_EQ(m_rig.IsStreaming(), bStreaming);
  }
}

TEST_F(DeviceFile, ForARegisterOfAnotherLengthIsRefusedAndRecordAndFileStay)
{
  WriteAll(Path("a.ffc"), "former");
  for (const int64_t nLength : {SIZE - 1, SIZE + 1, 0}) {
    m_rig.Camera().Device().Find<CSoftwareRegister>("FFCValueAll")->Length(nLength);
    EXPECT_EQ(LoadBytes(MakeFile()), PLUGIN_STATUS_ROI_MISMATCH) << nLength;
    EXPECT_EQ(Save("a.ffc"), PLUGIN_STATUS_ROI_MISMATCH) << nLength;
    EXPECT_EQ(Save("new.ffc"), PLUGIN_STATUS_ROI_MISMATCH) << nLength;
    EXPECT_EQ(GetInfo(), FRESH_INFO) << nLength;
    EXPECT_EQ(GetCorrection(), "Off") << nLength;
    EXPECT_EQ(ReadAll(Path("a.ffc")), "former") << nLength;
    EXPECT_FALSE(QFile::exists(Path("new.ffc"))) << nLength;
  }
}

TEST_F(DeviceFile, ARegisterThatCannotBeWrittenKeepsTheRecord)
{
  RefuseWrites("FFCValueAll");
  EXPECT_EQ(LoadBytes(MakeFile()), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_EQ(GetInfo(), FRESH_INFO);
  EXPECT_EQ(GetCorrection(), "Off");
}

TEST_F(DeviceFile, TheRecordIsTakenAsSoonAsTheCameraHasTheCoefficients)
{
  RefuseWrites("FlatFieldCorrection");
  EXPECT_EQ(LoadBytes(MakeFile()), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_EQ(ExchangeRecord(MakeFile()), GetWritten());
  EXPECT_EQ(GetInfo(), FILE_INFO);
}

TEST_F(DeviceFile, ANewFileIsLeftEmptyWhenTheCorrectionCannotBeSwitchedOn)
{
  RefuseWrites("FlatFieldCorrection");
  EXPECT_EQ(Save("new.ffc"), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_TRUE(QFile::exists(Path("new.ffc")));
  EXPECT_TRUE(ReadAll(Path("new.ffc")).isEmpty());
  EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"new.ffc"});
}

TEST_F(DeviceFile, AnExistingFileStaysWhenTheCorrectionCannotBeSwitchedOn)
{
  WriteAll(Path("a.ffc"), "former");
  RefuseWrites("FlatFieldCorrection");
  EXPECT_EQ(Save("a.ffc"), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_EQ(ReadAll(Path("a.ffc")), "former");
  EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"a.ffc"});
}

TEST_F(DeviceFile, AWriteErrorIsIgnoredAndTheFormerFileStays)
{
  WriteAll(Path("a.ffc"), "former");
  int32_t nStatus = -1;
  {
    const CFullVolume fullVolume(100);
    nStatus = Save("a.ffc");
  }
  EXPECT_EQ(nStatus, PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(GetCorrection(), "On");
  EXPECT_EQ(ReadAll(Path("a.ffc")), "former");
}

TEST_F(DeviceFile, ARegisterWithoutRoomForARecordIsNotLoaded)
{
  for (const int64_t nSize : {0, 1, 23}) {
    m_rig.Camera().Integer("FFCCoefficientsSize").OnRead([nSize] { return nSize; });
    EXPECT_EQ(m_rig.Process().InitProcess(), PLUGIN_STATUS_SUCCESS) << nSize;
    EXPECT_EQ(LoadBytes(MakeFile()), nSize == 0 ? PLUGIN_STATUS_READ_FILE_ERROR : -3) << nSize;
    EXPECT_TRUE(GetWritten().isEmpty()) << nSize;
    EXPECT_EQ(GetCorrection(), "Off") << nSize;
  }
}

TEST_F(DeviceFile, ARecordAloneIsLoaded)
{
  m_rig.Camera().Integer("FFCCoefficientsSize").OnRead([] { return 24; });
  EXPECT_EQ(m_rig.Process().InitProcess(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(LoadBytes(MakeFile(0)), 0);
  EXPECT_EQ(GetInfo(), FILE_INFO);
  EXPECT_EQ(ExchangeRecord(MakeFile(0)), GetWritten());
}

TEST_F(DeviceFile, AnExecutionAfterALoadWritesTheRealSizeWhateverTheLoadedRecordSays)
{
  for (const char cSize : {'\x00', '\x01', '\x7F'}) {
    QByteArray bytes = MakeFile();
    bytes[BODY_SIZE + 16] = cSize; // bytes 16 to 19 of the record, exchanged
    bytes[BODY_SIZE + 19] = cSize;
    EXPECT_EQ(m_rig.AcquireBright(120), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(LoadBytes(bytes), 0);
    const uint32_t nByte = static_cast<uint8_t>(cSize);
    EXPECT_EQ(SIZE + (nByte << 8) + (nByte << 16), m_rig.Process().GetCorrectionInfo().nCoefficientsSize);
    EXPECT_EQ(m_rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(GetWritten().size(), SIZE);
    EXPECT_EQ(static_cast<uint32_t>(SIZE), m_rig.Process().GetCorrectionInfo().nCoefficientsSize);
  }
}

TEST_F(DeviceFile, WithoutACameraTheFileIsAskedForAndOpenedFirst)
{
  WriteAll(Path("a.ffc"), MakeFile());
  CShadingCorrectionPro_Dev process{CFeatureAccess(nullptr)};
  CScriptedChooser &chooser = InstallChooser(process);
  EXPECT_EQ(process.LoadFromFile(), PLUGIN_STATUS_SILENT);
  chooser.Choose(Path("missing.ffc"));
  EXPECT_EQ(process.LoadFromFile(), PLUGIN_STATUS_OPEN_FILE_ERROR);
  chooser.Choose(Path("a.ffc"));
  EXPECT_EQ(process.LoadFromFile(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(chooser.GetQuestions().size(), 3U);
  EXPECT_EQ(process.SaveToFile(), PLUGIN_STATUS_INVALID_PARAM); // without asking
  EXPECT_EQ(chooser.GetQuestions().size(), 3U);
  EXPECT_EQ(MakeFile(), ReadAll(Path("a.ffc")));
}

TEST_F(DeviceFile, OfAnyBytesIsLoadedAndSavedBack)
{
  for (const char cFill : {'\x00', '\xFF', '\xA5'}) {
    EXPECT_EQ(LoadBytes(QByteArray(SIZE, cFill)), 0);
    EXPECT_EQ(Save("b.ffc"), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(QByteArray(SIZE, cFill), ReadAll(Path("b.ffc")));
  }
}

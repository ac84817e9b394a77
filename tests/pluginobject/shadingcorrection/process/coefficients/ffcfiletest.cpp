#include <filesystem>
#include <numeric>
#include <vector>

#ifndef _WIN32
#include <unistd.h>
#endif
#ifdef __linux__
#include <fcntl.h>
#include <sys/mman.h>
#endif

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextCodec>

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/process/coefficients/ffcfile.h"
#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/failingnew.h"
#include "tests/support/fullvolume.h"

using namespace ffc::process;
using namespace ffc::test;

namespace {

std::vector<uint8_t> MakeBytes(std::size_t nSize, uint8_t nFirst)
{
  std::vector<uint8_t> listBytes(nSize);
  std::iota(listBytes.begin(), listBytes.end(), nFirst);
  return listBytes;
}

int32_t Write(const QString &strFile, const std::vector<uint8_t> &listBytes)
{
  return WriteCoefficientFile(strFile, listBytes.data(), listBytes.size());
}

// Opens and reads a file. \return the first failing status
int32_t Read(const QString &strFile, uint64_t nSize, std::vector<uint8_t> &listBytes)
{
  QFile file(strFile);
  int32_t nStatus = OpenCoefficientFile(file);
  if (nStatus != 0) {
    return nStatus;
  }
  CFrameBuffer data;
  nStatus = ReadCoefficientFile(file, nSize, data);
  if (nStatus == 0) {
    listBytes.assign(data.GetData(), data.GetData() + data.GetSize());
  }
  return nStatus;
}

class CLocaleCodec {
public:
  explicit CLocaleCodec(const char *pName) : m_pFormer(QTextCodec::codecForLocale())
  {
    QTextCodec::setCodecForLocale(QTextCodec::codecForName(pName));
  }
  ~CLocaleCodec() { QTextCodec::setCodecForLocale(m_pFormer); }

private:
  QTextCodec *m_pFormer;
};

class FfcFile : public testing::Test {
protected:
  QString Path(const char *pName) const { return m_folder.filePath(QString::fromUtf8(pName)); }
  // Names of all files in the folder, temporary ones too.
  QStringList List() const { return QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden); }

  QTemporaryDir m_folder;
  std::vector<uint8_t> m_listRead;
};

} // namespace

TEST_F(FfcFile, IsReadAsItWasWritten)
{
  for (const std::size_t nSize : {1U, 24U, 4096U, 100000U}) {
    EXPECT_EQ(Write(Path("a.ffc"), MakeBytes(nSize, 3)), 0);
    EXPECT_EQ(Read(Path("a.ffc"), nSize, m_listRead), 0);
    EXPECT_EQ(MakeBytes(nSize, 3), m_listRead);
    EXPECT_EQ(List(), QStringList{"a.ffc"});
  }
}

TEST_F(FfcFile, ThatIsMissingCannotBeOpened)
{
  EXPECT_EQ(Read(Path("missing.ffc"), 4, m_listRead), PLUGIN_STATUS_OPEN_FILE_ERROR);
  EXPECT_TRUE(List().isEmpty());
}

TEST_F(FfcFile, ThatIsAFolderCannotBeOpened)
{
  EXPECT_EQ(Read(m_folder.path(), 4, m_listRead), PLUGIN_STATUS_OPEN_FILE_ERROR);
  EXPECT_EQ(Write(m_folder.path(), MakeBytes(4, 1)), PLUGIN_STATUS_OPEN_FILE_ERROR);
}

TEST_F(FfcFile, InAMissingFolderCannotBeWritten)
{
  EXPECT_EQ(Write(Path("missing/a.ffc"), MakeBytes(4, 1)), PLUGIN_STATUS_OPEN_FILE_ERROR);
}

TEST_F(FfcFile, ThatIsEmptyCannotBeRead)
{
  EXPECT_EQ(Write(Path("empty.ffc"), {}), 0);
  EXPECT_EQ(Read(Path("empty.ffc"), 4, m_listRead), PLUGIN_STATUS_READ_FILE_ERROR);
  EXPECT_EQ(Read(Path("empty.ffc"), 0, m_listRead), PLUGIN_STATUS_READ_FILE_ERROR);
}

TEST_F(FfcFile, ThatIsShorterCannotBeRead)
{
  EXPECT_EQ(Write(Path("a.ffc"), MakeBytes(99, 1)), 0);
  EXPECT_EQ(Read(Path("a.ffc"), 100, m_listRead), PLUGIN_STATUS_READ_FILE_ERROR);
}

TEST_F(FfcFile, OfAHugeSizeOrWithoutMemoryIsAStatus)
{
  EXPECT_EQ(Write(Path("a.ffc"), MakeBytes(8, 1)), 0);
  EXPECT_EQ(Read(Path("a.ffc"), uint64_t{1} << 62, m_listRead), -2);
  const CFailingNew failing;
  EXPECT_EQ(Read(Path("a.ffc"), 8, m_listRead), -2);
}

TEST_F(FfcFile, ReplacesAnExistingOne)
{
  EXPECT_EQ(Write(Path("a.ffc"), MakeBytes(1000, 1)), 0);
  EXPECT_EQ(Write(Path("a.ffc"), MakeBytes(10, 77)), 0);
  EXPECT_EQ(QFileInfo(Path("a.ffc")).size(), 10);
  EXPECT_EQ(Read(Path("a.ffc"), 10, m_listRead), 0);
  EXPECT_EQ(MakeBytes(10, 77), m_listRead);
}

TEST_F(FfcFile, StaysAsItWasWhenTheVolumeIsFull)
{
  // A size that is written at once, and one that waits in a buffer until the file is closed.
  for (const std::size_t nSize : {1000000U, 3000U}) {
    ASSERT_EQ(Write(Path("a.ffc"), MakeBytes(500, 9)), 0);
    int32_t nStatus = 0;
    {
      const CFullVolume fullVolume(1000);
      nStatus = Write(Path("a.ffc"), MakeBytes(nSize, 1));
    }
    EXPECT_EQ(nStatus, PLUGIN_STATUS_WRITE_FILE_ERROR) << nSize;
    EXPECT_EQ(QFileInfo(Path("a.ffc")).size(), 500) << nSize;
    EXPECT_EQ(Read(Path("a.ffc"), 500, m_listRead), 0);
    EXPECT_EQ(MakeBytes(500, 9), m_listRead) << nSize;
    EXPECT_EQ(List(), QStringList{"a.ffc"}) << nSize;
  }
}

TEST_F(FfcFile, IsNotMadeWhenTheVolumeIsFull)
{
  for (const std::size_t nSize : {1000000U, 3000U}) {
    int32_t nStatus = 0;
    {
      const CFullVolume fullVolume(1000);
      nStatus = Write(Path("new.ffc"), MakeBytes(nSize, 1));
    }
    EXPECT_EQ(nStatus, PLUGIN_STATUS_WRITE_FILE_ERROR) << nSize;
    EXPECT_TRUE(List().isEmpty()) << nSize;
  }
}

TEST_F(FfcFile, ThatIsWriteProtectedCannotBeWritten)
{
  const CPlainUser user(m_folder.path().toStdString());
  if (!user.IsPlain()) {
    GTEST_SKIP() << "this user may write everywhere";
  }
  ASSERT_EQ(Write(Path("a.ffc"), MakeBytes(500, 9)), 0);
  QFile::setPermissions(Path("a.ffc"), QFileDevice::ReadOwner);
  EXPECT_EQ(Write(Path("a.ffc"), MakeBytes(10, 1)), PLUGIN_STATUS_OPEN_FILE_ERROR);
  EXPECT_EQ(QFileInfo(Path("a.ffc")).size(), 500);
  // Nor in its place.
  std::filesystem::create_hard_link(Path("a.ffc").toStdString(), Path("b.ffc").toStdString());
  EXPECT_EQ(Write(Path("a.ffc"), MakeBytes(10, 1)), PLUGIN_STATUS_OPEN_FILE_ERROR);
  EXPECT_EQ(QFileInfo(Path("a.ffc")).size(), 500);
}

TEST_F(FfcFile, InAWriteProtectedFolderIsWrittenInItsPlace)
{
  const CPlainUser user(m_folder.path().toStdString());
  if (!user.IsPlain()) {
    GTEST_SKIP() << "this user may write everywhere";
  }
  ASSERT_EQ(Write(Path("a.ffc"), MakeBytes(500, 9)), 0);
  QFile::setPermissions(m_folder.path(), QFileDevice::ReadOwner | QFileDevice::ExeOwner);
  EXPECT_EQ(Write(Path("new.ffc"), MakeBytes(10, 1)), PLUGIN_STATUS_OPEN_FILE_ERROR);
  for (const std::size_t nSize : {600U, 10U}) {
    EXPECT_EQ(Write(Path("a.ffc"), MakeBytes(nSize, 1)), 0);
    EXPECT_EQ(static_cast<qint64>(nSize), QFileInfo(Path("a.ffc")).size());
    EXPECT_EQ(Read(Path("a.ffc"), nSize, m_listRead), 0);
    EXPECT_EQ(MakeBytes(nSize, 1), m_listRead);
  }
  QFile::setPermissions(Path("a.ffc"), QFileDevice::ReadOwner);
  EXPECT_EQ(Write(Path("a.ffc"), MakeBytes(10, 2)), PLUGIN_STATUS_OPEN_FILE_ERROR);
  EXPECT_EQ(List(), QStringList{"a.ffc"});
  QFile::setPermissions(m_folder.path(), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
}

TEST_F(FfcFile, WithHardLinksKeepsThem)
{
  ASSERT_EQ(Write(Path("a.ffc"), MakeBytes(500, 9)), 0);
  std::filesystem::create_hard_link(Path("a.ffc").toStdString(), Path("b.ffc").toStdString());
  for (const std::size_t nSize : {600U, 10U}) {
    EXPECT_EQ(Write(Path("a.ffc"), MakeBytes(nSize, 1)), 0);
    EXPECT_EQ(Read(Path("b.ffc"), nSize, m_listRead), 0);
    EXPECT_EQ(MakeBytes(nSize, 1), m_listRead);
    EXPECT_EQ(static_cast<qint64>(nSize), QFileInfo(Path("b.ffc")).size());
  }
  EXPECT_EQ(Write(Path("a.ffc"), {}), 0);
  EXPECT_EQ(QFileInfo(Path("b.ffc")).size(), 0);
  EXPECT_EQ(Write(Path("a.ffc"), MakeBytes(20, 4)), 0);
  EXPECT_EQ(Read(Path("b.ffc"), 20, m_listRead), 0);
  EXPECT_EQ(m_listRead, MakeBytes(20, 4));
  EXPECT_EQ(List(), (QStringList{"a.ffc", "b.ffc"}));
}

TEST_F(FfcFile, WithHardLinksStaysAsItWasWhenTheVolumeIsFullOrMemoryEnds)
{
  ASSERT_EQ(Write(Path("a.ffc"), MakeBytes(500, 9)), 0);
  std::filesystem::create_hard_link(Path("a.ffc").toStdString(), Path("b.ffc").toStdString());
  int32_t nStatus = 0;
  {
    const CFullVolume fullVolume(1000);
    nStatus = Write(Path("a.ffc"), MakeBytes(3000, 1));
  }
  EXPECT_EQ(nStatus, PLUGIN_STATUS_WRITE_FILE_ERROR);
  CCoefficientFileWriter writer(Path("a.ffc"));
  ASSERT_EQ(writer.Open(), 0);
  const std::vector<uint8_t> listBytes = MakeBytes(3000, 1);
  {
    const CFailingNew failing;
    nStatus = writer.Write(listBytes.data(), listBytes.size());
  }
  EXPECT_EQ(nStatus, PLUGIN_STATUS_OUT_OF_MEMORY);
  CCoefficientFileWriter empty(Path("a.ffc"));
  ASSERT_EQ(empty.Open(), 0);
  empty.LeaveEmpty();
  for (const char *pName : {"a.ffc", "b.ffc"}) {
    EXPECT_EQ(QFileInfo(Path(pName)).size(), 500);
    EXPECT_EQ(Read(Path(pName), 500, m_listRead), 0);
    EXPECT_EQ(MakeBytes(500, 9), m_listRead);
  }
}

#ifndef _WIN32
// On Windows the toolkit and the C++ library take their memory elsewhere.
TEST_F(FfcFile, WithoutMemoryForItsNameIsNotMade)
{
  CCoefficientFileWriter writer(Path("a.ffc"));
  int32_t nStatus = PLUGIN_STATUS_SUCCESS;
  {
    const CFailingThrowingNew failing;
    nStatus = writer.Open();
  }
  EXPECT_EQ(nStatus, PLUGIN_STATUS_OUT_OF_MEMORY);
  EXPECT_TRUE(List().isEmpty());
}

TEST_F(FfcFile, OfSomebodyElseStaysHis)
{
  constexpr unsigned OTHER = 65534;
  ASSERT_EQ(Write(Path("a.ffc"), MakeBytes(500, 9)), 0);
  if (chown(Path("a.ffc").toLocal8Bit().constData(), OTHER, OTHER) != 0) {
    GTEST_SKIP() << "this user cannot give files away";
  }
  EXPECT_EQ(Write(Path("a.ffc"), MakeBytes(10, 1)), 0);
  EXPECT_EQ(QFileInfo(Path("a.ffc")).ownerId(), OTHER);
  EXPECT_EQ(QFileInfo(Path("a.ffc")).groupId(), OTHER);
  EXPECT_EQ(Read(Path("a.ffc"), 10, m_listRead), 0);
}
#endif

#ifdef __linux__
TEST_F(FfcFile, ThatCannotBeCutStaysAsItWas)
{
  const int nFile = memfd_create("sealed", MFD_ALLOW_SEALING);
  ASSERT_GE(nFile, 0);
  const std::vector<uint8_t> listBefore = MakeBytes(500, 9);
  ASSERT_EQ(write(nFile, listBefore.data(), listBefore.size()), 500);
  ASSERT_EQ(fcntl(nFile, F_ADD_SEALS, F_SEAL_SHRINK), 0);
  const QString strFile = QStringLiteral("/proc/self/fd/%1").arg(nFile);
  EXPECT_EQ(Write(strFile, MakeBytes(10, 1)), PLUGIN_STATUS_WRITE_FILE_ERROR);
  EXPECT_EQ(Read(strFile, 500, m_listRead), 0);
  EXPECT_EQ(m_listRead, listBefore);
  EXPECT_EQ(Write(strFile, MakeBytes(600, 1)), 0);
  EXPECT_EQ(Read(strFile, 600, m_listRead), 0);
  EXPECT_EQ(m_listRead, MakeBytes(600, 1));
  close(nFile);
}
#endif

TEST_F(FfcFile, ThatIsAPipeIsNotReplacedByAFile)
{
  if (QProcess::execute(QStringLiteral("mkfifo"), {Path("pipe.ffc")}) != 0) {
    GTEST_SKIP() << "this system has no named pipes";
  }
  EXPECT_EQ(Write(Path("pipe.ffc"), MakeBytes(10, 1)), PLUGIN_STATUS_OPEN_FILE_ERROR);
  EXPECT_FALSE(QFileInfo(Path("pipe.ffc")).isFile());
}

TEST_F(FfcFile, ThatCannotBeReadCannotBeOpened)
{
  const CPlainUser user(m_folder.path().toStdString());
  if (!user.IsPlain()) {
    GTEST_SKIP() << "this user may read everywhere";
  }
  ASSERT_EQ(Write(Path("a.ffc"), MakeBytes(500, 9)), 0);
  QFile::setPermissions(Path("a.ffc"), QFileDevice::WriteOwner);
  EXPECT_EQ(Read(Path("a.ffc"), 500, m_listRead), PLUGIN_STATUS_OPEN_FILE_ERROR);
}

TEST_F(FfcFile, MayHaveAChineseNameAlsoWhenTheLocalTextIsGB2312)
{
  for (const char *pCodec : {"UTF-8", "GB2312"}) {
    const CLocaleCodec codec(pCodec);
    EXPECT_EQ(Write(Path("平场校正.ffc"), MakeBytes(100, 5)), 0) << pCodec;
    EXPECT_EQ(Read(Path("平场校正.ffc"), 100, m_listRead), 0) << pCodec;
    EXPECT_EQ(MakeBytes(100, 5), m_listRead) << pCodec;
    EXPECT_EQ(List(), QStringList{QString::fromUtf8("平场校正.ffc")}) << pCodec;
    EXPECT_TRUE(QFile::remove(Path("平场校正.ffc"))) << pCodec;
  }
}

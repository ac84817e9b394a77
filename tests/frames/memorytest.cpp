// Files without memory: each allocation fails once, whoever makes it.
#include <algorithm>
#include <iterator>
#include <new>
#include <optional>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "frames/fileio.h"
#include "tests/frames/framefiles.h"
#include "tests/support/failingallocator.h"

using namespace ffc::frames;
using namespace ffc::test;

namespace {

thread_local uint64_t t_nLeft = 0; // allocations to the one that fails; 0: none will

/// Runs fnTry with the first allocation failing, then with the second and so on, until there are no more.
/// \param fnTry is given a function that runs another one so; what that throws for want of memory goes no further
template <class TTry>
uint64_t ForEachAllocation(const TTry &fnTry)
{
  uint64_t nNumber = 0;
  bool bFailed = true;
  while (bFailed) {
    ++nNumber;
    bFailed = false;
    SCOPED_TRACE(nNumber);
    fnTry([&](const auto &fnWithoutMemory) {
      t_nLeft = nNumber;
      try {
        fnWithoutMemory();
      } catch (const std::bad_alloc &) {
        // A status further up.
      }
      bFailed = t_nLeft == 0;
      t_nLeft = 0;
    });
  }
  return nNumber - 1;
}

std::vector<const IFileKind *> ListKindsBut(const QStringList &listNames)
{
  std::vector<const IFileKind *> listKinds;
  std::copy_if(ListFileKinds().begin(), ListFileKinds().end(), std::back_inserter(listKinds),
               [&](const IFileKind *pKind) { return !listNames.contains(pKind->GetName()); });
  return listKinds;
}

QByteArray ReadAll(const QString &strPath)
{
  QFile file(strPath);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << strPath.toStdString();
  return file.readAll();
}

} // namespace

bool ffc::test::IsAllocationToFail()
{
  return t_nLeft > 0 && --t_nLeft == 0;
}

TEST(FramesWithoutMemory, AFolderIsNeverTakenForAnEmptyOne)
{
  const QTemporaryDir dir;
  for (const char *pName : {"a.png", "b.png"}) {
    ASSERT_TRUE(QFile(dir.filePath(pName)).open(QIODevice::WriteOnly));
  }
  const uint64_t nTried = ForEachAllocation([&](const auto &fnRun) {
    std::optional<QStringList> listNames;
    fnRun([&] { listNames = ListFiles(QDir(dir.path())); });
    EXPECT_EQ(listNames.value_or(QStringList{"a.png", "b.png"}), (QStringList{"a.png", "b.png"}));
  });
  EXPECT_GT(nTried, 5U) << "else they were not seen";
  const QTemporaryDir empty;
  ForEachAllocation([&](const auto &fnRun) {
    std::optional<QStringList> listNames;
    fnRun([&] { listNames = ListFiles(QDir(empty.path())); });
    EXPECT_EQ(listNames.value_or(QStringList()), QStringList());
  });
}

TEST(FramesWithoutMemory, AFileIsWrittenWholeOrNotAtAll)
{
  // The toolkit keeps its lock on its picture formats when it finds no memory for their list: it waits for ever then.
  for (const IFileKind *pKind : ListKindsBut({"PNG"})) {
    SCOPED_TRACE(pKind->GetName().toStdString());
    const QTemporaryDir dir;
    const QString strPath = dir.filePath("frame." + pKind->GetSuffixes().front());
    SFrameInfo stInfo;
    stInfo.stLayout = {8, 4, 2};
    stInfo.mapTexts = {{TEXT_DESCRIPTION, QString(3000, 'x')}, {"Observer", "somebody"}};
    const Frames listFrames = MakeFrames(stInfo.stLayout, 1, 12);
    ASSERT_EQ(WriteFile(*pKind, strPath, stInfo, listFrames).GetError(), "");
    const QByteArray byteExpected = ReadAll(strPath);
    const uint64_t nTried = ForEachAllocation([&](const auto &fnRun) {
      ASSERT_TRUE(QFile::remove(strPath) || !QFile::exists(strPath));
      std::optional<ffc::Result<>> written;
      fnRun([&] { written = WriteFile(*pKind, strPath, stInfo, listFrames); });
      if (written && *written) {
        EXPECT_EQ(ReadAll(strPath), byteExpected);
      } else {
        EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList());
      }
    });
    EXPECT_GT(nTried, 5U) << "else they were not seen";
  }
}

TEST(FramesWithoutMemory, AFileIsReadAsItIsOrNotAtAll)
{
  // The TIFF library goes on with a list of tags that it did not get.
  for (const IFileKind *pKind : ListKindsBut({"PNG", "TIFF"})) {
    SCOPED_TRACE(pKind->GetName().toStdString());
    const QTemporaryDir dir;
    const QString strPath = dir.filePath("frame." + pKind->GetSuffixes().front());
    SFrameInfo stInfo;
    stInfo.stLayout = {8, 4, 1};
    stInfo.mapTexts = {{TEXT_DESCRIPTION, QString(300, 'x')}, {TEXT_CORRECTION, "with these"}};
    const Frames listFrames = MakeFrames(stInfo.stLayout, 1, 8);
    ASSERT_EQ(WriteFile(*pKind, strPath, stInfo, listFrames).GetError(), "");
    std::string strError;
    SFrameInfo stExpected;
    ASSERT_EQ(ReadFile(*pKind, strPath, &strError, &stExpected), listFrames);
    const uint64_t nTried = ForEachAllocation([&](const auto &fnRun) {
      std::optional<Frames> listRead;
      SFrameInfo stRead;
      fnRun([&] { listRead = ReadFile(*pKind, strPath, &strError, &stRead); });
      if (listRead && strError.empty()) {
        EXPECT_EQ(*listRead, listFrames);
        EXPECT_EQ(stRead.mapTexts, stExpected.mapTexts) << "else corrected frames seem not to be";
        EXPECT_EQ(stRead.stFits.byteCards, stExpected.stFits.byteCards);
      }
    });
    EXPECT_GT(nTried, 5U) << "else they were not seen";
  }
}

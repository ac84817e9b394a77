#include "frames/wholefile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "tests/support/fullvolume.h"

using namespace ffc::frames;
using namespace ffc::test;

TEST(WholeFile, StaysAsItWasWhenTheVolumeIsFull)
{
  // Small enough to wait in a buffer until the file is closed.
  const QByteArray byteFormer(500, 'a');
  const QTemporaryDir dir;
  const QString strPath = dir.filePath("report.json");
  ASSERT_EQ(SaveWholeFile(strPath, byteFormer).GetError(), "");
  QFile file(strPath);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  for (const int nSize : {5000, 100000}) { // the second is larger than any buffer
    ffc::Result<> result;
    {
      const CFullVolume fullVolume(0);
      result = SaveWholeFile(strPath, QByteArray(nSize, 'b'));
    }
    EXPECT_FALSE(result.IsOk()) << nSize;
    ASSERT_TRUE(file.seek(0));
    EXPECT_EQ(file.readAll(), byteFormer);
  }
}

TEST(WholeFile, APictureStaysAsItWasWhenTheVolumeIsFull)
{
  const QTemporaryDir dir;
  const QString strPath = dir.filePath("picture.png");
  QImage imgPicture(8, 8, QImage::Format_Grayscale8);
  imgPicture.fill(7);
  ASSERT_EQ(SaveWholePicture(strPath, imgPicture).GetError(), "");
  ffc::Result<> result;
  {
    const CFullVolume fullVolume(20);
    result = SaveWholePicture(strPath, imgPicture);
  }
  EXPECT_NE(result.GetError().find("picture.png: "), std::string::npos) << result.GetError();
  EXPECT_EQ(QImage(strPath), imgPicture);
}

TEST(WholeFile, AFolderThatIsNotThereIsNamedAndNothingIsLeft)
{
  const QTemporaryDir dir;
  const QString strPath = dir.filePath("missing/report.json");
  const std::string strError = SaveWholeFile(strPath, "x").GetError();
  EXPECT_NE(strError.find(QDir::toNativeSeparators("missing/report.json").toStdString() + ": "), std::string::npos)
    << strError << " names the file before the reason";
  EXPECT_EQ(SaveWholePicture(strPath, QImage(2, 2, QImage::Format_Grayscale8)).GetError(), strError);
  EXPECT_FALSE(QFile::exists(strPath));
}

TEST(WholeFile, AFolderIsNotReplaced)
{
  const QTemporaryDir dir;
  EXPECT_FALSE(SaveWholeFile(dir.path(), "x").IsOk());
  EXPECT_TRUE(QDir(dir.path()).exists());
}

TEST(WholeFile, APictureThatCannotBeWrittenLeavesTheOldFile)
{
  const QTemporaryDir dir;
  const QString strPath = dir.filePath("picture.png");
  ASSERT_EQ(SaveWholeFile(strPath, "old").GetError(), "");
  EXPECT_FALSE(SaveWholePicture(strPath, QImage()).IsOk());
  QFile file(strPath);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_EQ(file.readAll(), QByteArray("old"));
}

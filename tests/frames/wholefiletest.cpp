#include "frames/wholefile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "tests/support/fullvolume.h"

TEST(WholeFile, StaysAsItWasWhenTheVolumeIsFull)
{
  // Small enough to wait in a buffer until the file is closed.
  const QByteArray byteFormer(500, 'a');
  const QTemporaryDir dir;
  const QString strPath = dir.filePath("report.json");
  ASSERT_EQ(SaveWholeFile(strPath, byteFormer).toStdString(), "");
  QString strError;
  {
    const CFullVolume fullVolume(1000);
    strError = SaveWholeFile(strPath, QByteArray(5000, 'b'));
  }
  EXPECT_FALSE(strError.isEmpty());
  QFile file(strPath);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_EQ(file.readAll(), byteFormer);
}

TEST(WholeFile, APictureStaysAsItWasWhenTheVolumeIsFull)
{
  const QTemporaryDir dir;
  const QString strPath = dir.filePath("picture.png");
  QImage imgPicture(8, 8, QImage::Format_Grayscale8);
  imgPicture.fill(7);
  ASSERT_EQ(SaveWholePicture(strPath, imgPicture).toStdString(), "");
  QString strError;
  {
    const CFullVolume fullVolume(20);
    strError = SaveWholePicture(strPath, imgPicture);
  }
  EXPECT_FALSE(strError.isEmpty());
  EXPECT_EQ(QImage(strPath), imgPicture);
}

TEST(WholeFile, AFolderThatIsNotThereIsNamedAndNothingIsLeft)
{
  const QTemporaryDir dir;
  const QString strPath = dir.filePath("missing/report.json");
  EXPECT_TRUE(SaveWholeFile(strPath, "x").contains(QDir::toNativeSeparators("missing/report.json")));
  EXPECT_TRUE(SaveWholePicture(strPath, QImage(2, 2, QImage::Format_Grayscale8)).contains("missing"));
  EXPECT_FALSE(QFile::exists(strPath));
}

TEST(WholeFile, APictureThatCannotBeWrittenLeavesTheOldFile)
{
  const QTemporaryDir dir;
  const QString strPath = dir.filePath("picture.png");
  ASSERT_EQ(SaveWholeFile(strPath, "old").toStdString(), "");
  EXPECT_NE(SaveWholePicture(strPath, QImage()).toStdString(), "");
  QFile file(strPath);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_EQ(file.readAll(), QByteArray("old"));
}

#include "frames/ifilekind.h"

#include <cstring>
#include <numeric>

#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace ffc::frames;

namespace {

/// Writes a frame and reads it back.
std::vector<uint8_t> WriteAndRead(const SLayout &stLayout, const std::vector<uint8_t> &listFrame)
{
  const QTemporaryDir dir;
  const QString strPath = dir.filePath("frame.png");
  const IFileKind &kind = *FindFileKind(strPath);
  EXPECT_EQ(kind.Write(strPath, stLayout, listFrame.data()).GetError(), "");
  const ffc::Result<SContent> content = kind.Read(strPath);
  EXPECT_EQ(content.GetError(), "");
  if (!content || content.GetValue().listFrames.size() != 1) {
    return {};
  }
  EXPECT_EQ(content.GetValue().stLayout, stLayout);
  return content.GetValue().listFrames[0];
}

} // namespace

TEST(FileKind, IsFoundByTheEndingOfTheName)
{
  EXPECT_NE(FindFileKind("/some/dark_001.png"), nullptr);
  EXPECT_EQ(FindFileKind("/some/DARK_001.PNG"), FindFileKind("dark_001.png"));
  EXPECT_EQ(FindFileKind("/some/dark_001.jpeg"), nullptr);
  EXPECT_EQ(FindFileKind("/some.png/dark"), nullptr);
}

TEST(FileKind, EveryKindIsFoundByItsOwnEndings)
{
  for (const IFileKind *pKind : ListFileKinds()) {
    EXPECT_FALSE(pKind->GetSuffixes().isEmpty());
    for (const QString &strSuffix : pKind->GetSuffixes()) {
      EXPECT_EQ(FindFileKind("frame." + strSuffix), pKind) << strSuffix.toStdString();
    }
  }
}

TEST(PngFile, AFrameOfEveryDeepValueComesBack)
{
  std::vector<uint16_t> listSamples(65536);
  std::iota(listSamples.begin(), listSamples.end(), uint16_t{0});
  std::vector<uint8_t> listFrame(2 * listSamples.size());
  std::memcpy(listFrame.data(), listSamples.data(), listFrame.size());
  EXPECT_EQ(WriteAndRead({256, 256, 2}, listFrame), listFrame);
}

TEST(PngFile, AnEightBitFrameOfOddWidthComesBackWithoutPadding)
{
  const std::vector<uint8_t> listFrame{0, 255, 3, 4, 128, 6};
  EXPECT_EQ(WriteAndRead({3, 2, 1}, listFrame), listFrame);
}

TEST(PngFile, AFileThatIsNoPictureIsRefused)
{
  const QTemporaryDir dir;
  const QString strPath = dir.filePath("frame.png");
  QFile file(strPath);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("no picture");
  file.close();
  EXPECT_EQ(FindFileKind(strPath)->Read(strPath).GetError().find("cannot be read"), 0U);
}

TEST(PngFile, AColourPictureIsNoFrame)
{
  const QTemporaryDir dir;
  const QString strPath = dir.filePath("frame.png");
  QImage image(2, 2, QImage::Format_RGB32);
  image.fill(Qt::red);
  ASSERT_TRUE(image.save(strPath));
  EXPECT_EQ(FindFileKind(strPath)->Read(strPath).GetError(), "is not a grey picture of 8 or 16 bit.");
}

TEST(PngFile, AFrameWithoutPixelsIsNotWritten)
{
  const QTemporaryDir dir;
  const QString strPath = dir.filePath("frame.png");
  EXPECT_FALSE(FindFileKind(strPath)->Write(strPath, {}, nullptr).IsOk());
  EXPECT_FALSE(QFile::exists(strPath));
}

#include "host/recording/recordingfiles.h"

#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace ffc::host;

namespace {

/// Frames of 4 x 2 pixels, Mono8.
class RecordingFiles : public testing::Test {
protected:
  static SStreamFormat MakeFormat() { return {ffc::genapi::FindSensorFormat("Mono8"), 4, 2}; }

  static SRecordedFrame MakeFrame(std::size_t nSize)
  {
    SRecordedFrame stFrame;
    stFrame.stCopy.listBytes.assign(nSize, 7);
    stFrame.stCopy.nPixelFormat = MakeFormat().pFormat->nCode;
    return stFrame;
  }

  QTemporaryDir m_dir;
};

} // namespace

TEST_F(RecordingFiles, AKindThatThereIsNotAndAFolderThatCannotBeMadeAreNamed)
{
  EXPECT_EQ(CRecordingFiles(m_dir.path(), "bmp3").Open(MakeFormat(), 1).GetError(),
            "this program was built without bmp3");
  QFile file(m_dir.filePath("file"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  EXPECT_EQ(CRecordingFiles(file.fileName() + "/out", "png").Open(MakeFormat(), 1).GetError().rfind("cannot make", 0),
            0U);
}

TEST_F(RecordingFiles, AFrameOfAnotherSizeIsRefusedAndTheOthersStay)
{
  CRecordingFiles files(m_dir.path(), "png");
  ASSERT_EQ(files.Open(MakeFormat(), 2).GetError(), "");
  EXPECT_EQ(files.Write(MakeFrame(8)).GetError(), "");
  EXPECT_EQ(files.Write(MakeFrame(9)).GetError(), "a frame of another size came");
  EXPECT_EQ(files.Close({{"frames", 1}}).GetError(), "");
  EXPECT_TRUE(QFile::exists(m_dir.filePath("frame_000000.png")));
  EXPECT_FALSE(QFile::exists(m_dir.filePath("frame_000001.png")));
}

TEST_F(RecordingFiles, ARecordingOfNoFrameHasNoSerFileThatPretendsOtherwise)
{
  CRecordingFiles files(m_dir.path(), "ser");
  files.SetCorrection("{}");
  ASSERT_EQ(files.Open(MakeFormat(), 2).GetError(), "");
  EXPECT_EQ(files.Close({{"frames", 0}}).GetError(), "");
  EXPECT_FALSE(QFile::exists(m_dir.filePath("frames.ser")));
  EXPECT_TRUE(QFile::exists(m_dir.filePath("recording.json")));
}

TEST_F(RecordingFiles, AFileThatCannotBeMadeIsTheFailureOfItsFrame)
{
  ASSERT_TRUE(QDir(m_dir.path()).mkdir("frame_000000.png"));
  CRecordingFiles files(m_dir.path(), "png");
  ASSERT_EQ(files.Open(MakeFormat(), 1).GetError(), "");
  EXPECT_NE(files.Write(MakeFrame(8)).GetError().find("frame_000000.png"), std::string::npos);
}

#include "frames/recordedframes.h"

#include <cstring>

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "frames/alignment.h"
#include "frames/serfile.h"
#include "tests/frames/framefiles.h"

using namespace ffc::frames;
using namespace ffc::test;
using ffc::genapi::EColorLayout;

namespace {

class CRecordingTest : public testing::Test {
protected:
  /// Two dark and two bright frames of 8 x 8, each of one value.
  void WriteRecording(uint32_t nBitDepth, uint16_t nBright)
  {
    SFrameInfo stInfo;
    stInfo.stLayout = {8, 8, 2};
    stInfo.nBitDepth = nBitDepth;
    stInfo.eColors = EColorLayout::BayerGR;
    for (const auto &[pName, nValue] : {std::pair<const char *, uint16_t>{"dark_1.", 0}, {"bright_1.", nBright}}) {
      std::vector<uint8_t> listFrame(stInfo.stLayout.GetFrameSize());
      for (std::size_t n = 0; n < listFrame.size(); n += 2) {
        std::memcpy(listFrame.data() + n, &nValue, 2);
      }
      const QString strPath = m_dir.filePath(pName + CSerFile().GetSuffixes().front());
      ASSERT_EQ(WriteFile(CSerFile(), strPath, stInfo, {listFrame, listFrame}).GetError(), "");
    }
  }

  ffc::Result<SRecordedFrames> Load(const std::optional<SSampleFormat> &stFormat = {}) const
  {
    return LoadRecordedFrames(m_dir.path().toStdString(), stFormat);
  }

  QTemporaryDir m_dir;
};

} // namespace

TEST_F(CRecordingTest, TheDepthThatTheFilesStateIsTaken)
{
  WriteRecording(12, 3000);
  const auto recording = Load();
  ASSERT_EQ(recording.GetError(), "");
  EXPECT_EQ(recording.GetValue().strStatedFormat, "BayerGR12");
  EXPECT_EQ(recording.GetValue().strGuess, "") << "nothing had to be guessed";
  EXPECT_EQ(recording.GetValue().listDark.size(), 2U);
  EXPECT_EQ(recording.GetValue().listBright.size(), 2U);
}

TEST_F(CRecordingTest, ValuesBeyondTheFormatAreNamedWithTheirFile)
{
  WriteRecording(12, 3001);
  const std::string strError = Load(SSampleFormat{"Mono10", 10}).GetError();
  EXPECT_NE(strError.find("bright_1.ser\" holds the value 3001, but Mono10 ends at 1023."), std::string::npos)
    << strError;
}

TEST_F(CRecordingTest, ARecordingThatIsAllDarkHasNoDepthToGuess)
{
  for (const char *pName : {"dark", "bright"}) {
    for (int n = 0; n < 2; ++n) {
      const std::vector<uint8_t> listFrame(32);
      ASSERT_TRUE(SaveFrame(m_dir.filePath(QString("%1_%2.png").arg(pName).arg(n)), {4, 4, 2}, listFrame.data()));
    }
  }
  const std::string strError = Load().GetError();
  EXPECT_NE(strError.find("holds nothing but zeros"), std::string::npos) << strError;
}

TEST_F(CRecordingTest, OfEachKindTwoFramesAreNeededButOfDarkOnesNoneWill)
{
  const auto fnWrite = [this](const char *pName) {
    const std::vector<uint8_t> listFrame(32, 7);
    ASSERT_TRUE(SaveFrame(m_dir.filePath(pName), {8, 4, 1}, listFrame.data()));
  };
  const auto fnExpect = [this](const std::string &strExpected) {
    const std::string strError = Load().GetError();
    EXPECT_NE(strError.find(strExpected), std::string::npos) << strError;
    EXPECT_EQ(strError.empty(), strExpected.empty()) << strError;
  };
  fnExpect("has 0 frames in \"bright_*\" files; at least 2 are needed");
  fnWrite("bright_0.png");
  fnExpect("has 1 frames in \"bright_*\" files; at least 2 are needed");
  fnWrite("bright_1.png");
  fnExpect("");
  fnWrite("dark_0.png");
  fnExpect("has 1 frames in \"dark_*\" files; at least 2 are needed");
  fnWrite("dark_1.png");
  fnExpect("");
}

TEST_F(CRecordingTest, SamplesThatTheFormatDoesNotHaveAreNamedByTheirBits)
{
  WriteRecording(12, 3000);
  const std::string strWide = Load(SSampleFormat{"Mono8", 8}).GetError();
  EXPECT_NE(strWide.find("has 16 bits per pixel, which the pixel format Mono8 does not have."), std::string::npos)
    << strWide;
  ASSERT_TRUE(QFile::remove(m_dir.filePath("dark_1.ser")) && QFile::remove(m_dir.filePath("bright_1.ser")));
  const std::vector<uint8_t> listFrame(32, 7);
  ASSERT_TRUE(SaveFrame(m_dir.filePath("bright_0.png"), {8, 4, 1}, listFrame.data()));
  const std::string strNarrow = Load(SSampleFormat{"Mono12", 12}).GetError();
  EXPECT_NE(strNarrow.find("has 8 bits per pixel, which the pixel format Mono12 does not have."), std::string::npos)
    << strNarrow;
}

TEST_F(CRecordingTest, BytesAreEightBitsWhereNoFileStatesADepth)
{
  const std::vector<uint8_t> listFrame(32, 7);
  for (const char *pName : {"bright_0.png", "bright_1.png"}) {
    ASSERT_TRUE(SaveFrame(m_dir.filePath(pName), {8, 4, 1}, listFrame.data()));
  }
  const auto recording = Load();
  ASSERT_EQ(recording.GetError(), "");
  EXPECT_EQ(recording.GetValue().strStatedFormat, "Mono8");
  EXPECT_EQ(recording.GetValue().strGuess, "") << "nothing had to be guessed";
}

TEST_F(CRecordingTest, ADepthThatNoFileStatesIsGuessedAndSaid)
{
  std::vector<uint8_t> listFrame(32);
  for (std::size_t n = 0; n < listFrame.size(); n += 2) {
    const auto nSample = static_cast<uint16_t>(2101 + n / 2);
    std::memcpy(listFrame.data() + n, &nSample, 2);
  }
  for (const char *pName : {"bright_0.png", "bright_1.png"}) {
    ASSERT_TRUE(SaveFrame(m_dir.filePath(pName), {4, 4, 2}, listFrame.data()));
  }
  const auto recording = Load();
  ASSERT_EQ(recording.GetError(), "");
  EXPECT_EQ(recording.GetValue().strStatedFormat, "Mono12");
  EXPECT_NE(recording.GetValue().strGuess, "");
  EXPECT_EQ(recording.GetValue().listBright[1], listFrame);
  EXPECT_FALSE(recording.GetValue().bLeftAligned);

  std::vector<uint8_t> listLeft = listFrame;
  ShiftLeft(listLeft.data(), {4, 4, 2}, 4);
  for (const char *pName : {"bright_0.png", "bright_1.png"}) {
    ASSERT_TRUE(SaveFrame(m_dir.filePath(pName), {4, 4, 2}, listLeft.data()));
  }
  const auto left = Load();
  ASSERT_EQ(left.GetError(), "");
  EXPECT_EQ(left.GetValue().strStatedFormat, "Mono12");
  EXPECT_TRUE(left.GetValue().bLeftAligned);
  EXPECT_EQ(left.GetValue().listBright[1], listFrame);
}

TEST_F(CRecordingTest, ASideThatTheSamplesDoNotHaveIsNoValueBeyondTheFormat)
{
  WriteRecording(12, 3001);
  const SSampleFormat stFormat{"Mono12", 12};
  const std::string strError = LoadRecordedFrames(m_dir.path().toStdString(), stFormat, EAlignment::Left).GetError();
  EXPECT_NE(strError.find("is stated to be left-aligned, but uses its lowest 4 bits."), std::string::npos) << strError;
}

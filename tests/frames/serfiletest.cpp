#include "frames/serfile.h"

#include <cstring>
#include <utility>

#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

#include <gtest/gtest.h>

#include "frames/serheader.h"
#include "tests/frames/framefiles.h"

using namespace ffc::frames;
using namespace ffc::test;
using ffc::genapi::EColorLayout;

namespace {

// A picture as cameras make it: neighbours are alike.
std::vector<uint8_t> MakeRamp(const SLayout &stLayout)
{
  std::vector<uint8_t> listFrame(stLayout.GetFrameSize());
  for (std::size_t n = 0; n < listFrame.size() / 2; ++n) {
    const uint16_t nSample = static_cast<uint16_t>(200 + 3 * n);
    std::memcpy(listFrame.data() + 2 * n, &nSample, 2);
  }
  return listFrame;
}

QByteArray ReadAll(const QString &strPath)
{
  QFile file(strPath);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly));
  return file.readAll();
}

void WriteAll(const QString &strPath, const QByteArray &byteContent)
{
  QFile file(strPath);
  EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(byteContent) == byteContent.size());
}

class CSerTest : public ::testing::Test {
protected:
  // A file with one number of its header changed. \return why it is refused
  std::string OpenWith(int nOffset, int32_t nNumber)
  {
    QByteArray byteContent = m_byteFile;
    qToLittleEndian<int32_t>(nNumber, byteContent.data() + nOffset);
    WriteAll(m_strPath, byteContent);
    return m_kind.Open(m_strPath).GetError();
  }

  void SetUp() override
  {
    m_strPath = m_dir.filePath("frames.ser");
    m_stInfo.stLayout = {32, 16, 2};
    m_stInfo.nBitDepth = 12;
    m_stInfo.eColors = EColorLayout::BayerGR;
    m_stInfo.mapTexts = {{"Observer", "somebody"}, {"Telescope", QString(40, 'x')}};
    m_stInfo.byteSerDates = QByteArray("0123456789abcdef") + QByteArray("frame 0 frame 1 ");
    m_listFrames = {MakeRamp(m_stInfo.stLayout), MakeRamp(m_stInfo.stLayout)};
    ASSERT_EQ(WriteFile(m_kind, m_strPath, m_stInfo, m_listFrames).GetError(), "");
    m_byteFile = ReadAll(m_strPath);
  }

  QTemporaryDir m_dir;
  CSerFile m_kind;
  QString m_strPath;
  SFrameInfo m_stInfo;
  Frames m_listFrames;
  QByteArray m_byteFile;
};

} // namespace

TEST_F(CSerTest, EverythingThatTheFormatHasComesBack)
{
  std::string strError;
  SFrameInfo stRead;
  EXPECT_EQ(ReadFile(m_kind, m_strPath, &strError, &stRead), m_listFrames);
  EXPECT_EQ(strError, "");
  EXPECT_EQ(stRead.nBitDepth, 12U);
  EXPECT_EQ(stRead.eColors, EColorLayout::BayerGR);
  EXPECT_EQ(stRead.mapTexts, m_stInfo.mapTexts);
  EXPECT_EQ(stRead.byteSerDates, m_stInfo.byteSerDates);
  EXPECT_EQ(m_byteFile.size(), 178 + 2 * 32 * 16 * 2 + 2 * 8);
  EXPECT_EQ(m_byteFile.mid(14, 4), QByteArray(4, '\0')) << "the number of the maker, of which there is none";
}

TEST_F(CSerTest, TheByteOrderIsSeenWhateverTheFlagSays)
{
  const int nData = SER_HEADER_SIZE;
  for (const int32_t nFlag : {0, 1}) {
    for (const bool bSwap : {false, true}) {
      QByteArray byteContent = m_byteFile;
      qToLittleEndian<int32_t>(nFlag, byteContent.data() + 22);
      if (bSwap) {
        qbswap<2>(byteContent.data() + nData, static_cast<qsizetype>(m_stInfo.stLayout.GetFrameSize()),
                  byteContent.data() + nData);
      }
      WriteAll(m_strPath, byteContent);
      std::string strError;
      SFrameInfo stRead;
      EXPECT_EQ(ReadFile(m_kind, m_strPath, &strError, &stRead), m_listFrames) << nFlag << bSwap;
      EXPECT_EQ(stRead.strRemark, QStringLiteral("The samples have the %1 byte first: neighbours then differ less (the "
                                                 "header's flag is %2, which programs use either way).")
                                    .arg(bSwap ? "high" : "low")
                                    .arg(nFlag));
    }
  }
}

TEST_F(CSerTest, AHeaderComesBackWithItsFlagAndColours)
{
  constexpr int COLORS_AT = 18;
  const std::pair<EColorLayout, char> COLORS[] = {{EColorLayout::Mono, 0},
                                                  {EColorLayout::BayerRG, 8},
                                                  {EColorLayout::BayerGR, 9},
                                                  {EColorLayout::BayerGB, 10},
                                                  {EColorLayout::BayerBG, 11}};
  for (const auto &[eColors, nNumber] : COLORS) {
    for (const bool bFlagged : {false, true}) {
      SSerHeader stHeader;
      stHeader.nColors = GetSerColors(eColors);
      stHeader.bFlagged = bFlagged;
      stHeader.nWidth = stHeader.nHeight = stHeader.nBitDepth = stHeader.nFrames = 1;
      const QByteArray byteHeader = MakeSerHeader(stHeader);
      EXPECT_EQ(byteHeader[COLORS_AT], nNumber) << "as other programs know it";
      const auto read = ParseSerHeader(byteHeader);
      ASSERT_EQ(read.GetError(), "");
      EXPECT_EQ(read.GetValue().bFlagged, bFlagged);
      EXPECT_EQ(FindSerColors(read.GetValue().nColors), eColors);
    }
  }
}

TEST_F(CSerTest, HeadersThatMakeNoSenseAreRefused)
{
  EXPECT_NE(OpenWith(18, 100).find("colours 100"), std::string::npos);
  EXPECT_NE(OpenWith(34, 0).find("0 bits per sample"), std::string::npos);
  EXPECT_NE(OpenWith(34, 17).find("17 bits per sample"), std::string::npos);
  EXPECT_NE(OpenWith(26, 0).find("nothing to read"), std::string::npos);
  EXPECT_NE(OpenWith(30, -16).find("nothing to read"), std::string::npos);
  EXPECT_NE(OpenWith(38, 0).find("nothing to read"), std::string::npos);
  EXPECT_EQ(OpenWith(38, INT32_MAX),
            "is too short for 2147483647 frames of 32 x 16 with 16 bits per pixel: it ends after 2.");
  EXPECT_NE(OpenWith(26, INT32_MAX).find("at most"), std::string::npos);
  EXPECT_NE(OpenWith(0, 0).find("is no SER file"), std::string::npos);
  WriteAll(m_strPath, m_byteFile.left(SER_HEADER_SIZE + 2 * 32 * 16 * 2 - 1));
  EXPECT_NE(m_kind.Open(m_strPath).GetError().find("is too short for 2 frames"), std::string::npos);
  WriteAll(m_strPath, m_byteFile.left(SER_HEADER_SIZE + 32 * 16 * 2 - 1));
  EXPECT_EQ(m_kind.Open(m_strPath).GetError(), "is too short for a frame of 32 x 16 pixels: it ends early.");
}

TEST_F(CSerTest, TimesThatAreMissingAreNotMissed)
{
  WriteAll(m_strPath, m_byteFile.left(m_byteFile.size() - 1));
  std::string strError;
  SFrameInfo stRead;
  EXPECT_EQ(ReadFile(m_kind, m_strPath, &strError, &stRead), m_listFrames);
  EXPECT_EQ(stRead.byteSerDates.size(), 16);
}

TEST_F(CSerTest, TimesOfAllFramesGoIntoTheFile)
{
  SFrameInfo stInfo = m_stInfo;
  stInfo.byteSerDates.clear();
  stInfo.mapTexts = {{TEXT_TIME, "2024-02-03T04:05:06.789"}};
  ASSERT_EQ(WriteFile(m_kind, m_strPath, stInfo, m_listFrames).GetError(), "");
  std::string strError;
  SFrameInfo stRead;
  EXPECT_EQ(ReadFile(m_kind, m_strPath, &strError, &stRead), m_listFrames);
  ASSERT_EQ(stRead.byteSerDates.size(), (2 + 2) * 8) << "the header's two, and one per frame";
  for (int n = 0; n < 4; ++n) {
    // Steps of 100 ns since the year 1.
    EXPECT_EQ(qFromLittleEndian<qint64>(stRead.byteSerDates.constData() + 8 * n), 638425299067890000) << n;
  }

  // One frame without a time: then none has one.
  auto writer = m_kind.Create(m_strPath, stInfo);
  ASSERT_TRUE(writer.IsOk());
  EXPECT_TRUE(writer.GetValue()->Write(m_listFrames[0].data(), stInfo.mapTexts).IsOk());
  EXPECT_TRUE(writer.GetValue()->Write(m_listFrames[1].data(), {{TEXT_TIME, "yesterday"}}).IsOk());
  EXPECT_TRUE(writer.GetValue()->Commit().IsOk());
  EXPECT_EQ(ReadAll(m_strPath).size(), 178 + 2 * 32 * 16 * 2);
}

TEST_F(CSerTest, TheHeaderCountsTheFramesThatCame)
{
  m_stInfo.nFrames = 5;
  m_stInfo.byteSerDates.clear();
  m_stInfo.nBitDepth = 8; // not of words
  auto writer = m_kind.Create(m_strPath, m_stInfo);
  ASSERT_TRUE(writer.IsOk());
  EXPECT_TRUE(writer.GetValue()->Write(m_listFrames[0].data(), {}).IsOk());
  EXPECT_TRUE(writer.GetValue()->Commit().IsOk());
  std::string strError;
  SFrameInfo stRead;
  EXPECT_EQ(ReadFile(m_kind, m_strPath, &strError, &stRead).size(), 1U);
  EXPECT_EQ(stRead.nBitDepth, 16U);
}

TEST_F(CSerTest, AValueAtTheEndOfTheDepthIsNotBeyondIt)
{
  // In the other order neighbours differ less, but are beyond 12 bits.
  for (std::size_t n = 0; n < m_listFrames[0].size() / 2; ++n) {
    const uint16_t nSample = n % 2 == 0 ? 4095 : 255;
    std::memcpy(m_listFrames[0].data() + 2 * n, &nSample, 2);
  }
  ASSERT_EQ(WriteFile(m_kind, m_strPath, m_stInfo, m_listFrames).GetError(), "");
  std::string strError;
  EXPECT_EQ(ReadFile(m_kind, m_strPath, &strError), m_listFrames);
}

TEST_F(CSerTest, AValueJustBeyondTheDepthSpeaksAgainstAnOrderInWhichNeighboursDifferLess)
{
  // In the other order these are 0x0F0F and 0x1000, of which 12 bits do not have the second.
  for (std::size_t n = 0; n < m_listFrames[0].size() / 2; ++n) {
    const uint16_t nSample = n % 2 == 0 ? 0x0F0F : 0x0010;
    std::memcpy(m_listFrames[0].data() + 2 * n, &nSample, 2);
  }
  m_listFrames[1] = m_listFrames[0];
  ASSERT_EQ(WriteFile(m_kind, m_strPath, m_stInfo, m_listFrames).GetError(), "");
  QByteArray byteContent = ReadAll(m_strPath);
  std::string strError;
  EXPECT_EQ(ReadFile(m_kind, m_strPath, &strError), m_listFrames);
  qbswap<2>(byteContent.data() + SER_HEADER_SIZE, static_cast<qsizetype>(m_stInfo.stLayout.GetFrameSize()),
            byteContent.data() + SER_HEADER_SIZE);
  WriteAll(m_strPath, byteContent);
  EXPECT_EQ(ReadFile(m_kind, m_strPath, &strError), m_listFrames) << "with the high byte first";
}

TEST_F(CSerTest, EveryDepthOfWordsComesBack)
{
  for (uint32_t nBitDepth = 9; nBitDepth <= 16; ++nBitDepth) {
    m_stInfo.nBitDepth = nBitDepth;
    ASSERT_EQ(WriteFile(m_kind, m_strPath, m_stInfo, m_listFrames).GetError(), "");
    EXPECT_EQ(m_kind.Open(m_strPath).GetValue()->GetInfo().nBitDepth, nBitDepth);
  }
}

TEST_F(CSerTest, WhereNothingSpeaksForAnOrderItIsTheFormats)
{
  for (std::size_t n = 0; n < m_listFrames[0].size() / 2; ++n) {
    constexpr uint16_t SAMPLE = 0x0203;
    std::memcpy(m_listFrames[0].data() + 2 * n, &SAMPLE, 2);
  }
  ASSERT_EQ(WriteFile(m_kind, m_strPath, m_stInfo, m_listFrames).GetError(), "");
  std::string strError;
  EXPECT_EQ(ReadFile(m_kind, m_strPath, &strError), m_listFrames);
}

TEST_F(CSerTest, FramesOfBytesHaveEightBits)
{
  m_stInfo.stLayout = {32, 16, 1};
  m_stInfo.nBitDepth = 8;
  m_listFrames = MakeFrames(m_stInfo.stLayout, 2, 8);
  ASSERT_EQ(WriteFile(m_kind, m_strPath, m_stInfo, m_listFrames).GetError(), "");
  std::string strError;
  SFrameInfo stRead;
  EXPECT_EQ(ReadFile(m_kind, m_strPath, &strError, &stRead), m_listFrames);
  EXPECT_EQ(stRead.nBitDepth, 8U);
  EXPECT_EQ(stRead.strRemark, "") << "bytes have no order to guess";
}

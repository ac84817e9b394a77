#include <cstring>

#include <QFile>
#include <QJsonDocument>

#include <gtest/gtest.h>

#include "frames/alignment.h"
#include "frames/ifilekind.h"
#include "frames/sidefile.h"
#include "tests/tools/ffc/toolrun.h"

using namespace ffc::test;
using ffc::frames::SaveFrame;

namespace {

class Make : public testing::Test {
protected:
  SToolResult Run(QStringList listMore = {"--pixel-format", "Mono12"})
  {
    return RunTool(QStringList{"make", "--dark", m_recording.Path("dark"), "--bright", m_recording.Path("bright"), "-o",
                               m_recording.Path("flat.ffc")} +
                   listMore);
  }

  CRecording m_recording;
};

/// Gain and dark level of every pixel from averages, spelt out.
QByteArray ComputeSlowly(const CRecording &recording, int nDark, int nBright, uint32_t nTarget)
{
  const std::size_t nPixels = recording.GetLayout().GetFrameSize() / 2;
  std::vector<uint32_t> listDark(nPixels);
  std::vector<uint32_t> listBright(nPixels);
  const auto fnAdd = [nPixels](std::vector<uint32_t> &listSums, const std::vector<uint8_t> &listFrame) {
    for (std::size_t n = 0; n < nPixels; ++n) {
      listSums[n] += listFrame[2 * n] + 256U * listFrame[2 * n + 1];
    }
  };
  for (int n = 0; n < nDark; ++n) {
    fnAdd(listDark, recording.MakeDark(static_cast<uint32_t>(n)));
  }
  for (int n = 0; n < nBright; ++n) {
    fnAdd(listBright, recording.MakeBright(static_cast<uint32_t>(n)));
  }
  QByteArray byteTable;
  const auto fnAppend = [&byteTable](uint32_t nWord) {
    byteTable.append(static_cast<char>(nWord & 0xFFU)).append(static_cast<char>(nWord >> 8U));
  };
  for (std::size_t n = 0; n < nPixels; ++n) {
    const uint32_t nSignal =
      listBright[n] / static_cast<uint32_t>(nBright) - listDark[n] / static_cast<uint32_t>(nDark);
    fnAppend(std::min(65535U, (nTarget * 16 * 4096 + nSignal / 2) / nSignal));
  }
  for (std::size_t n = 0; n < nPixels; ++n) {
    fnAppend(listDark[n] / static_cast<uint32_t>(nDark) << 4U);
  }
  return byteTable;
}

} // namespace

TEST_F(Make, ManyFramesAreAveragedTruncatedAndComputed)
{
  m_recording.Write(3, 5);
  const SToolResult stResult = Run({"--method", "average", "--pixel-format", "Mono12", "--expect-gray", "140"});
  ASSERT_EQ(stResult.nExitCode, 0) << stResult.byteErrors.constData();
  EXPECT_TRUE(ReadBytes(m_recording.Path("flat.ffc")) == ComputeSlowly(m_recording, 3, 5, 140));
}

TEST_F(Make, TheSideFileSaysWhatTheTableCannot)
{
  m_recording.Write(2, 3);
  ASSERT_EQ(Run({"--pixel-format", "BayerGB12", "--camera", "X 12", "--serial", "0815", "--exposure", "1500.5",
                 "--temperature", "-3"})
              .nExitCode,
            0);
  const auto side = ffc::frames::ReadSideFile(m_recording.Path("flat.ffc"));
  ASSERT_EQ(side.GetError(), "");
  ASSERT_TRUE(side.GetValue().has_value());
  const ffc::frames::SSideFile &stSide = *side.GetValue();
  EXPECT_EQ(stSide.nWidth, 64U);
  EXPECT_EQ(stSide.nHeight, 48U);
  EXPECT_EQ(stSide.strPixelFormat, "BayerGB12");
  EXPECT_EQ(stSide.strCamera, "X 12");
  EXPECT_EQ(stSide.strSerial, "0815");
  EXPECT_EQ(stSide.dExposureTime, 1500.5);
  EXPECT_EQ(stSide.dTemperature, -3.0);
  EXPECT_FALSE(stSide.dGain.has_value());
  EXPECT_EQ(stSide.nBrightFrames, 3U);
  EXPECT_EQ(stSide.nDarkFrames, 2U);
  EXPECT_TRUE(stSide.bDarkUsed);
  EXPECT_EQ(stSide.strMethod, "weighted");
  EXPECT_EQ(stSide.strNoise, "differences of the frames");
  EXPECT_GT(stSide.nExpectGray, 100U);
  EXPECT_EQ(stSide.strSha256.size(), 64);
}

TEST_F(Make, OneBrightFrameIsWeightedWithAWordAboutItsNoise)
{
  m_recording.Write(2, 1);
  const SToolResult stAlone = Run({"--pixel-format", "Mono12", "--json"});
  ASSERT_EQ(stAlone.nExitCode, 0) << stAlone.byteErrors.constData();
  EXPECT_TRUE(stAlone.byteOutput.contains("give more frames, or --system-gain")) << stAlone.byteOutput.constData();
  const QJsonObject object = stAlone.GetObjects().at(1);
  EXPECT_EQ(object["method"].toString(), "weighted");
  EXPECT_EQ(object["noise"].toString(), "all fine detail of the one frame");
  const SToolResult stStated =
    Run({"--pixel-format", "Mono12", "--json", "--system-gain", "0.01", "--dark-noise", "2", "--force"});
  ASSERT_EQ(stStated.nExitCode, 0) << stStated.byteErrors.constData();
  EXPECT_EQ(stStated.GetObjects().front()["noise"].toString(), "camera data");
  EXPECT_GT(stStated.GetObjects().front()["detailWeight"].toDouble(), 0.9) << "the pattern is 4 %";
}

TEST_F(Make, LeftAlignedFramesGiveTheTableOfRightAlignedOnesAndSaySo)
{
  m_recording.Write(1, 2);
  ASSERT_EQ(Run().nExitCode, 0);
  for (const char *pName : {"dark/dark_0.png", "bright/bright_0.png", "bright/bright_1.png"}) {
    auto listFrame = ReadFrame(m_recording.Path(pName));
    ffc::frames::ShiftLeft(listFrame.data(), m_recording.GetLayout(), 4);
    ASSERT_TRUE(SaveFrame(m_recording.Path(pName), m_recording.GetLayout(), listFrame.data()));
  }
  const SToolResult stResult = RunTool({"make", "--dark", m_recording.Path("dark"), "--bright",
                                        m_recording.Path("bright"), "-o", m_recording.Path("left.ffc")});
  ASSERT_EQ(stResult.nExitCode, 0);
  EXPECT_TRUE(stResult.byteErrors.contains("12 bits, left-aligned")) << stResult.byteErrors.constData();
  EXPECT_TRUE(ReadBytes(m_recording.Path("left.ffc")) == ReadBytes(m_recording.Path("flat.ffc")));
  ASSERT_EQ(RunTool({"apply", m_recording.Path("left.ffc"), m_recording.Path("bright"), "-o", m_recording.Path("out")})
              .nExitCode,
            0);
  EXPECT_EQ(ReadFrame(m_recording.Path("out/bright_0.png"))[0] & 0x0F, 0) << "still left-aligned";
}

TEST_F(Make, DarkFramesThatAreTooBrightAreNotUsedAndThatIsSaid)
{
  m_recording.Write(1, 2);
  ASSERT_TRUE(
    SaveFrame(m_recording.Path("dark/dark_0.png"), m_recording.GetLayout(), m_recording.MakeBright(5).data()));
  const SToolResult stResult = Run();
  ASSERT_EQ(stResult.nExitCode, 0);
  EXPECT_TRUE(stResult.byteErrors.contains("are not used")) << stResult.byteErrors.constData();
  EXPECT_EQ(ReadBytes(m_recording.Path("flat.ffc")).size(), 64 * 48 * 2);
}

TEST_F(Make, FramesThatAreUnlikeTheOthersAreRefusedByName)
{
  m_recording.Write(1, 2);
  const CRecording other(1, {32, 48, 2});
  ASSERT_TRUE(SaveFrame(m_recording.Path("bright/odd.png"), other.GetLayout(), other.MakeBright(0).data()));
  const SToolResult stResult = Run();
  EXPECT_EQ(stResult.nExitCode, 3);
  EXPECT_TRUE(stResult.byteErrors.contains("odd.png\" has frames of 32 x 48 with 16 bits"))
    << stResult.byteErrors.constData();
  EXPECT_FALSE(QFile::exists(m_recording.Path("flat.ffc")));
}

TEST_F(Make, AStatedDepthThatTheValuesExceedIsRefused)
{
  m_recording.Write(1, 2);
  const SToolResult stResult = Run({"--pixel-format", "Mono10"});
  EXPECT_EQ(stResult.nExitCode, 3);
  EXPECT_TRUE(stResult.byteErrors.contains("but 10 bits end at 1023")) << stResult.byteErrors.constData();
}

TEST_F(Make, AFileThatIsThereIsReplacedOnlyWithForce)
{
  m_recording.Write(1, 2);
  WriteBytes(m_recording.Path("flat.ffc"), "precious");
  EXPECT_EQ(Run().nExitCode, 1);
  EXPECT_EQ(ReadBytes(m_recording.Path("flat.ffc")), QByteArray("precious"));
  EXPECT_EQ(Run({"--pixel-format", "Mono12", "--force"}).nExitCode, 0);
  EXPECT_EQ(ReadBytes(m_recording.Path("flat.ffc")).size(), 64 * 48 * 4);
}

TEST_F(Make, ADryRunWritesNothing)
{
  m_recording.Write(1, 2);
  EXPECT_EQ(Run({"--pixel-format", "Mono12", "--dry-run"}).nExitCode, 0);
  EXPECT_FALSE(QFile::exists(m_recording.Path("flat.ffc")));
  EXPECT_FALSE(QFile::exists(m_recording.Path("flat.ffc.json")));
}

TEST_F(Make, ABrightFieldThatIsPartlyClippedIsRefusedUnlessForced)
{
  m_recording.Write(1, 1);
  std::vector<uint8_t> listFrame = m_recording.MakeBright(1);
  auto *pSamples = reinterpret_cast<uint16_t *>(listFrame.data());
  for (std::size_t n = 0; n < listFrame.size() / 2; n += 30) {
    pSamples[n] = 4095;
  }
  WriteBytes(m_recording.Path("clipped.raw"),
             QByteArray(reinterpret_cast<const char *>(listFrame.data()), static_cast<int>(listFrame.size())));
  const QStringList listMake = {
    "make", "--raw", "64x48:Mono12", "--bright", m_recording.Path("clipped.raw"), "-o", m_recording.Path("flat.ffc")};
  const SToolResult stRefused = RunTool(listMake);
  EXPECT_EQ(stRefused.nExitCode, 3);
  EXPECT_TRUE(stRefused.byteErrors.contains("are clipped")) << stRefused.byteErrors.constData();
  EXPECT_FALSE(QFile::exists(m_recording.Path("flat.ffc")));
  const SToolResult stForced = RunTool(listMake + QStringList{"--force"});
  EXPECT_EQ(stForced.nExitCode, 0);
  EXPECT_TRUE(stForced.byteErrors.contains("are clipped")) << stForced.byteErrors.constData();
}

#include <QFile>

#include <gtest/gtest.h>

#include "frames/ifilekind.h"
#include "tests/tools/ffc/toolrun.h"

using namespace ffc::test;

namespace {

/// Writes a frame as a raw file, with one pixel set.
void WriteRaw(const QString &strPath, std::vector<uint8_t> listFrame, std::size_t nPixel, uint16_t nValue)
{
  reinterpret_cast<uint16_t *>(listFrame.data())[nPixel] = nValue;
  WriteBytes(strPath, QByteArray(reinterpret_cast<const char *>(listFrame.data()), static_cast<int>(listFrame.size())));
}

uint16_t ReadPixel(const QString &strPath, std::size_t nPixel)
{
  const QByteArray byteFrame = ReadBytes(strPath);
  return reinterpret_cast<const uint16_t *>(byteFrame.constData())[nPixel];
}

constexpr std::size_t HOT = 20 * 64 + 30; ///< in a frame of 64 x 48
const QStringList FORMAT = {"--raw", "64x48:Mono12"};

} // namespace

TEST(DefectsCommand, AHotPixelIsListedAndReplacedInCorrectedFrames)
{
  const CRecording recording;
  for (uint32_t n = 0; n < 4; ++n) {
    WriteRaw(recording.Path(QStringLiteral("dark_%1.raw").arg(n)), recording.MakeDark(n), HOT, 3000);
    WriteRaw(recording.Path(QStringLiteral("bright_%1.raw").arg(n)), recording.MakeBright(n), HOT, 4000);
  }
  const QStringList listSources = {"--dark", recording.Path("dark_*.raw"), "--bright", recording.Path("bright_*.raw")};
  const QString strList = recording.Path("defects.csv");
  const QString strMap = recording.Path("defects.xml");
  const SToolResult stFound =
    RunTool(QStringList{"defects", "-o", strList, "--map", strMap, "--json"} + listSources + FORMAT);
  ASSERT_EQ(stFound.nExitCode, 0) << stFound.byteErrors.constData();
  EXPECT_EQ(stFound.GetObjects().front()["defects"].toInt(), 1);
  EXPECT_TRUE(ReadBytes(strList).contains("\n30,20,")) << ReadBytes(strList).constData();
  EXPECT_TRUE(ReadBytes(strMap).contains("x=\"30\" y=\"20\""));
  EXPECT_EQ(RunTool(QStringList{"defects", "-o", strList} + listSources + FORMAT).nExitCode, 1) << "is there already";

  ASSERT_EQ(RunTool(QStringList{"make", "-o", recording.Path("flat.ffc")} + listSources + FORMAT).nExitCode, 0);
  const QStringList listApply =
    QStringList{"apply", recording.Path("flat.ffc"), recording.Path("bright_0.raw")} + FORMAT;
  ASSERT_EQ(RunTool(listApply + QStringList{"-o", recording.Path("plain")}).nExitCode, 0);
  const QStringList listCheck = QStringList{"check",  recording.Path("flat.ffc"),   recording.Path("spot_*.raw"),
                                            "--dark", recording.Path("dark_*.raw"), "--json"} +
                                FORMAT;
  for (uint32_t n = 0; n < 4; ++n) { // darker than the flat makes good
    WriteRaw(recording.Path(QStringLiteral("spot_%1.raw").arg(n)), recording.MakeBright(10 + n), HOT, 3100);
  }
  EXPECT_EQ(RunTool(listCheck).GetObjects().front()["outliers5Sigma"].toInt(), 1);
  const SToolResult stWithout = RunTool(listCheck + QStringList{"--defects", strMap});
  ASSERT_EQ(stWithout.nExitCode, 0) << stWithout.byteErrors.constData();
  EXPECT_EQ(stWithout.GetObjects().front()["outliers5Sigma"].toInt(-1), 0);
  for (const QString &strDefects : {strList, strMap}) {
    const SToolResult stApplied =
      RunTool(listApply + QStringList{"-o", recording.Path("replaced"), "--defects", strDefects, "--force"});
    ASSERT_EQ(stApplied.nExitCode, 0) << stApplied.byteErrors.constData();
    const QString strPlain = recording.Path("plain/bright_0.raw");
    const QString strReplaced = recording.Path("replaced/bright_0.raw");
    const uint32_t nSum = uint32_t{ReadPixel(strPlain, HOT - 1)} + ReadPixel(strPlain, HOT + 1) +
                          ReadPixel(strPlain, HOT - 64) + ReadPixel(strPlain, HOT + 64);
    EXPECT_EQ(ReadPixel(strReplaced, HOT), (nSum + 2) / 4);
    EXPECT_EQ(ReadPixel(strReplaced, HOT + 1), ReadPixel(strPlain, HOT + 1));
  }
}

TEST(DefectsCommand, AListForLargerFramesIsRefused)
{
  const CRecording recording;
  recording.Write(2, 2);
  ASSERT_EQ(RunTool({"make", "--dark", recording.Path("dark"), "--bright", recording.Path("bright"), "--pixel-format",
                     "Mono12", "-o", recording.Path("flat.ffc")})
              .nExitCode,
            0);
  WriteBytes(recording.Path("list.csv"), "x,y\n64,1\n");
  const SToolResult stResult = RunTool({"apply", recording.Path("flat.ffc"), recording.Path("bright"), "-o",
                                        recording.Path("out"), "--defects", recording.Path("list.csv")});
  EXPECT_EQ(stResult.nExitCode, 3);
  EXPECT_TRUE(stResult.byteErrors.contains("64,1")) << stResult.byteErrors.constData();
}

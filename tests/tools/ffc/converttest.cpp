#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonArray>

#include <gtest/gtest.h>

#include "frames/ifilekind.h"
#include "tests/tools/ffc/toolrun.h"

using namespace ffc::test;

TEST(Convert, ValuesTextsAndFramesComeThroughAndBack)
{
  const CRecording recording;
  ffc::frames::SFrameInfo stInfo;
  stInfo.stLayout = recording.GetLayout();
  stInfo.mapTexts = {{ffc::frames::TEXT_DESCRIPTION, "a flat"}};
  const auto listFrame = recording.MakeBright(0);
  {
    const QString strPath = recording.Path("frame.png");
    auto writer = ffc::frames::FindFileKind(strPath)->Create(strPath, stInfo);
    ASSERT_TRUE(writer.GetValue()->Write(listFrame.data(), stInfo.mapTexts).IsOk());
    ASSERT_TRUE(writer.GetValue()->Commit().IsOk());
  }
  int nKinds = 0;
  for (const QString &strKind : ListOtherKinds()) {
    const QString strThere = recording.Path(strKind + "/frame." + strKind);
    const SToolResult stThere =
      RunTool({"convert", recording.Path("frame.png"), "--to", strKind, "-o", recording.Path(strKind)});
    ASSERT_EQ(stThere.nExitCode, 0) << stThere.byteErrors.constData();
    ASSERT_EQ(RunTool({"convert", strThere, "--to", "png", "-o", recording.Path("from-" + strKind)}).nExitCode, 0);
    ffc::frames::SFrameInfo stBack;
    EXPECT_TRUE(ReadFrame(recording.Path("from-" + strKind + "/frame.png"), &stBack) == listFrame)
      << strKind.toStdString();
    const bool bKept = ffc::frames::FindFileKind(strThere)->KeepsTexts();
    EXPECT_EQ(stBack.mapTexts.value(ffc::frames::TEXT_DESCRIPTION), bKept ? "a flat" : "") << strKind.toStdString();
    ++nKinds;
  }
  EXPECT_GE(nKinds, 1);
}

TEST(Convert, AKindThatIsNotBuiltInIsAUsageError)
{
  const CRecording recording;
  recording.Write(0, 1);
  for (const QString &strKind : {QStringLiteral("tif"), QStringLiteral("fits")}) {
    const SToolResult stResult =
      RunTool({"convert", recording.Path("bright"), "--to", strKind, "-o", recording.Path(strKind)});
    const bool bSupported = ListOtherKinds().contains(strKind);
    EXPECT_EQ(stResult.nExitCode, bSupported ? 0 : 2) << strKind.toStdString();
    EXPECT_EQ(stResult.byteErrors.contains("built without"), !bSupported) << stResult.byteErrors.constData();
  }
}

TEST(Convert, ManyFramesDoNotBecomeOnePicture)
{
  const CRecording recording;
  QByteArray byteFrames;
  for (uint32_t n = 0; n < 3; ++n) {
    const auto listFrame = recording.MakeBright(n);
    byteFrames.append(reinterpret_cast<const char *>(listFrame.data()), static_cast<int>(listFrame.size()));
  }
  WriteBytes(recording.Path("three.raw"), byteFrames);
  const QStringList listBegin{"convert", recording.Path("three.raw"), "--raw", "64x48:Mono12",
                              "-o",      recording.Path("out"),       "--to"};
  const SToolResult stResult = RunTool(listBegin + QStringList{"png"});
  EXPECT_EQ(stResult.nExitCode, 3);
  EXPECT_TRUE(stResult.byteErrors.contains("has 3 frames, but a PNG file takes 1")) << stResult.byteErrors.constData();
  EXPECT_EQ(RunTool(listBegin + QStringList{"ser"}).nExitCode, 0);
  EXPECT_EQ(ReadBytes(recording.Path("out/three.ser")).mid(178), byteFrames);
}

TEST(Convert, TwoFilesThatWouldBecomeOneAreRefusedBeforeAnythingIsWritten)
{
  const CRecording recording;
  recording.Write(1, 1);
  QDir(recording.GetFolder()).mkpath("dark2");
  ASSERT_TRUE(QFile::copy(recording.Path("dark/dark_0.png"), recording.Path("dark2/dark_0.png")));
  const SToolResult stResult =
    RunTool({"convert", recording.Path("dark"), recording.Path("dark2"), "--to", "ser", "-o", recording.Path("out")});
  EXPECT_EQ(stResult.nExitCode, 2);
  EXPECT_TRUE(stResult.byteErrors.contains("would both become")) << stResult.byteErrors.constData();
  EXPECT_FALSE(QDir(recording.Path("out")).exists());
}

/// Pixels of a histogram's bars.
static int CountBars(const QImage &plot)
{
  int nBars = 0;
  for (int nY = 0; nY < plot.height(); ++nY) {
    for (int nX = 0; nX < plot.width(); ++nX) {
      nBars += plot.pixel(nX, nY) == qRgb(40, 80, 160) ? 1 : 0;
    }
  }
  return nBars;
}

TEST(Inspect, FramesTellTheirDepthAndTheEvidence)
{
  const CRecording recording;
  recording.Write(0, 1);
  const SToolResult stResult = RunTool({"inspect", recording.Path("bright"), "--json"});
  ASSERT_EQ(stResult.nExitCode, 0);
  const QJsonObject object = stResult.GetObjects().front();
  EXPECT_EQ(object["bitDepth"].toInt(), 12);
  EXPECT_EQ(object["alignment"].toString(), "right");
  EXPECT_EQ(object["width"].toInt(), 64);
  EXPECT_LT(object["largestValue"].toInt(), 4096);
  EXPECT_TRUE(object["reason"].toString().contains("the largest is"));
}

TEST(Inspect, AFlatTellsItsGainsAndPaintsThem)
{
  const CRecording recording;
  recording.Write(1, 2);
  ASSERT_EQ(RunTool({"make", "--dark", recording.Path("dark"), "--bright", recording.Path("bright"), "--pixel-format",
                     "Mono12", "-o", recording.Path("flat.ffc")})
              .nExitCode,
            0);
  const SToolResult stResult =
    RunTool({"inspect", recording.Path("flat.ffc"), "--json", "--plot", recording.Path("gains.png")});
  ASSERT_EQ(stResult.nExitCode, 0) << stResult.byteErrors.constData();
  const QJsonObject object = stResult.GetObjects().front();
  EXPECT_GT(object["gainLargest"].toDouble(), 1.1);
  EXPECT_LT(object["gainSmallest"].toDouble(), 1.1);
  EXPECT_EQ(object["pixelsAtGainLimit"].toInt(), 0);
  double dCounted = 0;
  for (const QJsonValue &value : object["gainHistogram"].toObject()["pixels"].toArray()) {
    dCounted += value.toDouble();
  }
  EXPECT_EQ(dCounted, 64 * 48);
  const QImage plot(recording.Path("gains.png"));
  ASSERT_EQ(plot.size(), QSize(64 + 256 + 3 * 10, 200 + 2 * 10));
  EXPECT_GT(qGray(plot.pixel(10, 10)), qGray(plot.pixel(10 + 32, 10 + 24))) << "corners are raised most";
  EXPECT_EQ(CountBars(plot), CountBars(plot.copy(2 * 10 + 64, 10, 256, 200)));
  EXPECT_GT(CountBars(plot), 200) << "the most frequent gain fills the height";
}

TEST(Inspect, GainsAtTheLimitAreCountedAndPaintedRed)
{
  const CRecording recording;
  recording.Write(1, 2);
  ASSERT_EQ(RunTool({"make", "--bright", recording.Path("bright"), "--pixel-format", "Mono12", "-o",
                     recording.Path("flat.ffc")})
              .nExitCode,
            0);
  QByteArray byteFlat = ReadBytes(recording.Path("flat.ffc"));
  byteFlat.replace(2 * (64 * 5 + 7), 2, "\xff\xff", 2);
  WriteBytes(recording.Path("flat.ffc"), byteFlat);
  const SToolResult stRefused = RunTool({"inspect", recording.Path("flat.ffc")});
  EXPECT_EQ(stRefused.nExitCode, 3) << "not the flat that the side file describes";
  QByteArray byteSide = ReadBytes(recording.Path("flat.ffc.json"));
  const QByteArray byteHash = QCryptographicHash::hash(byteFlat, QCryptographicHash::Sha256).toHex();
  const int nHash = byteSide.indexOf("\"sha256\": \"") + 11;
  WriteBytes(recording.Path("flat.ffc.json"), byteSide.replace(nHash, byteHash.size(), byteHash));
  const SToolResult stResult =
    RunTool({"inspect", recording.Path("flat.ffc"), "--json", "--plot", recording.Path("gains.png")});
  ASSERT_EQ(stResult.nExitCode, 0) << stResult.byteErrors.constData();
  EXPECT_EQ(stResult.GetObjects().front()["pixelsAtGainLimit"].toInt(), 1);
  const QImage plot(recording.Path("gains.png"));
  EXPECT_EQ(plot.pixel(10 + 7, 10 + 5), qRgb(255, 0, 0));
  EXPECT_NE(plot.pixel(10 + 8, 10 + 5), qRgb(255, 0, 0));
}

TEST(Inspect, FilesTogetherTellWhatTheyHaveInCommon)
{
  const CRecording recording;
  recording.Write(2, 3);
  const auto fnInspect = [](const QStringList &listNames) {
    return RunTool(QStringList{"inspect", "--json"} + listNames).GetObjects();
  };
  const auto listAlike = fnInspect({recording.Path("dark"), recording.Path("bright")});
  ASSERT_EQ(listAlike.size(), 7U) << "five files, all together, and the summary";
  const QJsonObject alike = listAlike[5]["together"].toObject();
  EXPECT_EQ(alike["files"].toInt(), 5);
  EXPECT_TRUE(alike["alike"].toBool());
  EXPECT_EQ(alike["bitDepth"].toInt(), 12) << "the dark frames alone look like 10 bits";
  EXPECT_EQ(listAlike[0]["bitDepth"].toInt(), 10);
  const CRecording other(1, {32, 48, 2});
  other.Write(0, 1);
  EXPECT_FALSE(fnInspect({recording.Path("dark"), other.Path("bright")})[3]["together"].toObject()["alike"].toBool());
}

TEST(Inspect, ACamerasFileIsToldByItsRecord)
{
  const CRecording recording;
  QByteArray byteFile(1000, '\x11');
  const uint32_t anRecord[6] = {1, 0, 4, 1, 1024, 130};
  byteFile.append(reinterpret_cast<const char *>(anRecord), sizeof anRecord);
  WriteBytes(recording.Path("camera.ffc"), byteFile);
  const SToolResult stResult = RunTool({"inspect", recording.Path("camera.ffc"), "--json"});
  ASSERT_EQ(stResult.nExitCode, 0) << stResult.byteErrors.constData();
  EXPECT_TRUE(stResult.GetObjects().front()["kind"].toString().startsWith("camera's vignetting"));
  EXPECT_EQ(stResult.GetObjects().front()["expectedGray"].toInt(), 130);
}

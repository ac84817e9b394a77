/// \file
/// What the commands find out, guess and warn of, and what they refuse of what they are made for.

#include "tests/tools/ffc/smallrecording.h"

using namespace ffc::test;
using ffc::genapi::EColorLayout;

namespace {

class Remarks : public SmallRecording {
protected:
  /// \param nValue of every sample of 16 bits
  static void WriteEven(const QString &strName, uint16_t nValue)
  {
    EXPECT_TRUE(QDir().mkpath(QFileInfo(Path(strName)).path()));
    const std::vector<uint16_t> listFrame(s_pRecording->GetLayout().GetFrameSize() / 2, nValue);
    EXPECT_TRUE(ffc::frames::SaveFrame(Path(strName), s_pRecording->GetLayout(), listFrame.data()));
  }
  static QStringList Make(const QString &strBright, const QStringList &listMore = {"--pixel-format", "Mono12"})
  {
    return QStringList{"make", "--bright", Path(strBright), "-o", Path("made.ffc"), "--force"} + listMore;
  }
  static QStringList FindDefects(const QString &strDark, const QString &strBright)
  {
    return {"defects", "--dark", Path(strDark), "--bright", Path(strBright), "-o", Path("defects.csv")};
  }
};

} // namespace

TEST_F(Remarks, AShardIsANumberOfAll)
{
  for (const char *pShard : {"3", "x/2", "1/x", "0/2", "1/1000000000"}) {
    ExpectRun(Apply("flat.ffc", "bright") + QStringList{"--shard", pShard}, 2, "write it as I/N");
  }
  ExpectRun({"apply", "-o", Path("out")}, 2, "name the .ffc file");
  ExpectRun({"apply", "--library", Path("library"), "-o", Path("out")}, 2, "there are no frames");
}

TEST_F(Remarks, SomebodyAtATerminalSeesHowFarItIs)
{
  const QStringList listConvert{"convert",   Path("bright"), "--to",      "png", "-o",
                                Path("out"), "--dry-run",    "--threads", "1"};
  const SRun stRun = RunHere(listConvert, true);
  EXPECT_EQ(stRun.nExitCode, 0) << stRun;
  EXPECT_NE(stRun.strErrors.find("1 of 4 files, "), std::string::npos) << stRun;
  EXPECT_EQ(stRun.strErrors.back(), '\r') << "the line is cleared";
  EXPECT_EQ(RunHere(listConvert).strErrors, "");
  const SRun stQuiet = RunHere(listConvert + QStringList{"--quiet"}, true);
  EXPECT_EQ(stQuiet.strOutput + stQuiet.strErrors, "");
  EXPECT_EQ(RunHere({"inspect", Path("bright"), "--quiet"}).strOutput, "");
}

TEST_F(Remarks, AReferenceOfFramesThatDoNotBelongTogetherIsRefused)
{
  WriteFrames("twelve.ser", MakeInfo(12));
  WriteFrames("ten.ser", MakeInfo(10));
  WriteFrames("nine.ser", MakeInfo(9));
  WriteFrames("bayer.ser", MakeInfo(12, EColorLayout::BayerGB));
  WriteFrames("small.png", MakeInfo(12, {}, {16, 16, 2}));
  WriteFrames("large.png", MakeInfo(12, {}, {64, 96, 2}));
  ExpectRun(Make("none"), 1, "There are no frames behind");
  ExpectRun(Make("bright") + QStringList{"--dark", Path("none")}, 1, "There are no frames behind");
  ExpectRun(Make("bright") + QStringList{"--dark", Path("large.png")}, 3, "unlike the others");
  ExpectRun(Make("twelve.ser") + QStringList{"--dark", Path("ten.ser")}, 3,
            "64 x 48 with 10 bits, Mono, unlike the others");
  ExpectRun(Make("twelve.ser") + QStringList{"--dark", Path("bayer.ser")}, 3, "unlike the others");
  ExpectRun(Make("bayer.ser"), 3, "The frames are BayerGB, but --pixel-format is Mono12");
  ExpectRun(Make("bayer.ser", {"--pixel-format", "BayerGB12"}), 0, "BayerGB12");
  ExpectRun(Make("nine.ser", {}), 3, "There is no pixel format Mono9");
  ExpectRun(Make("small.png"), 3, "both sides must be even and at least 32");
  ExpectRun(Make("bright", {"--pixel-format", "Mono12", "--align", "left"}), 3, "is stated to be left-aligned");
}

TEST_F(Remarks, WhatAReferenceLacksIsTold)
{
  ExpectRun(Make("dark"), 0, "The bright frames are too dark");
  ExpectRun(Make("dark", {}), 0, "are taken as monochrome");
  ExpectRun(Make("dark", {}), 0, "There are no dark frames");
  WriteEven("bright.png", 4095);
  ExpectRun({"make", "--bright", Path("bright.png"), "--pixel-format", "Mono12", "-o", Path("white.ffc")}, 3,
            "--force takes it all the same");
  ExpectRun(Make("bright.png"), 0, "The bright frames are too bright");
  ExpectRun(Make("bright") + QStringList{"--dark", Path("bright")}, 0, "too bright or uneven and are not used");
  WriteFrames("twelve.ser", MakeInfo(12));
  WriteFrames("more.ser", MakeInfo(12));
  const SRun stRun = RunHere(Make("twelve.ser") + QStringList{"--bright", Path("more.ser")});
  EXPECT_EQ(stRun.strErrors.find("byte first"), stRun.strErrors.rfind("byte first")) << "of two files once\n" << stRun;
  ExpectRun({"apply", Path("flat.ffc"), Path("bright"), "-o", Path("flattened"), "--force"}, 0, "4 done");
  ExpectRun({"make", "--bright", Path("flattened"), "--pixel-format", "Mono12", "-o", Path("second.ffc")}, 3,
            "a flat is made from frames as they came");
  ExpectRun(Check("flat.ffc", "flattened"), 3, "the check takes frames as they came");
  ExpectRun(FindDefects("dark", "flattened"), 3, "defects are found in frames as they came");
}

TEST_F(Remarks, ACheckWithoutDarkFramesTellsShadingAlone)
{
  const QStringList listCheck{"check", Path("flat.ffc"), Path("bright")};
  const SRun stRun = RunHere(listCheck + QStringList{"--limit", "shading=90"});
  EXPECT_EQ(stRun.nExitCode, 0) << stRun;
  EXPECT_TRUE(stRun.Says("shading")) << stRun;
  EXPECT_FALSE(stRun.Says("PRNU")) << stRun;
  for (const QStringList &listMore : {QStringList{"--levels"}, QStringList{"--details", Path("details")}}) {
    ExpectRun(listCheck + listMore, 2, "PRNU and DSNU need dark frames");
  }
  ExpectRun({"check", Path("flat.ffc"), Path("bright"), "--json"}, 0, "\"shadingPercent\"");
}

TEST_F(Remarks, WhatACheckCannotReadOrJudgeItSays)
{
  const SRun stOne = RunHere(Check("flat.ffc", "bright/bright_0.png"));
  EXPECT_EQ(stOne.nExitCode, 0) << stOne;
  EXPECT_FALSE(stOne.Says("take ")) << "of one frame no noise is known\n" << stOne;
  ExpectRun(Check("plain.ffc", "bright") + QStringList{"--pixel-format", "Mono12"}, 0, "belong");
  ExpectRun(Check("flat.ffc", "none"), 1, "There are no frames behind");
  ExpectRun(Check("flat.ffc", "none") + QStringList{"--levels"}, 1, "There are no frames behind");
  ExpectRun(Check("flat.ffc", "flat.ffc.json") + QStringList{"--levels"}, 1, "no kind of frames");
  WriteFrames("deep.png", MakeInfo(14, {}));
  ExpectRun(Check("flat.ffc", "deep.png"), 3, "but 12 bits end at 4095");
  WriteLeftAligned("left");
  ExpectRun({"check", Path("flat.ffc"), Path("left"), "--align", "left"}, 0, "belong");
  WriteEven("even/0.png", 1000);
  WriteEven("even/1.png", 1000);
  ExpectRun(Make("even"), 0, "made.ffc");
  ExpectRun({"check", Path("made.ffc"), Path("even")}, 0, "do not show whether the coefficients belong");
}

TEST_F(Remarks, AFileOfManyFramesIsALevel)
{
  WriteFrames("level.ser", MakeInfo(12), 4);
  WriteEven("grey.png", 1000);
  ExpectRun(Make("grey.png"), 0, "made.ffc"); // which corrects nothing
  const QStringList listLevels = Check("made.ffc", "level.ser") + QStringList{"--levels"};
  ExpectRun(listLevels + QStringList{"--limit", "prnu-high-pass=90"}, 0, "level.ser: 4 frames");
  ExpectRun(listLevels + QStringList{"--limit", "prnu-high-pass=1"}, 4, "level.ser: 4 frames");
  ExpectRun(Check("flat.ffc", "bright/bright_1.png") + QStringList{"--levels"}, 0, "bright_1.png: 1 frame");
}

TEST_F(Remarks, DefectsAreLookedForInFramesOfOneKind)
{
  ExpectRun(FindDefects("none", "bright"), 1, "There are no frames behind");
  ExpectRun(FindDefects("dark", "none"), 1, "There are no frames behind");
  WriteFrames("large.png", MakeInfo(12, {}, {64, 96, 2}));
  WriteFrames("broad.png", MakeInfo(12, {}, {96, 48, 2}));
  WriteFrames("narrow.png", MakeInfo(8, {}, {64, 48, 1}));
  ExpectRun(FindDefects("large.png", "bright"), 3, "has frames of another size");
  ExpectRun(FindDefects("broad.png", "bright"), 3, "has frames of another size");
  ExpectRun(FindDefects("narrow.png", "bright"), 3, "is unlike the frames before");
  ExpectRun(FindDefects("narrow.png", "narrow.png") + QStringList{"--pixel-format", "Mono12"}, 0, "no defect pixels");
  QFile::remove(Path("defects.csv"));
  ExpectRun(FindDefects("dark", "bright") + QStringList{"--dry-run"}, 0, "needs at least 4 bright and 4 dark");
  EXPECT_FALSE(QFile::exists(Path("defects.csv")));
  // Left-aligned frames have the same defects as right-aligned ones: one bright pixel, in DN of the format.
  for (const bool bLeft : {false, true}) {
    const QString strFolder = bLeft ? QStringLiteral("hot-left") : QStringLiteral("hot-right");
    EXPECT_TRUE(QDir().mkpath(Path(strFolder)));
    for (uint32_t n = 0; n < 2; ++n) {
      std::vector<uint8_t> listFrame = s_pRecording->MakeDark(n);
      reinterpret_cast<uint16_t *>(listFrame.data())[20 * 64 + 30] = 3000;
      if (bLeft) {
        ffc::frames::ShiftLeft(listFrame.data(), s_pRecording->GetLayout(), 4);
      }
      EXPECT_TRUE(ffc::frames::SaveFrame(Path(strFolder + QStringLiteral("/dark_%1.png").arg(n)),
                                         s_pRecording->GetLayout(), listFrame.data()));
    }
  }
  WriteLeftAligned("left");
  const QStringList listFormat{"--pixel-format", "Mono12", "--force"};
  ExpectRun(FindDefects("hot-right", "bright") + listFormat, 0, "1 ");
  const QByteArray byteRight = ReadBytes(Path("defects.csv"));
  EXPECT_TRUE(byteRight.contains("\n30,20,")) << byteRight.constData();
  ExpectRun(FindDefects("hot-left", "left") + listFormat + QStringList{"--align", "left"}, 0, "1 ");
  EXPECT_TRUE(ReadBytes(Path("defects.csv")) == byteRight);
}

TEST_F(Remarks, InspectingTellsWhatAFileIs)
{
  WriteBytes(Path("tiny.ffc"), "0123456789");
  ExpectRun({"inspect", Path("tiny.ffc")}, 0, "without a side file");
  ExpectRun({"inspect", Path("plain.ffc")}, 0, "without a side file the size and format of its frames are unknown");
  ExpectRun({"inspect", Path("flat.ffc")}, 0, "for 64 x 48 Mono12, with dark levels");
  QByteArray byteCamera(1000, '\x11');
  const uint32_t anRecord[6] = {1, 0, 4, 1, 1024, 130};
  byteCamera.append(reinterpret_cast<const char *>(anRecord), sizeof anRecord);
  for (int n = 1000; n < byteCamera.size(); n += 2) {
    std::swap(byteCamera.data()[n], byteCamera.data()[n + 1]);
  }
  WriteBytes(Path("camera.ffc"), byteCamera);
  ExpectRun({"inspect", Path("camera.ffc")}, 0, "camera's flat-field coefficients");
  WriteEven("black.png", 0);
  WriteFrames("large.png", MakeInfo(12, {}, {64, 96, 2}));
  ExpectRun({"inspect", Path("black.png"), Path("large.png")}, 0, "of different sizes or depths");
  WriteEven("also-black.png", 0);
  ExpectRun({"inspect", Path("black.png"), Path("also-black.png")}, 0, "It holds nothing but zeros");
  ExpectRun({"inspect", Path("black.png"), Path("also-black.png"), "--json"}, 0, "\"bitDepth\":0");
  WriteLeftAligned("left");
  ExpectRun({"inspect", Path("left"), "--pixel-format", "Mono12", "--align", "left", "--json"}, 0,
            "\"alignment\":\"left\"");
  WriteFrames("kinds/a.ser", MakeInfo(12, EColorLayout::BayerGR));
  WriteFrames("kinds/b.ser", MakeInfo(12));
  ExpectRun({"inspect", Path("kinds")}, 0, "colours BayerGR");
  ExpectRun({"inspect", Path("kinds")}, 0, "of different sizes or depths");
  ExpectRun({"apply", Path("flat.ffc"), Path("bright"), "-o", Path("flattened"), "--force"}, 0, "4 done");
  ExpectRun({"inspect", Path("flattened"), Path("bright")}, 0, "4 of the files are corrected");
  ExpectRun({"inspect", Path("none")}, 1, "There are no frames behind");
}

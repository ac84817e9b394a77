/// \file
/// Flats, frames and files that the tool refuses, and what it says then.

#include <tuple>

#include "tests/tools/ffc/smallrecording.h"

using namespace ffc::test;
using ffc::genapi::EColorLayout;

namespace {

class Refusals : public SmallRecording {};

} // namespace

TEST_F(Refusals, AFlatThatIsNoneIsNamedWithTheReason)
{
  const QByteArray byteSide = ReadBytes(Path("flat.ffc.json"));
  const auto fnTry = [&](const QByteArray &byteTable, const QByteArray &byteBeside, int nExitCode, const char *pText) {
    WriteBytes(Path("bad.ffc"), byteTable);
    WriteBytes(Path("bad.ffc.json"), byteBeside);
    ExpectRun(Apply("bad.ffc", "bright"), nExitCode, pText);
  };
  fnTry("", byteSide, 3, "has 0 bytes, which no coefficient file has");
  fnTry("abc", byteSide, 3, "has 3 bytes");
  fnTry(QByteArray(100, 'a'), byteSide, 3, "which are no coefficients for the 64 x 48 pixels");
  fnTry(QByteArray(100, 'a'), "[]", 3, "is no side file");
  QByteArray byteNoHash = byteSide;
  const int nHash = byteNoHash.indexOf("\"sha256\": \"") + 11;
  fnTry(ReadBytes(Path("flat.ffc")), byteNoHash.remove(nHash, 64), 0, "would be corrected");
}

TEST_F(Refusals, WhatIsStatedMustBeTheFlatsOwnFormatAndAlignment)
{
  ExpectRun(Apply("flat.ffc", "bright") + QStringList{"--pixel-format", "Mono10"}, 3, "is for Mono12, not for Mono10");
  QStringList listForced = Apply("flat.ffc", "bright") + QStringList{"--pixel-format", "Mono10", "--force"};
  listForced.removeAll("--dry-run");
  ExpectRun(listForced, 3, "10 bits end at 1023");
  ExpectRun(Apply("flat.ffc", "bright") + QStringList{"--pixel-format", "Mono12", "--align", "right"}, 0, "4 done");
  QStringList listLeft{"apply", Path("flat.ffc"), Path("bright"), "-o", Path("stated-left"), "--align", "left"};
  ExpectRun(listLeft, 3, "is stated to be left-aligned");
  WriteLeftAligned("left");
  listLeft[2] = Path("left");
  ExpectRun(listLeft, 0, "4 done");
  ExpectRun({"apply", Path("flat.ffc"), Path("bright"), "-o", Path("right")}, 0, "4 done");
  auto listExpected = ReadFrame(Path("right/bright_2.png"));
  ffc::frames::ShiftLeft(listExpected.data(), s_pRecording->GetLayout(), 4);
  EXPECT_TRUE(ReadFrame(Path("stated-left/left_2.png")) == listExpected) << "at the end where they came from";
}

TEST_F(Refusals, FramesThatDoNotFitTheFlatAreToldInWhat)
{
  const auto fnTry = [](const char *pFlat, const QString &strName, const ffc::frames::SFrameInfo &stInfo, int nExitCode,
                        const char *pText) {
    WriteFrames(strName, stInfo);
    ExpectRun(Apply(pFlat, strName), nExitCode, pText);
  };
  fnTry("flat.ffc", "high.png", MakeInfo(12, {}, {64, 96, 2}), 3, "has frames of 64 x 96 pixels");
  fnTry("flat.ffc", "narrow.png", MakeInfo(8, {}, {64, 48, 1}), 3, "has 8 bits per pixel, but the flat");
  fnTry("flat.ffc", "ten.ser", MakeInfo(10), 3, "has 10 bits per pixel, but the flat");
  fnTry("flat.ffc", "bayer.ser", MakeInfo(12, EColorLayout::BayerRG), 3, "has the colours BayerRG, but the flat");
  fnTry("flat.ffc", "mono.ser", MakeInfo(12), 0, "would be corrected");
  fnTry("flat.ffc", "whole.ser", MakeInfo(16), 0, "would be corrected");
  fnTry("plain.ffc", "small.png", MakeInfo(8, {}, {32, 32, 1}), 3, "for which a flat has 2048 or 4096 bytes");
  fnTry("plain.ffc", "twice.png", MakeInfo(8, {}, {128, 48, 1}), 0, "would be corrected");
  fnTry("plain.ffc", "mono.ser", MakeInfo(12), 0, "would be corrected");
}

TEST_F(Refusals, FiguresOfFramesThatLieDifferentlyAreNotMixed)
{
  // Without a side file any frames with as many pixels fit the table.
  WriteFrames("lying/a.ser", MakeInfo(12));
  for (const ffc::frames::SLayout &stLayout : {ffc::frames::SLayout{48, 64, 2}, ffc::frames::SLayout{64, 96, 2}}) {
    WriteFrames("lying/b.ser", MakeInfo(12, {}, stLayout));
    ExpectRun({"check", Path("plain.ffc"), Path("lying/a.ser"), Path("lying/b.ser")}, 3, "is unlike the frames before");
  }
  ExpectRun({"check", Path("plain.ffc"), Path("lying/a.ser")}, 0, "shading");
}

TEST_F(Refusals, ADefectListThatCannotBeUsedIsNamed)
{
  WriteBytes(Path("list.csv"), "x,y\n3,4\n");
  WriteBytes(Path("words.csv"), "pixels\n");
  const auto fnTry = [](const char *pFlat, const char *pList, int nExitCode, const char *pText) {
    ExpectRun(Apply(pFlat, "bright") + QStringList{"--defects", Path(pList)}, nExitCode, pText);
  };
  fnTry("flat.ffc", "no-list.csv", 1, "no-list.csv");
  fnTry("plain.ffc", "list.csv", 3, "the width of its frames is unknown");
  fnTry("flat.ffc", "words.csv", 3, "words.csv");
  fnTry("flat.ffc", "list.csv", 0, "4 done");
  ExpectRun(Check("flat.ffc", "bright") + QStringList{"--defects", Path("list.csv")}, 0, "belong");
}

TEST_F(Refusals, FramesAreFoundByPatternsAndListsAndCountOnce)
{
  const auto fnConvert = [](const QStringList &listNames) {
    return QStringList{"convert", "--to", "png", "-o", Path("dry"), "--dry-run"} + listNames;
  };
  ExpectRun(fnConvert({Path("bright/bright_?.png")}), 0, "4 done");
  ExpectRun(fnConvert({Path("bright/bright_[01].png"), Path("bright/bright_1.png")}), 0, "2 done");
  WriteBytes(Path("lines.txt"), (Path("bright/bright_0.png") + "\r\n" + Path("bright/bright_3.png") + "\r\n").toUtf8());
  ExpectRun(fnConvert({"--files-from", Path("lines.txt")}), 0, "2 done");
  ExpectRun(fnConvert({Path("bright/none_*.png")}), 1, "There are no frames behind");
  ExpectRun(fnConvert({Path("flat.ffc.json")}), 1, "has an ending that no kind of frames has");
  EXPECT_FALSE(QFile::exists(Path("dry"))) << "a dry run writes nothing";
}

TEST_F(Refusals, WhatIsThereStaysUnlessForcedAndAFileIsNoFolder)
{
  const QStringList listConvert{"convert", Path("bright/bright_0.png"), "--to", "ser", "-o", Path("converted")};
  ExpectRun(listConvert, 0, "converted");
  const QByteArray byteFormer = ReadBytes(Path("converted/bright_0.ser"));
  ExpectRun(listConvert, 1, "is there already");
  WriteBytes(Path("converted/bright_0.ser"), "mine");
  ExpectRun(listConvert + QStringList{"--force"}, 0, "converted");
  EXPECT_TRUE(ReadBytes(Path("converted/bright_0.ser")) == byteFormer);
  ExpectRun({"convert", Path("bright"), "--to", "ser", "-o", Path("flat.ffc/out")}, 1, "cannot be made");
  ExpectRun({"library", Path("flat.ffc/out"), Path("flat.ffc")}, 1, "cannot be made");
  ExpectRun(Apply("flat.ffc", "bright") + QStringList{Path("bright/../bright/bright_0.png"), "--shard", "1/1"}, 0,
            "4 done");
  EXPECT_TRUE(QDir().mkpath(Path("again")) && QFile::copy(Path("bright/bright_0.png"), Path("again/bright_0.png")));
  ExpectRun(Apply("flat.ffc", "bright") + QStringList{Path("again")}, 2, "would both become");
}

TEST_F(Refusals, AMarkBesideAFileIsReadWithCare)
{
  const auto listFrame = s_pRecording->MakeBright(0);
  WriteBytes(Path("marked.raw"),
             {reinterpret_cast<const char *>(listFrame.data()), static_cast<int>(listFrame.size())});
  const QStringList listRaw{"--raw", "64x48:Mono12"};
  const QString strMark = Path("marked.raw.json");
  WriteBytes(strMark, "{\"flat\":\"x\"}");
  ExpectRun(Apply("flat.ffc", "marked.raw") + listRaw, 0, "would be corrected");
  WriteBytes(strMark, QByteArray("{\"flat\":\"x\",\"sha256\":\"y\"}"));
  ExpectRun(Apply("flat.ffc", "marked.raw") + listRaw, 3, "is corrected already");
  WriteBytes(strMark, QByteArray("{\"flat\":\"x\",\"sha256\":\"y\"}") + QByteArray(1 << 16, ' '));
  ExpectRun(Apply("flat.ffc", "marked.raw") + listRaw, 0, "would be corrected");
  QFile::remove(strMark);
  EXPECT_TRUE(QDir().mkpath(strMark));
  const QStringList listInPlace{"apply", Path("flat.ffc"), Path("marked.raw"), "--in-place"};
  for (const QStringList &listMore : {QStringList(), QStringList{"--resume"}, QStringList{"--force"}}) {
    ExpectRun(listInPlace + listRaw + listMore, 1, "is no file");
  }
  ExpectRun(QStringList{"inspect", Path("marked.raw")} + listRaw, 1, "is no file");
}

TEST_F(Refusals, WhatAnotherFlatOrNobodyMadeIsNotTakenForDone)
{
  const QStringList listApply{"apply", Path("bright/bright_0.png"), "-o", Path("resumed"), "--resume"};
  const auto fnApply = [&](const char *pFlat) {
    QStringList listWords = listApply;
    listWords.insert(1, Path(pFlat));
    return listWords;
  };
  ExpectRun(MakeFlat("other.ffc") + QStringList{"--expect-gray", "99"}, 0, "expected grey 99");
  ExpectRun(fnApply("flat.ffc"), 0, "corrected");
  ExpectRun(fnApply("flat.ffc"), 0, "done before");
  ExpectRun(fnApply("other.ffc"), 1, "is there already");
  WriteBytes(Path("resumed/bright_0.png"), "no picture");
  ExpectRun(fnApply("flat.ffc"), 1, "is there already");
}

TEST_F(Refusals, ALibraryKeepsWhatItHasAndSaysWhatItDoesNotTake)
{
  const QStringList listAdd{"library", Path("library"), Path("flat.ffc")};
  ExpectRun({"library", Path("library")}, 1, "There is no library");
  ExpectRun(Apply("bright/bright_0.png", "bright") + QStringList{"--library", Path("library")}, 3,
            "There is no library");
  ExpectRun({"library", Path("library"), Path("no.ffc")}, 1, "cannot be opened");
  ExpectRun(listAdd, 0, "Mono12 64 x 48");
  ExpectRun(listAdd, 1, "is there already");
  ExpectRun(listAdd + QStringList{"--force"}, 0, "Mono12 64 x 48");
  const SRun stPlain = RunHere({"library", Path("library"), Path("plain.ffc")});
  EXPECT_TRUE(stPlain.Says("has no side file")) << stPlain;
  ExpectRun({"library", Path("other"), Path("plain.ffc")}, 1, "has no side file");
  ExpectRun(MakeFlat("named.ffc") +
              QStringList{"--camera", QStringLiteral("Gr\u00FCn"), "--serial", "7", "--gain", "3", "--exposure", "0"},
            0, "weighted");
  ExpectRun({"library", Path("library"), Path("named.ffc")}, 0, "7, 0 us, 3 dB");
  EXPECT_TRUE(QFile::exists(Path("library/Gr-n_7_64x48_Mono12_0us_3dB.ffc")));
  const QStringList listNamed{"--camera", QStringLiteral("Gr\u00FCn")};
  const auto fnApply = [](const QString &strFrames, const QStringList &listStated) {
    return QStringList{"apply", Path(strFrames), "-o", Path("dry"), "--dry-run", "--library", Path("library")} +
           listStated;
  };
  ExpectRun(fnApply("flat.ffc.json", {}), 1, "no kind of frames");
  ExpectRun(fnApply("bright", {}), 3, "which differ: state --camera");
  ExpectRun(fnApply("bright", listNamed + QStringList{"--serial", "8"}), 3, "no flat for the serial number \"8\"");
  ExpectRun(fnApply("bright", listNamed + QStringList{"--exposure", "900"}), 3, "within a factor of 1.5 of 900 us");
  ExpectRun(fnApply("bright", listNamed + QStringList{"--exposure", "0"}), 3, "within a factor of 1.5 of 0 us");
  ExpectRun(fnApply("bright", listNamed + QStringList{"--gain", "2.5"}), 0, "4 done");
  ExpectRun(fnApply("bright", listNamed + QStringList{"--pixel-format", "Mono12", "--gain", "5"}), 3,
            "within 1 dB of 5 dB");
  ExpectRun(fnApply("bright", {"--pixel-format", "Mono10"}), 3, "frames of 64 x 48 pixels Mono10");
  for (const auto &[nBits, nHeight, nBytes] : {std::tuple{12U, 64U, 2U}, {8U, 48U, 1U}}) {
    WriteFrames("misfit.png", MakeInfo(nBits, {}, {64, nHeight, nBytes}));
    ExpectRun(fnApply("misfit.png", {}), 3, "The library has no flat for frames of");
  }
  WriteFrames("colour.ser", MakeInfo(12, EColorLayout::BayerRG));
  ExpectRun(fnApply("colour.ser", {}), 3, "The library has no flat for frames of");
  WriteFrames("grey.ser", MakeInfo(12));
  ExpectRun(fnApply("grey.ser", listNamed + QStringList{"--serial", "7"}), 0, "would be corrected");
}

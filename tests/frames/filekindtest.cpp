#include "frames/ifilekind.h"

#include <algorithm>
#include <utility>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "frames/fileio.h"
#include "frames/partialfile.h"
#include "frames/rawfile.h"
#include "tests/frames/framefiles.h"
#include "tests/support/fullvolume.h"

using namespace ffc::frames;
using namespace ffc::test;
using ffc::genapi::EColorLayout;

namespace {

SFrameInfo MakeInfo(uint32_t nWidth, uint32_t nHeight, uint32_t nBytes)
{
  SFrameInfo stInfo;
  stInfo.stLayout = {nWidth, nHeight, nBytes};
  return stInfo;
}

QString GetPath(const QTemporaryDir &dir, const IFileKind &kind)
{
  return dir.filePath(QStringLiteral("frame.") + kind.GetSuffixes().front());
}

QStringList ListFiles(const QTemporaryDir &dir)
{
  return QDir(dir.path()).entryList(QDir::Files | QDir::Hidden);
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

TEST(FileKind, NoTwoKindsAreCalledTheSame)
{
  QStringList listNames{CRawFile().GetName()};
  for (const IFileKind *pKind : ListFileKinds()) {
    listNames.append(pKind->GetName());
  }
  EXPECT_FALSE(listNames.contains(QString()));
  EXPECT_EQ(listNames.removeDuplicates(), 0);
}

TEST(FileKind, AKindThatIsNotBuiltInIsKnownAndSaysSo)
{
  const QTemporaryDir dir;
  for (const char *pName : {"frame.tif", "frame.fits"}) {
    const IFileKind *pKind = FindFileKind(pName);
    ASSERT_NE(pKind, nullptr) << pName;
    const auto &listKinds = ListFileKinds();
    const bool bListed = std::find(listKinds.begin(), listKinds.end(), pKind) != listKinds.end();
    EXPECT_EQ(bListed, pKind->IsSupported()) << pName;
    const std::string strError = pKind->Open(dir.filePath(pName)).GetError();
    EXPECT_EQ(strError.find("which this program was built without") == std::string::npos, bListed) << strError;
    EXPECT_EQ(pKind->Create(dir.filePath(pName), MakeInfo(2, 2, 1)).IsOk(), bListed) << pName;
  }
}

TEST(FileKind, FramesOfEveryKindComeBackAsTheyWere)
{
  for (const IFileKind *pKind : ListFileKinds()) {
    for (const uint32_t nBytes : {1U, 2U}) {
      const QTemporaryDir dir;
      const SFrameInfo stInfo = MakeInfo(67, 31, nBytes);
      const Frames listFrames = MakeFrames(stInfo.stLayout, pKind->GetMaxFrames() == 1 ? 1 : 5, 8 * nBytes);
      const QString strPath = GetPath(dir, *pKind);
      EXPECT_EQ(WriteFile(*pKind, strPath, stInfo, listFrames).GetError(), "");
      std::string strError;
      SFrameInfo stRead;
      // Noise says nothing about the byte order of a SER file.
      const bool bNoise = pKind->GetName() == "SER" && nBytes == 2;
      const Frames listRead = ReadFile(*pKind, strPath, &strError, &stRead);
      EXPECT_EQ(strError, "") << pKind->GetName().toStdString();
      EXPECT_EQ(stRead.stLayout, stInfo.stLayout);
      EXPECT_EQ(stRead.nFrames, listFrames.size());
      EXPECT_TRUE(bNoise || listRead == listFrames) << pKind->GetName().toStdString() << " " << nBytes;
      EXPECT_EQ(ListFiles(dir).size(), 1) << "nothing else is left";
    }
  }
}

TEST(FileKind, TextsComeBackFromKindsThatKeepThem)
{
  for (const IFileKind *pKind : ListFileKinds()) {
    const QTemporaryDir dir;
    SFrameInfo stInfo = MakeInfo(8, 4, 1);
    stInfo.mapTexts = {{TEXT_DESCRIPTION, QStringLiteral("two lines\nof 20 \u00b5m")},
                       {TEXT_CORRECTION, QStringLiteral("{\"flat\":\"x\"}")}};
    const QString strPath = GetPath(dir, *pKind);
    ASSERT_EQ(WriteFile(*pKind, strPath, stInfo, MakeFrames(stInfo.stLayout, 1, 8)).GetError(), "");
    const Texts mapExpected = pKind->KeepsTexts() ? stInfo.mapTexts : Texts();
    auto reader = pKind->Open(strPath);
    ASSERT_EQ(reader.GetError(), "");
    EXPECT_EQ(reader.GetValue()->GetInfo().mapTexts, mapExpected) << pKind->GetName().toStdString();
    std::vector<uint8_t> listFrame(stInfo.stLayout.GetFrameSize());
    Texts mapRead;
    EXPECT_TRUE(reader.GetValue()->Read(listFrame.data(), &mapRead).IsOk());
    EXPECT_EQ(mapRead, mapExpected) << pKind->GetName().toStdString();
  }
}

TEST(FileKind, BehindTheLastFrameIsNone)
{
  const CRawFile raw = CRawFile::Parse("8x4:Mono16").GetValue();
  std::vector<const IFileKind *> listKinds = ListFileKinds();
  listKinds.push_back(&raw);
  for (const IFileKind *pKind : listKinds) {
    if (pKind->GetMaxFrames() == 1) {
      continue; // a picture can be read again
    }
    const QTemporaryDir dir;
    const SFrameInfo stInfo = MakeInfo(8, 4, 2);
    const QString strPath = GetPath(dir, *pKind);
    ASSERT_EQ(WriteFile(*pKind, strPath, stInfo, MakeFrames(stInfo.stLayout, 2, 12)).GetError(), "");
    auto reader = pKind->Open(strPath);
    ASSERT_EQ(reader.GetError(), "");
    std::vector<uint8_t> listFrame(stInfo.stLayout.GetFrameSize());
    for (int n = 0; n < 2; ++n) {
      Texts mapTexts{{"left", "of the frame before"}};
      EXPECT_EQ(reader.GetValue()->Read(listFrame.data(), &mapTexts).GetError(), "");
      EXPECT_FALSE(mapTexts.contains("left")) << pKind->GetName().toStdString();
    }
    EXPECT_NE(reader.GetValue()->Read(listFrame.data()).GetError(), "") << pKind->GetName().toStdString();
  }
}

TEST(FileKind, AFileThatEndsEarlyIsRefusedByEveryKind)
{
  for (const IFileKind *pKind : ListFileKinds()) {
    const QTemporaryDir dir;
    const SFrameInfo stInfo = MakeInfo(64, 64, 2);
    const QString strPath = GetPath(dir, *pKind);
    ASSERT_EQ(WriteFile(*pKind, strPath, stInfo, MakeFrames(stInfo.stLayout, 1)).GetError(), "");
    const qint64 nSize = QFile(strPath).size(); // FITS may end with up to 448 bytes that mean nothing
    for (const qint64 nLeft : {qint64{0}, qint64{10}, qint64{100}, qint64{200}, nSize / 2, nSize - 500}) {
      QFile file(strPath);
      ASSERT_TRUE(file.open(QIODevice::ReadOnly));
      const QByteArray byteContent = file.readAll().left(static_cast<int>(nLeft));
      file.close();
      const QString strShort = dir.filePath("short." + pKind->GetSuffixes().front());
      QFile shortFile(strShort);
      ASSERT_TRUE(shortFile.open(QIODevice::WriteOnly) && shortFile.write(byteContent) == nLeft);
      shortFile.close();
      std::string strError;
      (void)ReadFile(*pKind, strShort, &strError);
      EXPECT_NE(strError, "") << pKind->GetName().toStdString() << " of " << nLeft << " bytes";
    }
  }
}

TEST(FileKind, AFullVolumeLeavesTheFormerFileAndNothingElse)
{
  for (const IFileKind *pKind : ListFileKinds()) {
    const QTemporaryDir dir;
    const SFrameInfo stInfo = MakeInfo(64, 64, 2);
    const Frames listFrames = MakeFrames(stInfo.stLayout, 1);
    const QString strPath = GetPath(dir, *pKind);
    ASSERT_EQ(WriteFile(*pKind, strPath, stInfo, listFrames).GetError(), "");
    QFile file(strPath);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray byteFormer = file.readAll();
    // Full before the first byte, among the samples, and behind them.
    for (const uint64_t nRoom : {0U, 1000U, 8300U}) {
      ffc::Result<> result;
      {
        const CFullVolume fullVolume(nRoom);
        result = WriteFile(*pKind, strPath, stInfo, listFrames);
      }
      EXPECT_NE(result.GetError().find("cannot write"), std::string::npos)
        << pKind->GetName().toStdString() << " with room for " << nRoom << ": " << result.GetError();
      ASSERT_TRUE(file.seek(0));
      EXPECT_EQ(file.readAll(), byteFormer);
      EXPECT_EQ(ListFiles(dir).size(), 1);
    }
  }
}

TEST(FileKind, AFileThatShrinksWhileItIsReadEndsEarly)
{
  const CRawFile raw = CRawFile::Parse("128x128:Mono16").GetValue();
  std::vector<const IFileKind *> listKinds = ListFileKinds();
  listKinds.push_back(&raw);
  for (const IFileKind *pKind : listKinds) {
    if (pKind->GetMaxFrames() == 1) {
      continue; // a picture is read when it is opened
    }
    const QTemporaryDir dir;
    const SFrameInfo stInfo = MakeInfo(128, 128, 2);
    const QString strPath = GetPath(dir, *pKind);
    Frames listFrames(2, std::vector<uint8_t>(stInfo.stLayout.GetFrameSize()));
    for (std::vector<uint8_t> &listFrame : listFrames) {
      listFrame[5] = 1; // of a SER file the high byte: it is turned
    }
    ASSERT_EQ(WriteFile(*pKind, strPath, stInfo, listFrames).GetError(), "");
    auto reader = pKind->Open(strPath);
    ASSERT_EQ(reader.GetError(), "");
    ASSERT_TRUE(QFile(strPath).resize(20000)) << "of 65536";
    const std::string strError = reader.GetValue()->Read(listFrames[0].data()).GetError();
    EXPECT_NE(strError, "") << pKind->GetName().toStdString();
    reader.GetValue()->Close();
    EXPECT_TRUE(QFile::remove(strPath)) << "it was let go";
  }
}

TEST(FileKind, AFolderThatTookThePlaceMeanwhileStays)
{
  for (const IFileKind *pKind : ListFileKinds()) {
    const QTemporaryDir dir;
    const SFrameInfo stInfo = MakeInfo(8, 8, 1);
    const QString strPath = GetPath(dir, *pKind);
    auto writer = pKind->Create(strPath, stInfo);
    ASSERT_TRUE(writer.IsOk());
    ASSERT_TRUE(writer.GetValue()->Write(MakeFrames(stInfo.stLayout, 1, 8)[0].data(), {}).IsOk());
    ASSERT_TRUE(QDir().mkpath(strPath + "/inside"));
    EXPECT_NE(writer.GetValue()->Commit(ECommit::Durable).GetError().find("cannot write"), std::string::npos);
    EXPECT_TRUE(QDir(strPath).exists("inside"));
    EXPECT_EQ(ListFiles(dir), QStringList());
  }
}

TEST(PartialFile, WhatAKilledProgramLeftIsRemovedBeforeTheNextOneBegins)
{
  const QTemporaryDir dir;
  const QString strPath = dir.filePath("frame.ser");
  QString strLeft;
  {
    CPartialFile file(strPath);
    ASSERT_TRUE(file.Open().IsOk() && file.Write("frame", 5).IsOk());
    strLeft = file.GetFile().fileName();
  }
  EXPECT_FALSE(QFile::exists(strLeft)) << "a program that ends leaves nothing";
  ASSERT_TRUE(QFile(strLeft).open(QIODevice::WriteOnly)) << "as a killed one would have left it";
  CPartialFile::RemoveLeftOvers(dir.filePath("other.ser"));
  EXPECT_TRUE(QFile::exists(strLeft));
  CPartialFile::RemoveLeftOvers(strPath);
  EXPECT_FALSE(QFile::exists(strLeft));
}

TEST(FileKind, AWriterThatIsNotCommittedLeavesNothing)
{
  for (const IFileKind *pKind : ListFileKinds()) {
    const QTemporaryDir dir;
    const SFrameInfo stInfo = MakeInfo(8, 8, 1);
    {
      auto writer = pKind->Create(GetPath(dir, *pKind), stInfo);
      ASSERT_TRUE(writer.IsOk());
      ASSERT_TRUE(writer.GetValue()->Write(MakeFrames(stInfo.stLayout, 1, 8)[0].data(), {}).IsOk());
    }
    EXPECT_EQ(ListFiles(dir), QStringList()) << pKind->GetName().toStdString();
  }
}

TEST(FileKind, AFolderIsNoFileForAnyKind)
{
  const QTemporaryDir dir;
  for (const IFileKind *pKind : ListFileKinds()) {
    EXPECT_EQ(pKind->Open(dir.path()).GetError(), "is no file.");
    EXPECT_NE(pKind->Create(dir.path(), MakeInfo(2, 2, 1)).GetError().find(": it is no file"), std::string::npos);
    EXPECT_NE(pKind->Open(dir.filePath("missing")).GetError().find("cannot be opened"), std::string::npos);
    EXPECT_FALSE(pKind->Create(dir.filePath("missing/file"), MakeInfo(2, 2, 1)).IsOk());
  }
}

TEST(FileKind, NoMemoryIsTakenForAFrameThatIsNotThere)
{
  EXPECT_NE(CheckFrameSize(0, 5, 1, 1000).GetError().find("which is no size"), std::string::npos);
  EXPECT_NE(CheckFrameSize(5, 0, 1, 1000).GetError().find("which is no size"), std::string::npos);
  for (const auto &[nWidth, nHeight] : {std::pair<uint64_t, uint64_t>{MAX_PIXELS + 1, 1},
                                        {1, MAX_PIXELS + 1},
                                        {MAX_PIXELS / 2, 3},
                                        {UINT64_MAX, UINT64_MAX}}) {
    EXPECT_NE(CheckFrameSize(nWidth, nHeight, 1, UINT64_MAX).GetError().find("at most 1073741824 are read"),
              std::string::npos);
  }
  EXPECT_TRUE(CheckFrameSize(MAX_PIXELS / 2, 2, 1, MAX_PIXELS).IsOk());
  EXPECT_TRUE(CheckFrameSize(10, 10, 2, 200).IsOk());
  EXPECT_NE(CheckFrameSize(10, 10, 2, 199).GetError().find("ends early"), std::string::npos);
}

TEST(FileKind, OnlySamplesOfTwoBytesHaveAnOrder)
{
  uint8_t anBytes[] = {1, 2, 3, 4};
  SwapSamples(anBytes, {4, 1, 1});
  EXPECT_EQ(anBytes[0], 1);
  SwapSamples(anBytes, {2, 1, 2});
  EXPECT_EQ(anBytes[0], 2);
  EXPECT_EQ(anBytes[3], 3);
}

TEST(FileKind, LayoutsDifferInEachOfTheirNumbers)
{
  const SLayout stLayout{5, 3, 2};
  EXPECT_EQ(stLayout, (SLayout{5, 3, 2}));
  EXPECT_NE(stLayout, (SLayout{6, 3, 2}));
  EXPECT_NE(stLayout, (SLayout{5, 4, 2}));
  EXPECT_NE(stLayout, (SLayout{5, 3, 1}));
}

TEST(PngFile, AFileThatIsNoPictureIsRefused)
{
  const QTemporaryDir dir;
  const QString strPath = dir.filePath("frame.png");
  QFile file(strPath);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("no picture");
  file.close();
  EXPECT_EQ(FindFileKind(strPath)->Open(strPath).GetError().find("cannot be read"), 0U);
}

TEST(PngFile, AColourPictureIsNoFrame)
{
  const QTemporaryDir dir;
  const QString strPath = dir.filePath("frame.png");
  QImage image(2, 2, QImage::Format_RGB32);
  image.fill(Qt::red);
  ASSERT_TRUE(image.save(strPath));
  EXPECT_EQ(FindFileKind(strPath)->Open(strPath).GetError(), "is not a grey picture of 8 or 16 bit.");
}

TEST(PngFile, ASizeThatTheFileCannotHoldTakesNoMemory)
{
  const QTemporaryDir dir;
  const QString strPath = dir.filePath("frame.png");
  ASSERT_TRUE(SaveFrame(strPath, {1, 1, 1}, "x").IsOk());
  QFile file(strPath);
  ASSERT_TRUE(file.open(QIODevice::ReadWrite));
  QByteArray byteContent = file.readAll();
  // Width and height, and the checksum that follows them.
  byteContent.replace(16, 8, QByteArray::fromHex("0000753000004e20"));
  byteContent.replace(29, 4, QByteArray::fromHex("eafe5455"));
  ASSERT_TRUE(file.seek(0) && file.write(byteContent) == byteContent.size());
  file.close();
  EXPECT_EQ(FindFileKind(strPath)->Open(strPath).GetError(),
            "is too short for a frame of 30000 x 20000 pixels: it ends early.");
}

TEST(PngFile, AFrameThatIsWiderThanPicturesAreIsNotWritten)
{
  const QTemporaryDir dir;
  const SLayout stLayout{1000001, 1, 1};
  const std::string strError =
    SaveFrame(dir.filePath("frame.png"), stLayout, std::vector<uint8_t>(stLayout.GetFrameSize()).data()).GetError();
  EXPECT_NE(strError.find("cannot write"), std::string::npos) << strError;
  EXPECT_EQ(ListFiles(dir), QStringList());
}

TEST(PngFile, AFrameWithoutPixelsIsNotWritten)
{
  const QTemporaryDir dir;
  const QString strPath = dir.filePath("frame.png");
  EXPECT_FALSE(SaveFrame(strPath, {}, nullptr).IsOk());
  EXPECT_FALSE(QFile::exists(strPath));
}

TEST(SaveFrame, AnEndingThatNoKindHasIsNamed)
{
  const uint8_t nPixel = 1;
  EXPECT_NE(SaveFrame("frame.jpeg", {1, 1, 1}, &nPixel).GetError().find("no kind of file has this ending"),
            std::string::npos);
}

TEST(SaveFrame, OneFrameIsWrittenWhereThereIsAFolder)
{
  const QTemporaryDir dir;
  const uint8_t nPixel = 77;
  EXPECT_NE(SaveFrame(dir.filePath("missing/frame.png"), {1, 1, 1}, &nPixel).GetError(), "");
  EXPECT_EQ(SaveFrame(dir.filePath("frame.png"), {1, 1, 1}, &nPixel).GetError(), "");
  std::string strError;
  const QString strPath = dir.filePath("frame.png");
  EXPECT_EQ(ReadFile(*FindFileKind(strPath), strPath, &strError), Frames{{nPixel}});
}

TEST(RawFile, FramesFollowEachOtherWithoutAHeader)
{
  const QTemporaryDir dir;
  const QString strPath = dir.filePath("frames.raw");
  const ffc::Result<CRawFile> raw = CRawFile::Parse("5x3:BayerGB12");
  ASSERT_EQ(raw.GetError(), "");
  const SFrameInfo stInfo = MakeInfo(5, 3, 2);
  const Frames listFrames = MakeFrames(stInfo.stLayout, 4, 12);
  ASSERT_EQ(WriteFile(raw.GetValue(), strPath, stInfo, listFrames).GetError(), "");
  EXPECT_EQ(QFile(strPath).size(), 4 * 5 * 3 * 2);
  std::string strError;
  SFrameInfo stRead;
  EXPECT_EQ(ReadFile(raw.GetValue(), strPath, &strError, &stRead), listFrames);
  EXPECT_EQ(strError, "");
  EXPECT_EQ(stRead.nBitDepth, 12U);
  EXPECT_EQ(stRead.eColors, EColorLayout::BayerGB);
  ASSERT_TRUE(QFile(strPath).resize(4 * 5 * 3 * 2 - 1));
  EXPECT_EQ(raw.GetValue().Open(strPath).GetError(),
            "has 119 bytes, which is no multiple of the 30 bytes of a frame of 5 x 3 with 16 bits per pixel.");
  ASSERT_TRUE(QFile(strPath).resize(0));
  EXPECT_EQ(raw.GetValue().Open(strPath).GetError().find("has 0 bytes"), 0U);
  EXPECT_NE(raw.GetValue().Open(dir.filePath("missing.raw")).GetError().find("cannot be opened"), std::string::npos);
  EXPECT_FALSE(CRawFile(0, 3, *ffc::genapi::FindSensorFormat("Mono8")).Open(strPath).IsOk());
}

TEST(RawFile, AFormatThatIsNoneIsExplained)
{
  for (const char *pFormat :
       {"", "5x3", "5:Mono8", "x3:Mono8", "0x3:Mono8", "-5x3:Mono8", "5x3x2:Mono8", "999999x5:Mono8", "5x999999:Mono8",
        "1234567x5:Mono8", "100000x100000:Mono8", "32768x32769:Mono8", "99999999999999999999x5:Mono8",
        "5x3:", "5:3xMono8", "5x3:Mono12p", "5x3:RGB8"}) {
    EXPECT_NE(CRawFile::Parse(pFormat).GetError(), "") << pFormat;
  }
  for (const char *pFormat : {"", "5x3", "5:Mono8", "5:3xMono8"}) {
    EXPECT_EQ(CRawFile::Parse(pFormat).GetError(), "write it as WIDTHxHEIGHT:FORMAT, such as 2048x1536:Mono12")
      << pFormat;
  }
}

TEST(RawFile, TheLargestFramesThatTheComputationsTakeCanBeStated)
{
  for (const char *pFormat : {"100000x1:Mono8", "1x100000:BayerRG12", "32768x32768:Mono16"}) {
    EXPECT_EQ(CRawFile::Parse(pFormat).GetError(), "") << pFormat;
  }
}

TEST(PartialFile, WhoMayReadTheFormerFileMayReadTheNewOne)
{
  const QTemporaryDir dir;
  const QString strPath = dir.filePath("file");
  const auto fnWrite = [&strPath](const char *pText) {
    CPartialFile file(strPath);
    ASSERT_TRUE(file.Open().IsOk());
    ASSERT_TRUE(file.Write(pText, 3).IsOk());
    ASSERT_EQ(file.Commit(ECommit::Quick).GetError(), "");
  };
  fnWrite("one");
  ASSERT_TRUE(QFile::setPermissions(strPath, QFileDevice::ReadOwner | QFileDevice::WriteOwner));
  const QFileDevice::Permissions eFormer = QFile::permissions(strPath);
  fnWrite("two");
  EXPECT_EQ(QFile::permissions(strPath), eFormer);
}

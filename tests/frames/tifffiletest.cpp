#include "frames/tifffile.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <utility>

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <tiffio.h>

#include "tests/frames/framefiles.h"

using namespace ffc::frames;
using namespace ffc::test;

namespace {

// Stands in for another library with tags of its own, which was there first.
int s_nExtended = 0;
const TIFFExtendProc s_fnExtender = TIFFSetTagExtender([](TIFF *) { ++s_nExtended; });

class CTiffTest : public ::testing::Test {
protected:
  CTiffTest() : m_strPath(m_dir.filePath("frame.tif")) {}

  // A file of the library's own making, 4 x 4 with 8 bits unless fnChange says otherwise.
  void WriteForeign(const std::function<void(TIFF *)> &fnChange, const char *pMode = "w", int nPages = 1)
  {
    TIFF *pTiff = TIFFOpen(m_strPath.toUtf8().constData(), pMode);
    ASSERT_NE(pTiff, nullptr);
    for (int nPage = 0; nPage < nPages; ++nPage) {
      TIFFSetField(pTiff, TIFFTAG_IMAGEWIDTH, 4);
      TIFFSetField(pTiff, TIFFTAG_IMAGELENGTH, 4);
      TIFFSetField(pTiff, TIFFTAG_BITSPERSAMPLE, 8);
      TIFFSetField(pTiff, TIFFTAG_SAMPLESPERPIXEL, 1);
      TIFFSetField(pTiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
      TIFFSetField(pTiff, TIFFTAG_ROWSPERSTRIP, 4);
      fnChange(pTiff);
      uint8_t anSamples[256] = {};
      for (uint8_t n = 0; n < 16; ++n) {
        anSamples[n] = static_cast<uint8_t>(n + nPage);
      }
      if (TIFFIsTiled(pTiff) != 0) {
        TIFFWriteEncodedTile(pTiff, 0, anSamples, 256);
      } else {
        TIFFWriteEncodedStrip(pTiff, 0, anSamples, std::min<tmsize_t>(TIFFStripSize(pTiff), sizeof anSamples));
      }
      TIFFWriteDirectory(pTiff);
    }
    TIFFClose(pTiff);
  }

  std::string GetError(const std::function<void(TIFF *)> &fnChange)
  {
    WriteForeign(fnChange);
    std::string strError;
    (void)ReadFile(m_kind, m_strPath, &strError);
    return strError;
  }

  // Of the first directory of a small file in this machine's byte order, as they stand there.
  std::vector<int> ListTags() const
  {
    constexpr int ENTRY_SIZE = 12;
    QFile file(m_strPath);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray byteContent = file.readAll();
    uint32_t nPlace = 0;
    std::memcpy(&nPlace, byteContent.constData() + 4, sizeof nPlace);
    const auto getWord = [&byteContent](uint32_t nOffset) {
      uint16_t nWord = 0;
      std::memcpy(&nWord, byteContent.mid(static_cast<int>(nOffset), 2).leftJustified(2, '\0').constData(), 2);
      return nWord;
    };
    std::vector<int> listTags;
    for (uint32_t n = 0; n < getWord(nPlace); ++n) {
      listTags.push_back(getWord(nPlace + 2 + ENTRY_SIZE * n));
    }
    return listTags;
  }

  QTemporaryDir m_dir;
  CTiffFile m_kind;
  QString m_strPath;
};

} // namespace

TEST_F(CTiffTest, FilesOfOthersAreReadInEitherByteOrderAndAsBigTiff)
{
  for (const char *pMode : {"wl", "wb", "wl8", "wb8"}) {
    WriteForeign(
      [](TIFF *pTiff) {
        TIFFSetField(pTiff, TIFFTAG_BITSPERSAMPLE, 16);
        TIFFSetField(pTiff, TIFFTAG_IMAGEWIDTH, 2);
        TIFFSetField(pTiff, TIFFTAG_IMAGEDESCRIPTION, "what it shows");
      },
      pMode, 3);
    std::string strError;
    SFrameInfo stInfo;
    const Frames listFrames = ReadFile(m_kind, m_strPath, &strError, &stInfo);
    EXPECT_EQ(strError, "") << pMode;
    ASSERT_EQ(listFrames.size(), 3U) << pMode;
    EXPECT_EQ(listFrames[2], (std::vector<uint8_t>{2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17})) << pMode;
    EXPECT_EQ(stInfo.mapTexts.value(TEXT_DESCRIPTION), "what it shows");
    EXPECT_EQ(stInfo.stTiff.bBig, pMode[2] == '8');
  }
}

TEST_F(CTiffTest, WhatAFileHadIsKept)
{
  for (const uint16_t nCompression : {uint16_t{COMPRESSION_NONE}, uint16_t{COMPRESSION_LZW}}) {
    for (const bool bBig : {false, true}) {
      SFrameInfo stInfo;
      stInfo.stLayout = {700, 900, 2}; // more than one strip
      stInfo.nBitDepth = 12;
      stInfo.stTiff = {bBig, nCompression, 3, RESUNIT_CENTIMETER, 100.0F, 200.0F};
      const Frames listFrames = MakeFrames(stInfo.stLayout, 2, 12);
      ASSERT_EQ(WriteFile(m_kind, m_strPath, stInfo, listFrames).GetError(), "");
      std::string strError;
      SFrameInfo stRead;
      EXPECT_EQ(ReadFile(m_kind, m_strPath, &strError, &stRead), listFrames);
      EXPECT_EQ(strError, "");
      EXPECT_EQ(stRead.nBitDepth, 12U);
      EXPECT_EQ(stRead.stTiff.bBig, bBig);
      EXPECT_EQ(stRead.stTiff.nCompression, nCompression);
      EXPECT_EQ(stRead.stTiff.nOrientation, 3);
      EXPECT_EQ(stRead.stTiff.fResolutionY, 200.0F);
      EXPECT_EQ(stRead.stTiff.nResolutionUnit, RESUNIT_CENTIMETER);
    }
  }
}

TEST_F(CTiffTest, EveryFrameHasTextsOfItsOwn)
{
  SFrameInfo stInfo;
  stInfo.stLayout = {4, 4, 1};
  stInfo.nFrames = 2;
  const Frames listFrames = MakeFrames(stInfo.stLayout, 2, 8);
  {
    auto writer = m_kind.Create(m_strPath, stInfo);
    ASSERT_TRUE(writer.GetValue()->Write(listFrames[0].data(), {{TEXT_DESCRIPTION, "first"}}).IsOk());
    ASSERT_TRUE(writer.GetValue()->Write(listFrames[1].data(), {{TEXT_DESCRIPTION, "second"}}).IsOk());
    ASSERT_EQ(writer.GetValue()->Commit().GetError(), "");
  }
  auto reader = m_kind.Open(m_strPath);
  std::vector<uint8_t> listFrame(16);
  Texts mapTexts;
  ASSERT_TRUE(reader.GetValue()->Read(listFrame.data(), &mapTexts).IsOk());
  EXPECT_EQ(mapTexts.value(TEXT_DESCRIPTION), "first");
  ASSERT_TRUE(reader.GetValue()->Read(listFrame.data(), &mapTexts).IsOk());
  EXPECT_EQ(mapTexts.value(TEXT_DESCRIPTION), "second");
  EXPECT_EQ(reader.GetValue()->Read(listFrame.data(), &mapTexts).GetError(), "ends early.");
}

TEST_F(CTiffTest, WhatIsNoGreyFrameIsRefusedByName)
{
  const auto setTag = [](uint32_t nTag, int nValue) {
    return [nTag, nValue](TIFF *pTiff) { TIFFSetField(pTiff, nTag, nValue); };
  };
  EXPECT_EQ(GetError(setTag(TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISWHITE)),
            "is a grey picture with white as zero; only black as zero is read.");
  EXPECT_EQ(GetError([](TIFF *pTiff) {
              uint16_t anMap[256] = {};
              TIFFSetField(pTiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_PALETTE);
              TIFFSetField(pTiff, TIFFTAG_COLORMAP, anMap, anMap, anMap);
            }),
            "is a palette picture; only grey pictures are read.");
  EXPECT_EQ(GetError([](TIFF *pTiff) {
              TIFFSetField(pTiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
              TIFFSetField(pTiff, TIFFTAG_SAMPLESPERPIXEL, 3);
            }),
            "is a colour picture; only grey pictures are read.");
  EXPECT_EQ(GetError(setTag(TIFFTAG_BITSPERSAMPLE, 32)), "has samples of 32 bits; unsigned ones of 8 or 16 are read.");
  EXPECT_NE(GetError(setTag(TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_INT)).find("no unsigned numbers"), std::string::npos);
  EXPECT_EQ(GetError([](TIFF *pTiff) {
              TIFFSetField(pTiff, TIFFTAG_TILEWIDTH, 16);
              TIFFSetField(pTiff, TIFFTAG_TILELENGTH, 16);
            }),
            "is stored in tiles; only strips are read.");
  EXPECT_NE(GetError([](TIFF *pTiff) {
              TIFFSetField(pTiff, TIFFTAG_IMAGEDESCRIPTION, "ImageJ=1.53\nimages=500\nslices=500");
            }).find("it holds 500 frames, but has directories for 1"),
            std::string::npos);
}

TEST_F(CTiffTest, AStackOfColourPicturesIsRefusedForItsColoursWhateverElseIsWrong)
{
  EXPECT_EQ(GetError([](TIFF *pTiff) {
              TIFFSetField(pTiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
              TIFFSetField(pTiff, TIFFTAG_SAMPLESPERPIXEL, 3);
              TIFFSetField(pTiff, TIFFTAG_IMAGEDESCRIPTION, "ImageJ=1.53\nimages=500\nslices=500");
            }),
            "is a colour picture; only grey pictures are read.")
    << "to save it as BigTIFF would not help";
}

TEST_F(CTiffTest, WhatMeansNothingIsNoReasonToRefuse)
{
  const auto setDescription = [](const char *pText) {
    return [pText](TIFF *pTiff) { TIFFSetField(pTiff, TIFFTAG_IMAGEDESCRIPTION, pText); };
  };
  EXPECT_EQ(GetError(setDescription("ImageJ=1.53\nimages=1\nslices=1")), "");
  EXPECT_EQ(GetError(setDescription("ImageJ=1.53\nunit=pixel")), "");
  EXPECT_EQ(GetError(setDescription("first\nimages=500")), "");
  EXPECT_EQ(GetError([](TIFF *pTiff) { TIFFSetField(pTiff, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_VOID); }), "");
  WriteForeign([](TIFF *pTiff) { TIFFSetField(pTiff, TIFFTAG_MAXSAMPLEVALUE, 200); });
  EXPECT_EQ(m_kind.Open(m_strPath).GetValue()->GetInfo().nBitDepth, 0U) << "no depth ends there";
}

TEST_F(CTiffTest, ADirectoryThatNoFileReachesIsRefused)
{
  for (const char *pOffset : {"f0ffffffffffffff", "f0ffffffffffff7f", "0000000000000040"}) {
    QFile file(m_strPath);
    const QByteArray byteHeader = QByteArray::fromHex("49492b0008000000") + QByteArray::fromHex(pOffset);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(byteHeader) == byteHeader.size());
    file.close();
    EXPECT_EQ(m_kind.Open(m_strPath).GetError().find("cannot be read as TIFF: "), 0U) << pOffset;
  }
}

TEST_F(CTiffTest, AFileThatIsExpectedToBecomeTooLargeForSmallOffsetsIsABigOne)
{
  SFrameInfo stInfo;
  stInfo.stLayout = {64, 32, 2};
  stInfo.nBitDepth = 16;
  stInfo.nFrames = 600000;
  stInfo.stTiff.fResolutionX = 100.0F; // in one direction alone: that is none
  const Frames listFrames = MakeFrames(stInfo.stLayout, 1);
  {
    auto writer = m_kind.Create(m_strPath, stInfo);
    ASSERT_TRUE(writer.GetValue()->Write(listFrames[0].data(), {}).IsOk());
    ASSERT_EQ(writer.GetValue()->Commit(ECommit::Durable).GetError(), "");
  }
  std::string strError;
  SFrameInfo stRead;
  EXPECT_EQ(ReadFile(m_kind, m_strPath, &strError, &stRead), listFrames);
  EXPECT_TRUE(stRead.stTiff.bBig);
  EXPECT_EQ(stRead.stTiff.fResolutionX, 0.0F);
}

TEST_F(CTiffTest, WhatTheLibraryDoesNotTakeIsNotPutInPlace)
{
  SFrameInfo stInfo;
  stInfo.stLayout = {4, 4, 1};
  stInfo.stTiff.nOrientation = 99;
  auto writer = m_kind.Create(m_strPath, stInfo);
  EXPECT_NE(writer.GetValue()->Write(MakeFrames(stInfo.stLayout, 1, 8)[0].data(), {}).GetError(), "");
  EXPECT_NE(writer.GetValue()->Commit().GetError(), "");
  EXPECT_FALSE(QFile::exists(m_strPath));
}

TEST_F(CTiffTest, TagsOfAnotherLibraryInTheProgramStayKnown)
{
  EXPECT_EQ(GetError([](TIFF *) {}), "");
  const int nBefore = s_nExtended;
  EXPECT_EQ(m_kind.Open(m_strPath).GetError(), "");
  EXPECT_GT(s_nExtended, nBefore);
}

TEST_F(CTiffTest, FramesOfDifferentSizesAreRefused)
{
  int nPage = 0;
  WriteForeign([&nPage](TIFF *pTiff) { TIFFSetField(pTiff, TIFFTAG_IMAGELENGTH, nPage++ == 0 ? 4 : 2); }, "w", 2);
  std::string strError;
  (void)ReadFile(m_kind, m_strPath, &strError);
  EXPECT_EQ(strError, "has frames of different sizes: frame 2 is 4 x 2 with 8 bits per pixel, unlike the first one: "
                      "4 x 4 with 8 bits per pixel.");
}

TEST_F(CTiffTest, ASizeThatTheFileCannotHoldTakesNoMemory)
{
  WriteForeign([](TIFF *pTiff) {
    TIFFSetField(pTiff, TIFFTAG_IMAGEWIDTH, 30000);
    TIFFSetField(pTiff, TIFFTAG_IMAGELENGTH, 20000);
    TIFFSetField(pTiff, TIFFTAG_ROWSPERSTRIP, 1);
  });
  EXPECT_NE(m_kind.Open(m_strPath).GetError().find("30000 x 20000"), std::string::npos)
    << m_kind.Open(m_strPath).GetError();
  // Samples that are not compressed take their place in the file, of which most are missing here.
  WriteForeign([](TIFF *pTiff) {
    TIFFSetField(pTiff, TIFFTAG_IMAGEWIDTH, 20);
    TIFFSetField(pTiff, TIFFTAG_IMAGELENGTH, 30);
    TIFFSetField(pTiff, TIFFTAG_ROWSPERSTRIP, 30);
  });
  EXPECT_GT(QFile(m_strPath).size(), 20 * 30 / 2);
  EXPECT_LT(QFile(m_strPath).size(), 20 * 30);
  EXPECT_EQ(m_kind.Open(m_strPath).GetError(), "is too short for a frame of 20 x 30 pixels: it ends early.");
}

TEST_F(CTiffTest, TheLargestValueThatAFileStatesIsItsDepth)
{
  for (const uint32_t nDepth : {8U, 10U, 12U, 14U}) {
    WriteForeign([&](TIFF *pTiff) {
      TIFFSetField(pTiff, TIFFTAG_BITSPERSAMPLE, 16);
      TIFFSetField(pTiff, TIFFTAG_MAXSAMPLEVALUE, (1U << nDepth) - 1);
    });
    EXPECT_EQ(m_kind.Open(m_strPath).GetValue()->GetInfo().nBitDepth, nDepth);
  }
}

TEST_F(CTiffTest, LinesThatAreLongerThanAStripAreWrittenOneByOne)
{
  SFrameInfo stInfo;
  stInfo.stLayout = {600000, 2, 2};
  const Frames listFrames = MakeFrames(stInfo.stLayout, 1);
  ASSERT_EQ(WriteFile(m_kind, m_strPath, stInfo, listFrames).GetError(), "");
  std::string strError;
  EXPECT_TRUE(ReadFile(m_kind, m_strPath, &strError) == listFrames) << strError;
}

TEST_F(CTiffTest, FramesAreWrittenInStripsOfAMegabyte)
{
  SFrameInfo stInfo;
  stInfo.stLayout = {1024, 1025, 2};
  ASSERT_EQ(WriteFile(m_kind, m_strPath, stInfo, MakeFrames(stInfo.stLayout, 1)).GetError(), "");
  TIFF *pTiff = TIFFOpen(m_strPath.toUtf8().constData(), "r");
  ASSERT_NE(pTiff, nullptr);
  EXPECT_EQ(TIFFNumberOfStrips(pTiff), 3U);
  EXPECT_EQ(TIFFStripSize(pTiff), 1 << 20);
  TIFFClose(pTiff);
}

TEST_F(CTiffTest, TheCorrectionIsFoundInFilesOfEveryVersion)
{
  SFrameInfo stInfo;
  stInfo.stLayout = {4, 4, 1};
  stInfo.mapTexts = {{TEXT_CORRECTION, "with these coefficients"}};
  ASSERT_EQ(WriteFile(m_kind, m_strPath, stInfo, MakeFrames(stInfo.stLayout, 1, 8)).GetError(), "");
  EXPECT_EQ(ListTags().back(), 65170) << "by the same tag";
}

TEST_F(CTiffTest, OthersFindEveryTagThatTheyNeed)
{
  SFrameInfo stInfo;
  stInfo.stLayout = {6, 4, 2};
  stInfo.nBitDepth = 15;
  stInfo.stTiff = {false, COMPRESSION_NONE, 2, RESUNIT_INCH, 0.5F, 0.75F};
  ASSERT_EQ(WriteFile(m_kind, m_strPath, stInfo, MakeFrames(stInfo.stLayout, 1, 9)).GetError(), "");
  TIFF *pTiff = TIFFOpen(m_strPath.toUtf8().constData(), "r");
  ASSERT_NE(pTiff, nullptr);
  for (const auto &[nTag, nExpected] :
       {std::pair{TIFFTAG_BITSPERSAMPLE, 16}, std::pair{TIFFTAG_SAMPLESPERPIXEL, 1},
        std::pair{TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK}, std::pair{TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG},
        std::pair{TIFFTAG_COMPRESSION, COMPRESSION_NONE}, std::pair{TIFFTAG_ORIENTATION, 2},
        std::pair{TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH}, std::pair{TIFFTAG_MAXSAMPLEVALUE, 32767}}) {
    uint16_t nValue = 0;
    EXPECT_EQ(TIFFGetField(pTiff, static_cast<uint32_t>(nTag), &nValue), 1) << nTag;
    EXPECT_EQ(nValue, nExpected) << nTag;
  }
  float fResolution = 0;
  EXPECT_EQ(TIFFGetField(pTiff, TIFFTAG_XRESOLUTION, &fResolution), 1);
  EXPECT_EQ(fResolution, 0.5F);
  TIFFClose(pTiff);
  // In the file itself: the library has values for those that are missing.
  EXPECT_EQ(ListTags(),
            (std::vector<int>{TIFFTAG_IMAGEWIDTH, TIFFTAG_IMAGELENGTH, TIFFTAG_BITSPERSAMPLE, TIFFTAG_COMPRESSION,
                              TIFFTAG_PHOTOMETRIC, TIFFTAG_STRIPOFFSETS, TIFFTAG_ORIENTATION, TIFFTAG_SAMPLESPERPIXEL,
                              TIFFTAG_ROWSPERSTRIP, TIFFTAG_STRIPBYTECOUNTS, TIFFTAG_MAXSAMPLEVALUE,
                              TIFFTAG_XRESOLUTION, TIFFTAG_YRESOLUTION, TIFFTAG_PLANARCONFIG, TIFFTAG_RESOLUTIONUNIT}));
}

TEST_F(CTiffTest, WarningsOfTheLibraryGoToNobody)
{
  WriteForeign([](TIFF *pTiff) { TIFFSetField(pTiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH); }, "wl");
  EXPECT_EQ(m_kind.Open(m_strPath).GetError(), "") << "and the handlers are set now";
  QFile file(m_strPath);
  ASSERT_TRUE(file.open(QIODevice::ReadWrite));
  QByteArray byteContent = file.readAll();
  byteContent.replace(QByteArray::fromHex("2801030001000000"), QByteArray::fromHex("9999030001000000")); // no such tag
  ASSERT_TRUE(file.seek(0) && file.write(byteContent) == byteContent.size());
  file.close();
  static int s_nWarnings = 0;
  s_nWarnings = 0;
  const TIFFErrorHandler fnFormer = TIFFSetWarningHandler([](const char *, const char *, va_list) { ++s_nWarnings; });
  EXPECT_EQ(m_kind.Open(m_strPath).GetError(), "");
  EXPECT_EQ(s_nWarnings, 0);
  TIFFClose(TIFFOpen(m_strPath.toUtf8().constData(), "r"));
  TIFFSetWarningHandler(fnFormer);
  EXPECT_GT(s_nWarnings, 0) << "else it has shown nothing";
}

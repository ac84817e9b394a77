#include "frames/fitsfile.h"

#include <algorithm>
#include <cstring>
#include <functional>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <fitsio.h>
#include <gtest/gtest.h>

#include "tests/frames/framefiles.h"

using namespace ffc::frames;
using namespace ffc::test;
using ffc::genapi::EColorLayout;

namespace {

QByteArray ReadBytes(const QString &strPath)
{
  QFile file(strPath);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly));
  return file.readAll();
}

void WriteBytes(const QString &strPath, const QByteArray &byteContent)
{
  QFile file(strPath);
  EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(byteContent) == byteContent.size());
}

class CFitsTest : public ::testing::Test {
protected:
  CFitsTest() : m_strPath(m_dir.filePath("frame.fits")) {}

  /// A file of the library's own making, of 4 x 2 with the values 0, 1, 2 ... through all frames.
  /// \param fnChange adds keywords
  void WriteForeign(int nType, std::vector<long> listAxes, const std::function<void(fitsfile *, int *)> &fnChange = {})
  {
    int nStatus = 0;
    fitsfile *pFile = nullptr;
    QFile::remove(m_strPath);
    fits_create_diskfile(&pFile, QFile::encodeName(m_strPath).constData(), &nStatus);
    fits_create_img(pFile, nType, static_cast<int>(listAxes.size()), listAxes.data(), &nStatus);
    if (fnChange) {
      fnChange(pFile, &nStatus);
    }
    long nSamples = listAxes.empty() ? 0 : 1;
    for (const long nAxis : listAxes) {
      nSamples *= nAxis;
    }
    std::vector<short> listSamples(static_cast<std::size_t>(nSamples));
    for (std::size_t n = 0; n < listSamples.size(); ++n) {
      listSamples[n] = static_cast<short>(n);
    }
    if (nSamples > 0) {
      fits_write_img(pFile, TSHORT, 1, nSamples, listSamples.data(), &nStatus);
    }
    fits_close_file(pFile, &nStatus);
    ASSERT_EQ(nStatus, 0);
  }

  /// Adds one keyword to a file of 16-bit samples, and reads it.
  template <class TValue>
  std::string GetErrorWith(const char *pKey, TValue value, std::vector<long> listAxes = {4, 2})
  {
    WriteForeign(USHORT_IMG, std::move(listAxes), [&](fitsfile *pFile, int *pStatus) {
      if constexpr (std::is_same_v<TValue, const char *>) {
        fits_update_key_str(pFile, pKey, value, nullptr, pStatus);
      } else {
        fits_update_key_dbl(pFile, pKey, value, 10, nullptr, pStatus);
        fits_set_bscale(pFile, 1, 0, pStatus);
      }
    });
    return GetError();
  }

  std::string GetError()
  {
    std::string strError;
    (void)ReadFile(m_kind, m_strPath, &strError, &m_stRead);
    return strError;
  }

  /// Samples of the frame, or of all frames, of a file.
  std::vector<int> ReadSamples()
  {
    std::string strError;
    std::vector<int> listSamples;
    for (const std::vector<uint8_t> &listFrame : ReadFile(m_kind, m_strPath, &strError, &m_stRead)) {
      for (std::size_t n = 0; n < listFrame.size(); n += m_stRead.stLayout.nBytesPerSample) {
        uint16_t nSample = listFrame[n];
        if (m_stRead.stLayout.nBytesPerSample == 2) {
          std::memcpy(&nSample, listFrame.data() + n, 2);
        }
        listSamples.push_back(nSample);
      }
    }
    EXPECT_EQ(strError, "");
    return listSamples;
  }

  QTemporaryDir m_dir;
  CFitsFile m_kind;
  QString m_strPath;
  SFrameInfo m_stRead;
};

} // namespace

TEST_F(CFitsTest, FilesOfOthersAreReadAsImagesAndCubes)
{
  for (const int nType : {BYTE_IMG, SHORT_IMG, USHORT_IMG}) {
    WriteForeign(nType, {4, 2});
    EXPECT_EQ(ReadSamples(), (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7})) << nType;
    EXPECT_EQ(m_stRead.stLayout, (SLayout{4, 2, nType == BYTE_IMG ? 1U : 2U}));
    EXPECT_EQ(m_stRead.strRemark, "The first row is taken as the top one: the file does not say (ROWORDER).");
    WriteForeign(nType, {2, 2, 2});
    EXPECT_EQ(ReadSamples(), (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7})) << nType;
    EXPECT_EQ(m_stRead.nFrames, 2U);
  }
}

TEST_F(CFitsTest, OthersReadWhatIsWritten)
{
  SFrameInfo stInfo;
  stInfo.stLayout = {5, 3, 2};
  stInfo.nBitDepth = 12;
  stInfo.eColors = EColorLayout::BayerGB;
  stInfo.mapTexts[TEXT_DESCRIPTION] = QString(500, 'x');
  const Frames listFrames = MakeFrames(stInfo.stLayout, 4);
  ASSERT_EQ(WriteFile(m_kind, m_strPath, stInfo, listFrames).GetError(), "");
  EXPECT_EQ(QFile(m_strPath).size() % 2880, 0);
  int nStatus = 0;
  fitsfile *pFile = nullptr;
  fits_open_diskfile(&pFile, QFile::encodeName(m_strPath).constData(), READONLY, &nStatus);
  std::vector<uint16_t> listRead(5 * 3 * 4);
  fits_read_img(pFile, TUSHORT, 1, 5 * 3 * 4, nullptr, listRead.data(), nullptr, &nStatus);
  char acPattern[FLEN_VALUE] = {};
  char acOrder[FLEN_VALUE] = {};
  fits_read_key_str(pFile, "BAYERPAT", acPattern, nullptr, &nStatus);
  fits_read_key_str(pFile, "ROWORDER", acOrder, nullptr, &nStatus);
  fits_close_file(pFile, &nStatus);
  ASSERT_EQ(nStatus, 0);
  EXPECT_STREQ(acPattern, "GBRG");
  EXPECT_STREQ(acOrder, "TOP-DOWN");
  for (std::size_t nFrame = 0; nFrame < listFrames.size(); ++nFrame) {
    EXPECT_EQ(std::memcmp(listRead.data() + 15 * nFrame, listFrames[nFrame].data(), 30), 0) << nFrame;
  }
  EXPECT_EQ(GetError(), "");
  EXPECT_EQ(m_stRead.nBitDepth, 12U);
  EXPECT_EQ(m_stRead.eColors, EColorLayout::BayerGB);
  EXPECT_EQ(m_stRead.strRemark, "");
}

TEST_F(CFitsTest, TheHeaderHasItsValuesInTheirColumnsAndSaysWhatIsInTheFile)
{
  for (const auto &[eColors, pPattern] :
       {std::pair{EColorLayout::BayerRG, "RGGB"}, std::pair{EColorLayout::BayerGB, "GBRG"},
        std::pair{EColorLayout::BayerGR, "GRBG"}, std::pair{EColorLayout::BayerBG, "BGGR"}}) {
    for (const uint32_t nBytes : {1U, 2U}) {
      SFrameInfo stInfo;
      stInfo.stLayout = {4, 2, nBytes};
      stInfo.nBitDepth = 8 * nBytes;
      stInfo.eColors = eColors;
      ASSERT_EQ(WriteFile(m_kind, m_strPath, stInfo, MakeFrames(stInfo.stLayout, 2)).GetError(), "");
      const QByteArray byteFile = ReadBytes(m_strPath);
      for (const QByteArray &byteCard :
           {QByteArray("SIMPLE  =                    T "), QByteArray("NAXIS   =                    3 "),
            QByteArray("NAXIS1  =                    4 "), QByteArray("NAXIS3  =                    2 "),
            QByteArray("CTYPE3  = 'FRAME   '"), QByteArray("BAYERPAT= '") + pPattern}) {
        EXPECT_EQ(byteFile.indexOf(byteCard) % 80, 0) << byteCard.toStdString();
      }
      EXPECT_EQ(GetError(), "");
      EXPECT_EQ(m_stRead.nBitDepth, 8 * nBytes);
      EXPECT_EQ(m_stRead.eColors, eColors);
    }
  }
}

TEST_F(CFitsTest, FramesBeginWithTheirTopRowWhateverTheOrderInTheFile)
{
  WriteForeign(USHORT_IMG, {2, 4}, [](fitsfile *pFile, int *pStatus) {
    fits_write_key_str(pFile, "ROWORDER", "BOTTOM-UP", nullptr, pStatus);
    fits_write_key_str(pFile, "BAYERPAT", "RGGB", nullptr, pStatus);
  });
  EXPECT_EQ(ReadSamples(), (std::vector<int>{6, 7, 4, 5, 2, 3, 0, 1}));
  EXPECT_EQ(m_stRead.eColors, EColorLayout::BayerGB);
  const QByteArray byteForeign = ReadBytes(m_strPath);
  std::string strError;
  const Frames listFrames = ReadFile(m_kind, m_strPath, &strError);
  ASSERT_EQ(WriteFile(m_kind, m_strPath, m_stRead, listFrames).GetError(), "");
  const QByteArray byteOwn = ReadBytes(m_strPath);
  EXPECT_EQ(byteOwn.mid(2880), byteForeign.mid(2880)) << "in the file the rows stay where they were";
  EXPECT_TRUE(byteOwn.contains("'BOTTOM-UP'"));
  EXPECT_TRUE(byteOwn.contains("'RGGB"));
  WriteForeign(USHORT_IMG, {2, 3}, [](fitsfile *pFile, int *pStatus) {
    fits_write_key_str(pFile, "ROWORDER", "BOTTOM-UP", nullptr, pStatus);
    fits_write_key_str(pFile, "COLORTYP", "RGGB", nullptr, pStatus);
  });
  EXPECT_EQ(ReadSamples(), (std::vector<int>{4, 5, 2, 3, 0, 1}));
  EXPECT_EQ(m_stRead.eColors, EColorLayout::BayerRG)
    << "the lowest of an odd number of rows has the colours of the top";
}

TEST_F(CFitsTest, OffsetsMoveTheBayerPattern)
{
  const auto readColors = [this](long nX, long nY) {
    WriteForeign(USHORT_IMG, {4, 2}, [&](fitsfile *pFile, int *pStatus) {
      fits_write_key_str(pFile, "BAYERPAT", "RGGB", nullptr, pStatus);
      fits_write_key_lng(pFile, "XBAYROFF", nX, nullptr, pStatus);
      fits_write_key_lng(pFile, "YBAYROFF", nY, nullptr, pStatus);
    });
    EXPECT_EQ(GetError(), "");
    return m_stRead.eColors;
  };
  EXPECT_EQ(readColors(0, 0), EColorLayout::BayerRG);
  EXPECT_EQ(readColors(1, 0), EColorLayout::BayerGR);
  EXPECT_EQ(readColors(0, 1), EColorLayout::BayerGB);
  EXPECT_EQ(readColors(-1, 3), EColorLayout::BayerBG);
  EXPECT_EQ(readColors(2, 2), EColorLayout::BayerRG);
}

TEST_F(CFitsTest, WhatElseTheHeaderSaysIsKept)
{
  const QByteArray byteLong(200, 'y');
  WriteForeign(USHORT_IMG, {4, 2}, [&](fitsfile *pFile, int *pStatus) {
    fits_write_key_dbl(pFile, "EXPTIME", 0.25, 6, "seconds", pStatus);
    fits_write_key_longstr(pFile, "FILTER", byteLong.constData(), nullptr, pStatus);
    fits_write_key_longstr(pFile, "OBSERVER", byteLong.constData(), nullptr, pStatus);
    fits_write_comment(pFile, "50% humidity", pStatus);
    fits_write_key_str(pFile, "CHECKSUM", "0000000000000000", nullptr, pStatus);
  });
  SFrameInfo stFirst;
  std::string strError;
  const Frames listFrames = ReadFile(m_kind, m_strPath, &strError, &stFirst);
  EXPECT_EQ(stFirst.mapTexts, (Texts{{"Observer", byteLong}}));
  const QString strCopy = m_dir.filePath("copy.fits");
  ASSERT_EQ(WriteFile(m_kind, strCopy, stFirst, listFrames).GetError(), "");
  const QByteArray byteCopy = ReadBytes(strCopy);
  for (const char *pKept : {"EXPTIME =", "FILTER  =", "OBSERVER=", "COMMENT 50% humidity", "BITPIX  =", "BZERO   ="}) {
    EXPECT_EQ(byteCopy.count(pKept), 1) << pKept;
  }
  EXPECT_FALSE(byteCopy.contains("CHECKSUM")) << "it would no longer be true";
  EXPECT_FALSE(byteCopy.contains("ROWORDER")) << "nobody stated it";
  SFrameInfo stCopy;
  EXPECT_EQ(ReadFile(m_kind, strCopy, &strError, &stCopy), listFrames);
  EXPECT_EQ(stCopy.stFits.byteCards, stFirst.stFits.byteCards);
  EXPECT_EQ(stCopy.mapTexts, stFirst.mapTexts);
}

TEST_F(CFitsTest, AnyTextComesBack)
{
  SFrameInfo stInfo;
  stInfo.stLayout = {4, 2, 1};
  QString strEverything;
  for (ushort n = 1; n < 0x300; ++n) {
    strEverything += QChar(n);
  }
  stInfo.mapTexts = {{TEXT_CORRECTION, strEverything},
                     {TEXT_DESCRIPTION, "a quote ', two '', an & and a blank "},
                     {"Software", "100%25 = a & b&"},
                     {"Camera model", QString(3000, '\'')}};
  ASSERT_EQ(WriteFile(m_kind, m_strPath, stInfo, MakeFrames(stInfo.stLayout, 1, 8)).GetError(), "");
  EXPECT_EQ(GetError(), "");
  EXPECT_EQ(m_stRead.mapTexts, stInfo.mapTexts);
  const QByteArray byteHeader = ReadBytes(m_strPath).left(2880);
  EXPECT_TRUE(std::all_of(byteHeader.begin(), byteHeader.end(), [](char c) { return c >= ' ' && c <= '~'; }));
  for (int n = 0; n < 2; ++n) {
    ASSERT_EQ(WriteFile(m_kind, m_strPath, m_stRead, MakeFrames(stInfo.stLayout, 1, 8)).GetError(), "");
    EXPECT_EQ(ReadBytes(m_strPath).count("HISTORY Flat-field corrected"), 1) << "however often it is written";
  }
}

TEST_F(CFitsTest, WhatIsNoGreyFrameIsRefusedByName)
{
  for (const int nType : {FLOAT_IMG, DOUBLE_IMG, LONG_IMG}) {
    WriteForeign(nType, {4, 2});
    const std::string strBits = std::to_string(std::abs(nType)) + " bits" + (nType < 0 ? " in floating point" : "");
    EXPECT_EQ(GetError(), "has samples of " + strBits + "; whole numbers of 8 or 16 are read.");
  }
  WriteForeign(SBYTE_IMG, {4, 2});
  EXPECT_EQ(GetError(),
            "has samples that are scaled with BSCALE 1 and BZERO -128; 1 and 0 are read, for 16 bits also 32768.");
  WriteForeign(BYTE_IMG, {4, 2});
  WriteBytes(m_strPath,
             ReadBytes(m_strPath).replace("EXTEND  =                    T", "BZERO   =                32768"));
  EXPECT_EQ(GetError(),
            "has samples that are scaled with BSCALE 1 and BZERO 32768; 1 and 0 are read, for 16 bits also 32768.");
  EXPECT_EQ(GetErrorWith("BSCALE", 0.5),
            "has samples that are scaled with BSCALE 0.5 and BZERO 32768; 1 and 0 are read, for 16 bits also 32768.");
  EXPECT_EQ(GetErrorWith("BZERO", 0.0, {300, 200}), "has negative values in frame 1; only values from 0 are those of a "
                                                    "camera.");
  WriteForeign(USHORT_IMG, {4, 2, 2, 2});
  EXPECT_EQ(GetError(), "has 4 axes; images have 2, cubes of frames 3.");
  WriteForeign(USHORT_IMG, {4, 2, 1, 1, 1, 1, 1, 1, 1});
  EXPECT_EQ(GetError(), "has 9 axes; images have 2, cubes of frames 3.");
  WriteForeign(USHORT_IMG, {4});
  EXPECT_EQ(GetError(), "has 1 axes; images have 2, cubes of frames 3.");
  EXPECT_EQ(GetErrorWith("CTYPE3", "RGB", {4, 2, 3}), "is a colour picture; only grey pictures are read.");
  EXPECT_EQ(GetErrorWith("CTYPE3", "Colour", {4, 2, 3}), "is a colour picture; only grey pictures are read.");
  EXPECT_EQ(GetErrorWith("CTYPE3", "COLOR", {4, 2, 3}), "is a colour picture; only grey pictures are read.");
  EXPECT_EQ(GetErrorWith("CTYPE3", "FRAME", {4, 2, 3}), "");
  EXPECT_EQ(GetErrorWith("BAYERPAT", "RGGB", {4, 2, 3}), "");
  EXPECT_EQ(GetErrorWith("OBJECT", "x", {4, 2, 3}).find("has three planes and does not say"), 0U);
}

TEST_F(CFitsTest, HeadersThatMakeNoSenseAreRefused)
{
  WriteForeign(USHORT_IMG, {4, 2, 2});
  const QByteArray byteGood = ReadBytes(m_strPath);
  const struct {
    const char *pKey;
    const char *pValue;
    const char *pExpected;
  } CASES[] = {
    {"NAXIS1  ", "5000000000", "has frames of 5000000000 x 2 pixels; at most 1073741824 are read."},
    {"NAXIS2  ", "4294967298", "has frames of 4 x 4294967298 pixels; at most 1073741824 are read."},
    {"NAXIS1  ", "-4", "has a header that is not FITS"},
    {"NAXIS1  ", "0", "which is no size"},
    {"NAXIS3  ", "0", "has no frames"},
    {"NAXIS3  ", "500", "is too short for 500 frames of 4 x 2 with 16 bits per pixel: it ends after 180."},
    {"BZERO   ", "100", "BZERO 100"},
    {"SIMPLE  ", "", "does not begin with SIMPLE"},
  };
  for (const auto &stCase : CASES) {
    QByteArray byteBad = byteGood;
    const int nCard = byteBad.indexOf(stCase.pKey);
    ASSERT_GE(nCard, 0) << stCase.pKey;
    const QByteArray byteCard = QByteArray(stCase.pKey) + "= " + QByteArray(stCase.pValue).rightJustified(20, ' ');
    byteBad.replace(nCard, byteCard.size(),
                    *stCase.pValue == '\0' ? QByteArray("XTENSION= 'IMAGE   '          ") : byteCard);
    WriteBytes(m_strPath, byteBad);
    const std::string strError = GetError();
    EXPECT_NE(strError.find(stCase.pExpected), std::string::npos) << stCase.pKey << stCase.pValue << ": " << strError;
  }
  WriteBytes(m_strPath, byteGood.left(80).leftJustified(1001 * 2880, ' '));
  EXPECT_EQ(GetError(), "has a header that does not end.");
  WriteBytes(m_strPath, (byteGood.left(80).leftJustified(1000 * 2880, ' ') + "END").leftJustified(1001 * 2880, ' '));
  EXPECT_EQ(GetError(), "has a header that does not end.");
  WriteBytes(m_strPath, byteGood + "something");
  EXPECT_EQ(GetError(), "") << "behind an image may stand what is no part";
}

TEST_F(CFitsTest, TheLongestHeaderThatIsTakenIsRead)
{
  WriteForeign(USHORT_IMG, {4, 2});
  const QByteArray byteGood = ReadBytes(m_strPath);
  const QByteArray byteEnd = QByteArray("END").leftJustified(80, ' ');
  const int nEnd = byteGood.indexOf(byteEnd);
  ASSERT_GE(nEnd, 0);
  WriteBytes(m_strPath, (byteGood.left(nEnd).leftJustified(999 * 2880, ' ') + byteEnd).leftJustified(1000 * 2880, ' ') +
                          byteGood.mid(2880));
  EXPECT_EQ(ReadSamples(), (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7}));
}

TEST_F(CFitsTest, MoreFilesThanTheLibraryKeepsOpenAreReadOneAfterTheOther)
{
  constexpr int MOST_OPEN = 10000; // at once
  SFrameInfo stInfo;
  stInfo.stLayout = {4, 2, 1};
  const Frames listFrames = MakeFrames(stInfo.stLayout, 1, 8);
  ASSERT_EQ(WriteFile(m_kind, m_strPath, stInfo, listFrames).GetError(), "");
  for (int n = 0; n <= MOST_OPEN; ++n) {
    ASSERT_EQ(m_kind.Open(m_strPath).GetError(), "") << n;
  }
}

TEST_F(CFitsTest, DepthsThatTheSamplesCannotHaveAreNoneInTheFileEither)
{
  for (const double dBits : {7.0, 17.0}) {
    EXPECT_EQ(GetErrorWith("FFCBITS", dBits), "");
    EXPECT_EQ(m_stRead.nBitDepth, 0U) << dBits;
  }
  SFrameInfo stInfo;
  stInfo.stLayout = {4, 2, 1};
  for (const uint32_t nBitDepth : {12U, 0U}) {
    stInfo.nBitDepth = nBitDepth;
    ASSERT_EQ(WriteFile(m_kind, m_strPath, stInfo, MakeFrames(stInfo.stLayout, 1, 8)).GetError(), "");
    EXPECT_FALSE(ReadBytes(m_strPath).contains("FFCBITS")) << nBitDepth;
    EXPECT_FALSE(ReadBytes(m_strPath).contains("NAXIS3")) << "a frame is an image of two axes";
  }
}

TEST_F(CFitsTest, TextsWithoutAPlaceAreLeftOut)
{
  SFrameInfo stInfo;
  stInfo.stLayout = {4, 2, 1};
  stInfo.mapTexts["A=B"] = "would be read as another key";
  for (int n = 0; n < 100; ++n) {
    stInfo.mapTexts[QString("Key %1").arg(n, 3, 10, QChar('0'))] = "text";
  }
  ASSERT_EQ(WriteFile(m_kind, m_strPath, stInfo, MakeFrames(stInfo.stLayout, 1, 8)).GetError(), "");
  EXPECT_EQ(GetError(), "");
  EXPECT_EQ(m_stRead.mapTexts.size(), 99);
  EXPECT_TRUE(m_stRead.mapTexts.contains("Key 098"));
  EXPECT_FALSE(m_stRead.mapTexts.contains("Key 099"));
}

TEST_F(CFitsTest, CompressedImagesAndFurtherPartsAreRefusedByName)
{
  WriteForeign(USHORT_IMG, {});
  EXPECT_EQ(GetError(), "has no image in its first part; only that one is read.");
  int nStatus = 0;
  fitsfile *pFile = nullptr;
  QFile::remove(m_strPath);
  fits_create_diskfile(&pFile, QFile::encodeName(m_strPath).constData(), &nStatus);
  fits_set_compression_type(pFile, GZIP_1, &nStatus);
  long anAxes[] = {32, 32};
  fits_create_img(pFile, SHORT_IMG, 2, anAxes, &nStatus);
  std::vector<short> listSamples(32 * 32, 7);
  fits_write_img(pFile, TSHORT, 1, 32 * 32, listSamples.data(), &nStatus);
  fits_close_file(pFile, &nStatus);
  ASSERT_EQ(nStatus, 0);
  EXPECT_EQ(GetError(), "holds a compressed image; unpack it first (funpack).");
  WriteForeign(USHORT_IMG, {4, 2});
  const QByteArray byteImage = ReadBytes(m_strPath);
  WriteBytes(m_strPath, byteImage + QByteArray("XTENSION= 'IMAGE   '").leftJustified(2880, ' '));
  EXPECT_EQ(GetError(), "has further parts behind its image (extensions), which would be lost: save the image alone.");
  WriteBytes(m_strPath, QByteArray("\x1f\x8b\x08") + byteImage);
  EXPECT_EQ(GetError(), "is compressed; unpack it first (gunzip).");
  WriteBytes(m_strPath, "something else");
  EXPECT_EQ(GetError(), "is no FITS file: it does not begin with SIMPLE.");
  WriteBytes(m_strPath, byteImage.left(2880 + 15));
  EXPECT_EQ(GetError(), "is too short for a frame of 4 x 2 pixels: it ends early.");
}

TEST_F(CFitsTest, PlainTextsStandInTheHeaderAsTheyAre)
{
  SFrameInfo stInfo;
  stInfo.stLayout = {4, 2, 1};
  stInfo.mapTexts = {{TEXT_DESCRIPTION, "Taken of A/B (20 um) = x~"}, {"Observer", "100%&'"}};
  ASSERT_EQ(WriteFile(m_kind, m_strPath, stInfo, MakeFrames(stInfo.stLayout, 1, 8)).GetError(), "");
  const QByteArray byteHeader = ReadBytes(m_strPath).left(2880);
  EXPECT_TRUE(byteHeader.contains("FFCDESC = 'Taken of A/B (20 um) = x~'")) << byteHeader.constData();
  EXPECT_TRUE(byteHeader.contains("OBSERVER= '100%25%26%27'")) << byteHeader.constData();
}

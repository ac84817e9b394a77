#include "frames/sidefile.h"

#include <utility>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "frames/correctionmark.h"

using namespace ffc::frames;

namespace {

SSideFile MakeSide()
{
  SSideFile stSide;
  stSide.nWidth = 640;
  stSide.nHeight = 480;
  stSide.strPixelFormat = "BayerRG12";
  stSide.eAlignment = EAlignment::Left;
  stSide.strCamera = "X";
  stSide.dGain = 1.5;
  stSide.nBrightFrames = 16;
  stSide.nExpectGray = 200;
  stSide.strMethod = "average";
  stSide.strSha256 = QString(64, 'a');
  return stSide;
}

} // namespace

TEST(SideFile, EverythingComesBack)
{
  const auto side = ParseSideFile(MakeSideFile(MakeSide()));
  ASSERT_EQ(side.GetError(), "");
  EXPECT_EQ(MakeSideFile(side.GetValue()), MakeSideFile(MakeSide()));
  EXPECT_EQ(side.GetValue().eAlignment, EAlignment::Left);
  EXPECT_EQ(side.GetValue().dGain, 1.5);
  EXPECT_FALSE(side.GetValue().dExposureTime.has_value());
}

TEST(SideFile, EachOfItsValuesComesBackInItsPlace)
{
  SSideFile stSide = MakeSide();
  stSide.nWidth = 100000;
  stSide.nHeight = 1;
  stSide.strSerial = "serial";
  stSide.dExposureTime = 0.0;
  stSide.dBlackLevel = -2.5;
  stSide.dTemperature = 30;
  stSide.nDarkFrames = 3;
  stSide.bDarkUsed = true;
  stSide.strNoise = "noise";
  stSide.nExpectGray = 255;
  stSide.strCreated = "today";
  stSide.strTool = "tool";
  const auto read = ParseSideFile(MakeSideFile(stSide));
  ASSERT_EQ(read.GetError(), "");
  const SSideFile &stRead = read.GetValue();
  EXPECT_EQ(stRead.nWidth, 100000U);
  EXPECT_EQ(stRead.nHeight, 1U);
  EXPECT_EQ(stRead.strCamera, "X");
  EXPECT_EQ(stRead.strSerial, "serial");
  EXPECT_EQ(stRead.dExposureTime, 0.0);
  EXPECT_EQ(stRead.dBlackLevel, -2.5);
  EXPECT_EQ(stRead.dTemperature, 30.0);
  EXPECT_EQ(stRead.nDarkFrames, 3U);
  EXPECT_EQ(stRead.nBrightFrames, 16U);
  EXPECT_TRUE(stRead.bDarkUsed);
  EXPECT_EQ(stRead.strMethod, "average");
  EXPECT_EQ(stRead.strNoise, "noise");
  EXPECT_EQ(stRead.nExpectGray, 255U);
  EXPECT_EQ(stRead.strCreated, "today");
  EXPECT_EQ(stRead.strTool, "tool");
  EXPECT_EQ(stRead.strSha256, QString(64, 'a'));

  stSide.nWidth = 1;
  stSide.nHeight = 100000;
  stSide.nDarkFrames = stSide.nBrightFrames = stSide.nExpectGray = 0;
  EXPECT_EQ(ParseSideFile(MakeSideFile(stSide)).GetError(), "");
  for (uint32_t *pSide : {&stSide.nWidth, &stSide.nHeight}) {
    for (const uint32_t nWrong : {0U, 100001U}) {
      const uint32_t nRight = std::exchange(*pSide, nWrong);
      EXPECT_EQ(ParseSideFile(MakeSideFile(stSide)).GetError(),
                std::string("has something else than a whole number in its range as \"") +
                  (pSide == &stSide.nWidth ? "width" : "height") + "\".");
      *pSide = nRight;
    }
  }
}

TEST(SideFile, WhatIsNoneIsRefusedWithTheKey)
{
  EXPECT_EQ(ParseSideFile("").GetError(), "is no side file of a coefficient file.");
  EXPECT_EQ(ParseSideFile("[1, 2]").GetError(), "is no side file of a coefficient file.");
  const QByteArray byteGood = MakeSideFile(MakeSide());
  const auto fnReplace = [&byteGood](const char *pOld, const char *pNew) {
    QByteArray byteBad = byteGood;
    return ParseSideFile(byteBad.replace(pOld, pNew)).GetError();
  };
  EXPECT_NE(fnReplace("640", "\"640\"").find("\"width\""), std::string::npos);
  EXPECT_NE(fnReplace("640", "1e9").find("\"width\""), std::string::npos);
  EXPECT_NE(fnReplace("480", "-1").find("\"height\""), std::string::npos);
  EXPECT_NE(fnReplace("200", "256").find("\"expectedGray\""), std::string::npos);
  EXPECT_NE(fnReplace("200", "1.5").find("\"expectedGray\""), std::string::npos);
  EXPECT_NE(fnReplace("BayerRG12", "BayerRG12p").find("\"pixelFormat\""), std::string::npos);
  EXPECT_NE(fnReplace("left", "up").find("\"alignment\""), std::string::npos);
  EXPECT_NE(fnReplace("1.5", "\"much\"").find("\"gain\""), std::string::npos);
  EXPECT_NE(fnReplace("\"X\"", "5").find("\"camera\""), std::string::npos);
  EXPECT_NE(fnReplace("\"darkUsed\": false", "\"darkUsed\": 0").find("\"darkUsed\""), std::string::npos);
  EXPECT_EQ(fnReplace("\"darkUsed\": false,", ""), "") << "files of former versions do not say it";
  EXPECT_EQ(fnReplace("left", "right"), "");
}

class CSideFileTest : public testing::Test {
protected:
  void Write(const QByteArray &byteContent)
  {
    QFile file(GetSideFilePath(m_strFlat));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(byteContent) == byteContent.size());
  }

  std::string GetError() const { return ReadSideFile(m_strFlat).GetError(); }

  QTemporaryDir m_dir;
  QString m_strFlat = m_dir.filePath("flat.ffc");
};

TEST_F(CSideFileTest, IsFoundBesideTheCoefficients)
{
  EXPECT_FALSE(ReadSideFile(m_strFlat).GetValue().has_value());
  SSideFile stSide = MakeSide();
  stSide.eAlignment = EAlignment::Right;
  Write(MakeSideFile(stSide));
  const auto side = ReadSideFile(m_strFlat);
  ASSERT_EQ(side.GetError(), "");
  ASSERT_TRUE(side.GetValue().has_value());
  EXPECT_EQ(MakeSideFile(*side.GetValue()), MakeSideFile(stSide));
}

TEST_F(CSideFileTest, WhatStandsInItsPlaceIsRefusedAndNotReadForEver)
{
  Write("no object");
  EXPECT_EQ(GetError(), "is no side file of a coefficient file.");
  Write(MakeSideFile(MakeSide()).leftJustified(1 << 20, ' '));
  EXPECT_EQ(GetError(), "") << "the largest that is read";
  ASSERT_TRUE(QFile(GetSideFilePath(m_strFlat)).resize((1 << 20) + 1));
  EXPECT_EQ(ReadSideBytes(m_strFlat).GetValue(), QByteArray()) << "larger than any";
  EXPECT_EQ(GetError(), "is no side file of a coefficient file.");
  ASSERT_TRUE(QFile::remove(GetSideFilePath(m_strFlat)) && QDir().mkpath(GetSideFilePath(m_strFlat)));
  EXPECT_EQ(GetError(), "is no file.");
}

TEST_F(CSideFileTest, TheCoefficientsAreKnownByTheirHash)
{
  EXPECT_NE(HashCoefficientFile(m_strFlat).GetError(), "");
  QFile file(m_strFlat);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("abc") == 3);
  file.close();
  EXPECT_EQ(HashCoefficientFile(m_strFlat).GetValue(),
            QCryptographicHash::hash("abc", QCryptographicHash::Sha256).toHex());
}

TEST(CorrectionMark, IsOneLineBesideTheFile)
{
  const QString strLine = ToLine(MakeCorrectionMark("flat.ffc", "ab12", "ffc 1"));
  EXPECT_FALSE(strLine.contains('\n'));
  EXPECT_EQ(QJsonDocument::fromJson(strLine.toUtf8()).object().value("sha256").toString(), "ab12");
  EXPECT_EQ(GetMarkPath("frames.ser"), "frames.ser.json");
}

/// \file
/// Coefficient files whose side file is for another camera.

#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "frames/sidefile.h"
#include "genapi/softwarenodemap/softwarenodemap.h"
#include "host/dialogdriver/dialogobserver.h"
#include "host/window/sidefilecheck.h"

using namespace ffc::host;

namespace {

class SideFileCheck : public testing::Test {
protected:
  SideFileCheck()
  {
    m_deviceMap.AddInteger("Width", 640);
    m_deviceMap.AddInteger("Height", 480);
    m_deviceMap.AddString("PixelFormat", "Mono12");
  }

  void Write(const QString &strPath, const QByteArray &byteContent)
  {
    QFile file(strPath);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(byteContent) == byteContent.size());
  }

  void WriteSide(uint32_t nWidth, const QString &strPixelFormat)
  {
    ffc::frames::SSideFile stSide;
    stSide.nWidth = nWidth;
    stSide.nHeight = 480;
    stSide.strPixelFormat = strPixelFormat;
    Write(ffc::frames::GetSideFilePath(m_strFlat), ffc::frames::MakeSideFile(stSide));
  }

  std::string Describe() { return DescribeMisfit(m_strFlat, m_deviceMap).toStdString(); }

  QTemporaryDir m_dir;
  QString m_strFlat = m_dir.filePath("flat.ffc");
  ffc::genapi::CSoftwareNodeMap m_deviceMap;
};

} // namespace

TEST_F(SideFileCheck, CoefficientsForTheCameraAndThoseWithoutASideFileFit)
{
  EXPECT_EQ(Describe(), "");
  WriteSide(640, "Mono12");
  EXPECT_EQ(Describe(), "");
}

TEST_F(SideFileCheck, AnotherSizeOrFormatIsToldWithBoth)
{
  WriteSide(1280, "Mono12");
  EXPECT_EQ(Describe(),
            "The coefficients flat.ffc were made for 1280 x 480 Mono12, but the camera delivers 640 x 480 Mono12.");
  WriteSide(640, "BayerRG12");
  EXPECT_NE(Describe().find("640 x 480 BayerRG12, but"), std::string::npos) << Describe();
}

TEST_F(SideFileCheck, WithoutASideFileATableOfAnotherShapeIsToldByItsGains)
{
  QByteArray byteTable(640 * 480 * 4, '\0');
  auto *pGains = reinterpret_cast<uint16_t *>(byteTable.data());
  for (int nPixel = 0; nPixel < 640 * 480; ++nPixel) {
    const int nX = nPixel % 480 - 240;
    const int nY = nPixel / 480 - 320;
    pGains[nPixel] = static_cast<uint16_t>(4096 + (nX * nX + nY * nY) / 40 + nPixel % 7);
  }
  Write(m_strFlat, byteTable);
  EXPECT_EQ(Describe(),
            "The coefficients flat.ffc look as if they were made for 480 x 640, but the camera delivers 640 "
            "x 480: the image would have stripes.");
}

TEST_F(SideFileCheck, OfCoefficientsThatCannotBeToldApartNoneIsWritten)
{
  SCoefficientOrigin stOrigin;
  const SFrameShape stMono12{640, 480, 0x01100005};
  const QString strSide = ffc::frames::GetSideFilePath(m_strFlat);
  EXPECT_NE(WriteSideFile(m_strFlat, stOrigin, stMono12, m_deviceMap, "host").GetError(), "") << "no hash of them";
  stOrigin.strSha256 = QString(64, 'a');
  EXPECT_NE(WriteSideFile(m_strFlat, stOrigin, {640, 480, 0x02180014}, m_deviceMap, "host").GetError(), "") << "RGB8";
  EXPECT_FALSE(QFile::exists(strSide));
  stOrigin.eDarkField = ffc::quality::EDarkField::None;
  stOrigin.nFrames = 4;
  ASSERT_EQ(WriteSideFile(m_strFlat, stOrigin, stMono12, m_deviceMap, "host").GetError(), "");
  const auto side = ffc::frames::ReadSideFile(m_strFlat);
  ASSERT_TRUE(side && side.GetValue());
  EXPECT_EQ(side.GetValue()->nDarkFrames, 0U);
  EXPECT_EQ(side.GetValue()->nBrightFrames, 4U);
}

TEST_F(SideFileCheck, ASideFileThatIsNoneIsTold)
{
  Write(ffc::frames::GetSideFilePath(m_strFlat), "{}");
  EXPECT_NE(Describe().find("is no side file"), std::string::npos) << Describe();
}

TEST_F(SideFileCheck, TheFileThatADialogOpensIsSeenAndOneThatItSavesIsNot)
{
  Write(m_strFlat, "coefficients");
  QStringList listChosen;
  CDialogObserver observer(nullptr);
  QObject::connect(&observer, &CDialogObserver::SigOpening, [&](const QString &strFile) { listChosen << strFile; });
  for (const auto eMode : {QFileDialog::AcceptSave, QFileDialog::AcceptOpen}) {
    QFileDialog dialog;
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    dialog.setAcceptMode(eMode);
    dialog.setModal(true);
    dialog.setNameFilter("Coefficients (*.ffc)");
    dialog.show();
    dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(m_strFlat);
    QMetaObject::invokeMethod(&dialog, "accept");
  }
  EXPECT_EQ(listChosen, QStringList{m_strFlat});
}

// The two ordinals of the image library, and another library that has them.
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <windows.h>

namespace {

constexpr int RUN_LIMIT_MS = 100000;

struct SRun {
  int nExitCode = -1;
  QString strError;
  QImage imgCorrected; // the first corrected frame
};

// The host with the module and an image library, in a folder that has nothing else.
SRun RunHostWith(const char *pImageLibrary)
{
  const QTemporaryDir dir;
  EXPECT_TRUE(QFile::copy(FFC_HOST_FILE, dir.filePath("ffchost.exe")));
  EXPECT_TRUE(QFile::copy(FFC_MODULE_FILE, dir.filePath("FlatFieldCorrection.plx")));
  EXPECT_TRUE(QFile::copy(pImageLibrary, dir.filePath("Ombrix.dll")));
  QProcess process;
  process.start(dir.filePath("ffchost.exe"), {"--headless", "--size", "64x64", "--frames", "1", "--pixel-format",
                                              "Mono12", "--out", dir.filePath("out")});
  EXPECT_TRUE(process.waitForFinished(RUN_LIMIT_MS));
  SRun stRun;
  stRun.nExitCode = process.exitCode();
  stRun.strError = QString::fromUtf8(process.readAllStandardError());
  stRun.imgCorrected = QImage(dir.filePath("out/corrected_000.png"));
  return stRun;
}

// The grey of all pixels, or -1 when they differ.
int GetOneGrey(const QImage &imgFrame)
{
  int nGrey = -1;
  for (int nLine = 0; nLine < imgFrame.height(); ++nLine) {
    const auto *pLine = reinterpret_cast<const uint16_t *>(imgFrame.constScanLine(nLine));
    for (int nColumn = 0; nColumn < imgFrame.width(); ++nColumn) {
      if (nGrey >= 0 && pLine[nColumn] != nGrey) {
        return -1;
      }
      nGrey = pLine[nColumn];
    }
  }
  return nGrey;
}

} // namespace

TEST(OmbrixOrdinals, TheBuiltLibraryAnswersToItsOrdinalsAndToNoName)
{
  const HMODULE hLibrary = LoadLibraryW(L"" FFC_OMBRIX_FILE);
  ASSERT_NE(hLibrary, nullptr);
  EXPECT_NE(GetProcAddress(hLibrary, MAKEINTRESOURCEA(23)), nullptr);
  EXPECT_NE(GetProcAddress(hLibrary, MAKEINTRESOURCEA(24)), nullptr);
  EXPECT_EQ(GetProcAddress(hLibrary, MAKEINTRESOURCEA(22)), nullptr);
  EXPECT_EQ(GetProcAddress(hLibrary, MAKEINTRESOURCEA(25)), nullptr);
  EXPECT_EQ(GetProcAddress(hLibrary, "OmbrixComputeFlatField"), nullptr);
  EXPECT_EQ(GetProcAddress(hLibrary, "OmbrixApplyFlatField"), nullptr);
  FreeLibrary(hLibrary);
}

TEST(OmbrixOrdinals, AnotherLibraryWithTheSameOrdinalsTakesItsPlaceUnderTheSameModule)
{
  const SRun stOwn = RunHostWith(FFC_OMBRIX_FILE);
  ASSERT_EQ(stOwn.nExitCode, 0) << stOwn.strError.toStdString();
  ASSERT_EQ(stOwn.imgCorrected.size(), QSize(64, 64));
  EXPECT_EQ(GetOneGrey(stOwn.imgCorrected), -1);

  const SRun stOther = RunHostWith(FFC_SUBSTITUTE_FILE);
  ASSERT_EQ(stOther.nExitCode, 0) << stOther.strError.toStdString();
  ASSERT_EQ(stOther.imgCorrected.size(), QSize(64, 64));
  EXPECT_EQ(GetOneGrey(stOther.imgCorrected), 1234);
}
